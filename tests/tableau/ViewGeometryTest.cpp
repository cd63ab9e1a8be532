// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ViewGeometry.h"

#include "score/Score.h"
#include "score/ViewState.h"

#include <gmock/gmock.h>

using namespace velmora;

namespace {
ViewState resized(int width, int height, ViewState view = {}, int numNotes = 1000) {
    resizeView(view, width, height, numNotes);
    return view;
}
} // namespace

TEST(ViewGeometryTest, ColumnsAreTwelvePixelsWideAndCountedLessOne) {
    EXPECT_EQ(resized(1366, 554).ViewColumns, (1366 - 70) / 12 - 1);
    EXPECT_EQ(resized(1366, 554).ViewColumns, resized(1377, 554).ViewColumns);
    EXPECT_EQ(resized(1378, 554).ViewColumns, resized(1366, 554).ViewColumns + 1);
    EXPECT_EQ(resized(20, 554).ViewColumns, 0) << "a window of no width";
}

TEST(ViewGeometryTest, MoreRowsArePaintedThanFit) {
    EXPECT_EQ(resized(1366, 554).ViewRows, 64) << "554 / (8 / 12 * 16) + 12 = 63.94";
    EXPECT_EQ(resized(1366, 544).ViewRows, 63);
    ViewState tall;
    tall.Line_Height = 12;
    EXPECT_EQ(resized(1366, 552, tall).ViewRows, 46) << "46.5, rounded to the even number";
    EXPECT_EQ(resized(1366, 584, tall).ViewRows, 48) << "48.5";
    tall.Line_Height = 0;
    EXPECT_GT(resized(1366, 600, tall).ViewRows, 0);
}

TEST(ViewGeometryTest, HalvesAreWholeNumbers) {
    ViewState view;
    view.ViewColumns = 98;
    view.ViewRows = 7;
    EXPECT_EQ(view.ViewHalfColumns(), 49);
    EXPECT_EQ(view.ViewHalfRows(), 4);
}

TEST(ViewGeometryTest, TheViewEndsWithinTheScore) {
    ViewState late;
    late.ViewFirstColumn = 950;
    const ViewState view = resized(1366, 554, late);
    EXPECT_EQ(view.ViewLastColumn, 999);
    EXPECT_EQ(view.ViewFirstColumn, 999 - view.ViewColumns);
}

TEST(ViewGeometryTest, AScoreShorterThanTheViewBeginsAtItsBeginning) {
    const ViewState view = resized(1366, 554, {}, 20);
    EXPECT_EQ(view.ViewFirstColumn, 0);
    EXPECT_EQ(view.ViewLastColumn, 19);
}

TEST(ViewGeometryTest, TheViewEndsAtTheLowestRow) {
    ViewState low;
    low.ViewTopRow = 100;
    const ViewState view = resized(1366, 554, low);
    EXPECT_EQ(view.ViewBottomRow(), 127);
    EXPECT_EQ(view.ViewTopRow, 127 - 64);
}

TEST(ViewGeometryTest, OnAVeryTallWindowTheHighestRowStandsAtTheTop) {
    const ViewState view = resized(3840, 1950);
    EXPECT_GT(view.ViewRows, 127);
    EXPECT_EQ(view.ViewTopRow, 0);
}

TEST(ViewGeometryTest, TheBarsValueNamesTheMiddleOfTheView) {
    ViewState view = resized(1366, 554);
    EXPECT_EQ(view.ViewHalfColumns(), 54);
    EXPECT_EQ(columnValue(view), 54);
    scrollToColumn(view, 154, 1000);
    EXPECT_EQ(view.ViewFirstColumn, 100);
    EXPECT_EQ(view.ViewLastColumn, 207);
    EXPECT_EQ(columnValue(view), 154);
    scrollToColumn(view, 1040, 1000);
    EXPECT_EQ(view.ViewFirstColumn, 986);
    EXPECT_EQ(view.ViewLastColumn, 990) << "ten before the end";
}

TEST(ViewGeometryTest, RowsLikewise) {
    ViewState view = resized(1366, 554);
    const int value = rowValue(view);
    EXPECT_EQ(value, 42 + 32 - 1);
    scrollToRow(view, value + 5);
    EXPECT_EQ(view.ViewTopRow, 47);
    EXPECT_EQ(rowValue(view), value + 5);
}

TEST(ViewGeometryTest, HScroll1GoesTwoViewsPastTheSong) {
    const ViewState view = resized(1366, 554);
    EXPECT_EQ(columnRange(view, 0).minimum, 54);
    EXPECT_EQ(columnRange(view, 0).maximum, 214);
    EXPECT_EQ(columnRange(view, 300).maximum, 514);
}

TEST(ViewGeometryTest, VScroll1ReachesFromTheHighestToTheLowestRow) {
    ViewState view = resized(1366, 554);
    const ScrollRange range = rowRange(view, 405);
    scrollToRow(view, range.minimum);
    EXPECT_EQ(view.ViewTopRow, 0);
    scrollToRow(view, range.maximum);
    EXPECT_EQ(view.ViewTopRow, 128 - 50) << "of which 50 fit";
    EXPECT_EQ(rowRange(view, 5000).maximum, rowRange(view, 5000).minimum) << "all rows are seen";
}

namespace {
/// Heads on channel 2, and where a view of 40 rows from row 42 on goes for them.
struct Head {
    int position;
    std::int16_t row;
};
Score scoreOf(std::initializer_list<Head> heads) {
    Score score;
    for (const Head& head : heads)
        score.NoteCell.set(2, head.position, head.row);
    score.FindEndOfSong();
    return score;
}
int topRowFor(const Score& score) {
    return topRowForNotes(resized(1366, 554), score, 40 * 8 + 5);
}
} // namespace

