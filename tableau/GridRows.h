// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/ColumnLines.h"
#include "tableau/TableauScene.h"

#include <QImage>
#include <QRect>
#include <QSize>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace velmora {

class PixelSurface;
class Stamp;

/// Everything that decides how `MusicBox` looks without notes.
struct GridLook {
    QSize size; ///< pixels of the device
    qreal scale = 1;
    int firstColumn = 0, topRow = 0, bottomRow = 0, lineHeight = 0;
    int notesPerMeasure = 0, meter = 0;
    bool sharpGuides = false, treble = false, bass = false;

    bool operator==(const GridLook&) const = default;
    [[nodiscard]] int logicalWidth() const;
    [[nodiscard]] int logicalHeight() const;
};
[[nodiscard]] GridLook gridLook(const PixelSurface& surface, const TableauScene& scene);
/// How many columns at the left edge the clefs stand in, wherever the view does.
[[nodiscard]] int clefColumns(const GridLook& look);

/// `MusicBox` without notes. Its rows are of five kinds, and one of each is kept: they stay in the
/// processor's cache, where a copy of the whole picture would not. Only the clefs, at the left, differ from
/// row to row.
class GridRows {
public:
    /// Makes the rows anew if the look is another than last time; true if so.
    bool renew(const GridLook& look);
    /// Writes the rectangle, in pixels of the device, as it is without notes.
    void restore(PixelSurface& surface, const QRect& rect) const;
    /// Takes a stamp away again.
    void restore(PixelSurface& surface, const Stamp& stamp, QPoint at) const;

    /// What each row of the device is.
    [[nodiscard]] const std::vector<std::uint8_t>& kinds() const { return kinds_; }
    /// The rows that are not what @p before has @p by rows further up, neighbours together, over the whole
    /// width.
    [[nodiscard]] std::vector<QRect> rowsUnlike(const std::vector<std::uint8_t>& before, int by) const;

private:
    static constexpr int kKinds = 5;
    using Row = std::vector<QRgb>;

    void sortRows();
    void composeRows();
    void inkClefs();
    void markBands();
    void markStaff(const std::array<int, 5>& staff);
    void markStaffLines(const std::array<int, 5>& staff);
    void composeUnder(QRgb* row, int width, std::uint8_t kind) const;
    void composeOver(QRgb* row, int width, std::uint8_t kind) const;
    void paintClefs();
    void restoreRow(QRgb* row, int y, int left, int right) const;
    void markRows(int from, int to, std::uint8_t kind);
    [[nodiscard]] double lineY(int row) const;

    std::optional<GridLook> look_;
    std::optional<ColumnLines> lines_;
    std::vector<std::uint8_t> kinds_; ///< of each row of the device
    std::array<Row, kKinds> rows_;
    QImage inkedClefs_; ///< the left edge, if a clef stands there, without what lies over the clefs
    QImage clefs_;      ///< the same as it is seen
};

} // namespace velmora
