// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ColumnMarks.h"

#include "parts/PixelSurface.h"
#include "score/ViewState.h"

#include <algorithm>
#include <cmath>

namespace velmora {

ColumnMarks::ColumnMarks(int width, qreal scale) : width_(width), scale_(scale) {
    int count = 0;
    while (edge(count) < width)
        ++count;
    marked_.assign(static_cast<std::size_t>(count), 0);
}

int ColumnMarks::edge(int column) const {
    return deviceEdge(column * double{kColumnWidth}, scale_);
}

void ColumnMarks::markRange(int first, int end) {
    const int from = std::clamp(first, 0, columns());
    std::fill(marked_.begin() + from, marked_.begin() + std::clamp(end, from, columns()), 1);
}

void ColumnMarks::markPixels(int left, int right) {
    int first = static_cast<int>(std::floor(left / (kColumnWidth * scale_)));
    int end = static_cast<int>(std::ceil(right / (kColumnWidth * scale_)));
    while (edge(first) > left) // where columns are uneven
        --first;
    while (edge(end) < right)
        ++end;
    markRange(first, end);
}

int ColumnMarks::wholeColumns() const {
    return columns() > 0 && edge(columns()) > width_ ? columns() - 1 : columns();
}

int ColumnMarks::marked() const {
    return static_cast<int>(std::ranges::count(marked_, 1));
}

void ColumnMarks::appendRects(std::vector<QRect>& rects, int height) const {
    for (auto at = marked_.begin(); (at = std::find(at, marked_.end(), 1)) != marked_.end();) {
        const auto end = std::find(at, marked_.end(), 0);
        const int left = edge(static_cast<int>(at - marked_.begin()));
        const int right = std::min(edge(static_cast<int>(end - marked_.begin())), width_);
        rects.emplace_back(left, 0, right - left, height);
        at = end;
    }
}

} // namespace velmora
