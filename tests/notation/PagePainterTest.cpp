// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PagePainter.h"

#include "PageSheet.h"

#include <gmock/gmock.h>

#include <thread>

using namespace velmora;
using namespace velmora::notation;
using testing::ElementsAre;

namespace {
constexpr std::uint32_t kInk = 0xFF000000, kPaper = 0xFFFFFFFF;
} // namespace

TEST(PagePainter, ALevelLineFillsItsRowFromPixelToPixel) {
    PageSheet sheet;
    sheet.draw(LineMark{{3, 10}, {20, 10}, 1}).paint();
    EXPECT_THAT(sheet.ink(), ElementsAre(3, 10, 21, 11));
    for (int x = 3; x <= 20; ++x)
        ASSERT_EQ(sheet.at(x, 10), kInk) << x;
    EXPECT_EQ(sheet.at(10, 9), kPaper);
    EXPECT_EQ(sheet.at(10, 11), kPaper);
    EXPECT_EQ(sheet.at(2, 10), kPaper);
    EXPECT_EQ(sheet.at(21, 10), kPaper);
}

TEST(PagePainter, AnUprightLineFillsItsColumn) {
    PageSheet sheet;
    sheet.draw(LineMark{{7, 30}, {7, 5}, 1}).paint();
    EXPECT_THAT(sheet.ink(), ElementsAre(7, 5, 8, 31));
    EXPECT_EQ(sheet.at(7, 20), kInk);
    EXPECT_EQ(sheet.at(6, 20), kPaper);
}

TEST(PagePainter, ThickLinesLieAboutTheirRow) {
    for (const auto [width, top, bottom] :
         {std::array{2, 9, 11}, std::array{3, 9, 12}, std::array{4, 8, 12}}) {
        PageSheet sheet;
        sheet.draw(LineMark{{3, 10}, {20, 10}, static_cast<double>(width)}).paint();
        EXPECT_THAT(sheet.ink(), ElementsAre(3, top, 21, bottom)) << width;
    }
}

TEST(PagePainter, LinesAreSharpAtAnyScale) {
    for (const double scale : {0.5, 0.77, 1.25, 1.5, 2.0, 3.3}) {
        PageSheet sheet;
        for (int line = 0; line < 5; ++line)
            sheet.draw(LineMark{{3, 8.0 + line * 8}, {60, 8.0 + line * 8}, 1});
        sheet.draw(LineMark{{30, 8}, {30, 40}, 1}).paint(scale);
        for (const std::uint32_t pixel : sheet.pixels)
            ASSERT_TRUE(pixel == kInk || pixel == kPaper) << scale;
    }
}

TEST(PagePainter, ASlopedLineHasUprightEnds) {
    PageSheet sheet;
    sheet.draw(LineMark{{10, 30}, {40, 20}, 4}).paint(4);
    const auto [left, top, right, bottom] = sheet.ink();
    EXPECT_EQ(left, 40);
    EXPECT_EQ(right, 164);
    const auto thick = [&](int x) {
        int count = 0;
        for (int y = 0; y < sheet.height; ++y)
            count += sheet.isInk(x, y) ? 1 : 0;
        return count;
    };
    for (const int x : {left + 1, (left + right) / 2, right - 2})
        EXPECT_NEAR(thick(x), 16, 1) << x;
    EXPECT_TRUE(sheet.isInk(left + 1, bottom - 2));
}

TEST(PagePainter, ALineOfNoLengthIsADotAsLargeAsItIsWide) {
    PageSheet sheet;
    sheet.draw(LineMark{{20, 20}, {20, 20}, 1}).paint();
    EXPECT_THAT(sheet.ink(), ElementsAre(20, 20, 21, 21));
    PageSheet thick;
    thick.draw(LineMark{{20, 20}, {20, 20}, 5}).paint(4);
    EXPECT_THAT(thick.ink(), ElementsAre(72, 72, 92, 92));
    EXPECT_FALSE(thick.isInk(73, 73));
}

