// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/Skin.h"

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QRectF>

class QPainter;

namespace velmora {

// What frames and controls are drawn with. Coordinates are logical pixels; edges fall on pixels of the
// device.

[[nodiscard]] inline QColor toQColor(Rgb colour) {
    return {colour.red, colour.green, colour.blue};
}

/// "Arial" at @p pixels: 12 for what is read or pressed, 10 for captions and labels under icons.
[[nodiscard]] QFont textFont(int pixels = 12, bool bold = false);
/// "Tahoma", bold, for titles.
[[nodiscard]] QFont titleFont(int pixels = 13);

/// Filled, with an edge one line wide if its colour is valid.
void fillRounded(QPainter& painter, const QRectF& rect, qreal radius, const QBrush& fill,
                 const QColor& edge = {});
/// The edge alone, inside @p rect.
void strokeRounded(QPainter& painter, const QRectF& rect, qreal radius, const QColor& edge, int lines = 1);
void horizontalLine(QPainter& painter, qreal x, qreal y, qreal width, const QColor& colour);
void verticalLine(QPainter& painter, qreal x, qreal y, qreal height, const QColor& colour);
/// Raised, or sunk, in two lines: the manner of "Win 98".
void paintBevel(QPainter& painter, const QRectF& rect, bool sunk);

/// A pair of colours from the top of @p rect to its foot.
[[nodiscard]] QBrush downwards(const RgbPair& pair, const QRectF& rect);
/// The panel's tile, whose pattern begins at 0, 0 of the painter.
void paintPanel(QPainter& painter, const Skin& skin, const QRectF& rect);

/// Whether a skin draws bevels in place of gradients, and no round corners.
[[nodiscard]] inline bool isBevelled(const Skin& skin) {
    return skin.pattern == PanelPattern::Plain;
}
/// Radius of fields and read-outs, and of groups.
[[nodiscard]] inline int fieldRadius(const Skin& skin) {
    return isBevelled(skin) ? 0 : 3;
}
[[nodiscard]] inline int groupRadius(const Skin& skin) {
    return isBevelled(skin) ? 0 : 4;
}

} // namespace velmora
