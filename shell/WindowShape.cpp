// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/WindowShape.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>

#include <cmath>
#include <vector>
#include <xcb/shape.h>

namespace velmora {

namespace {
/// Of the rows from @p top on, the pixels of the device whose middle lies within the outline.
QRegion pixelsOfRows(const QPainterPath& outline, int top, QSize rows, qreal scale) {
    QBitmap bitmap(rows);
    bitmap.clear();
    QPainter painter(&bitmap);
    painter.translate(0, -top);
    painter.scale(scale, scale);
    painter.fillPath(outline, Qt::color1);
    painter.end();
    return QRegion(bitmap).translated(0, top);
}

/// Between its corners the window is a rectangle: only the rows that have corners are painted.
QRegion pixelsOf(const QPainterPath& outline, int corner, QSize window, qreal scale) {
    const QSize all = QSizeF(window.width() * scale, window.height() * scale).toSize();
    const int curved = static_cast<int>(std::ceil(corner * scale));
    const int straight = all.height() - 2 * curved;
    if (straight <= 0)
        return pixelsOfRows(outline, 0, all, scale);
    QRegion middle(0, curved, all.width(), straight);
    if (curved == 0)
        return middle;
    const QSize rows(all.width(), curved);
    return pixelsOfRows(outline, 0, rows, scale) + middle +
           pixelsOfRows(outline, all.height() - curved, rows, scale);
}
} // namespace

void shapeWindow(QWidget& window, const QPainterPath& outline, int corner) {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection()) {
        const QRegion shape = pixelsOf(outline, corner, window.size(), 1);
        if (shape == QRegion(window.rect()))
            window.clearMask();
        else
            window.setMask(shape);
        return;
    }
    if (!window.testAttribute(Qt::WA_WState_Created))
        return;
    // Qt's own masks are in logical pixels.
    std::vector<xcb_rectangle_t> rectangles;
    for (const QRect& rect : pixelsOf(outline, corner, window.size(), window.devicePixelRatioF()))
        rectangles.push_back({static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                              static_cast<std::uint16_t>(rect.width()),
                              static_cast<std::uint16_t>(rect.height())});
    xcb_shape_rectangles(x11->connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                         XCB_CLIP_ORDERING_UNSORTED, static_cast<xcb_window_t>(window.winId()), 0, 0,
                         static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

} // namespace velmora
