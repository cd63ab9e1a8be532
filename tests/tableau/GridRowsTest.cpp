// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/GridRows.h"

#include "parts/PixelSurface.h"
#include "tableau/GuidePainter.h"
#include "tableau/MelodyPictures.h"

#include <gmock/gmock.h>

using namespace velmora;

TEST(GridRowsTest, OnlyRowsOfCAndFSharpHaveAGuide) {
    TableauFixture fixture = blank();
    fixture.view.Show_Sharp_guides = true;
    const QImage image = painted(fixture);
    for (int row = 42; row < 42 + 43; ++row) {
        const std::string& name = NoteNames()[static_cast<std::size_t>(row)];
        const bool sharp = name.ends_with("C#") || name.ends_with("F#");
        EXPECT_EQ(image.pixel(6, rowTop(fixture, row) + 5), sharp ? kBand : kWhitePaper) << name;
    }
}

TEST(GridRowsTest, AGuideReachesFromPixelThreeToSevenOfItsRow) {
    TableauFixture fixture = blank();
    fixture.view.Show_Sharp_guides = true;
    const QImage image = painted(fixture);
    const int top = rowTop(fixture, 49); // "6F#"
    EXPECT_EQ(image.pixel(1, top + 2), kWhitePaper);
    EXPECT_EQ(image.pixel(1, top + 3), kBand);
    EXPECT_EQ(image.pixel(399, top + 7), kBand);
    EXPECT_EQ(image.pixel(1, top + 8), kWhitePaper);
}

TEST(GridRowsTest, ThereAreNoGuidesIfTheyAreOff) {
    EXPECT_EQ(count(painted(blank()), kBand), 0);
}

TEST(GridRowsTest, ACellLineStandsEveryTwelvePixelsFromTheLeftEdge) {
    const QImage image = painted(blank());
    for (int x = 0; x < 400; ++x)
        EXPECT_EQ(image.pixel(x, 100), x % 12 == 0 ? kCell : kWhitePaper) << x;
}

TEST(GridRowsTest, AMeasureLineStandsOnMultiplesButNeverAtTheLeftEdge) {
    TableauFixture fixture = blank();
    fixture.score.NotesPerMeasure = 16;
    fixture.view.ViewFirstColumn = 16;
    const QImage image = painted(fixture);
    EXPECT_EQ(image.pixel(0, 100), kCell);
    EXPECT_EQ(image.pixel(16 * 12, 0), kMeasure);
    EXPECT_EQ(image.pixel(16 * 12, 343), kMeasure);
    EXPECT_EQ(image.pixel(15 * 12, 100), kCell);
}

TEST(GridRowsTest, BeatAndMeasureLinesOfAStaffEndWithIt) {
    TableauFixture fixture = blank();
    fixture.score.NotesPerMeasure = 16;
    fixture.setup.ChTreble = true;
    const QImage image = painted(fixture);
    const int top = rowTop(fixture, 50) + 5;
    const int bottom = rowTop(fixture, 63) + 5;
    for (const int y : {top + 1, bottom - 1}) {
        EXPECT_EQ(image.pixel(20 * 12, y), kBeat) << y;
        EXPECT_EQ(image.pixel(16 * 12, y), kBlackInk) << y;
    }
    for (const int y : {top - 1, bottom + 1}) {
        EXPECT_EQ(image.pixel(20 * 12, y), kCell) << y;
        EXPECT_EQ(image.pixel(16 * 12, y), kMeasure) << y;
    }
}

TEST(GridRowsTest, TheBassStaffHasBeatLinesOfItsOwn) {
    TableauFixture fixture = blank();
    fixture.score.NotesPerMeasure = 16;
    fixture.setup.ChBass = true;
    const QImage image = painted(fixture);
    EXPECT_EQ(image.pixel(20 * 12, rowTop(fixture, 84) + 4), kBeat);
    EXPECT_EQ(image.pixel(20 * 12, rowTop(fixture, 84) + 6), kCell);
    EXPECT_EQ(image.pixel(20 * 12, rowTop(fixture, 60) + 4), kCell);
}

TEST(GridRowsTest, TheBeatStepIsTheMeasureDividedByTheMeter) {
    TableauFixture fixture = blank();
    fixture.setup.ChTreble = true;
    fixture.score.NotesPerMeasure = 12;
    fixture.setup.TxtMeter = 6;
    const QImage image = painted(fixture);
    const int y = rowTop(fixture, 50) + 10;
    EXPECT_EQ(image.pixel(14 * 12, y), kBeat);
    EXPECT_EQ(image.pixel(18 * 12, y), kBeat);
    EXPECT_EQ(image.pixel(15 * 12, y), kCell);
}

