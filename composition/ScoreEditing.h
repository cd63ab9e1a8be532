// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/BlockChannels.h"

#include <functional>

namespace velmora {

// Block editing: whole positions of one channel or of several, through the copy buffers. Nothing here paints;
// after every command both Tableaux are to be painted anew. None but `undoLast` looks for the song's end.
//
// All layers go by position: the effects of p stand at index p + 1, the chords of channel c in row c + 1, in
// the buffers as in the Score. Cells outside the arrays are passed over.

/// Takes positions `SelectStart` to `SelectEnd` of a command's channels into the buffers.
void CopySelectedArea(Workspace& workspace, BlockCommand command);

/// Copies `CycleNotes` + 1 positions from `SelectStart` on, however many were selected; that is meant. False,
/// and nothing done, without a selection.
bool copyIt(Workspace& workspace);
/// Copies the selection, and moves what follows left by `SelectSpan`: one position of it stays behind, which
/// is meant. False, and nothing done, without a selection.
bool CutBut_Click(Workspace& workspace);
/// Writes the buffers over the positions from `PlayMark` on. @p ViewCol is the column of the mouse's latest
/// press or release: the selection's end takes it.
void PasteBut_Click(Workspace& workspace, int ViewCol);
/// The same, between the positions: what stands there moves right first.
void PasteIntoBut_Click(Workspace& workspace, int ViewCol);
/// Moves what stands from `PlayMark` on right by @p n positions, and clears those. What falls off the right
/// end is lost without a word. Keeps nothing for undo.
void InsertSpaces(Workspace& workspace, int n, int ViewCol);
/// `InsertSpaces` of `Txtspc` positions, none for a number below 0.
void InsertColumnBut_Click(Workspace& workspace, int ViewCol);

/// Stamps the first `CycleNotes` + 1 positions of the score from `PlayMark` on.
/// @param pressCorner presses and releases the left button at (1, 1) of `MusicBox`, in Draw mode. A head may
/// appear there; that is meant. It takes no undo step of its own.
void CopyNotes(Workspace& workspace, int firstChannel, int lastChannel,
               const std::function<void()>& pressCorner);
/// The Duplicate button: `CopyNotes` from channel 0 with "Edit All Tracks", else from 8; up to 12 with Single
/// Note Effects, else 7. With neither there is no channel, which is meant.
void duplicateNotes(Workspace& workspace, const std::function<void()>& pressCorner);

} // namespace velmora
