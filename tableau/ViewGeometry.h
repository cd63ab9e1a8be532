// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/UndoHistory.h"

namespace velmora {

struct Score;
struct ViewState;

// How much of the Score the Tableau shows, and where scrolling takes it. Lengths are pixels.

/// Columns and rows for a window @p windowWidth wide whose `Picmain` is @p picmainHeight high; the view then
/// moves as far as it must to end within the Score. It never begins before position 0 or above row 0.
void resizeView(ViewState& view, int windowWidth, int picmainHeight, int numNotes);

/// A range of a scroll bar. Its value names the middle of the view.
struct ScrollRange {
    int minimum = 0;
    int maximum = 0;
    int page = 1; ///< length of the thumb, in the same unit
};
/// `HScroll1` goes two views past the end of the song.
[[nodiscard]] ScrollRange columnRange(const ViewState& view, int songEnd);
/// `VScroll1`, for a `MusicBox` of that height: to where the last row stands at its foot.
[[nodiscard]] ScrollRange rowRange(const ViewState& view, int musicBoxHeight);

[[nodiscard]] int columnValue(const ViewState& view); ///< of `HScroll1` for where the view is
[[nodiscard]] int rowValue(const ViewState& view);    ///< of `VScroll1` likewise

/// `HScroll1` changed to @p value.
void scrollToColumn(ViewState& view, int value, int numNotes);
/// `VScroll1` changed to @p value.
void scrollToRow(ViewState& view, int value);

/// `ViewTopRow` for a score that has been opened: where it is, if a note begins within what is seen of the
/// view; otherwise just so far away that the first one does. A score whose notes all begin further on is seen
/// likewise.
[[nodiscard]] int topRowForNotes(const ViewState& view, const Score& score, int musicBoxHeight);

/// Moves the view to the notes of which none is in it. False if there are some, and nothing is moved.
bool showNotes(ViewState& view, const UndoHistory::Changed& notes, int numNotes, int musicBoxHeight);

/// `ViewTopRow` with which @p row stands at @p y of `MusicBox`, as far as there are rows above and below.
[[nodiscard]] int topRowKeeping(const ViewState& view, int row, int y, int musicBoxHeight);

/// From 5 to 24 pixels: how high a row is after the wheel has turned by so many notches. One that is outside
/// of that comes back by the other way only.
[[nodiscard]] int zoomedLineHeight(int lineHeight, int notches);

/// The value of `HScroll1` for a press or drag at @p place along the rail `Label10`.
[[nodiscard]] int railValue(const ViewState& view, int songEnd, int place, int length);

} // namespace velmora
