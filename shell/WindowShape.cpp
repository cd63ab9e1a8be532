// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/WindowShape.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>

#include <vector>
#include <xcb/shape.h>

namespace velmora {

namespace {
/// The pixels of the device whose middle lies within the outline.
QRegion pixelsOf(const QPainterPath& outline, QSize window, qreal scale) {
    QBitmap bitmap(QSizeF(window.width() * scale, window.height() * scale).toSize());
    bitmap.clear();
    QPainter painter(&bitmap);
    painter.scale(scale, scale);
    painter.fillPath(outline, Qt::color1);
    painter.end();
    return bitmap;
}
} // namespace

void shapeWindow(QWidget& window, const QPainterPath& outline) {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection()) {
        const QRegion shape = pixelsOf(outline, window.size(), 1);
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
    for (const QRect& rect : pixelsOf(outline, window.size(), window.devicePixelRatioF()))
        rectangles.push_back({static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                              static_cast<std::uint16_t>(rect.width()),
                              static_cast<std::uint16_t>(rect.height())});
    xcb_shape_rectangles(x11->connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                         XCB_CLIP_ORDERING_UNSORTED, static_cast<xcb_window_t>(window.winId()), 0, 0,
                         static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

} // namespace velmora
