// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <span>

namespace velmora {

class StepReader;
class StepWriter;

/// The two sides of a change.
enum class Side : std::uint8_t { Before, After };

/// Where a row of cells differs from what it was: the number of runs, then each with the cells of both
/// sides, of which equal ones are written once. Few bytes for notes, and few instructions for noise.
/// @param first index of the first cell of both rows, which are equally long
/// @return how many runs there are; with none nothing is written
std::size_t writeRuns(StepWriter& to, std::span<const std::int16_t> before,
                      std::span<const std::int16_t> after, int first);

/// Cells from `first` on, before `end`.
struct CellRange {
    int first = 0;
    int end = 0;
};
/// Gives a row the cells of one side. It is as long as the runs reach.
/// @return from the first to the last cell that was written
CellRange readRuns(StepReader& from, std::span<std::int16_t> row, Side side);

} // namespace velmora
