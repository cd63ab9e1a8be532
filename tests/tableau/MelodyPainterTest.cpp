// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/MelodyPainter.h"

#include "tableau/MelodyPictures.h"

#include <gmock/gmock.h>

using namespace velmora;

class ColoursOfMelody : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Channels, ColoursOfMelody, testing::Range(0, kMelodyChannels));

TEST_P(ColoursOfMelody, AreBrightIfActiveAndElsePale) {
    TableauFixture fixture = blank();
    const int channel = GetParam();
    fixture.draw(channel, 2, 50, 3);
    const QPoint bar(2 * 12 + 20, rowTop(fixture, 50) + 5);
    const ChannelColours& colours = kChannelColours[channel];
    fixture.score.ActiveChannel = channel;
    EXPECT_EQ(painted(fixture).pixel(bar), colour(colours.bright));
    fixture.score.ActiveChannel = (channel + 1) % kMelodyChannels;
    EXPECT_EQ(painted(fixture).pixel(bar), colour(colours.pale));
    fixture.score.ActiveChannel = 8;
    EXPECT_EQ(painted(fixture).pixel(bar), colour(colours.pale));
}

TEST(MelodyPainterTest, ABarReachesFromTwoPixelsIntoItsFirstCellToTheEndOfItsLast) {
    TableauFixture fixture = blank();
    fixture.draw(0, 2, 50, 3);
    const QImage image = painted(fixture);
    const int y = rowTop(fixture, 50);
    EXPECT_EQ(image.pixel(59, y + 4), kRed);
    EXPECT_EQ(image.pixel(59, y + 7), kRed);
    EXPECT_EQ(image.pixel(60, y + 5), kCell);
    EXPECT_EQ(image.pixel(50, y + 3), kWhitePaper);
    EXPECT_EQ(image.pixel(50, y + 8), kWhitePaper);
}

TEST(MelodyPainterTest, ABallHasABlackEdgeAndAWhiteHighlight) {
    TableauFixture fixture = blank();
    fixture.draw(0, 2, 50, 1);
    const QImage image = painted(fixture);
    const QPoint cell(24, rowTop(fixture, 50));
    EXPECT_EQ(image.pixel(cell + QPoint(5, 5)), kRed);
    EXPECT_EQ(image.pixel(cell + QPoint(3, 3)), kWhitePaper);
    for (const QPoint edge : {QPoint(5, 0), QPoint(5, 10), QPoint(0, 5), QPoint(10, 5)})
        EXPECT_LT(qRed(image.pixel(cell + edge)), kDark);
    EXPECT_EQ(image.pixel(cell + QPoint(5, -2)), kWhitePaper);
}

TEST(MelodyPainterTest, AHeadWithAChordHasARing) {
    TableauFixture fixture = blank();
    fixture.draw(0, 2, 50, 2, 1);
    fixture.score.Polyphonics.set(1, 3, 1); // on a continuation: nothing
    const QImage image = painted(fixture);
    const QPoint cell(24, rowTop(fixture, 50));
    EXPECT_LT(qRed(image.pixel(cell + QPoint(5, -2))), kDark);
    EXPECT_EQ(image.pixel(cell + QPoint(5, -1)), kRed); // between ring and ball
    EXPECT_EQ(image.pixel(cell + QPoint(17, -2)), kWhitePaper);
    fixture.score.Polyphonics.set(1, 2, 0);
    EXPECT_EQ(painted(fixture).pixel(cell + QPoint(5, -2)), kWhitePaper);
}

TEST(MelodyPainterTest, TheActiveChannelLiesOnTopOfHigherOnes) {
    TableauFixture fixture = blank();
    fixture.draw(3, 2, 50, 3);
    fixture.draw(7, 2, 50, 3);
    const QPoint bar(50, rowTop(fixture, 50) + 5);
    fixture.score.ActiveChannel = 3;
    EXPECT_EQ(painted(fixture).pixel(bar), colour(kChannelColours[3].bright));
    fixture.score.ActiveChannel = 0;
    EXPECT_EQ(painted(fixture).pixel(bar), colour(kChannelColours[7].pale));
}

