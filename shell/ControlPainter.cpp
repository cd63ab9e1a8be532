// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/ControlPainter.h"

#include "shell/PixelGrid.h"
#include "shell/SkinPainter.h"

#include <QPainter>
#include <QPainterPath>

namespace velmora {

namespace {
constexpr qreal kRoundest = 16;         ///< half of the highest button without an icon
constexpr double kDisabledShare = 0.62; ///< of the way from the ink to the panel

const RgbPair& faceOf(const Skin& skin, const ControlState& state) {
    if (!state.enabled)
        return skin.face;
    if (state.pressed)
        return skin.pressed;
    if (state.checked)
        return skin.checked;
    return state.hot ? skin.hot : skin.face;
}

Rgb edgeOf(const Skin& skin, const ControlState& state) {
    if (!state.enabled)
        return mix(skin.buttonEdge, skin.panel.from, 0.5);
    return state.checked ? mix(skin.accent, skin.buttonEdge, 0.35) : skin.buttonEdge;
}

bool hasFace(const ButtonStyle& style, ButtonPlace place, const ControlState& state) {
    if (place == ButtonPlace::Panel || style.faceAtRest)
        return true;
    return style.face && state.enabled && (state.hot || state.pressed || state.checked);
}

/// What stands for a face where the style has none: an edge under the mouse, a line under a mode that is on.
void paintFaceless(QPainter& painter, const Appearance& look, const QRectF& rect, const ControlState& state) {
    if (look.buttons().hairline && state.enabled && (state.hot || state.pressed || state.checked))
        strokeRounded(painter, rect, faceRadius(look, rect), toQColor(edgeOf(look.skin(), state)));
    if (!look.buttons().face && state.checked)
        fillRounded(painter, QRectF(rect.left() + 6, rect.bottom() - 4, rect.width() - 12, 2), 1,
                    inkOn(look.skin(), state));
}

void paintRaisedFace(QPainter& painter, const Appearance& look, const QRectF& rect,
                     const ControlState& state) {
    const Skin& skin = look.skin();
    const qreal radius = faceRadius(look, rect);
    const QBrush face = downwards(faceOf(skin, state), rect);
    if (isBevelled(skin) && radius <= 0) {
        painter.fillRect(PixelGrid(painter).rect(rect), face);
        paintBevel(painter, rect, state.pressed || state.checked);
        return;
    }
    fillRounded(painter, rect, radius, face, toQColor(edgeOf(skin, state)));
    const qreal inset = std::max(3.0, radius);
    if (state.enabled && !state.pressed && !state.checked && rect.width() > 2 * inset)
        horizontalLine(painter, rect.left() + inset, rect.top() + 1, rect.width() - 2 * inset,
                       toQColor(mix(skin.face.from, kWhite, isDark(skin) ? 0.12 : 0.5)));
}

QPen roundPen(const QColor& colour, qreal width) {
    return {colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

qreal angleOf(Direction direction) {
    switch (direction) {
    case Direction::Left:
        return 90;
    case Direction::Right:
        return -90;
    case Direction::Up:
        return 180;
    default:
        return 0;
    }
}
} // namespace

qreal faceRadius(const Appearance& look, const QRectF& rect) {
    const int radius = look.buttons().radius;
    if (radius == kHalfHeight) // of a higher face the ends would cut the label that stands at its foot
        return std::min({rect.height() / 2, rect.width() / 2, kRoundest});
    return isBevelled(look.skin()) ? 0 : radius;
}

void paintFace(QPainter& painter, const Appearance& look, const QRectF& rect, ButtonPlace place,
               const ControlState& state) {
    if (hasFace(look.buttons(), place, state))
        paintRaisedFace(painter, look, rect, state);
    else
        paintFaceless(painter, look, rect, state);
}

QColor inkOn(const Skin& skin, const ControlState& state) {
    return toQColor(state.enabled ? skin.text : mix(skin.text, skin.panel.from, kDisabledShare));
}

IconColours iconColoursOn(const Appearance& look, ButtonPlace place, const ControlState& state) {
    const Skin& skin = look.skin();
    const QColor ink = inkOn(skin, state);
    if (!state.enabled)
        return {ink, ink, ink};
    const bool hiddenAndHot = place == ButtonPlace::Bar && !look.buttons().face && !look.buttons().hairline &&
                              (state.hot || state.pressed);
    const QColor accent = toQColor(state.checked ? checkedAccent(skin) : skin.accent);
    return {hiddenAndHot ? accent : ink, accent, toQColor(recordRed(skin))};
}

void paintField(QPainter& painter, const Skin& skin, const QRectF& rect, bool enabled) {
    const Rgb back = enabled ? skin.field : mix(skin.field, skin.panel.from, 0.7);
    fillRounded(painter, rect, fieldRadius(skin), toQColor(back), toQColor(skin.fieldEdge));
    horizontalLine(painter, rect.left() + 3, rect.top() + 1, rect.width() - 6,
                   toQColor(mix(back, kBlack, luminance(back) > 0.3 ? 0.07 : 0.35)));
}

void paintReadOut(QPainter& painter, const Skin& skin, const QRectF& rect) {
    fillRounded(painter, rect, fieldRadius(skin), toQColor(skin.readOut), toQColor(skin.line));
}

QColor lightening(const Skin& skin) {
    QColor white(Qt::white);
    white.setAlphaF(isDark(skin) ? 0.035F : 0.4F);
    return white;
}

void paintGroup(QPainter& painter, const Skin& skin, const QRectF& rect) {
    fillRounded(painter, rect, groupRadius(skin), lightening(skin));
    strokeRounded(painter, rect, groupRadius(skin), toQColor(skin.line));
}

void paintGroupHeading(QPainter& painter, const Skin& skin, const QRectF& rect, const QString& words) {
    const QFont font = textFont(12, true);
    painter.setFont(font);
    painter.setPen(toQColor(skin.text));
    painter.drawText(
        QRectF(rect.left() + 12, rect.top() + 4, rect.width() - 24, 22),
        Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextHideMnemonic,
        QFontMetrics(font).elidedText(words, Qt::ElideRight, static_cast<int>(rect.width()) - 24));
    horizontalLine(painter, rect.left() + 12, rect.top() + 27, rect.width() - 24, toQColor(skin.line));
}

void paintSeparator(QPainter& painter, const Skin& skin, qreal x, qreal y, qreal height) {
    verticalLine(painter, x, y, height, toQColor(skin.line));
    verticalLine(painter, x + 1, y, height,
                 toQColor(mix(skin.panel.from, kWhite, isDark(skin) ? 0.08 : 0.55)));
}

void paintCheckBox(QPainter& painter, const Skin& skin, const QRectF& rect, const ControlState& state) {
    const Rgb edge = state.hot ? skin.accent : skin.fieldEdge;
    const Rgb back = !state.enabled  ? mix(skin.field, skin.panel.from, 0.7)
                     : state.pressed ? skin.pressed.to
                                     : skin.field;
    fillRounded(painter, rect, isBevelled(skin) ? 0 : 2, toQColor(back), toQColor(edge));
    if (!state.checked)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(PixelGrid(painter).point(rect.topLeft()));
    const QPointF points[]{{3.2, 7.2}, {5.9, 10}, {10.9, 4.2}};
    painter.setPen(roundPen(state.enabled ? toQColor(skin.accent) : inkOn(skin, state), 2));
    painter.drawPolyline(points, 3);
    painter.restore();
}

void paintRadio(QPainter& painter, const Skin& skin, const QRectF& rect, const ControlState& state) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const Rgb edge = state.hot ? skin.accent : skin.fieldEdge;
    const Rgb back = !state.enabled  ? mix(skin.field, skin.panel.from, 0.7)
                     : state.pressed ? skin.pressed.to
                                     : skin.field;
    const QPointF centre =
        PixelGrid(painter).point(rect.topLeft()) + QPointF(rect.width() / 2, rect.height() / 2);
    painter.setPen(QPen(toQColor(edge), 1));
    painter.setBrush(toQColor(back));
    painter.drawEllipse(centre, 6.5, 6.5);
    if (state.checked) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(state.enabled ? toQColor(skin.accent) : inkOn(skin, state));
        painter.drawEllipse(centre, 3.2, 3.2);
    }
    painter.restore();
}

void paintChevron(QPainter& painter, const QRectF& rect, Direction direction, const QColor& ink) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.center());
    painter.rotate(angleOf(direction));
    const QPointF points[]{{-4, -2}, {0, 2.2}, {4, -2}};
    painter.setPen(roundPen(ink, 1.5));
    painter.drawPolyline(points, 3);
    painter.restore();
}

