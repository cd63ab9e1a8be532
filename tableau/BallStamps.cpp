// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/BallStamps.h"

#include <QPainter>

#include <cmath>

namespace velmora {

namespace {
constexpr qreal kCentre = 5.5; ///< of pixel 5
constexpr qreal kHighlight = 3.5;
constexpr int kMargin = 4; ///< the ring reaches out of the cell

/// A picture in which the cell begins at pixel `kMargin`, painted in logical pixels of the cell.
template<typename Paint>
Stamp stampOf(qreal scale, Paint paint) {
    const int margin = static_cast<int>(std::ceil(kMargin * scale));
    const int size = static_cast<int>(std::ceil((kMargin + 2 * kCentre + kMargin) * scale)) + 1;
    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(margin, margin);
    painter.scale(scale, scale);
    paint(painter);
    painter.end();
    return {picture, QPoint(margin, margin)};
}

void paintDisc(QPainter& painter, qreal radius, QRgb colour) {
    painter.setPen(QPen(Qt::black, 1));
    painter.setBrush(QColor(colour));
    painter.drawEllipse(QPointF(kCentre, kCentre), radius, radius);
}
} // namespace

Stamp ballStamp(QRgb colour, qreal scale) {
    return stampOf(scale, [&](QPainter& painter) {
        paintDisc(painter, 5, colour);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        painter.drawEllipse(QPointF(kHighlight, kHighlight), 1.5, 1.5);
    });
}

Stamp ringStamp(QRgb colour, qreal scale) {
    return stampOf(scale, [&](QPainter& painter) { paintDisc(painter, 7, colour); });
}

} // namespace velmora
