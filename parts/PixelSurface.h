// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/Skin.h"

#include <QImage>
#include <QRect>

#include <vector>

namespace velmora {

class Stamp;

[[nodiscard]] inline QRgb toQRgb(Rgb colour) {
    return qRgb(colour.red, colour.green, colour.blue);
}

/// Writes solid shapes straight into a picture of 32 bits a pixel. Coordinates are logical pixels, where both
/// ends of a box belong to it; every edge falls on a whole pixel of the device. What is outside of the
/// picture is left out, and so is everything if the picture has another depth.
///
/// Each call returns the pixels of the device that it wrote in.
class PixelSurface {
public:
    explicit PixelSurface(QImage& image);

    /// The first pixel of the device of a logical pixel.
    [[nodiscard]] int edge(double logical) const;
    [[nodiscard]] qreal scale() const { return scale_; }
    [[nodiscard]] QRect rect() const { return {0, 0, width_, height_}; }
    /// From now on nothing outside of @p device, in pixels of the device, is written; `row` knows no bounds.
    void clipTo(const QRect& device) { clip_ = device & rect(); }
    [[nodiscard]] QRect clip() const { return clip_; }
    /// Moves everything by so many pixels of the device, as far as it stays in the picture; what comes in at
    /// the other edge is left as it was.
    void moveBy(QPoint device);
    /// Sizes in logical pixels.
    [[nodiscard]] int logicalWidth() const;
    [[nodiscard]] int logicalHeight() const;
    /// How many pixels of the device a line is wide.
    [[nodiscard]] int lineWidth() const { return lineWidth_; }

    QRect fillBox(int left, int top, int right, int bottom, QRgb colour);
    /// The pixels of the device of such a box, in the picture or not.
    [[nodiscard]] QRect box(int left, int top, int right, int bottom) const;
    QRect verticalLine(int x, QRgb colour);
    /// Blends a strip over the full height with alpha 100 of 255.
    QRect blendStrip(int x, int width, QRgb source);
    /// Puts a stamp down; @p x and @p y are where its anchor lands.
    QRect put(const Stamp& stamp, int x, int y);

    /// A row of the device.
    [[nodiscard]] QRgb* row(int y) {
        return reinterpret_cast<QRgb*>(bits_ + static_cast<qsizetype>(y) * stride_);
    }

private:
    [[nodiscard]] QRect clipped(const QRect& device) const;
    QRect fillDevice(const QRect& device, QRgb colour);

    uchar* bits_ = nullptr;
    qsizetype stride_ = 0;
    qreal scale_ = 1;
    int width_ = 0;
    int height_ = 0;
    int lineWidth_ = 1;
    QRect clip_;
};

/// Pixel of the device for a logical coordinate, which may be any number.
[[nodiscard]] int deviceEdge(double logical, qreal scale);
/// How many pixels of the device a thin line is wide.
[[nodiscard]] int deviceLine(qreal scale);

} // namespace velmora
