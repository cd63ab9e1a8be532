// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QRect>

#include <vector>

namespace velmora {

/// Which columns of a picture are to be painted anew.
class ColumnMarks {
public:
    /// @param width of the picture, in pixels of the device
    ColumnMarks(int width, qreal scale);

    void mark(int column) { markRange(column, column + 1); }
    /// Columns from @p first to before @p end; those out of the picture are left out.
    void markRange(int first, int end);
    /// The columns that have any of the device's pixels from @p left to before @p right.
    void markPixels(int left, int right);

    [[nodiscard]] int columns() const { return static_cast<int>(marked_.size()); }
    /// Columns that are wholly in the picture.
    [[nodiscard]] int wholeColumns() const;
    [[nodiscard]] int marked() const;
    /// Appends the marked columns over a height, neighbours together, in pixels of the device.
    void appendRects(std::vector<QRect>& rects, int height) const;

private:
    [[nodiscard]] int edge(int column) const;

    int width_;
    qreal scale_;
    std::vector<char> marked_;
};

} // namespace velmora