namespace {
/// A bar of channel 0, the active one, through the head of channel 3.
TableauFixture crossed(const Manners& manners) {
    TableauFixture fixture = blank();
    fixture.manners = manners;
    fixture.draw(0, 2, 50, 8);
    fixture.draw(3, 5, 50, 2);
    return fixture;
}
/// In the middle of the ball in that column.
QPoint ballOf(const TableauFixture& fixture, int column) {
    return {column * 12 + 5, rowTop(fixture, 50) + 6};
}
} // namespace

TEST(MelodyPainterTest, NoBarIsPaintedThroughAHead) {
    const TableauFixture fixture = crossed(Manners::careful());
    EXPECT_EQ(painted(fixture).pixel(ballOf(fixture, 5)), colour(kChannelColours[3].pale));
}

TEST(MelodyPainterTest, InClassicMannersAChannelIsPaintedWholeOverTheOnesBefore) {
    const TableauFixture fixture = crossed(Manners::classic());
    EXPECT_EQ(painted(fixture).pixel(ballOf(fixture, 5)), kRed);
}

TEST(MelodyPainterTest, TheHeadsOfTheActiveChannelLieOnTop) {
    TableauFixture fixture = blank();
    fixture.manners = Manners::careful();
    for (const int channel : {3, 7})
        fixture.draw(channel, 5, 50, 2, 1);
    for (const int active : {3, 7}) {
        fixture.score.ActiveChannel = active;
        EXPECT_EQ(painted(fixture).pixel(ballOf(fixture, 5)),
                  colour(kChannelColours[static_cast<std::size_t>(active)].bright));
    }
}

TEST(MelodyPainterTest, InTheFirstColumnAChordIsWhole) {
    const auto redIn = [](int column, const Manners& manners) {
        TableauFixture fixture = blank();
        fixture.manners = manners;
        fixture.draw(0, column, 50, 1, 1);
        return count(painted(fixture), kRed);
    };
    EXPECT_GE(redIn(0, Manners::careful()), redIn(5, Manners::careful()));
    EXPECT_LT(redIn(0, Manners::classic()), redIn(5, Manners::classic())) << "the old rules cut it";
}

TEST(MelodyPainterTest, AChannelIsPaintedIfItIsInUseShownAndNotMuted) {
    TableauFixture fixture = blank();
    fixture.draw(0, 2, 50, 3);
    EXPECT_GT(count(painted(fixture), kRed), 0);
    fixture.score.ChannelMuted[0] = true;
    EXPECT_EQ(count(painted(fixture), kRed), 0);
    fixture.score.ChannelMuted[0] = false;
    fixture.score.ChannelShown[0] = false;
    EXPECT_EQ(count(painted(fixture), kRed), 0);
    fixture.score.ChannelShown[0] = true;
    fixture.score.ChannelInUse[0] = false;
    EXPECT_EQ(count(painted(fixture), kRed), 0);
}

TEST(MelodyPainterTest, ANoteIsCutAtTheLastColumnOfTheView) {
    TableauFixture fixture = blank();
    fixture.view.ViewLastColumn = 10;
    fixture.draw(0, 8, 50, 9);
    const QImage image = painted(fixture);
    const int y = rowTop(fixture, 50) + 5;
    EXPECT_EQ(image.pixel(11 * 12 - 1, y), kRed);
    EXPECT_EQ(image.pixel(11 * 12 + 1, y), kWhitePaper);
}

TEST(MelodyPainterTest, ANoteScrolledInFromTheLeftHasABarAndNoBall) {
    TableauFixture fixture = blank();
    fixture.draw(0, 3, 50, 4, 2);
    fixture.view.ViewFirstColumn = 4;
    const QImage image = painted(fixture);
    const int y = rowTop(fixture, 50);
    EXPECT_EQ(image.pixel(2, y + 5), kRed);
    EXPECT_EQ(image.pixel(35, y + 5), kRed);
    EXPECT_EQ(image.pixel(5, y), kWhitePaper);
    EXPECT_EQ(image.pixel(5, y + 9), kWhitePaper);
}

