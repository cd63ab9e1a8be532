// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/CellMoves.h"

#include "composition/ScoreLayers.h"

#include <algorithm>

namespace velmora {

namespace {
int sizeOf(std::span<const std::int16_t> row) {
    return static_cast<int>(row.size());
}

/// The cells of @p first to @p last that exist both there and @p by further right.
struct Common {
    Common(std::span<const std::int16_t> row, int first, int last, int by)
        : begin(std::max({first, 0, -by}))
        , end(std::min({last, sizeOf(row) - 1, sizeOf(row) - 1 - by}) + 1) {}
    [[nodiscard]] bool empty() const { return begin >= end; }

    int begin;
    int end;
};
} // namespace

void copyCells(std::span<const std::int16_t> from, int first, std::span<std::int16_t> to, int at, int count) {
    const int begin = std::max({0, -first, -at});
    const int end = std::min({count, sizeOf(from) - first, sizeOf(to) - at});
    if (begin >= end)
        return;
    const auto source =
        from.subspan(static_cast<std::size_t>(first + begin), static_cast<std::size_t>(end - begin));
    const auto target = to.begin() + (at + begin);
    std::ranges::copy(source, target);
}

void pullCells(std::span<std::int16_t> row, int first, int last, int by) {
    const Common common(row, first, last, by);
    if (common.empty())
        return;
    if (by >= 0) {
        std::copy(row.begin() + (common.begin + by), row.begin() + (common.end + by),
                  row.begin() + common.begin);
        return;
    }
    // From the left, one after the other: a cell that was just written is read again further on.
    for (int position = common.begin; position < common.end; ++position)
        row[static_cast<std::size_t>(position)] = row[static_cast<std::size_t>(position + by)];
}

void pushCells(std::span<std::int16_t> row, int first, int last, int by) {
    const Common common(row, first, last, -by);
    if (common.empty())
        return;
    if (by >= 0) {
        std::copy_backward(row.begin() + (common.begin - by), row.begin() + (common.end - by),
                           row.begin() + common.end);
        return;
    }
    for (int position = common.end - 1; position >= common.begin; --position)
        row[static_cast<std::size_t>(position)] = row[static_cast<std::size_t>(position - by)];
}

void fillCells(std::span<std::int16_t> row, int first, int count, std::int16_t value) {
    const int begin = std::max(first, 0);
    const int end = std::min(first + count, sizeOf(row));
    if (begin < end)
        std::fill(row.begin() + begin, row.begin() + end, value);
}

void makeHead(ChannelGrid& notes, int channel, int position) {
    const int cell = notes.valueOr(channel, position, kEmptyCell);
    if (cellClass(cell) == CellClass::Continuation)
        notes.set(channel, position, static_cast<std::int16_t>(cell - kContinuation));
}

} // namespace velmora
