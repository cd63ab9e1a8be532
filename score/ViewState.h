// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>

namespace velmora {

/// What a press of the right mouse button on a Tableau does; the numbers are those of `RightClickMode`.
enum class RightClick : std::int16_t { Erase = 0, Menu = 1, Polyphonic = 2, Tips = 4 };

/// Which part of the Score the composing window shows, what is marked in it, and what the mouse does there. Columns
/// are positions.
struct ViewState {
    int ViewFirstColumn = 0; ///< position at the left edge
    int ViewLastColumn = 99; ///< last position painted
    int ViewColumns = 99;    ///< columns in view less one
    int SelectStart = -1;    ///< -1 for no selection
    int SelectEnd = -1;
    int PlayMark = 0; ///< the play-from mark; also where a pause leaves the position

    RightClick RightClickMode = RightClick::Erase;
    bool NoteEffectsOn = false; ///< the Single Note Effects toolbar is the active one
};

} // namespace velmora
