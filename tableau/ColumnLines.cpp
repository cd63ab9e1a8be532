// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ColumnLines.h"

#include "parts/PixelSurface.h"
#include "score/ViewState.h"

#include <algorithm>

namespace velmora {

ColumnLines::ColumnLines(int width, qreal scale, int firstColumn, const std::function<bool(int)>& isBeat,
                         const std::function<bool(int)>& isMeasure)
    : thickness(deviceLine(scale)) {
    for (int column = 0;; ++column) {
        const int x = deviceEdge(column * double{kColumnWidth}, scale);
        if (x >= width)
            break;
        cells.push_back(x);
        if (column > 0 && isBeat(firstColumn + column))
            beats.push_back(x);
        if (column > 0 && isMeasure(firstColumn + column))
            measures.push_back(x);
    }
}

void writeLines(QRgb* row, int width, const std::vector<int>& lines, int thickness, QRgb colour) {
    for (const int x : lines)
        std::fill(row + std::min(x, width), row + std::min(x + thickness, width), colour);
}

} // namespace velmora
