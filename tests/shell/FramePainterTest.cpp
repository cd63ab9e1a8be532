// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/FramePainter.h"

#include <QImage>
#include <QPainter>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr QSize kWindow(60, 48);
constexpr QRgb kOutside = qRgb(1, 2, 3);

/// The corner pixels of a window; the number is how far along both sides they stand from the corner.
struct Corner {
    QPoint at(int inwards) const {
        return {right ? kWindow.width() - 1 - inwards : inwards,
                lower ? kWindow.height() - 1 - inwards : inwards};
    }
    bool right;
    bool lower;
};
constexpr std::array kUpper{Corner{false, false}, Corner{true, false}};
constexpr std::array kLower{Corner{false, true}, Corner{true, true}};

/// Which pixels of the window the outline has inside: those whose middle it contains.
bool covers(const Skin& skin, QPoint pixel, bool square = false) {
    return windowOutline(skin, kWindow, square).contains(QPointF(pixel) + QPointF(0.5, 0.5));
}

QImage painted(const Skin& skin, bool square = false) {
    QImage image(kWindow, QImage::Format_RGB32);
    image.fill(kOutside);
    QPainter painter(&image);
    paintFrame(painter, skin, kWindow, square);
    return image;
}
} // namespace

class RegionOfSkin : public testing::TestWithParam<int> {
protected:
    const Skin& skin = skinOf(GetParam());
};
INSTANTIATE_TEST_SUITE_P(Rounded, RegionOfSkin, testing::Values(1, 2, 3, 4, 5, 8));

TEST_P(RegionOfSkin, CutsItsUpperCorners) {
    for (const Corner corner : kUpper) {
        EXPECT_FALSE(covers(skin, corner.at(0)));
        EXPECT_TRUE(covers(skin, corner.at(2))) << "the arc has half the ellipse's width";
    }
}

TEST_P(RegionOfSkin, IsATallerRoundedRectangleCutAtTheFoot) {
    for (const qreal inset : {0.0, 0.5, 1.0, 2.0, 5.0}) {
        const QRectF inner = QRectF(QPointF(), kWindow).adjusted(inset, inset, -inset, -inset);
        const qreal radius = std::max(0.0, skin.ellipse / 2.0 - inset);
        QPainterPath taller;
        taller.addRoundedRect(inner.adjusted(0, 0, 0, skin.extraHeight), radius, radius);
        const QPainterPath outline = windowOutline(skin, kWindow, false, inset);
        EXPECT_NEAR(outline.boundingRect().bottom(), inner.bottom(), 1.0 / 256) << "no step of a colour";
        int differ = 0;
        for (qreal y = 0.13; y < kWindow.height(); y += 0.25)
            for (qreal x = 0.13; x < kWindow.width(); x += 0.25)
                differ += outline.contains(QPointF(x, y)) !=
                          (taller.contains(QPointF(x, y)) && inner.contains(QPointF(x, y)));
        EXPECT_EQ(differ, 0) << inset;
    }
}

TEST_P(RegionOfSkin, ReachesEverySide) {
    EXPECT_TRUE(covers(skin, {kWindow.width() / 2, 0}));
    EXPECT_TRUE(covers(skin, {kWindow.width() / 2, kWindow.height() - 1}));
    EXPECT_TRUE(covers(skin, {0, kWindow.height() / 2}));
    EXPECT_TRUE(covers(skin, {kWindow.width() - 1, kWindow.height() / 2}));
}

TEST_P(RegionOfSkin, IsPlainInAMaximizedWindow) {
    for (const Corner corner : {kUpper[0], kUpper[1], kLower[0], kLower[1]})
        EXPECT_TRUE(covers(skin, corner.at(0), true));
}

TEST_P(RegionOfSkin, IsWhereTheFrameIsPainted) {
    const QImage image = painted(skin);
    for (const Corner corner : kUpper) {
        EXPECT_EQ(image.pixel(corner.at(0)), kOutside);
        EXPECT_NE(image.pixel(corner.at(2)), kOutside);
    }
    const QColor edge(skin.edgeOuter.red, skin.edgeOuter.green, skin.edgeOuter.blue);
    for (const Corner corner : kLower) // a pixel that is cut is softened
        EXPECT_EQ(image.pixelColor(corner.at(0)) == edge, covers(skin, corner.at(0)));
    EXPECT_NE(image.pixel(kWindow.width() / 2, 0), kOutside);
}

