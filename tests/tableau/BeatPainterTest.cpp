// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/BeatPainter.h"

#include "tableau/TableauFixture.h"

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr QRgb kWhitePaper = qRgb(255, 255, 255);
constexpr QRgb kCell = qRgb(237, 237, 237);
constexpr QRgb kBeat = qRgb(201, 204, 216);
constexpr QRgb kBlackInk = qRgb(0, 0, 0);

QImage painted(const TableauFixture& fixture, qreal scale = 1, int width = 400, int height = 72) {
    QImage surface = surfaceOf(width, height, scale);
    BeatPainter().paint(surface, fixture.scene());
    return surface;
}
QRgb colour(Rgb of) {
    return qRgb(of.red, of.green, of.blue);
}
} // namespace

TEST(BeatPainterTest, TheGridHasALineAtTheFootOfEachRowAndAtEachCell) {
    TableauFixture fixture;
    fixture.setup.TxtMeter = 0;
    fixture.score.NotesPerMeasure = 0;
    const QImage image = painted(fixture);
    for (int y = 0; y < 72; ++y)
        EXPECT_EQ(image.pixel(6, y), y % 12 == 11 ? kCell : kWhitePaper) << y;
    for (int x = 0; x < 400; ++x)
        EXPECT_EQ(image.pixel(x, 5), x % 12 == 0 ? kCell : kWhitePaper) << x;
}

TEST(BeatPainterTest, ABeatIsAMultipleOfTheMeterItself) {
    TableauFixture fixture;
    fixture.setup.TxtMeter = 3;
    fixture.score.NotesPerMeasure = 12; // on the melody's staves a beat would be every fourth column
    const QImage image = painted(fixture);
    EXPECT_EQ(image.pixel(3 * 12, 5), kBeat);
    EXPECT_EQ(image.pixel(6 * 12, 11), kBeat);
    EXPECT_EQ(image.pixel(4 * 12, 5), kCell);
}

TEST(BeatPainterTest, AMeasureIsBlackAndTheViewsFirstColumnCounts) {
    TableauFixture fixture;
    fixture.view.ViewFirstColumn = 10;
    const QImage image = painted(fixture);
    EXPECT_EQ(image.pixel(6 * 12, 0), kBlackInk);
    EXPECT_EQ(image.pixel(6 * 12, 71), kBlackInk);
    EXPECT_EQ(image.pixel(2 * 12, 5), kBeat);
}

TEST(BeatPainterTest, ANoteIsABoxOfItsCells) {
    TableauFixture fixture;
    fixture.score.NotesPerMeasure = fixture.setup.TxtMeter = 0;
    fixture.score.ActiveChannel = 8;
    fixture.draw(8, 2, 44, 3);
    const QImage image = painted(fixture);
    const QRgb bright = colour(kChannelColours[8].bright);
    EXPECT_EQ(image.pixel(26, 26), bright);
    EXPECT_EQ(image.pixel(59, 33), bright);
    EXPECT_EQ(image.pixel(25, 30), kWhitePaper);
    EXPECT_EQ(image.pixel(60, 30), kCell);
    EXPECT_EQ(image.pixel(30, 25), kWhitePaper);
    EXPECT_EQ(image.pixel(30, 34), kWhitePaper);
}

class ColoursOfPercussion : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Channels, ColoursOfPercussion, testing::Range(kFirstPercussion, kUsedChannels));

TEST_P(ColoursOfPercussion, AreBrightIfActiveAndElsePale) {
    TableauFixture fixture;
    fixture.draw(GetParam(), 2, 42, 1);
    const ChannelColours& colours = kChannelColours[GetParam()];
    EXPECT_EQ(painted(fixture).pixel(30, 5), colour(colours.pale));
    fixture.score.ActiveChannel = GetParam();
    EXPECT_EQ(painted(fixture).pixel(30, 5), colour(colours.bright));
}

TEST(BeatPainterTest, HigherChannelsLieOnTopEvenOfTheActiveOne) {
    TableauFixture fixture;
    fixture.score.ActiveChannel = 8;
    fixture.draw(8, 2, 42, 1);
    fixture.draw(12, 2, 42, 1);
    EXPECT_EQ(painted(fixture).pixel(30, 5), colour(kChannelColours[12].pale));
}

TEST(BeatPainterTest, OnlyPercussionIsPaintedAndOnlyIfShown) {
    TableauFixture fixture;
    const QImage empty = painted(fixture);
    fixture.draw(0, 2, 42, 1);
    EXPECT_EQ(painted(fixture), empty);
    fixture.draw(10, 2, 42, 1);
    EXPECT_NE(painted(fixture), empty);
    fixture.score.ChannelMuted[10] = true;
    EXPECT_EQ(painted(fixture), empty);
}

TEST(BeatPainterTest, ABeatBelowTheVisiblePartIsDrawnOnTheLastLine) {
    TableauFixture fixture;
    fixture.draw(8, 2, 127, 1);
    const QImage image = painted(fixture);
    EXPECT_EQ(image.pixel(30, 62), colour(kChannelColours[8].pale));
    EXPECT_EQ(image.pixel(30, 69), colour(kChannelColours[8].pale));
    EXPECT_EQ(image.pixel(30, 61), kWhitePaper);
}

TEST(BeatPainterTest, ABeatAboveTheViewIsNotDrawn) {
    TableauFixture fixture;
    const QImage empty = painted(fixture);
    fixture.draw(8, 2, 41, 2);
    EXPECT_EQ(painted(fixture), empty);
}

TEST(BeatPainterTest, NeitherSelectionNorPlayMarkShows) {
    TableauFixture fixture;
    fixture.draw(8, 2, 42, 1);
    const QImage plain = painted(fixture);
    fixture.view.SelectStart = 1;
    fixture.view.SelectEnd = 8;
    fixture.view.PlayMark = 5;
    EXPECT_EQ(painted(fixture), plain);
}

TEST(BeatPainterTest, ABoxIsTwiceAsLargeAtScaleTwo) {
    TableauFixture fixture;
    fixture.draw(8, 2, 44, 1);
    const QImage image = painted(fixture, 2);
    EXPECT_EQ(image.pixel(52, 52), colour(kChannelColours[8].pale));
    EXPECT_EQ(image.pixel(71, 67), colour(kChannelColours[8].pale));
    EXPECT_EQ(image.pixel(51, 60), kWhitePaper);
    EXPECT_EQ(image.pixel(60, 68), kWhitePaper);
}

TEST(BeatPainterTest, OddPicturesAndMetersDoNoHarm) {
    TableauFixture fixture;
    fixture.draw(8, 2, 42, 3);
    for (const QSize size : {QSize(1, 1), QSize(0, 0), QSize(300, 5), QSize(1, 100)})
        for (const int meter : {0, -4, 1})
            for (const int first : {0, -30000, 32000}) {
                fixture.setup.TxtMeter = fixture.score.NotesPerMeasure = static_cast<std::int16_t>(meter);
                fixture.view.ViewFirstColumn = fixture.view.ViewTopRow = first;
                EXPECT_EQ(painted(fixture, 1, size.width(), size.height()).size(), size);
            }
}