TEST(ViewGeometryTest, AnOpenedScoreWithANoteInSightLeavesTheRows) {
    EXPECT_EQ(topRowFor(scoreOf({})), 42);
    EXPECT_EQ(topRowFor(scoreOf({{1, 100}, {50, 42}})), 42);
    EXPECT_EQ(topRowFor(scoreOf({{1, 0}, {50, 81}})), 42);
    EXPECT_EQ(topRowFor(scoreOf({{500, 60}, {600, 100}})), 42) << "to be scrolled to";
}

TEST(ViewGeometryTest, OtherwiseTheRowsMoveJustToItsFirstNote) {
    EXPECT_EQ(topRowFor(scoreOf({{1, 82}, {3, 100}})), 82 + 10 - 39) << "ten rows are seen below it";
    EXPECT_EQ(topRowFor(scoreOf({{1, 41}})), 41 - 10);
    EXPECT_EQ(topRowFor(scoreOf({{1, 3}})), 0);
    EXPECT_EQ(topRowFor(scoreOf({{1, 127}})), 128 - 40);
    EXPECT_EQ(topRowFor(scoreOf({{1, 90}, {500, 60}})), 90 + 10 - 39) << "first comes what is seen first";
    EXPECT_EQ(topRowFor(scoreOf({{500, 90}, {600, 100}})), 90 + 10 - 39) << "or else what comes at all";
}

TEST(ViewGeometryTest, BeatsStayInSightIfTheFirstNoteLetsThem) {
    Score score = scoreOf({{1, 90}});
    const auto withBeatOn = [&](std::int16_t row) {
        score.NoteCell.set(8, 30, row);
        score.FindEndOfSong();
        return topRowFor(score);
    };
    EXPECT_EQ(withBeatOn(70), 90 + 10 - 39);
    EXPECT_EQ(withBeatOn(54), 54);
    EXPECT_EQ(withBeatOn(42), 90 - 39) << "the note is seen, at the foot";
}

TEST(ViewGeometryTest, OnlyNotesThatArePaintedAreInSight) {
    Score score = scoreOf({{1, 90}});
    score.NoteCell.set(1, 3, 60);
    score.NoteCell.set(2, 0, 1060);
    score.NoteCell.set(8, 3, 70);
    score.FindEndOfSong();
    EXPECT_EQ(topRowFor(score), 42);
    score.ChannelMuted[1] = true;
    EXPECT_EQ(topRowFor(score), 90 + 10 - 39);
}

TEST(ViewGeometryTest, APlaceOnTheRailIsAShareOfFourViewsAndTheSong) {
    const ViewState view = resized(1366, 554);
    EXPECT_EQ(railValue(view, 300, 0, 1000), 54);
    EXPECT_EQ(railValue(view, 300, 500, 1000), 54 + (107 * 4 + 300) / 2);
    EXPECT_EQ(railValue(view, 300, 333, 1000), 54 + 242) << "the whole part of 242.4";
    EXPECT_EQ(railValue(view, 300, -20, 1000), 54) << "not before its beginning";
    EXPECT_EQ(railValue(view, 300, 2000, 1000), railValue(view, 300, 990, 1000)) << "ten before its end";
    EXPECT_EQ(railValue(view, 300, 5, 0), 54);
}

TEST(ViewGeometryTest, TheThumbStandsWhereTheRailTakesIt) {
    // A bar draws its thumb at (value - minimum) / (maximum - minimum + page) of its rail.
    const ViewState view = resized(1366, 554);
    for (const int songEnd : {0, 300, 5000}) {
        const ScrollRange range = columnRange(view, songEnd);
        const int value = railValue(view, songEnd, 250, 1000);
        const double at = 1000.0 * (value - range.minimum) / (range.maximum - range.minimum + range.page);
        EXPECT_NEAR(at, 250, 3) << songEnd;
    }
}

TEST(ViewGeometryTest, TheRowUnderThePointerStaysThereWhateverItsHeight) {
    ViewState view;
    constexpr int kHeight = 400;
    for (const int y : {0, 100, 211, 399})
        for (int height = 7; height <= 24; ++height) { // with lower rows the paper would end
            view.Line_Height = height;
            view.ViewTopRow = topRowKeeping(view, 60, y, kHeight);
            EXPECT_EQ(view.ViewTopRow + y / height, 60) << y << ", " << height;
        }
}

TEST(ViewGeometryTest, WhereRowsEndThePaperStaysFull) {
    ViewState view;
    view.Line_Height = 5;
    EXPECT_EQ(topRowKeeping(view, 3, 399, 400), 0);
    EXPECT_EQ(topRowKeeping(view, 127, 0, 400), 128 - 80);
}

TEST(ViewGeometryTest, TheWheelMakesRowsFiveToTwentyFourHigh) {
    EXPECT_EQ(zoomedLineHeight(8, 1), 9);
    EXPECT_EQ(zoomedLineHeight(8, -2), 6);
    EXPECT_EQ(zoomedLineHeight(8, 2'000'000'000), 24);
    EXPECT_EQ(zoomedLineHeight(8, -2'000'000'000), 5);
    // What the setup toolbar's field allows besides is left by the other way only.
    EXPECT_EQ(zoomedLineHeight(4, -1), 4);
    EXPECT_EQ(zoomedLineHeight(4, 1), 5);
    EXPECT_EQ(zoomedLineHeight(40, 1), 40);
    EXPECT_EQ(zoomedLineHeight(40, -1), 39);
}