TEST(MelodyPainterTest, ContinuationsWithoutAHeadHaveABarAndNoBall) {
    TableauFixture fixture = blank();
    fixture.draw(0, 2, 50, 1);
    fixture.score.NoteCell.set(0, 2, kEmptyCell);
    fixture.score.NoteCell.set(0, 5, 1050);
    fixture.score.NoteCell.set(0, 6, 1050);
    const QImage image = painted(fixture);
    const int y = rowTop(fixture, 50);
    EXPECT_EQ(image.pixel(62, y + 5), kRed);
    EXPECT_EQ(image.pixel(83, y + 5), kRed);
    EXPECT_EQ(image.pixel(65, y), kWhitePaper);
}

TEST(MelodyPainterTest, TwoHeadsOnOneRowAreTwoNotes) {
    TableauFixture fixture = blank();
    fixture.draw(0, 2, 50, 1);
    fixture.draw(0, 3, 50, 1);
    const QImage image = painted(fixture);
    EXPECT_LT(qRed(image.pixel(24 + 5, rowTop(fixture, 50))), kDark);
    EXPECT_LT(qRed(image.pixel(36 + 5, rowTop(fixture, 50))), kDark);
}

TEST(MelodyPainterTest, WhatIsOutOfViewLeavesNoPixel) {
    const QImage empty = painted(blank());
    for (const int row : {0, 20, 39, 127, 999}) {
        for (const std::int16_t style : {0, 1}) {
            TableauFixture fixture = blank();
            fixture.view.Notationstyle = style;
            fixture.draw(0, 2, row, 3, 1);
            EXPECT_EQ(painted(fixture), empty) << row;
        }
    }
}

TEST(MelodyPainterTest, CellsOfNoMeaningAreHarmless) {
    const QImage empty = painted(blank());
    TableauFixture fixture = blank();
    fixture.score.ChannelInUse[0] = true;
    for (const int cell : {-7, -32768, 5000, 32767, 999}) { // rows 0, 767 and 999 are not in view
        fixture.score.NoteCell.set(0, 3, static_cast<std::int16_t>(cell));
        EXPECT_EQ(painted(fixture), empty) << cell;
    }
}

TEST(MelodyPainterTest, TheTraditionalNotationHasAThinBarAndAHead) {
    TableauFixture fixture = blank();
    fixture.view.Notationstyle = 1;
    fixture.score.NotesPerMeasure = 16;
    fixture.draw(0, 2, 51, 4); // a quarter on "6E": the head stands 22 pixels from the left
    const QImage image = painted(fixture);
    const int y = rowTop(fixture, 51);
    EXPECT_EQ(image.pixel(26, y + 5), kRed);
    EXPECT_EQ(image.pixel(71, y + 6), kRed);
    EXPECT_EQ(image.pixel(26, y + 4), kWhitePaper);
    EXPECT_EQ(image.pixel(26, y + 7), kWhitePaper);
    EXPECT_EQ(image.pixel(24 + 22, y + 5), kBlackInk);
    EXPECT_EQ(image.pixel(29, y + 2), kWhitePaper); // no ball
}

TEST(MelodyPainterTest, ANotationScrolledInFromTheLeftHasNoHead) {
    TableauFixture fixture = blank();
    fixture.view.Notationstyle = 1;
    fixture.score.NotesPerMeasure = 100;
    fixture.draw(0, 2, 51, 8);
    fixture.view.ViewFirstColumn = 3;
    EXPECT_EQ(count(painted(fixture), kBlackInk), 0);
}

