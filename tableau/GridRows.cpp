// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/GridRows.h"

#include "parts/PixelSurface.h"
#include "parts/Stamp.h"
#include "tableau/ClefPainter.h"
#include "tableau/GuidePainter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {
constexpr QRgb kSharpBand = qRgb(248, 241, 231);
constexpr int kBandTop = 3;
constexpr int kBandBottom = 7;

// What a row is; a staff line hides all else.
constexpr std::uint8_t kBand = 1;
constexpr std::uint8_t kStaff = 2;
constexpr std::uint8_t kStaffLine = 4;

bool isNamed(int row) {
    return row >= 0 && row <= kLastRow;
}
/// The beat step is `Notes per measure` / `TxtMeter`, which need be no whole number.
bool isBeat(int position, int notesPerMeasure, int meter) {
    return notesPerMeasure > 0 && meter > 0 && std::int64_t{position} * meter % notesPerMeasure == 0;
}
} // namespace

GridLook gridLook(const PixelSurface& surface, const TableauScene& scene) {
    const ViewState& view = scene.view;
    return {.size = surface.rect().size(),
            .scale = surface.scale(),
            .firstColumn = view.ViewFirstColumn,
            .topRow = view.ViewTopRow,
            .bottomRow = view.ViewBottomRow(),
            .lineHeight = view.Line_Height,
            .notesPerMeasure = scene.score.NotesPerMeasure,
            .meter = scene.setup.TxtMeter,
            .sharpGuides = view.Show_Sharp_guides,
            .treble = scene.setup.ChTreble,
            .bass = scene.setup.ChBass};
}

int GridLook::logicalWidth() const {
    return static_cast<int>(std::lround(size.width() / scale));
}

int GridLook::logicalHeight() const {
    return static_cast<int>(std::lround(size.height() / scale));
}

int clefColumns(const GridLook& look) {
    if (!(look.treble || look.bass))
        return 0;
    return (clefsWidth(look.lineHeight) + kColumnWidth) / kColumnWidth; // with the pixel of a rounded edge
}

bool GridRows::renew(const GridLook& look) {
    if (look_ == look)
        return false;
    GridLook moved = look;
    if (look_)
        moved.firstColumn = look_->firstColumn;
    const bool onlyAcross = look_ == moved;
    look_ = look;
    lines_.emplace(
        look.size.width(), look.scale, look.firstColumn,
        [&](int position) { return isBeat(position, look.notesPerMeasure, look.meter); },
        [&](int position) { return isMultiple(position, look.notesPerMeasure); });
    if (!onlyAcross) {
        sortRows();
        inkClefs();
    }
    composeRows();
    paintClefs();
    return true;
}

std::vector<QRect> GridRows::rowsUnlike(const std::vector<std::uint8_t>& before, int by) const {
    std::vector<QRect> rows;
    const int height = look_->size.height();
    for (int y = 0; y < height; ++y) {
        const int from = y - by;
        const bool same = from >= 0 && from < static_cast<int>(before.size()) &&
                          before[static_cast<std::size_t>(from)] == kinds_[static_cast<std::size_t>(y)];
        if (same)
            continue;
        if (!rows.empty() && rows.back().bottom() == y - 1)
            rows.back().setBottom(y);
        else
            rows.emplace_back(0, y, look_->size.width(), 1);
    }
    return rows;
}

void GridRows::composeRows() {
    const int width = look_->size.width();
    for (std::uint8_t kind = 0; kind < kKinds; ++kind) {
        Row& row = rows_[kind];
        row.resize(static_cast<std::size_t>(width));
        composeUnder(row.data(), width, kind);
        composeOver(row.data(), width, kind);
    }
}

double GridRows::lineY(int row) const {
    return staffLineY(row, look_->topRow, look_->lineHeight);
}

void GridRows::markRows(int from, int to, std::uint8_t kind) {
    for (int y = std::max(from, 0); y < std::min(to, look_->size.height()); ++y)
        kinds_[static_cast<std::size_t>(y)] =
            kind == kStaffLine ? kind : static_cast<std::uint8_t>(kinds_[static_cast<std::size_t>(y)] | kind);
}

void GridRows::sortRows() {
    kinds_.assign(static_cast<std::size_t>(look_->size.height()), 0);
    markBands();
    if (!isNamed(look_->topRow))
        return;
    std::vector<const std::array<int, 5>*> staves;
    if (look_->treble)
        staves.push_back(&kTrebleRows);
    if (look_->bass)
        staves.push_back(&kBassRows);
    for (const auto* staff : staves)
        markStaff(*staff);
    for (const auto* staff : staves) // last: a line is nothing else besides
        markStaffLines(*staff);
}

