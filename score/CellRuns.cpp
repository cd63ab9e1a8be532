// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/CellRuns.h"

#include "score/StepBytes.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace velmora {

namespace {
using Cells = std::span<const std::int16_t>;

constexpr std::size_t kBlock = 32;
/// A run goes on over so many equal cells, which cost less than a new one.
constexpr std::size_t kGap = 4;
constexpr std::size_t kLeastRepeat = 4; ///< fewer equal cells stand among the others

/// The first index from @p at on where the rows differ, or their size.
std::size_t nextDifference(Cells before, Cells after, std::size_t at) {
    while (at + kBlock <= before.size() &&
           std::memcmp(&before[at], &after[at], kBlock * sizeof(std::int16_t)) == 0)
        at += kBlock;
    while (at < before.size() && before[at] == after[at])
        ++at;
    return at;
}

/// Behind the last difference of the run that begins at @p at.
std::size_t endOfRun(Cells before, Cells after, std::size_t at) {
    std::size_t end = at + 1;
    for (std::size_t i = end; i < before.size() && i - end < kGap; ++i)
        if (before[i] != after[i])
            end = i + 1;
    return end;
}

std::size_t repeatsAt(Cells cells, std::size_t at) {
    std::size_t end = at + 1;
    while (end < cells.size() && cells[end] == cells[at])
        ++end;
    return end - at;
}

/// Groups of equal cells and of unequal ones: the count doubled, plus 1 for equal ones; then the cells.
void writeCells(StepWriter& to, Cells cells) {
    std::size_t begin = 0;
    for (std::size_t at = 0; at < cells.size();) {
        const std::size_t repeats = repeatsAt(cells, at);
        const bool goesOn = at + repeats < cells.size();
        if (repeats < kLeastRepeat && (goesOn || begin < at)) {
            at += repeats;
            continue;
        }
        if (begin < at) {
            to.number((at - begin) * 2);
            to.cells(cells.subspan(begin, at - begin));
        }
        to.number(repeats * 2 + 1);
        to.cells(cells.subspan(at, 1));
        begin = at += repeats;
    }
    if (begin < cells.size()) {
        to.number((cells.size() - begin) * 2);
        to.cells(cells.subspan(begin));
    }
}

void readCells(StepReader& from, std::span<std::int16_t> cells) {
    while (!cells.empty()) {
        const std::size_t head = from.number();
        const auto group = cells.first(head / 2);
        if (head % 2 == 0) {
            from.cells(group);
        } else {
            std::int16_t value = 0;
            from.cells({&value, 1});
            std::ranges::fill(group, value);
        }
        cells = cells.subspan(group.size());
    }
}

void skipCells(StepReader& from, std::size_t count) {
    while (count > 0) {
        const std::size_t head = from.number();
        from.skipCells(head % 2 == 0 ? head / 2 : 1);
        count -= head / 2;
    }
}
} // namespace

std::size_t writeRuns(StepWriter& to, Cells before, Cells after, int first) {
    struct Run {
        std::size_t at;
        std::size_t count;
    };
    std::vector<Run> runs;
    for (std::size_t at = nextDifference(before, after, 0); at < before.size();) {
        const std::size_t end = endOfRun(before, after, at);
        runs.push_back({at, end - at});
        at = nextDifference(before, after, end);
    }
    if (runs.empty())
        return 0;
    to.number(runs.size());
    std::size_t last = 0;
    for (const Run& run : runs) {
        const std::size_t index = run.at + static_cast<std::size_t>(first);
        to.number(index - last);
        to.number(run.count);
        writeCells(to, before.subspan(run.at, run.count));
        writeCells(to, after.subspan(run.at, run.count));
        last = index + run.count;
    }
    return runs.size();
}

CellRange readRuns(StepReader& from, std::span<std::int16_t> row, Side side) {
    CellRange written;
    std::size_t at = 0;
    const std::size_t count = from.number();
    for (std::size_t run = 0; run < count; ++run) {
        at += from.number();
        const std::size_t length = from.number();
        if (run == 0)
            written.first = static_cast<int>(at);
        if (side == Side::After)
            skipCells(from, length);
        readCells(from, row.subspan(at, length));
        if (side == Side::Before)
            skipCells(from, length);
        at += length;
    }
    written.end = static_cast<int>(at);
    return written;
}

} // namespace velmora