void paintTriangle(QPainter& painter, const QRectF& rect, Direction direction, const QColor& ink) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.center());
    painter.rotate(angleOf(direction));
    const QPointF points[]{{-3, -1.5}, {0, 1.7}, {3, -1.5}};
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawPolygon(points, 3);
    painter.restore();
}

void paintGroove(QPainter& painter, const Skin& skin, const QRectF& rect, bool horizontal, qreal from,
                 qreal to, const ControlState& state) {
    const QRectF groove = horizontal ? QRectF(rect.left(), rect.center().y() - 2, rect.width(), 4)
                                     : QRectF(rect.center().x() - 2, rect.top(), 4, rect.height());
    fillRounded(painter, groove, 2, toQColor(skin.groove), toQColor(mix(skin.groove, kBlack, 0.25)));
    if (std::abs(to - from) <= 2)
        return;
    const auto [low, high] = std::minmax(from, to);
    fillRounded(painter,
                horizontal ? QRectF(low, groove.top() + 1, high - low, 2)
                           : QRectF(groove.left() + 1, low, 2, high - low),
                1, toQColor(state.enabled ? skin.accent : mix(skin.accent, skin.panel.from, kDisabledShare)));
}

void paintPointer(QPainter& painter, const Skin& skin, const QRectF& rect, bool horizontal,
                  const ControlState& state) {
    const RgbPair& face = state.enabled ? skin.pointer : skin.face;
    if (isBevelled(skin)) {
        painter.fillRect(PixelGrid(painter).rect(rect), toQColor(face.from));
        paintBevel(painter, rect, false);
    } else {
        fillRounded(painter, rect, 3, downwards(face, rect),
                    toQColor(edgeOf(skin, {.enabled = state.enabled})));
    }
    const QColor mark = state.enabled ? toQColor(mix(skin.pointer.to, kBlack, 0.55)) : inkOn(skin, state);
    if (horizontal)
        verticalLine(painter, rect.center().x() - 0.5, rect.top() + 5, rect.height() - 10, mark);
    else
        horizontalLine(painter, rect.left() + 5, rect.center().y() - 0.5, rect.width() - 10, mark);
}

