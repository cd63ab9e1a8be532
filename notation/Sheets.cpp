// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Sheets.h"

namespace velmora::notation {

void Sheets::setPages(EngravedScore pages) {
    engraved_ = std::move(pages);
}
void Sheets::addPage(EngravedPage page) {
    engraved_.pages.push_back(std::move(page));
}
void Sheets::place(LyricsItem item) {
    items_.push_back(std::move(item));
}
std::vector<LyricsItem> Sheets::items() const {
    return items_;
}
std::vector<LyricsItem> Sheets::itemsOf(int) const {
    return {};
}
void Sheets::setItems(std::vector<LyricsItem> items) {
    items_ = std::move(items);
}
void Sheets::setItemsOf(int, std::vector<LyricsItem>) {}
EngravedPage Sheets::drawn(int page) {
    return engraved_.pages.at(static_cast<std::size_t>(page - 1));
}

} // namespace velmora::notation
