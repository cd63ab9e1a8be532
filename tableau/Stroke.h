// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/ViewState.h"
#include "tableau/TableauScreen.h"

#include <cstdint>

namespace velmora {

/// The column of a pixel, rounded down, so that nothing left of a box falls into its first column.
[[nodiscard]] constexpr int columnAt(int x) {
    return x < 0 ? -1 : x / kColumnWidth;
}

/// The pointer while no button is down.
[[nodiscard]] constexpr Pointer pointerAtRest(Mouse mode) {
    return mode == Mouse::Cursor ? Pointer::Cursor : mode == Mouse::Select ? Pointer::Select : Pointer::Arrow;
}

/// From a press on a Tableau to its release. Columns and rows are those of the view; they follow when the
/// view is scrolled in between.
struct Stroke {
    /// What the press began: a note, the sound of one that stands there, what `RightClickMode` says, a
    /// play-from mark, a selection.
    enum class Kind : std::uint8_t { None, Draw, Listen, Erase, Mark, Select };

    bool PressActive = false;
    int ViewCol = 0;  ///< of the latest press or release
    int PressRow = 0; ///< of the press
    int PressCol = 0; ///< first column of the note being drawn
    int DragCol = 0;
    int DragColPrev = -1; ///< as of the latest band

    Kind kind = Kind::None;
    Box box = Box::MusicBox;
    MouseButton button = MouseButton::None;
    int channel = 0;
    int rightMost = 0;   ///< right-most column reached
    int firstColumn = 0; ///< `ViewFirstColumn` and `ViewTopRow` that the columns and rows refer to
    int topRow = 0;
    int lastX = 0;             ///< where the mouse was last
    bool keptForUndo = false;  ///< one stroke is one step to undo
    bool onPressRow = true;    ///< on `Beatbox` the pencil is put down when the mouse leaves the row
    bool effectsHeard = false; ///< Single Note Effects have sounded a note
};

} // namespace velmora
