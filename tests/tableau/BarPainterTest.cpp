// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/BarPainter.h"

#include "tableau/TableauFixture.h"

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr QRgb kWhitePaper = qRgb(255, 255, 255);
constexpr QRgb kCell = qRgb(237, 237, 237);
constexpr QRgb kMeasure = qRgb(68, 204, 255);
constexpr QRgb kRed = qRgb(255, 0, 0);

QImage polynotes(const TableauFixture& fixture, int width = 400, int height = 18) {
    QImage surface = surfaceOf(width, height);
    paintPolynoteBar(surface, fixture.scene());
    return surface;
}
QImage indicator(const TableauFixture& fixture, std::optional<int> column, qreal scale = 1) {
    QImage surface = surfaceOf(400, 26, scale);
    paintIndicatorBar(surface, fixture.scene(), column);
    return surface;
}
} // namespace

TEST(BarPainterTest, BothBarsHaveCellLinesAndMeasureLines) {
    TableauFixture fixture;
    fixture.view.ViewFirstColumn = 2;
    for (const QImage& bar : {polynotes(fixture), indicator(fixture, {})})
        for (int x = 0; x < 400; ++x) {
            const QRgb wanted = x == 14 * 12 || x == 30 * 12 ? kMeasure : x % 12 == 0 ? kCell : kWhitePaper;
            ASSERT_EQ(bar.pixel(x, 17), wanted) << x;
        }
}

TEST(BarPainterTest, AHeadOfTheActiveChannelWithAChordHasABox) {
    TableauFixture fixture;
    fixture.draw(0, 4, 50, 3, 2);
    fixture.score.Polyphonics.set(1, 5, 2); // a continuation has none
    const QImage bar = polynotes(fixture);
    EXPECT_EQ(bar.pixel(49, 1), kRed);
    EXPECT_EQ(bar.pixel(59, 16), kRed);
    EXPECT_EQ(bar.pixel(48, 5), kCell);
    EXPECT_EQ(bar.pixel(50, 0), kWhitePaper);
    EXPECT_EQ(bar.pixel(50, 17), kWhitePaper);
    EXPECT_EQ(bar.pixel(62, 5), kWhitePaper);
}

TEST(BarPainterTest, OtherChannelsSingleNotesAndPercussionHaveNoBox) {
    TableauFixture fixture;
    const QImage empty = polynotes(fixture);
    fixture.draw(0, 4, 50, 3, 0);
    fixture.draw(1, 6, 50, 3, 2);
    EXPECT_EQ(polynotes(fixture), empty);
    fixture.draw(8, 6, 50, 3, 2);
    fixture.score.ActiveChannel = 8;
    EXPECT_EQ(polynotes(fixture), empty);
}

TEST(BarPainterTest, BoxesMoveWithTheView) {
    TableauFixture fixture;
    fixture.draw(0, 4, 50, 1, 2);
    fixture.view.ViewFirstColumn = 4;
    EXPECT_EQ(polynotes(fixture).pixel(5, 5), kRed);
    fixture.view.ViewFirstColumn = 5;
    EXPECT_EQ(polynotes(fixture).pixel(5, 5), kWhitePaper);
}

TEST(BarPainterTest, TheClickedColumnIsABoxOverTheWholeHeight) {
    TableauFixture fixture;
    fixture.score.ActiveChannel = 2;
    const QRgb green = qRgb(0, 255, 0);
    const QImage bar = indicator(fixture, 3);
    EXPECT_EQ(bar.pixel(37, 0), green);
    EXPECT_EQ(bar.pixel(47, 25), green);
    EXPECT_EQ(bar.pixel(36, 10), kCell);
    EXPECT_EQ(bar.pixel(48, 10), kCell);
    const QImage twice = indicator(fixture, 3, 2);
    EXPECT_EQ(twice.pixel(74, 0), green);
    EXPECT_EQ(twice.pixel(95, 51), green);
    EXPECT_EQ(twice.pixel(73, 0), kCell);
}

TEST(BarPainterTest, OddPicturesDoNoHarm) {
    TableauFixture fixture;
    fixture.draw(0, 0, 50, 1, 2);
    fixture.score.NotesPerMeasure = -3;
    for (const QSize size : {QSize(1, 1), QSize(0, 0), QSize(5, 40)})
        EXPECT_EQ(polynotes(fixture, size.width(), size.height()).size(), size);
    EXPECT_EQ(indicator(fixture, -40000), indicator(fixture, 40000));
    fixture.score.ActiveChannel = -1;
    EXPECT_EQ(polynotes(fixture).pixel(5, 5), kWhitePaper);
}
