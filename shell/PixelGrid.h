// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QPainter>
#include <QRectF>

#include <algorithm>
#include <cmath>

namespace velmora {

/// The pixels of the device under a painter that only moves and scales. Lines and edges that stand on them
/// are sharp at every scale factor: at 1.5 a line is one pixel wide, never a grey smear over two.
class PixelGrid {
public:
    explicit PixelGrid(const QPainter& painter)
        : scaleX_(painter.deviceTransform().m11())
        , scaleY_(painter.deviceTransform().m22())
        , dx_(painter.deviceTransform().dx())
        , dy_(painter.deviceTransform().dy()) {}

    /// The width of a thin line, in logical pixels.
    [[nodiscard]] qreal line() const { return std::max(1.0, std::floor(scaleX_)) / scaleX_; }
    [[nodiscard]] qreal x(qreal x) const { return (std::round(x * scaleX_ + dx_) - dx_) / scaleX_; }
    [[nodiscard]] qreal y(qreal y) const { return (std::round(y * scaleY_ + dy_) - dy_) / scaleY_; }
    [[nodiscard]] QPointF point(QPointF at) const { return {x(at.x()), y(at.y())}; }
    /// The rectangle with each side on the nearest edge between pixels.
    [[nodiscard]] QRectF rect(const QRectF& r) const { return {point(r.topLeft()), point(r.bottomRight())}; }

private:
    qreal scaleX_, scaleY_, dx_, dy_;
};

} // namespace velmora