TEST(GridRowsTest, ABeatStepThatIsNoWholeNumberMeetsColumnsWhereItCan) {
    TableauFixture fixture = blank();
    fixture.setup.ChTreble = true;
    fixture.score.NotesPerMeasure = 18;
    fixture.setup.TxtMeter = 4; // a beat of 4.5 columns
    const QImage image = painted(fixture);
    const int y = rowTop(fixture, 50) + 10;
    EXPECT_EQ(image.pixel(9 * 12, y), kBeat);
    EXPECT_EQ(image.pixel(27 * 12, y), kBeat);
    EXPECT_EQ(image.pixel(22 * 12, y), kCell);
}

TEST(GridRowsTest, EachStaffHasFiveLinesOverTheWholeWidth) {
    TableauFixture fixture = blank();
    fixture.setup.ChTreble = fixture.setup.ChBass = true;
    const QImage image = painted(fixture);
    for (const auto& rows : {kTrebleRows, kBassRows})
        for (const int row : rows)
            for (const int x : {0, 200, 399})
                EXPECT_EQ(image.pixel(x, rowTop(fixture, row) + 5), kBlackInk) << row;
    EXPECT_EQ(count(image, kBlackInk), 10 * 400);
}

TEST(GridRowsTest, AnUncheckedStaffShowsNothing) {
    EXPECT_EQ(count(painted(blank()), kBlackInk), 0);
    EXPECT_EQ(count(painted(blank()), kClefColour), 0);
}

TEST(GridRowsTest, AStaffScrolledHalfwayOutKeepsItsBeatLines) {
    TableauFixture fixture = blank();
    fixture.score.NotesPerMeasure = 16;
    fixture.setup.ChTreble = true;
    fixture.view.ViewTopRow = 55;
    const QImage image = painted(fixture);
    EXPECT_EQ(image.pixel(20 * 12, 0), kBeat);
    EXPECT_EQ(image.pixel(20 * 12, rowTop(fixture, 63) + 6), kCell);
}

TEST(GridRowsTest, NoStaffIsPaintedIfTheTopRowHasNoName) {
    TableauFixture fixture = blank();
    fixture.setup.ChTreble = fixture.setup.ChBass = true;
    for (const int top : {-1, 128}) {
        fixture.view.ViewTopRow = top;
        fixture.view.ViewRows = 200;
        const QImage image = painted(fixture, 1, 400, 900);
        EXPECT_EQ(count(image, kBlackInk), 0) << top;
        EXPECT_EQ(count(image, kClefColour), 0) << top;
    }
}

TEST(GridRowsTest, ClefsStandRoundTheirLinesUnderTheStaff) {
    TableauFixture fixture = blank();
    fixture.setup.ChTreble = true;
    const QImage treble = painted(fixture);
    EXPECT_GT(count(treble.copy(0, rowTop(fixture, 58), 60, 40), kClefColour), 20);
    EXPECT_EQ(count(treble.copy(60, 0, 340, 344), kClefColour), 0);
    EXPECT_EQ(treble.pixel(25, rowTop(fixture, 60) + 5), kBlackInk); // the line is over the clef
    fixture.setup.ChTreble = false;
    fixture.setup.ChBass = true;
    const QImage bass = painted(fixture);
    EXPECT_GT(count(bass.copy(0, rowTop(fixture, 72), 60, 60), kClefColour), 20);
    EXPECT_EQ(count(bass.copy(0, 0, 60, rowTop(fixture, 70)), kClefColour), 0);
}

TEST(GridRowsTest, EveryLineStandsOnWholePixelsAtEveryScaleFactor) {
    TableauFixture fixture;
    fixture.score.NotesPerMeasure = 16;
    for (const qreal scale : {1.0, 1.25, 1.5, 2.0}) {
        const QImage image = painted(fixture, scale);
        for (int y = 0; y < image.height(); ++y)
            for (int x = deviceEdge(80, scale); x < image.width(); ++x) {
                const QRgb pixel = image.pixel(x, y);
                ASSERT_TRUE(pixel == kWhitePaper || pixel == kCell || pixel == kBand || pixel == kMeasure ||
                            pixel == kBeat || pixel == kBlackInk)
                    << scale << ' ' << x << ',' << y;
            }
    }
}

TEST(GridRowsTest, StavesThatFallTogetherDoNoHarm) {
    TableauFixture fixture;
    for (const int height : {0, 1, -3}) {
        fixture.view.Line_Height = height;
        const QImage image = painted(fixture, 0.05);
        EXPECT_EQ(image.size(), QSize(20, 17));
        EXPECT_NE(image.pixel(10, 10), qRgb(1, 2, 3));
    }
}