void GridRows::markBands() {
    for (int row = std::max(look_->topRow, 0); look_->sharpGuides && row <= look_->bottomRow; ++row)
        if (isSharpRow(row)) {
            const double y = (static_cast<double>(row) - look_->topRow) * look_->lineHeight;
            markRows(deviceEdge(y + kBandTop, look_->scale), deviceEdge(y + kBandBottom + 1, look_->scale),
                     kBand);
        }
}

/// From its first line to the last one in view. One that is scrolled out at the top stays what it is.
void GridRows::markStaff(const std::array<int, 5>& staff) {
    const int last = std::min(staff.back(), look_->bottomRow);
    if (last >= look_->topRow)
        markRows(deviceEdge(lineY(staff.front()), look_->scale), deviceEdge(lineY(last), look_->scale),
                 kStaff);
}

void GridRows::markStaffLines(const std::array<int, 5>& staff) {
    for (const int row : staff) {
        const int y = deviceEdge(lineY(row), look_->scale);
        if (row >= look_->topRow && row <= look_->bottomRow)
            markRows(y, y + deviceLine(look_->scale), kStaffLine);
    }
}

void GridRows::composeUnder(QRgb* row, int width, std::uint8_t kind) const {
    std::fill_n(row, width, (kind & kBand) != 0 ? kSharpBand : kPaper);
    writeLines(row, width, lines_->cells, lines_->thickness, kCellLine);
}

void GridRows::composeOver(QRgb* row, int width, std::uint8_t kind) const {
    if (kind == kStaffLine) {
        std::fill_n(row, width, kInk);
        return;
    }
    writeLines(row, width, lines_->measures, lines_->thickness, kMeasureLine);
    if ((kind & kStaff) == 0)
        return;
    writeLines(row, width, lines_->beats, lines_->thickness, kBeatLine);
    writeLines(row, width, lines_->measures, lines_->thickness, kInk);
}

/// They stand still when the view goes to other columns.
void GridRows::inkClefs() {
    inkedClefs_ = {};
    const GridLook& look = *look_;
    if (look.size.isEmpty() || !isNamed(look.topRow) || look.lineHeight <= 0 || !(look.treble || look.bass))
        return;
    const int width = std::min(look.size.width(), deviceEdge(clefsWidth(look.lineHeight), look.scale));
    inkedClefs_ = QImage(width, look.size.height(), QImage::Format_RGB32);
    for (int at = 0; at < inkedClefs_.height(); ++at)
        composeUnder(reinterpret_cast<QRgb*>(inkedClefs_.scanLine(at)), width,
                     kinds_[static_cast<std::size_t>(at)]);
    QPainter painter(&inkedClefs_);
    painter.scale(look.scale, look.scale);
    if (look.treble)
        paintTrebleClef(painter, lineY(kTrebleRows.front()), look.lineHeight);
    if (look.bass)
        paintBassClef(painter, lineY(kBassRows[1]), look.lineHeight);
}

void GridRows::paintClefs() {
    clefs_ = inkedClefs_.copy();
    for (int at = 0; at < clefs_.height(); ++at)
        composeOver(reinterpret_cast<QRgb*>(clefs_.scanLine(at)), clefs_.width(),
                    kinds_[static_cast<std::size_t>(at)]);
}

void GridRows::restoreRow(QRgb* row, int y, int left, int right) const {
    const int split = std::clamp(clefs_.width(), left, right);
    if (split > left)
        std::copy_n(reinterpret_cast<const QRgb*>(clefs_.constScanLine(y)) + left, split - left, row + left);
    const QRgb* grid = rows_[kinds_[static_cast<std::size_t>(y)]].data();
    std::copy_n(grid + split, right - split, row + split);
}

void GridRows::restore(PixelSurface& surface, const QRect& rect) const {
    const QRect inside = rect & surface.rect();
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        restoreRow(surface.row(y), y, inside.left(), inside.right() + 1);
}

void GridRows::restore(PixelSurface& surface, const Stamp& stamp, QPoint at) const {
    const QPoint corner = stamp.bounds().topLeft() + at;
    const QRect all = surface.rect();
    for (const Stamp::Cover& cover : stamp.covers()) {
        const int y = corner.y() + cover.y;
        const int left = std::max(corner.x() + cover.x, 0);
        const int right = std::min(corner.x() + cover.x + cover.length, all.width());
        if (y >= 0 && y < all.height() && right > left)
            restoreRow(surface.row(y), y, left, right);
    }
}

} // namespace velmora
