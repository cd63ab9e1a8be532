// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/FramePainter.h"

#include "shell/PixelGrid.h"
#include "shell/SkinPainter.h"

#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {
constexpr RgbPair kCloseFace{{200, 62, 50}, {160, 34, 28}};

Rgb middleOf(const Skin& skin) {
    return skin.titleStops[skin.titleStops.size() / 2].colour;
}
bool isLightTitle(const Skin& skin) {
    return luminance(middleOf(skin)) > 0.4;
}

QBrush titlePaint(const Skin& skin, const QRectF& rect) {
    QLinearGradient gradient(rect.topLeft(), skin.titleAcross ? rect.topRight() : rect.bottomLeft());
    for (const GradientStop& stop : skin.titleStops)
        gradient.setColorAt(stop.at, toQColor(stop.colour));
    return gradient;
}

void strokeOutline(QPainter& painter, const Skin& skin, const QSizeF& window, bool square, int line,
                   const QColor& colour) {
    const qreal width = PixelGrid(painter).line();
    QPainterPath ring = windowOutline(skin, window, square, line * width); // the inner one is a hole in it
    ring.addPath(windowOutline(skin, window, square, (line + 1) * width));
    ring.setFillRule(Qt::OddEvenFill);
    painter.fillPath(ring, colour);
}

/// Rivets along the middle of the title, between the text and the buttons.
void paintRivets(QPainter& painter, const Skin& skin, qreal width) {
    painter.setPen(Qt::NoPen);
    for (int i = 0; 200 + 64 * i < width - 120; ++i) {
        const qreal x = 200 + 64 * i;
        painter.setBrush(toQColor(mix(skin.titleStops[2].colour, kBlack, 0.5)));
        painter.drawEllipse(QPointF(x + 0.5, 14.5), 2.2, 2.2);
        painter.setBrush(toQColor(skin.edgeLight));
        painter.drawEllipse(QPointF(x, 14), 1.5, 1.5);
    }
}

void paintBevelledFrame(QPainter& painter, const Skin& skin, const QSizeF& window) {
    const QRectF all(QPointF(), window);
    const int edge = skin.edgeWidth;
    painter.fillRect(all, toQColor(skin.edgeBody));
    strokeRounded(painter, all, 0, toQColor(skin.edgeOuter));
    horizontalLine(painter, 1, 1, window.width() - 2, toQColor(skin.edgeLight));
    verticalLine(painter, 1, 1, window.height() - 2, toQColor(skin.edgeLight));
    const QRectF title(edge, edge, window.width() - 2 * edge, kTitleHeight - edge - 1);
    painter.fillRect(title, titlePaint(skin, title));
}

/// The line where the edge meets the panel.
void paintInnerLine(QPainter& painter, const Skin& skin, const QSizeF& window) {
    const int edge = skin.edgeWidth;
    const QColor colour = toQColor(mix(skin.edgeBody, kBlack, 0.22));
    const qreal height = window.height() - kTitleHeight - edge;
    verticalLine(painter, edge - 1, kTitleHeight, height + 1, colour);
    verticalLine(painter, window.width() - edge, kTitleHeight, height + 1, colour);
    horizontalLine(painter, edge - 1, window.height() - edge, window.width() - 2 * edge + 2, colour);
}

void paintRoundedFrame(QPainter& painter, const Skin& skin, const QSizeF& window, bool square) {
    const QPainterPath outline = windowOutline(skin, window, square);
    const QRectF title(0, 0, window.width(), kTitleHeight);
    QPainterPath titlePath;
    titlePath.addRect(title);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline, toQColor(skin.edgeBody));
    painter.fillPath(outline.intersected(titlePath), titlePaint(skin, title));
    horizontalLine(painter, 1, kTitleHeight - 1, window.width() - 2,
                   toQColor(mix(skin.titleStops.back().colour, kBlack, 0.25)));
    painter.save();
    painter.setClipRect(QRectF(0, kTitleHeight, window.width(), window.height() - kTitleHeight));
    strokeOutline(painter, skin, window, square, 1, toQColor(mix(skin.edgeLight, skin.edgeBody, 0.25)));
    painter.restore();
    strokeOutline(painter, skin, window, square, 0, toQColor(skin.edgeOuter));
    const qreal arc = square ? 0 : skin.ellipse / 2.0;
    horizontalLine(painter, 1 + arc, 1, window.width() - 2 - 2 * arc,
                   toQColor(mix(skin.titleStops.front().colour, kWhite, 0.35)));
    if (skin.pattern == PanelPattern::Rivets)
        paintRivets(painter, skin, window.width());
}