void paintScrollRail(QPainter& painter, const Skin& skin, const QRectF& rect) {
    fillRounded(painter, rect, fieldRadius(skin), toQColor(mix(skin.panel.to, kBlack, 0.06)),
                toQColor(skin.line));
}

void paintSmallFace(QPainter& painter, const Skin& skin, const QRectF& rect, const ControlState& state,
                    bool edge) {
    const RgbPair& face = faceOf(skin, state);
    if (isBevelled(skin) && edge) {
        painter.fillRect(PixelGrid(painter).rect(rect), toQColor(face.from));
        paintBevel(painter, rect, state.pressed);
        return;
    }
    fillRounded(painter, rect, fieldRadius(skin), downwards(face, rect),
                edge ? toQColor(edgeOf(skin, state)) : QColor());
}

void paintThumb(QPainter& painter, const Skin& skin, const QRectF& rect, bool horizontal,
                const ControlState& state) {
    paintSmallFace(painter, skin, rect, state);
    if ((horizontal ? rect.width() : rect.height()) < 20 || !state.enabled)
        return;
    for (const int shift : {-4, 0, 4}) {
        if (horizontal)
            verticalLine(painter, rect.center().x() + shift, rect.top() + 5, rect.height() - 10,
                         toQColor(skin.dim));
        else
            horizontalLine(painter, rect.left() + 5, rect.center().y() + shift, rect.width() - 10,
                           toQColor(skin.dim));
    }
}

} // namespace velmora