TEST(MelodyPainterTest, AMeasureOfNothingHasBarsAndNoHeads) {
    TableauFixture fixture = blank();
    fixture.view.Notationstyle = 1;
    fixture.draw(0, 2, 51, 4);
    for (const int measure : {0, -4}) {
        fixture.score.NotesPerMeasure = static_cast<std::int16_t>(measure);
        const QImage image = painted(fixture);
        EXPECT_EQ(count(image, kBlackInk), 0);
        EXPECT_EQ(image.pixel(40, rowTop(fixture, 51) + 5), kRed);
    }
}

TEST(MelodyPainterTest, InALongMeasureHeadsStandWhereTheLastOneStood) {
    TableauFixture fixture = blank();
    fixture.view.Notationstyle = 1;
    fixture.score.NotesPerMeasure = 16;
    fixture.draw(0, 2, 51, 4);
    QImage surface = surfaceOf(400, 344);
    MelodyPainter painter;
    painter.paint(surface, fixture.scene());
    fixture.score.NotesPerMeasure = 32;
    painter.paint(surface, fixture.scene());
    EXPECT_EQ(surface.pixel(24 + 22, rowTop(fixture, 51) + 5), kBlackInk);
}

TEST(MelodyPainterTest, AccidentalsStandLeftOfTheHeadIfWanted) {
    TableauFixture fixture = blank();
    fixture.view.Notationstyle = 1;
    fixture.score.NotesPerMeasure = 16;
    for (const int row : {54, 57}) { // "6C#" and "5Bb"
        fixture.score.NoteCell.fillRow(0, kEmptyCell);
        fixture.draw(0, 4, row, 4);
        fixture.view.Accidentals = true;
        const QImage with = painted(fixture);
        fixture.view.Accidentals = false;
        const QImage without = painted(fixture);
        const QRect before(48, rowTop(fixture, row) - 8, 20, 24);
        EXPECT_GT(count(with.copy(before), kBlackInk), count(without.copy(before), kBlackInk)) << row;
        const QRect behind(68, 0, 332, 344);
        EXPECT_EQ(with.copy(behind), without.copy(behind)) << row;
    }
}

TEST(MelodyPainterTest, ASelectionIsBlendedUpToTheColumnOfItsEnd) {
    TableauFixture fixture = blank();
    fixture.view.SelectStart = 5;
    fixture.view.SelectEnd = 8;
    const QImage image = painted(fixture);
    const QRgb blended = qRgb(155, 155, 255);
    EXPECT_EQ(image.pixel(59, 10), kWhitePaper);
    EXPECT_EQ(image.pixel(61, 0), blended);
    EXPECT_EQ(image.pixel(95, 343), blended);
    EXPECT_EQ(image.pixel(97, 10), kWhitePaper);
    EXPECT_EQ(image.pixel(96, 10), kCell);
}

TEST(MelodyPainterTest, ASelectionPastTheViewStopsAtTheRightEdgeAndNotAtAColumn) {
    TableauFixture fixture = blank();
    fixture.view.ViewLastColumn = 32;
    fixture.view.SelectStart = 30;
    fixture.view.SelectEnd = 33;
    const QImage image = painted(fixture);
    EXPECT_EQ(image.pixel(398, 10), qRgb(155, 155, 255));
    EXPECT_EQ(image.pixel(399, 10), kWhitePaper);
    fixture.view.SelectEnd = 32;
    EXPECT_EQ(painted(fixture).pixel(398, 10), kWhitePaper);
}

TEST(MelodyPainterTest, ASelectionBeforeTheViewBeginsAtTheLeftEdge) {
    TableauFixture fixture = blank();
    fixture.view.ViewFirstColumn = 10;
    fixture.view.SelectStart = 5;
    fixture.view.SelectEnd = 12;
    const QImage image = painted(fixture);
    EXPECT_EQ(image.pixel(1, 10), qRgb(155, 155, 255));
    EXPECT_EQ(image.pixel(23, 10), qRgb(155, 155, 255));
    EXPECT_EQ(image.pixel(25, 10), kWhitePaper);
}

