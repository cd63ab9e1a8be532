// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"
#include "score/ViewState.h"

#include <algorithm>

namespace velmora {

/// A run of cells in view: a head or a continuation, and the continuations behind it.
struct NoteSpan {
    int column;   ///< position of its first cell
    int cells;    ///< how many, cut at the last column painted
    int row;      ///< of the first cell
    bool hasHead; ///< false where the head has been scrolled out, and for a continuation after an empty cell
};

/// Calls @p paint with each span of the channel between the first and the last column of the view.
template<typename Paint>
void forEachSpan(const Score& score, const ViewState& view, int channel, Paint paint) {
    const auto cells = score.NoteCell.row(channel);
    const int last = std::min(view.ViewLastColumn, static_cast<int>(cells.size()) - 1);
    const auto cell = [&](int column) { return cells[static_cast<std::size_t>(column)]; };
    for (int column = std::max(view.ViewFirstColumn, 0); column <= last;) {
        const int first = column++;
        if (cellClass(cell(first)) == CellClass::Empty)
            continue;
        while (column <= last && cellClass(cell(column)) == CellClass::Continuation)
            ++column;
        paint(
            NoteSpan{first, column - first, cellRow(cell(first)), cellClass(cell(first)) == CellClass::Head});
    }
}

} // namespace velmora
