// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/TipPainter.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <gmock/gmock.h>

using namespace velmora;
using testing::Each;
using testing::Le;

namespace {
const QRect kScreen(0, 0, 1366, 768);
const QPoint kMiddle(600, 300);
const TipColours kColours{{32, 30, 24}, {255, 253, 236}, {250, 240, 206}, {132, 120, 84}};
const QString kLong =
    QStringLiteral("Click this button to undo all Individual Note Effects. Caution: this action is "
                   "permanent and can't be undone. Save your score before you undo effects.");

TipContent playTip(TipStyle style = TipStyle::Rectangular) {
    return {.title = "Play", .text = "Play notes from Start", .icon = "play", .picture = {}, .style = style};
}
QImage painted(const TipContent& content, QPoint mouse, qreal scale) {
    const TipLayout layout = layoutTip(content, mouse, kScreen);
    QImage image((QSizeF(layout.window.size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintTip(painter, layout, content, kColours);
    return image;
}
QRectF onScreen(const TipLayout& layout) {
    return tipOutline(layout, 1).boundingRect().translated(layout.window.topLeft());
}
/// But for rounding.
bool isNear(const QColor& one, const QColor& other) {
    return std::abs(one.red() - other.red()) + std::abs(one.blue() - other.blue()) +
               std::abs(one.alpha() - other.alpha()) <
           6;
}
} // namespace

class EveryTipStyle : public testing::TestWithParam<TipStyle> {};
INSTANTIATE_TEST_SUITE_P(Styles, EveryTipStyle,
                         testing::Values(TipStyle::Rectangular, TipStyle::Balloon, TipStyle::Plain));

TEST_P(EveryTipStyle, StaysWhollyOnTheScreenAndClearOfTheMouseAtEachCornerAndEdge) {
    for (const int x : {0, 683, 1365})
        for (const int y : {0, 384, 767}) {
            const QPoint mouse(x, y);
            for (const QString& text : {QStringLiteral("Play notes from Start"), kLong}) {
                TipContent content = playTip(GetParam());
                content.text = text;
                const TipLayout layout = layoutTip(content, mouse, kScreen);
                EXPECT_TRUE(kScreen.contains(layout.window)) << x << ',' << y;
                EXPECT_FALSE(layout.body.translated(layout.window.topLeft()).contains(mouse))
                    << x << ',' << y;
            }
        }
}

TEST_P(EveryTipStyle, StaysOnASecondScreen) {
    const QRect screen(1366, -200, 800, 600);
    for (const QPoint mouse :
         {screen.topLeft(), screen.topRight(), screen.bottomLeft(), screen.bottomRight()})
        EXPECT_TRUE(screen.contains(layoutTip(playTip(GetParam()), mouse, screen).window));
}

TEST_P(EveryTipStyle, ShowsItsBeginningWhereTheScreenIsTooSmall) {
    const QRect screen(50, 60, 40, 20);
    EXPECT_EQ(layoutTip(playTip(GetParam()), screen.center(), screen).window.topLeft(), screen.topLeft());
}

TEST_P(EveryTipStyle, HoldsAllItsWordsWithinItsBody) {
    TipContent content = playTip(GetParam());
    content.text = kLong;
    const TipLayout layout = layoutTip(content, kMiddle, kScreen);
    const QFontMetrics metrics(tipFont(content.family));
    EXPECT_TRUE(layout.body.contains(layout.icon));
    EXPECT_GE(layout.firstBaseline.y() - metrics.ascent(), layout.body.top() + 6);
    const auto lines = static_cast<int>(layout.title.size() + layout.text.size());
    EXPECT_LE(layout.firstBaseline.y() + (lines - 1) * kTipLine + metrics.descent(),
              layout.body.bottom() - 5);
    for (const QString& line : layout.text)
        EXPECT_LE(layout.firstBaseline.x() + metrics.horizontalAdvance(line), layout.body.right() - 8);
    EXPECT_TRUE(QRect(QPoint(), layout.window.size()).contains(layout.body));
}

TEST_P(EveryTipStyle, ThrowsItsShadowOnlyIfAsked) {
    TipContent content = playTip(GetParam());
    const QSize with = layoutTip(content, kMiddle, kScreen).window.size();
    content.shadow = false;
    const QSize without = layoutTip(content, kMiddle, kScreen).window.size();
    EXPECT_EQ(with - without, GetParam() == TipStyle::Plain ? QSize(3, 3) : QSize(3, 4));
}

TEST_P(EveryTipStyle, ItsEdgeIsSharpAtEveryScale) {
    for (const qreal scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        const QImage image = painted(playTip(GetParam()), kMiddle, scale);
        const TipLayout layout = layoutTip(playTip(GetParam()), kMiddle, kScreen);
        // Across the left edge at mid-height: nothing, then the line's own colour, then the ground.
        const int y = static_cast<int>(layout.body.center().y() * scale);
        const int thick = std::max(1, static_cast<int>(scale));
        for (int x = 0; x < thick; ++x)
            EXPECT_TRUE(isNear(image.pixelColor(x, y), kColours.edge)) << scale;
        EXPECT_GT(image.pixelColor(thick, y).lightness(), 220) << scale;
    }
}

TEST(TipPainterTest, ATipIsAsWideAsItsWordsAndTwentyAndHasThirteenForATitle) {
    TipContent content = playTip();
    const QFontMetrics metrics(tipFont(content.family));
    const int width = metrics.horizontalAdvance(content.text);
    EXPECT_EQ(tipSize(content), QSize(width + 20, metrics.height() + 13));
    content.title = "  ";
    EXPECT_EQ(tipSize(content), QSize(width + 20, metrics.height()));
    content.title = "A title that is wider than all of the text";
    EXPECT_EQ(tipSize(content).width(),
              QFontMetrics(tipTitleFont(content.family)).horizontalAdvance(content.title) + 20);
}

TEST(TipPainterTest, AShortTipHasItsIconAtTheLeftOfTwoLines) {
    const TipLayout layout = layoutTip(playTip(), kMiddle, kScreen);
    EXPECT_EQ(layout.icon, QRect(8, 9, 16, 16));
    EXPECT_EQ(layout.firstBaseline.x(), 32);
    EXPECT_EQ(layout.title, QStringList("Play"));
    EXPECT_EQ(layout.text, QStringList("Play notes from Start"));
    EXPECT_EQ(layout.body.height(), QFontMetrics(tipFont("Arial")).height() + kTipLine + 15);
}

TEST(TipPainterTest, LinesAreNoWiderThanTheWrap) {
    const QFont font = tipFont("Arial");
    const QStringList lines = tipLines(kLong, font);
    EXPECT_GT(lines.size(), 1);
    EXPECT_EQ(lines.join(' '), kLong);
    for (const QString& line : lines)
        EXPECT_LE(QFontMetrics(font).horizontalAdvance(line), kTipWrap);
}

TEST(TipPainterTest, AWordThatIsWiderThanALineIsBroken) {
    const QFont font = tipFont("Arial");
    const QStringList lines = tipLines(QString(200, 'm'), font);
    EXPECT_GT(lines.size(), 3);
    EXPECT_EQ(lines.join(QString()), QString(200, 'm'));
}

TEST(TipPainterTest, LineBreaksInATextHoldAndBlankEndsDoNotCount) {
    const QStringList lines = tipLines(
        "Left Click to activate Channel \r\nRight click to Activate/Deactivate Channel ", tipFont("Arial"));
    EXPECT_EQ(lines,
              QStringList({"Left Click to activate Channel", "Right click to Activate/Deactivate Channel"}));
    EXPECT_TRUE(tipLines("  ", tipFont("Arial")).isEmpty());
}

TEST(TipPainterTest, ABalloonPointsAtTheMouseFromTheSideWhereThereIsRoom) {
    struct Row {
        QPoint mouse;
        bool left; ///< the balloon stands left of the mouse
        bool above;
    };
    for (const Row& row : {Row{kMiddle, false, false}, Row{{1360, 300}, true, false},
                           Row{{600, 760}, false, true}, Row{{1360, 760}, true, true}}) {
        const TipLayout layout = layoutTip(playTip(TipStyle::Balloon), row.mouse, kScreen);
        const QPoint end = layout.window.topLeft() + layout.stem;
        EXPECT_LE((end - row.mouse).manhattanLength(), 24);
        EXPECT_EQ(layout.stem.x() > 0, row.left);
        EXPECT_EQ(layout.stem.y() > 0, row.above);
        EXPECT_EQ(layout.body.top(), row.above ? 0 : kTipStemHeight);
        // The end of the stem is a corner of the shape.
        const QRectF shape = onScreen(layout);
        EXPECT_NEAR(row.left ? shape.right() : shape.left(), end.x(), 1);
        EXPECT_NEAR(row.above ? shape.bottom() : shape.top(), end.y(), 1);
        EXPECT_TRUE(tipOutline(layout, 1).contains(QPointF(layout.stem) +
                                                   QPointF(row.left ? -3 : 3, row.above ? -4 : 4)));
    }
}

TEST(TipPainterTest, ABoxIsPushedBackFromTheRightAndStandsOverTheMouseAtTheFoot) {
    const TipLayout right = layoutTip(playTip(), {1360, 300}, kScreen);
    EXPECT_EQ(right.window.right(), kScreen.right());
    EXPECT_GT(right.window.top(), 300);
    const TipLayout foot = layoutTip(playTip(), {600, 760}, kScreen);
    EXPECT_EQ(foot.window.left(), 604 - 4);
    EXPECT_LT(foot.body.bottom() + foot.window.top(), 760);
}

TEST(TipPainterTest, AMaskHoldsBodyAndStemWithoutShadow) {
    for (const TipStyle style : {TipStyle::Rectangular, TipStyle::Balloon, TipStyle::Plain}) {
        TipContent content = playTip(style);
        const TipLayout layout = layoutTip(content, kMiddle, kScreen);
        const QImage mask = tipMask(layout).toImage().convertToFormat(QImage::Format_RGB32);
        const auto isIn = [&](int x, int y) { return mask.pixelColor(x, y) == QColor(Qt::black); };
        EXPECT_TRUE(isIn(layout.body.center().x(), layout.body.center().y()));
        EXPECT_TRUE(isIn(layout.body.left(), layout.body.center().y()));
        EXPECT_TRUE(isIn(layout.body.right(), layout.body.center().y()));
        EXPECT_FALSE(isIn(layout.body.right() + 1, layout.body.center().y()));
        EXPECT_FALSE(isIn(layout.body.center().x(), layout.body.bottom() + 1));
        EXPECT_EQ(isIn(layout.body.right(), layout.body.bottom()), style == TipStyle::Plain);
        if (style == TipStyle::Balloon) {
            EXPECT_TRUE(isIn(layout.body.left() + 8, layout.body.top() - 4));
            EXPECT_FALSE(isIn(layout.body.left() + 20, layout.body.top() - 4));
        }
    }
}

TEST(TipPainterTest, AGradientRunsFromTopToFootAndAShadowLiesBeside) {
    const QImage image = painted(playTip(), kMiddle, 1);
    const TipLayout layout = layoutTip(playTip(), kMiddle, kScreen);
    const int x = layout.body.right() - 3;
    EXPECT_NEAR(image.pixelColor(x, 2).blue(), 236, 4);
    EXPECT_NEAR(image.pixelColor(x, layout.body.bottom() - 2).blue(), 206, 4);
    const QColor shadow = image.pixelColor(layout.body.right() + 2, layout.body.center().y());
    EXPECT_NEAR(shadow.alphaF(), 0.16, 0.01);
    EXPECT_EQ(image.pixelColor(layout.body.right() + 2, 0).alpha(), 0);
}

TEST(TipPainterTest, APictureStandsInForAnIcon) {
    TipContent content = playTip();
    content.icon.clear();
    content.picture = QPixmap(16, 16);
    content.picture.fill(Qt::red);
    EXPECT_EQ(painted(content, kMiddle, 1).pixelColor(16, 17), QColor(Qt::red));
    content.picture = {};
    EXPECT_TRUE(layoutTip(content, kMiddle, kScreen).icon.isEmpty());
}
