// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/Stamp.h"

namespace velmora {

namespace {
constexpr int kOpaque = 255;
constexpr int kSmallGap = 8;
constexpr int kWorthCopying = 6; ///< fewer opaque pixels are blended along with their neighbours

QRect inkedRect(const QImage& picture) {
    QRect inked;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (qAlpha(picture.pixel(x, y)) > 0)
                inked |= QRect(x, y, 1, 1);
    return inked;
}

int solidLength(const QRgb* row, int width, int from) {
    int x = from;
    while (x < width && qAlpha(row[x]) == kOpaque)
        ++x;
    return x - from;
}
} // namespace

Stamp::Stamp(const QImage& picture, QPoint anchor) {
    const QRect inked = inkedRect(picture);
    bounds_ = inked.translated(-anchor);
    for (int y = 0; y < inked.height(); ++y)
        addRow(reinterpret_cast<const QRgb*>(picture.constScanLine(inked.top() + y)) + inked.left(),
               inked.width(), y);
}

void Stamp::addRow(const QRgb* row, int width, int y) {
    for (int x = 0; x < width;) {
        if (qAlpha(row[x]) == 0) {
            ++x;
            continue;
        }
        const int first = x;
        const bool opaque = solidLength(row, width, x) >= kWorthCopying;
        if (opaque)
            x += solidLength(row, width, x);
        else
            while (x < width && qAlpha(row[x]) > 0 && solidLength(row, width, x) < kWorthCopying)
                ++x;
        stretches_.push_back({y, first, x - first, static_cast<int>(pixels_.size()), opaque});
        pixels_.insert(pixels_.end(), row + first, row + x);
        cover(stretches_.back());
    }
}

void Stamp::cover(const Stretch& stretch) {
    if (!covers_.empty()) {
        Cover& last = covers_.back();
        if (last.y == stretch.y && stretch.x - (last.x + last.length) <= kSmallGap) {
            last.length = stretch.x + stretch.length - last.x;
            return;
        }
    }
    covers_.push_back({stretch.y, stretch.x, stretch.length});
}

} // namespace velmora
