// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Sheets.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace velmora::notation {

namespace {
// What a file says may be anything; beyond these nothing would be seen.
constexpr double kFarthest = 1e6;
constexpr double kSmallest = 1;
constexpr double kLargest = 1000;

Mark markOf(const LyricsItem& item, EngravedScore& score) {
    const int style =
        score.styleOf({.family = item.font, .points = std::clamp(item.size, kSmallest, kLargest)});
    return {.shape = TextMark{.at = {std::clamp(item.left, -kFarthest, kFarthest),
                                     std::clamp(item.top, -kFarthest, kFarthest)},
                              .style = style,
                              .text = item.text},
            .role = Role::Lyric};
}
} // namespace

void Sheets::setPages(EngravedScore pages) {
    engraved_ = std::move(pages);
}

void Sheets::addPage(EngravedPage page) {
    engraved_.pages.push_back(std::move(page));
}

void Sheets::place(LyricsItem item) {
    item.line = lineOf(item);
    items_.insert(std::ranges::upper_bound(items_, item.page, {}, &LyricsItem::page), std::move(item));
}

std::vector<LyricsItem> Sheets::items() const {
    return items_;
}

std::vector<LyricsItem> Sheets::itemsOf(int page) const {
    return {std::ranges::lower_bound(items_, page, {}, &LyricsItem::page),
            std::ranges::upper_bound(items_, page, {}, &LyricsItem::page)};
}

void Sheets::setItems(std::vector<LyricsItem> items) {
    items_ = std::move(items);
    for (LyricsItem& item : items_)
        item.line = lineOf(item);
    std::ranges::stable_sort(items_, {}, &LyricsItem::page);
}

void Sheets::setItemsOf(int page, std::vector<LyricsItem> items) {
    std::erase_if(items_, [page](const LyricsItem& item) { return item.page == page; });
    for (LyricsItem& item : items) {
        if (std::exchange(item.page, page) != page)
            item.line.clear();
        place(std::move(item));
    }
}

EngravedPage Sheets::drawn(int page) {
    EngravedPage drawn = engraved_.pages.at(static_cast<std::size_t>(page - 1));
    for (const LyricsItem& item : itemsOf(page))
        if (!item.text.empty())
            drawn.marks.push_back(markOf(item, engraved_));
    return drawn;
}

} // namespace velmora::notation
