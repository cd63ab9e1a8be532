// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/Stamp.h"

#include <algorithm>

namespace velmora {

namespace {
constexpr int kOpaque = 255;

QRect inkedRect(const QImage& picture) {
    QRect inked;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (qAlpha(picture.pixel(x, y)) > 0)
                inked |= QRect(x, y, 1, 1);
    return inked;
}

/// With the longest solid stretch of the row as its solid part.
Stamp::Run runOf(const QRgb* row, int width) {
    Stamp::Run run{width, width, width, 0};
    int longest = 0;
    for (int x = 0; x < width; ++x) {
        if (qAlpha(row[x]) == 0)
            continue;
        run.first = std::min(run.first, x);
        run.end = x + 1;
        int stop = x;
        while (stop < width && qAlpha(row[stop]) == kOpaque)
            ++stop;
        if (stop - x > longest) {
            longest = stop - x;
            run.solid = x;
            run.solidEnd = stop;
        }
    }
    if (longest == 0)
        run.solid = run.solidEnd = std::max(run.first, run.end);
    return run;
}
} // namespace

Stamp::Stamp(const QImage& picture, QPoint anchor) {
    const QRect inked = inkedRect(picture);
    bounds_ = inked.translated(-anchor);
    for (int y = inked.top(); y <= inked.bottom(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y)) + inked.left();
        pixels_.insert(pixels_.end(), row, row + inked.width());
        runs_.push_back(runOf(row, inked.width()));
    }
}

} // namespace velmora
