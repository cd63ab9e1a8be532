// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/PixelSurface.h"

#include "parts/Stamp.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace velmora {

namespace {
constexpr std::uint32_t kRedBlue = 0x00ff00ff;
constexpr std::uint32_t kHalves = 0x00800080;
constexpr std::uint32_t kStripAlpha = 100;
constexpr double kFarAway = 1e6; ///< beyond every picture

/// Two channels divided by 255, rounded.
constexpr std::uint32_t dividedBy255(std::uint32_t pair) {
    pair += kHalves;
    return ((pair + ((pair >> 8U) & kRedBlue)) >> 8U) & kRedBlue;
}
constexpr QRgb mixed(QRgb below, std::uint32_t belowAlpha, QRgb above, std::uint32_t aboveAlpha) {
    const std::uint32_t redBlue = (below & kRedBlue) * belowAlpha + (above & kRedBlue) * aboveAlpha;
    const std::uint32_t alphaGreen =
        ((below >> 8U) & kRedBlue) * belowAlpha + ((above >> 8U) & kRedBlue) * aboveAlpha;
    return dividedBy255(redBlue) | dividedBy255(alphaGreen) << 8U;
}
/// @p above premultiplied
constexpr QRgb over(QRgb below, QRgb above) {
    const std::uint32_t through = 255U - (above >> 24U);
    return above + (dividedBy255((below & kRedBlue) * through) |
                    dividedBy255(((below >> 8U) & kRedBlue) * through) << 8U);
}

void putStretch(QRgb* below, const QRgb* above, int length, bool opaque) {
    for (int x = 0; x < length; ++x)
        below[x] = opaque ? above[x] : over(below[x], above[x]);
}
} // namespace

int deviceEdge(double logical, qreal scale) {
    return static_cast<int>(std::floor(std::clamp(logical * scale, -kFarAway, kFarAway) + 0.5));
}

int deviceLine(qreal scale) {
    return std::max(1, static_cast<int>(std::floor(scale)));
}

PixelSurface::PixelSurface(QImage& image) {
    if (image.isNull() || image.depth() != 32)
        return;
    bits_ = image.bits();
    stride_ = image.bytesPerLine();
    scale_ = image.devicePixelRatio();
    width_ = image.width();
    height_ = image.height();
    lineWidth_ = deviceLine(scale_);
    clip_ = rect();
}

int PixelSurface::edge(double logical) const {
    return deviceEdge(logical, scale_);
}

int PixelSurface::logicalWidth() const {
    return static_cast<int>(std::lround(width_ / scale_));
}

int PixelSurface::logicalHeight() const {
    return static_cast<int>(std::lround(height_ / scale_));
}

/// Nothing of a rectangle of negative size, which an intersection would turn round.
QRect PixelSurface::clipped(const QRect& device) const {
    return device.isEmpty() ? QRect() : device & clip_;
}

QRect PixelSurface::fillDevice(const QRect& device, QRgb colour) {
    const QRect inside = clipped(device);
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        std::fill_n(row(y) + inside.left(), inside.width(), colour);
    return inside;
}

QRect PixelSurface::box(int left, int top, int right, int bottom) const {
    const int x = edge(left);
    const int y = edge(top);
    return {x, y, edge(right + 1.0) - x, edge(bottom + 1.0) - y};
}

QRect PixelSurface::fillBox(int left, int top, int right, int bottom, QRgb colour) {
    return fillDevice(box(left, top, right, bottom), colour);
}

void PixelSurface::moveBy(QPoint device) {
    const QRect to = rect() & rect().translated(device);
    if (to.isEmpty())
        return;
    const auto bytes = static_cast<std::size_t>(to.width()) * sizeof(QRgb);
    const auto moveRow = [&](int y) {
        std::memmove(row(y) + to.left(), row(y - device.y()) + (to.left() - device.x()), bytes);
    };
    // A row is read before it is written.
    if (device.y() > 0)
        for (int y = to.bottom(); y >= to.top(); --y)
            moveRow(y);
    else
        for (int y = to.top(); y <= to.bottom(); ++y)
            moveRow(y);
}

QRect PixelSurface::verticalLine(int x, QRgb colour) {
    return fillDevice({edge(x), 0, lineWidth_, height_}, colour);
}

QRect PixelSurface::blendStrip(int x, int width, QRgb source) {
    const int left = edge(x);
    const QRect inside = clipped({left, 0, edge(static_cast<double>(x) + width) - left, height_});
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        QRgb* pixels = row(y) + inside.left();
        for (int i = 0; i < inside.width(); ++i)
            pixels[i] = mixed(pixels[i], 255 - kStripAlpha, source, kStripAlpha);
    }
    return inside;
}

QRect PixelSurface::put(const Stamp& stamp, int x, int y) {
    const QRect place = stamp.bounds().translated(x, y);
    const QRect inside = place & clip_;
    if (inside.isEmpty())
        return {};
    const int from = inside.left() - place.left();
    const int to = from + inside.width();
    // Its rows lie far apart in memory: asked for together, they arrive together.
    for (const Stamp::Cover& cover : stamp.covers())
        if (place.top() + cover.y >= inside.top() && place.top() + cover.y <= inside.bottom())
            __builtin_prefetch(row(place.top() + cover.y) + std::clamp(place.left() + cover.x, 0, width_ - 1),
                               1);
    for (const Stamp::Stretch& stretch : stamp.stretches()) {
        const int line = place.top() + stretch.y;
        const int first = std::max(stretch.x, from);
        const int end = std::min(stretch.x + stretch.length, to);
        if (line < inside.top() || line > inside.bottom() || end <= first)
            continue;
        putStretch(row(line) + place.left() + first, stamp.pixels() + stretch.at + (first - stretch.x),
                   end - first, stretch.opaque);
    }
    return inside;
}

} // namespace velmora
