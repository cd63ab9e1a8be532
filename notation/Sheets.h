// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/LyricsFile.h"
#include "notation/Marks.h"

#include <vector>

namespace velmora::notation {

/// The pages of a document and the texts that were placed on them. Texts outlive their pages: those of a page
/// that is not there any more wait for it, and are saved.
class Sheets {
public:
    /// The pages as they were engraved; texts stay where they are.
    void setPages(EngravedScore pages);
    /// Puts one page behind the last.
    void addPage(EngravedPage page);
    [[nodiscard]] const EngravedScore& engraved() const { return engraved_; }
    [[nodiscard]] EngravedScore& engraved() { return engraved_; }
    [[nodiscard]] int count() const { return static_cast<int>(engraved_.pages.size()); }

    /// Places a text; its line is made.
    void place(LyricsItem item);
    /// Every text, of all pages, in the order of pages and then of placing.
    [[nodiscard]] std::vector<LyricsItem> items() const;
    [[nodiscard]] std::vector<LyricsItem> itemsOf(int page) const;
    void setItems(std::vector<LyricsItem> items);
    /// Replaces the texts of one page.
    void setItemsOf(int page, std::vector<LyricsItem> items);

    /// What is drawn on a page: the music's marks, then the texts.
    [[nodiscard]] EngravedPage drawn(int page);

private:
    EngravedScore engraved_;
    std::vector<LyricsItem> items_; ///< by page
};

} // namespace velmora::notation
