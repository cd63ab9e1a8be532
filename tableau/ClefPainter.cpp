// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ClefPainter.h"

#include <QPainter>
#include <QPainterPath>

namespace velmora {

namespace {
const QColor kClef(237, 234, 233);
constexpr qreal kX = 25;
constexpr qreal kPen = 3;
constexpr int kTrebleToG = 10; ///< rows from the top line to that of "5G"

/// An ellipse's box, from its centre and radii.
QRectF box(qreal x, qreal y, qreal rx, qreal ry) {
    return {x - rx, y - ry, 2 * rx, 2 * ry};
}

void paintPath(QPainter& painter, const QPainterPath& path, qreal x, qreal y, qreal unit) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(x, y);
    painter.setPen(QPen(kClef, kPen, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(QTransform::fromScale(unit, unit).map(path));
    painter.restore();
}
void paintDot(QPainter& painter, QPointF centre, qreal radius) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(kClef, 1));
    painter.setBrush(kClef);
    painter.drawEllipse(centre, radius, radius);
    painter.restore();
}

/// Round the line of G, in units of the clef's base size: a spiral, the stem up and round, and its hook.
QPainterPath trebleOutline() {
    QPainterPath path(QPointF(0.05, 0.32));
    path.arcTo(box(0.05, 0, 0.30, 0.32), 270, -180);
    path.arcTo(box(0.05, 0.08, 0.52, 0.40), 90, -180);
    path.arcTo(box(0.05, -0.22, 0.72, 0.70), 270, -90);
    path.cubicTo(-0.67, -1.35, 0.52, -1.75, 0.52, -2.95);
    path.arcTo(box(0.22, -2.95, 0.30, 0.85), 0, 180);
    path.lineTo(0.32, 1.15);
    path.arcTo(box(-0.06, 1.15, 0.38, 0.42), 0, -180);
    return path;
}
/// From the line of F to the right and down.
QPainterPath bassOutline() {
    QPainterPath path(QPointF(-0.50, 0));
    path.arcTo(box(0.08, 0, 0.58, 0.85), 180, -180);
    path.arcTo(box(-0.62, 0, 1.28, 2.30), 0, -78);
    return path;
}
} // namespace

void paintTrebleClef(QPainter& painter, double top, int lineHeight) {
    const qreal base = lineHeight * 3;
    const QPointF centre(kX, top + kTrebleToG * lineHeight + 0.5);
    paintPath(painter, trebleOutline(), centre.x(), centre.y(), base);
    paintDot(painter, centre + QPointF(-0.36, 1.15) * base, 0.13 * base);
}

void paintBassClef(QPainter& painter, double line, int lineHeight) {
    const qreal base = lineHeight * 2.4;
    const QPointF centre(kX, line + 2);
    paintPath(painter, bassOutline(), centre.x(), centre.y(), base);
    paintDot(painter, centre + QPointF(-0.36, 0.02) * base, 0.17 * base);
    for (const qreal side : {-0.42, 0.42})
        paintDot(painter, centre + QPointF(1.0, side) * base - QPointF(0, 1.5), 0.09 * base);
}

int clefsWidth(int lineHeight) {
    return static_cast<int>(kX) + 3 * lineHeight + static_cast<int>(kPen);
}

} // namespace velmora
