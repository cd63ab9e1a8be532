// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PrintLayout.h"

#include <gtest/gtest.h>

namespace velmora::notation {
namespace {

constexpr double kClose = 1e-9;

PrintLayout withMargins(double all) {
    PrintLayout layout;
    layout.margins.fill(all);
    return layout;
}

TEST(PrintLayoutTest, PaperHasItsOwnUnit) {
    PrintLayout layout;
    EXPECT_EQ(layout.PaperWidth(), 21.0);
    EXPECT_EQ(layout.PaperHeight(), 29.7);
    layout.setPaper(PaperSize::Letter);
    EXPECT_EQ(layout.PaperWidth(), 8.5);
    EXPECT_EQ(layout.PaperHeight(), 11.0);
}

TEST(PrintLayoutTest, LandscapeSwapsWidthAndHeight) {
    PrintLayout layout;
    layout.setTurn(PaperTurn::Landscape);
    EXPECT_EQ(layout.PaperWidth(), 29.7);
    EXPECT_EQ(layout.PaperHeight(), 21.0);
    EXPECT_NEAR(layout.place().paperWidth, 29.7 / 2.54 * 72, kClose);
}

TEST(PrintLayoutTest, OtherPaperKeepsLengths) {
    PrintLayout layout = withMargins(2.54);
    layout.setPaper(PaperSize::Letter);
    EXPECT_NEAR(layout.margin(Margin::Left), 1, kClose);
    layout.setPaper(PaperSize::A4);
    EXPECT_NEAR(layout.margin(Margin::Left), 2.54, kClose);
}

TEST(PrintLayoutTest, AFittedPictureTouchesTheNarrowerMargins) {
    PrintLayout layout = withMargins(2);
    layout.pictureWidth = 1000;
    layout.pictureHeight = 1000;
    const PrintLayout::Box box = layout.image();
    EXPECT_NEAR(box.width, 17, kClose);
    EXPECT_NEAR(box.height, 17, kClose);
    EXPECT_NEAR(box.left, 2, kClose);
    EXPECT_NEAR(box.top, (29.7 - 17) / 2, kClose);
    layout.chkCenter = false;
    EXPECT_NEAR(layout.image().top, 2, kClose);
    layout.setTurn(PaperTurn::Landscape);
    EXPECT_NEAR(layout.image().height, 17, kClose);
}

TEST(PrintLayoutTest, WithoutFitThePictureHasItsOwnSize) {
    PrintLayout layout;
    layout.chkFit = false;
    layout.pictureWidth = 96;
    layout.pictureHeight = 192;
    EXPECT_NEAR(layout.image().width, 2.54, kClose);
    EXPECT_NEAR(layout.place().scale, 0.75, kClose);
    layout.setImageHeight(2.54);
    EXPECT_NEAR(layout.percent, 50, kClose);
    layout.chkFit = true;
    layout.setImageWidth(5.08);
    EXPECT_FALSE(layout.chkFit);
    EXPECT_NEAR(layout.shownPercent(), 200, kClose);
    layout.setImageWidth(0);
    EXPECT_EQ(layout.percent, 1);
    layout.setImageWidth(1e9);
    EXPECT_EQ(layout.percent, 1000);
}

TEST(PrintLayoutTest, ThePlaceIsTheImageInPoints) {
    PrintLayout layout = withMargins(1);
    layout.setPaper(PaperSize::Letter);
    layout.margins.fill(1);
    layout.chkCenter = false;
    const PagePlace place = layout.place();
    EXPECT_NEAR(place.paperWidth, 612, kClose);
    EXPECT_NEAR(place.paperHeight, 792, kClose);
    EXPECT_NEAR(place.left, 72, kClose);
    EXPECT_NEAR(place.top, 72, kClose);
    EXPECT_NEAR(place.scale * layout.pictureHeight, layout.image().height * 72, kClose);
}

TEST(PrintLayoutTest, ADragTakesThePictureAlongButNotOffThePaper) {
    PrintLayout layout = withMargins(1);
    layout.chkFit = false;
    layout.setImageWidth(10);
    const PrintLayout::Box before = layout.image();
    layout.drag(1, -2);
    EXPECT_FALSE(layout.chkCenter);
    EXPECT_NEAR(layout.image().left, before.left + 1, kClose);
    EXPECT_NEAR(layout.image().top, before.top - 2, kClose);
    layout.drag(1000, -1000);
    EXPECT_NEAR(layout.image().left + layout.image().width, 21, kClose);
    EXPECT_NEAR(layout.image().top, 0, kClose);
    layout.setImageWidth(42);
    layout.drag(1000, 1000);
    EXPECT_NEAR(layout.image().left, 0, kClose) << "a larger one covers the paper";
}

TEST(PrintLayoutTest, MarginsLargerThanThePaperLeaveNoRoom) {
    PrintLayout layout;
    layout.setMargin(Margin::Left, 500);
    EXPECT_EQ(layout.margin(Margin::Left), 21.0);
    layout.setMargin(Margin::Top, -5);
    EXPECT_EQ(layout.margin(Margin::Top), 0);
    EXPECT_FALSE(layout.hasRoom());
    EXPECT_EQ(layout.image().width, 0);
    EXPECT_EQ(layout.place().scale, 0);
    layout.setMargin(Margin::Left, 19.4);
    EXPECT_TRUE(layout.hasRoom());
    layout.setMargin(Margin::Left, 19.5);
    EXPECT_FALSE(layout.hasRoom());
}

TEST(PrintLayoutTest, MarginLinesStandInThePapersProportion) {
    PrintLayout layout;
    layout.setMargin(Margin::Top, 2.97);
    layout.setMargin(Margin::Left, 2.1);
    layout.setMargin(Margin::Bottom, 29.7);
    layout.setMargin(Margin::Right, 4.2);
    EXPECT_NEAR(layout.lineShare(Margin::Top), 0.1, kClose);
    EXPECT_NEAR(layout.lineShare(Margin::Left), 0.1, kClose);
    EXPECT_NEAR(layout.lineShare(Margin::Bottom), 0, kClose);
    EXPECT_NEAR(layout.lineShare(Margin::Right), 0.8, kClose);
    layout.setTurn(PaperTurn::Landscape);
    EXPECT_NEAR(layout.lineShare(Margin::Left), 2.1 / 29.7, kClose);
    EXPECT_NEAR(layout.lineShare(Margin::Bottom), 0, kClose);
}

using Sheets = std::vector<PrintedSheet>;

TEST(PrintLayoutTest, CopiesAreTheOuterLoop) {
    EXPECT_EQ(printOrder(3, 1, 3, 2), (Sheets{{1, 1}, {2, 1}, {3, 1}, {1, 2}, {2, 2}, {3, 2}}));
}

TEST(PrintLayoutTest, BlankRangesMeanAllPages) {
    EXPECT_EQ(printOrder(2, 0, 0, 1), (Sheets{{1, 1}, {2, 1}}));
    EXPECT_EQ(printOrder(3, 2, 0, 1), (Sheets{{2, 1}, {3, 1}}));
    EXPECT_EQ(printOrder(3, 0, 1, 1), (Sheets{{1, 1}}));
}

TEST(PrintLayoutTest, PagesThatAreNotThereEjectNothing) {
    EXPECT_EQ(printOrder(2, 2, 32767, 2), (Sheets{{2, 1}, {2, 2}}));
    EXPECT_TRUE(printOrder(2, 3, 9, 1).empty());
    EXPECT_TRUE(printOrder(0, 0, 0, 1).empty());
}

TEST(PrintLayoutTest, AnEmptyRangeOrNoCopiesPrintNothing) {
    EXPECT_TRUE(printOrder(5, 4, 2, 1).empty());
    EXPECT_TRUE(printOrder(5, 1, 5, 0).empty());
    EXPECT_TRUE(printOrder(5, 1, 5, -3).empty());
}

TEST(PrintLayoutTest, TenThousandCopiesOfOnePageAreTheMost) {
    EXPECT_EQ(printOrder(1, 0, 0, 10'000).size(), 10'000U);
    EXPECT_EQ(printOrder(2, 0, 0, 10'000).size(), kMostSheets + 1U);
}

} // namespace
} // namespace velmora::notation