TEST_P(RegionOfSkin, HasItsOutlineAlongTheSamePath) {
    // Somewhere on each row of the upper left arc the outermost pixel is the outline's colour, softened.
    const QImage image = painted(skin);
    const QColor edge(skin.edgeOuter.red, skin.edgeOuter.green, skin.edgeOuter.blue);
    for (int y = skin.ellipse; y < kTitleHeight; ++y)
        EXPECT_EQ(image.pixelColor(0, y), edge) << y;
    for (int x = skin.ellipse; x < kWindow.width() - skin.ellipse; ++x)
        EXPECT_EQ(image.pixelColor(x, 0), edge) << x;
}

TEST(FramePainterTest, FiveMorePixelsOfHeightLeaveTheLowerCornersSquare) {
    for (const int type : {1, 8})
        for (const Corner corner : kLower)
            EXPECT_TRUE(covers(skinOf(type), corner.at(0))) << type;
}

TEST(FramePainterTest, TwoMorePixelsOfHeightCutTheLowerCornersSlightly) {
    for (const int type : {2, 3, 4, 5})
        for (const Corner corner : kLower) {
            EXPECT_FALSE(covers(skinOf(type), corner.at(0))) << type;
            EXPECT_TRUE(covers(skinOf(type), corner.at(1))) << type << ": less than above";
        }
}

TEST(FramePainterTest, TwoSkinsArePlainRectangles) {
    for (const int type : {6, 7})
        for (const Corner corner : {kUpper[0], kUpper[1], kLower[0], kLower[1]}) {
            EXPECT_TRUE(covers(skinOf(type), corner.at(0))) << type;
            EXPECT_NE(painted(skinOf(type)).pixel(corner.at(0)), kOutside) << type;
        }
}

TEST(FramePainterTest, TheTitleGradientOfOneSkinRunsAcross) {
    const QImage across = painted(skinOf(7));
    EXPECT_GT(qBlue(across.pixel(kWindow.width() - 8, 12)), qBlue(across.pixel(8, 12)));
    EXPECT_EQ(across.pixel(30, 8), across.pixel(30, 20));
    const QImage down = painted(skinOf(1));
    EXPECT_NE(down.pixel(30, 8), down.pixel(30, 24));
    EXPECT_EQ(down.pixel(20, 12), down.pixel(40, 12));
}

TEST(FramePainterTest, ALineEndsTheEdgeWhereThePanelBegins) {
    for (const int type : {1, 2, 3, 4, 5, 6, 8}) {
        const QImage image = painted(skinOf(type));
        const Rgb line = mix(skinOf(type).edgeBody, kBlack, 0.22);
        const int edge = skinOf(type).edgeWidth;
        const int y = kTitleHeight + 6;
        for (const int x : {edge - 1, kWindow.width() - edge})
            EXPECT_EQ(image.pixelColor(x, y), QColor(line.red, line.green, line.blue)) << type;
    }
}

TEST(FramePainterTest, ATitleButtonShowsThatItIsPressed) {
    for (int type = 1; type <= kSkinCount; ++type)
        for (const TitleSign sign : {TitleSign::Close, TitleSign::Maximize, TitleSign::Restore,
                                     TitleSign::Minimize, TitleSign::Help}) {
            std::vector<QImage> seen;
            for (const auto& [hot, pressed] : {std::pair(false, false), {true, false}, {false, true}}) {
                QImage image(22, 18, QImage::Format_RGB32);
                image.fill(kOutside);
                QPainter painter(&image);
                paintTitleButton(painter, skinOf(type), QRectF(0, 0, 22, 18), sign, hot, pressed);
                seen.push_back(image);
            }
            EXPECT_NE(seen[0], seen[2]) << type;
            EXPECT_NE(seen[0], seen[1]) << type;
            EXPECT_NE(seen[1], seen[2]) << type;
        }
}
