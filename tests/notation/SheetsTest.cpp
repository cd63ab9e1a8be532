// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Sheets.h"

#include <gtest/gtest.h>

namespace velmora::notation {
namespace {

EngravedScore pages(std::size_t count) {
    EngravedScore score{.width = 794, .height = 1123, .styles = {}, .pages = {}};
    score.pages.resize(count);
    for (EngravedPage& page : score.pages)
        page.marks.push_back({.shape = LineMark{}});
    return score;
}

LyricsItem item(int page, std::string text) {
    return {.page = page, .left = 5, .top = 6, .text = std::move(text)};
}

std::string textsOf(const std::vector<LyricsItem>& items) {
    std::string texts;
    for (const LyricsItem& one : items)
        texts += one.text;
    return texts;
}

TEST(SheetsTest, TextsStandByPagesAndThenInTheOrderOfPlacing) {
    Sheets sheets;
    for (const auto& [page, text] : {std::pair{3, "a"}, {1, "b"}, {3, "c"}, {2, "d"}, {1, "e"}})
        sheets.place(item(page, text));
    EXPECT_EQ(textsOf(sheets.items()), "bedac");
    EXPECT_EQ(textsOf(sheets.itemsOf(3)), "ac");
    EXPECT_EQ(textsOf(sheets.itemsOf(4)), "");
    sheets.setItemsOf(1, {item(9, "x"), item(9, "y")});
    EXPECT_EQ(textsOf(sheets.items()), "xydac");
    EXPECT_EQ(sheets.itemsOf(1).front().page, 1);
    sheets.setItems({item(2, "2"), item(1, "1")});
    EXPECT_EQ(textsOf(sheets.items()), "12");
}

TEST(SheetsTest, ATextThatIsPlacedGetsItsLine) {
    Sheets sheets;
    sheets.place(item(1, "la"));
    EXPECT_EQ(sheets.items().front().line, lineOf(item(1, "la")));
}

TEST(SheetsTest, TextsOutliveTheirPages) {
    Sheets sheets;
    sheets.setPages(pages(3));
    sheets.place(item(3, "kept"));
    sheets.setPages(pages(1));
    EXPECT_EQ(textsOf(sheets.items()), "kept");
    sheets.addPage({});
    sheets.addPage({});
    EXPECT_EQ(sheets.drawn(3).marks.size(), 1U);
}

TEST(SheetsTest, TextsAreDrawnAfterTheMusicInTheirFont) {
    Sheets sheets;
    sheets.setPages(pages(2));
    sheets.place({.page = 2, .left = 5, .top = 6, .size = 20, .font = "Arial", .text = "la"});
    sheets.place(item(2, ""));
    EXPECT_EQ(sheets.drawn(1).marks.size(), 1U);
    const EngravedPage page = sheets.drawn(2);
    ASSERT_EQ(page.marks.size(), 2U);
    const auto& text = std::get<TextMark>(page.marks.back().shape);
    EXPECT_EQ(text.at, (Point{5, 6}));
    EXPECT_EQ(text.text, "la");
    EXPECT_EQ(page.marks.back().role, Role::Lyric);
    const TextStyle style = sheets.engraved().styles.at(static_cast<std::size_t>(text.style));
    EXPECT_EQ(style.family, "Arial");
    EXPECT_EQ(style.points, 20);
    EXPECT_EQ(sheets.engraved().pages[1].marks.size(), 1U) << "the music's own page stays as it is";
}

TEST(SheetsTest, SizesAndPlacesOfAFileAreDrawnWithinReason) {
    Sheets sheets;
    sheets.setPages(pages(1));
    sheets.place({.page = 1, .left = 1e300, .top = -1e300, .size = 0, .text = "far"});
    const EngravedPage page = sheets.drawn(1);
    const auto& text = std::get<TextMark>(page.marks.back().shape);
    EXPECT_EQ(text.at, (Point{1e6, -1e6}));
    EXPECT_EQ(sheets.engraved().styles.at(static_cast<std::size_t>(text.style)).points, 1);
}

} // namespace
} // namespace velmora::notation
