// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/StrokePainter.h"

#include "shell/Skin.h"
#include "tableau/TableauFixture.h"

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr QRgb kWhitePaper = qRgb(255, 255, 255);
constexpr QRgb kBlackInk = qRgb(0, 0, 0);
constexpr QRgb kRed = qRgb(255, 0, 0);

QImage paper(qreal scale = 1) {
    QImage surface = surfaceOf(200, 100, scale);
    surface.fill(Qt::white);
    return surface;
}
QImage band(const TableauFixture& fixture, bool percussion, qreal scale = 1) {
    QImage surface = paper(scale);
    paintBand(surface, fixture.scene(), percussion, 2, 3, 6);
    return surface;
}
/// The columns of the surface that are not white at y.
std::vector<int> inkedAt(const QImage& image, int y) {
    std::vector<int> columns;
    for (int x = 0; x < image.width(); ++x)
        if (image.pixel(x, y) != kWhitePaper)
            columns.push_back(x);
    return columns;
}
} // namespace

TEST(StrokePainterTest, TheBandOfTheColorfulLineEndsOnePixelBeforeTheCell) {
    const QImage image = band(TableauFixture(), false);
    EXPECT_EQ(image.pixel(82, 16 + 4), kRed);
    EXPECT_EQ(image.pixel(82, 16 + 7), kRed);
    EXPECT_EQ(image.pixel(83, 16 + 5), kWhitePaper);
    EXPECT_EQ(image.pixel(60, 16 + 3), kWhitePaper);
    EXPECT_EQ(image.pixel(60, 16 + 8), kWhitePaper);
}

TEST(StrokePainterTest, ItHasTheBallOfThePress) {
    const QImage image = band(TableauFixture(), false);
    EXPECT_EQ(image.pixel(36 + 5, 16 + 5), kBlackInk);
    EXPECT_EQ(image.pixel(36 + 3, 16 + 3), kWhitePaper);
    EXPECT_EQ(image.pixel(36 + 7, 16 + 2), kBlackInk);
}

TEST(StrokePainterTest, TheBandOfTheTraditionalNotationIsThinAndHasNoBall) {
    TableauFixture fixture;
    fixture.view.Notationstyle = 1;
    const QImage image = band(fixture, false);
    EXPECT_EQ(image.pixel(37, 16 + 5), kRed);
    EXPECT_EQ(image.pixel(82, 16 + 6), kRed);
    EXPECT_EQ(image.pixel(36, 16 + 5), kWhitePaper);
    EXPECT_EQ(image.pixel(41, 16 + 4), kWhitePaper);
    EXPECT_EQ(image.pixel(41, 16 + 7), kWhitePaper);
}

TEST(StrokePainterTest, TheBandOfPercussionIsABoxInBothNoteStyles) {
    TableauFixture fixture;
    fixture.score.ActiveChannel = 10;
    const QRgb colour = qRgb(192, 64, 0);
    for (const std::int16_t style : {0, 1}) {
        fixture.view.Notationstyle = style;
        const QImage image = band(fixture, true);
        EXPECT_EQ(image.pixel(37, 24 + 2), colour);
        EXPECT_EQ(image.pixel(82, 24 + 10), colour);
        EXPECT_EQ(image.pixel(37, 24 + 1), kWhitePaper);
        EXPECT_EQ(image.pixel(82, 24 + 11), kWhitePaper);
        EXPECT_EQ(image.pixel(83, 24 + 5), kWhitePaper);
    }
}

TEST(StrokePainterTest, ThePressShowsABlackBallWithAHighlight) {
    QImage image = paper();
    paintPressBall(image, 3, 2, 9);
    EXPECT_EQ(image.pixel(24 + 5, 27 + 5), kBlackInk);
    EXPECT_EQ(image.pixel(24 + 3, 27 + 3), kWhitePaper);
    EXPECT_EQ(image.pixel(24 + 11, 27 + 5), kWhitePaper);
}

TEST(StrokePainterTest, ASelectionBeginsWithAnEdgeFourWide) {
    QImage image = paper();
    paintSelectEdge(image, 5);
    for (const int y : {0, 99}) {
        EXPECT_THAT(inkedAt(image, y), testing::ElementsAre(60, 61, 62, 63));
        EXPECT_EQ(image.pixel(61, y), qRgb(0, 0, 255));
    }
}