/// The sign's strokes on a grid of 22 by 18.
QPainterPath signOf(TitleSign sign) {
    QPainterPath path;
    switch (sign) {
    case TitleSign::Close:
        path.moveTo(7.5, 5.5);
        path.lineTo(14.5, 12.5);
        path.moveTo(14.5, 5.5);
        path.lineTo(7.5, 12.5);
        break;
    case TitleSign::Maximize:
        path.addRect(6.75, 5.25, 8.5, 7.5);
        path.moveTo(6.75, 6.25);
        path.lineTo(15.25, 6.25);
        break;
    case TitleSign::Restore:
        path.addRect(6.25, 7.25, 6.5, 6);
        path.moveTo(9, 7);
        path.lineTo(9, 4.75);
        path.lineTo(15.5, 4.75);
        path.lineTo(15.5, 10.75);
        path.lineTo(13, 10.75);
        break;
    case TitleSign::Minimize:
        path.moveTo(7, 12.25);
        path.lineTo(15, 12.25);
        break;
    case TitleSign::Help:
        path.moveTo(8.6, 6.9);
        path.cubicTo(8.6, 4.2, 13.4, 4.2, 13.4, 6.9);
        path.cubicTo(13.4, 8.9, 11, 8.6, 11, 10.4);
        path.moveTo(11, 13);
        path.lineTo(11, 13.05);
        break;
    }
    return path;
}

RgbPair titleFace(const Skin& skin, TitleSign sign) {
    if (sign == TitleSign::Close)
        return kCloseFace;
    const Rgb middle = middleOf(skin);
    return isLightTitle(skin) ? RgbPair{mix(middle, kWhite, 0.55), mix(middle, kBlack, 0.06)}
                              : RgbPair{mix(middle, kWhite, 0.14), mix(middle, kBlack, 0.18)};
}

RgbPair withState(RgbPair face, bool hot, bool pressed) {
    if (pressed)
        return {mix(face.to, kBlack, 0.25), mix(face.from, kBlack, 0.1)};
    if (hot)
        return {mix(face.from, kWhite, 0.25), mix(face.to, kWhite, 0.15)};
    return face;
}
} // namespace

QPainterPath windowOutline(const Skin& skin, const QSizeF& window, bool square, qreal inset) {
    const QRectF rect = QRectF(QPointF(), window).adjusted(inset, inset, -inset, -inset);
    const qreal radius = square ? 0 : std::max(0.0, skin.ellipse / 2.0 - inset);
    QPainterPath path;
    if (radius <= 0) {
        path.addRect(rect);
        return path;
    }
    // The arcs at the foot end where the window does.
    const qreal side = 2 * radius;
    const qreal below = rect.bottom() + skin.extraHeight - side; // top of the lower arcs' squares
    const qreal share = std::clamp((radius - skin.extraHeight) / radius, 0.0, 1.0);
    const qreal sweep = qRadiansToDegrees(std::asin(share));
    path.moveTo(rect.left(), rect.top() + radius);
    path.arcTo(rect.left(), rect.top(), side, side, 180, -90);
    path.arcTo(rect.right() - side, rect.top(), side, side, 90, -90);
    if (sweep > 0) {
        path.arcTo(rect.right() - side, below, side, side, 0, -sweep);
        path.arcTo(rect.left(), below, side, side, 180 + sweep, -sweep);
    } else {
        path.lineTo(rect.bottomRight());
        path.lineTo(rect.bottomLeft());
    }
    path.closeSubpath();
    return path;
}

void paintFrame(QPainter& painter, const Skin& skin, const QSizeF& window, bool square) {
    painter.save();
    if (isBevelled(skin)) {
        paintBevelledFrame(painter, skin, window);
    } else {
        paintRoundedFrame(painter, skin, window, square);
        paintInnerLine(painter, skin, window);
    }
    painter.restore();
}

void paintProgramIcon(QPainter& painter, const QRectF& rect) {
    painter.save();
    fillRounded(painter, rect, 3, Qt::white);
    painter.translate(PixelGrid(painter).point(rect.topLeft()));
    painter.scale(rect.width() / 16, rect.height() / 16);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.fillRect(QRectF(2, 7, 12, 2), QColor(58, 134, 128));
    painter.setBrush(QColor(224, 70, 54));
    painter.drawEllipse(QPointF(5, 8), 3.4, 3.4);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPointF(4, 7), 1, 1);
    painter.restore();
}

void paintTitleButton(QPainter& painter, const Skin& skin, const QRectF& rect, TitleSign sign, bool hot,
                      bool pressed) {
    painter.save();
    QColor ink = toQColor(sign == TitleSign::Close ? kWhite : skin.titleText);
    if (isBevelled(skin)) {
        const QRectF face = rect.adjusted(0, 1, 0, -1);
        painter.fillRect(face, toQColor(hot ? skin.hot.from : skin.face.from));
        paintBevel(painter, face, pressed);
        ink = toQColor(skin.text);
    } else {
        const Rgb middle = middleOf(skin);
        const Rgb edge = isLightTitle(skin) ? mix(middle, kBlack, 0.4) : mix(middle, kWhite, 0.42);
        fillRounded(painter, rect, 3, downwards(withState(titleFace(skin, sign), hot, pressed), rect),
                    toQColor(edge));
    }
    const qreal shift = pressed ? 1 : 0;
    painter.translate(PixelGrid(painter).point(rect.topLeft()) + QPointF(shift, shift));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(signOf(sign), QPen(ink, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.restore();
}

} // namespace velmora
