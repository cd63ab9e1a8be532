// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QImage>

#include <functional>
#include <vector>

namespace velmora {

inline constexpr QRgb kCellLine = qRgb(237, 237, 237);
inline constexpr QRgb kMeasureLine = qRgb(68, 204, 255); ///< on `MusicBox`, `Pic2a` and `Pic3`
inline constexpr QRgb kBeatLine = qRgb(201, 204, 216);
inline constexpr QRgb kPaper = qRgb(255, 255, 255);
inline constexpr QRgb kInk = qRgb(0, 0, 0);

/// Where the vertical lines of a picture stand, in pixels of the device: one at each cell, and from the
/// second cell in view on those of the beats and measures.
struct ColumnLines {
    std::vector<int> cells, beats, measures;
    int thickness = 1;

    /// @param isBeat, isMeasure asked for each position in view
    ColumnLines(int width, qreal scale, int firstColumn, const std::function<bool(int)>& isBeat,
                const std::function<bool(int)>& isMeasure);
};

/// Whether a position is a multiple; of nothing and less there are none.
[[nodiscard]] constexpr bool isMultiple(int position, int of) {
    return of > 0 && position % of == 0;
}

/// Writes lines into one row of the device.
void writeLines(QRgb* row, int width, const std::vector<int>& lines, int thickness, QRgb colour);

} // namespace velmora
