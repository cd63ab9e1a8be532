// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"

#include <cstdint>
#include <span>

namespace velmora {

// Whole ranges of one row at a time. As with single cells, whatever lies outside a row is passed over.

/// Copies @p count cells from index @p first of one row to index @p at of another.
void copyCells(std::span<const std::int16_t> from, int first, std::span<std::int16_t> to, int at, int count);
/// From @p first up to @p last, each cell takes the value of the one @p by further right.
void pullCells(std::span<std::int16_t> row, int first, int last, int by);
/// From @p last down to @p first, each cell takes the value of the one @p by further left.
void pushCells(std::span<std::int16_t> row, int first, int last, int by);
/// Gives @p count cells from index @p first on one value.
void fillCells(std::span<std::int16_t> row, int first, int count, std::int16_t value);
/// Makes a continuation at this position the head of a note of its own.
void makeHead(ChannelGrid& notes, int channel, int position);

} // namespace velmora