TEST(StrokePainterTest, ADraggedSelectionReachesThreePixelsIntoItsLastColumn) {
    QImage image = paper();
    paintSelectDrag(image, 5, 6, QColor(49, 106, 197));
    const std::vector<int> columns = inkedAt(image, 99);
    EXPECT_EQ(columns.front(), 60);
    EXPECT_EQ(columns.back(), 75);
    EXPECT_EQ(columns.size(), 16U);
    EXPECT_EQ(image.pixel(70, 0), qRgb(49, 106, 197));
}

TEST(StrokePainterTest, ASelectionDraggedToTheLeftIsShownTheSameWay) {
    QImage image = paper();
    paintSelectDrag(image, 6, 4, Qt::blue);
    EXPECT_EQ(inkedAt(image, 50).front(), 51);
    EXPECT_EQ(inkedAt(image, 50).back(), 72);
}

TEST(StrokePainterTest, AStripIsBlendedWithAHundredOf255) {
    QImage image = paper();
    blendStrip(image, 10, 3, Qt::red);
    EXPECT_THAT(inkedAt(image, 0), testing::ElementsAre(10, 11, 12));
    EXPECT_EQ(image.pixel(10, 99), qRgb(255, 155, 155));
    image.fill(Qt::black);
    blendStrip(image, 10, 3, QColor(10, 200, 255));
    EXPECT_EQ(image.pixel(11, 50), qRgb(4, 78, 100));
}

TEST(StrokePainterTest, ThePlayLineStandsOnItsColumn) {
    for (const qreal scale : {1.0, 1.5, 2.0}) {
        QImage image = paper(scale);
        paintPlayLine(image, 5);
        const std::vector<int> columns = inkedAt(image, image.height() - 1);
        EXPECT_EQ(columns.front(), static_cast<int>(60 * scale));
        EXPECT_EQ(columns.size(), scale == 2.0 ? 2U : 1U);
        EXPECT_EQ(image.pixel(columns.front(), 0), qRgb(255, 192, 192));
    }
}

TEST(StrokePainterTest, ABoldPlayLineIsTwoWideAndStandsOutFromThePaper) {
    for (const qreal scale : {1.0, 1.5, 2.0}) {
        QImage image = paper(scale);
        paintPlayLine(image, 5, PlayLine::Bold);
        const std::vector<int> columns = inkedAt(image, image.height() - 1);
        EXPECT_EQ(columns.front(), static_cast<int>(60 * scale));
        EXPECT_EQ(columns.size(), static_cast<std::size_t>(2 * scale));
        const QColor line = image.pixelColor(columns.front(), 0);
        const Rgb ink{static_cast<std::uint8_t>(line.red()), static_cast<std::uint8_t>(line.green()),
                      static_cast<std::uint8_t>(line.blue())};
        for (const Rgb ground : {Rgb{255, 255, 255}, Rgb{248, 241, 231}}) // paper, and a band on it
            EXPECT_GE(contrast(ink, ground), 3);
    }
}

TEST(StrokePainterTest, WhatLiesOutsideOfThePictureIsLeftOut) {
    QImage image = paper();
    const TableauFixture fixture;
    paintBand(image, fixture.scene(), false, -30, -40, -35);
    paintPressBall(image, 3000, 3000, 8);
    paintSelectEdge(image, 40);
    blendStrip(image, 300, 40, Qt::red);
    blendStrip(image, 20, -5, Qt::red);
    paintPlayLine(image, -1);
    EXPECT_EQ(image, paper());
}

TEST(StrokePainterTest, AChannelIsBrightIfActiveElsePale) {
    Score score;
    score.ActiveChannel = 3;
    EXPECT_EQ(colourOfChannel(score, 3), kChannelColours[3].bright);
    EXPECT_EQ(colourOfChannel(score, 9), kChannelColours[9].pale);
    EXPECT_EQ(colourOfChannel(score, -1), kBlack);
    EXPECT_EQ(colourOfChannel(score, 13), kBlack);
}