TEST(MelodyPainterTest, ASelectionOutOfViewShowsNothing) {
    TableauFixture fixture = blank();
    fixture.view.ViewFirstColumn = 10;
    fixture.view.ViewLastColumn = 30;
    const QImage empty = painted(fixture);
    struct Marks {
        int start, end;
    };
    for (const Marks marks : {Marks{-1, -1}, {-1, 20}, {2, 9}, {31, 40}}) {
        fixture.view.SelectStart = marks.start;
        fixture.view.SelectEnd = marks.end;
        EXPECT_EQ(painted(fixture), empty) << marks.start;
    }
}

TEST(MelodyPainterTest, ThePlayMarkIsThreePixelsBeforeItsColumn) {
    TableauFixture fixture = blank();
    fixture.view.PlayMark = 4;
    const QImage image = painted(fixture);
    const QRgb blended = qRgb(255, 155, 155);
    EXPECT_EQ(image.pixel(45, 10), kWhitePaper);
    EXPECT_EQ(image.pixel(46, 0), blended);
    EXPECT_EQ(image.pixel(47, 343), blended);
    EXPECT_EQ(image.pixel(48, 10), qRgb(244, 144, 144)); // over the cell line
    EXPECT_EQ(image.pixel(49, 10), kWhitePaper);
}

TEST(MelodyPainterTest, APlayMarkAtTheLeftEdgeOrOutOfViewShowsNothing) {
    TableauFixture fixture = blank();
    fixture.view.ViewFirstColumn = 4;
    const QImage empty = painted(fixture);
    for (const int mark : {0, 3, 4, 41}) {
        fixture.view.PlayMark = mark;
        EXPECT_EQ(painted(fixture), empty) << mark;
    }
}

TEST(MelodyPainterTest, ABarIsTwiceAsLargeAtScaleTwo) {
    TableauFixture fixture = blank();
    fixture.draw(0, 2, 50, 3);
    const QImage image = painted(fixture, 2);
    const int y = 2 * rowTop(fixture, 50);
    EXPECT_EQ(image.pixel(119, y + 8), kRed);
    EXPECT_EQ(image.pixel(119, y + 15), kRed);
    EXPECT_EQ(image.pixel(119, y + 16), kWhitePaper);
    EXPECT_EQ(image.pixel(120, y + 10), kCell);
}

TEST(MelodyPainterTest, OddPicturesAndViewsDoNoHarm) {
    TableauFixture fixture;
    for (int channel = 0; channel < kUsedChannels; ++channel)
        fixture.draw(channel, 3, 50, 3, 1);
    fixture.view.SelectStart = 2;
    fixture.view.SelectEnd = 9;
    fixture.view.PlayMark = 5;
    MelodyPainter painter;
    for (const QSize size : {QSize(1, 1), QSize(1, 300), QSize(300, 1), QSize(0, 0), QSize(13, 9)})
        for (const int lineHeight : {8, 0, -5, 1, 32767})
            for (const int meter : {4, 0, -3})
                for (const int first : {0, -30000, 32000})
                    for (const std::int16_t style : {0, 1}) {
                        fixture.view.Line_Height = lineHeight;
                        fixture.setup.TxtMeter = static_cast<std::int16_t>(meter);
                        fixture.score.NotesPerMeasure = static_cast<std::int16_t>(meter);
                        fixture.view.ViewFirstColumn = first;
                        fixture.view.ViewTopRow = first;
                        fixture.view.Notationstyle = style;
                        QImage surface = surfaceOf(size.width(), size.height());
                        painter.paint(surface, fixture.scene());
                        EXPECT_EQ(surface.size(), size);
                    }
}

TEST(MelodyPainterTest, APictureOfAnotherDepthIsLeftAlone) {
    QImage surface(40, 40, QImage::Format_RGB888);
    surface.fill(Qt::green);
    const QImage before = surface.copy();
    MelodyPainter().paint(surface, TableauFixture().scene());
    EXPECT_EQ(surface, before);
}