TEST(PagePainter, FilledEllipsesAreDrawnByThePenAndOpenOnesAreRings) {
    PageSheet filled;
    filled.draw(EllipseMark{{20, 20}, 3, 0.5, true}).paint(4);
    EXPECT_THAT(filled.ink(), ElementsAre(82 - 14, 82 - 8, 82 + 14, 82 + 8));
    EXPECT_TRUE(filled.isInk(82, 82));
    PageSheet open;
    open.draw(EllipseMark{{20, 20}, 3, 0.5, false}).paint(4);
    EXPECT_THAT(open.ink(), ElementsAre(82 - 14, 82 - 8, 82 + 14, 82 + 8));
    EXPECT_FALSE(open.isInk(82, 82));
}

TEST(PagePainter, ACurveIsThickestInItsMiddle) {
    PageSheet sheet;
    sheet.draw(CurveMark{{Point{5, 10}, {20, 25}, {40, 25}, {55, 10}}, 2}).paint(4);
    const auto thick = [&](int x) {
        int count = 0;
        for (int y = 0; y < sheet.height; ++y)
            count += sheet.isInk(x, y) ? 1 : 0;
        return count;
    };
    EXPECT_NEAR(thick(122), 8, 1);
    EXPECT_LT(thick(26), 7);
    EXPECT_GT(thick(26), 0);
    EXPECT_LT(thick(220), 7);
}

TEST(PagePainter, LaterMarksLieOverEarlierOnes) {
    PageSheet sheet;
    sheet.draw(EllipseMark{{20, 20}, 8, 1, true}).draw(EllipseMark{{20, 20}, 5, 1, true}, 0xFFFFFF);
    sheet.draw(EllipseMark{{20, 20}, 2, 1, true}, 0x2040C0).paint();
    EXPECT_EQ(sheet.at(20, 20), 0xFF2040C0);
    EXPECT_EQ(sheet.at(24, 20), kPaper);
    EXPECT_EQ(sheet.at(27, 20), kInk);
}

TEST(PagePainter, OverlappingOutlinesLeaveNoHoles) {
    PageSheet sheet;
    sheet.draw(GlyphMark{MusicGlyph::HeadBlack, {20, 20}, 8})
        .draw(GlyphMark{MusicGlyph::FlagDown, {20, 26}, 8});
    sheet.draw(GlyphMark{MusicGlyph::HeadBlack, {21, 21}, 8}).draw(LineMark{{5, 35}, {40, 15}, 3}).paint();
    EXPECT_EQ(sheet.at(20, 20), kInk);
    EXPECT_EQ(sheet.at(21, 22), kInk);
}

TEST(PagePainter, APartIsWhatTheWholeHasThere) {
    PageSheet sheet;
    sheet.draw(LineMark{{3, 10}, {60, 10}, 1}).draw(GlyphMark{MusicGlyph::TrebleClef, {10, 34}, 8});
    sheet.write({20, 20}, "Words");
    sheet.paint(1.5);
    std::vector<std::uint32_t> part(30 * 20);
    paintPixels(sheet.score, sheet.page(), 1.5, 15, 12, 30, 20, part.data());
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 30; ++x)
            ASSERT_EQ(part[static_cast<std::size_t>(y * 30 + x)], sheet.at(x + 15, y + 12)) << x << ' ' << y;
}

TEST(PagePainter, TwoThreadsPaintTheSamePage) {
    const auto painted = [] {
        PageSheet sheet;
        sheet.draw(GlyphMark{MusicGlyph::Sharp, {10, 20}, 8}).write({20, 10}, "Words");
        sheet.paint(2);
        return sheet.pixels;
    };
    std::vector<std::uint32_t> beside;
    std::thread thread([&] { beside = painted(); });
    const std::vector<std::uint32_t> here = painted();
    thread.join();
    EXPECT_EQ(beside, here);
}
