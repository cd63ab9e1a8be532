// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/EditState.h"

#include <cstdint>

namespace velmora {

struct Manners;
struct ViewState;
struct Workspace;

// The Melody Maker: takes a motif and stamps it along the score at a fixed interval. What it stamps stands in
// the copy buffers, whose indices are those of the Score. Nothing here paints; both Tableaux are to be
// painted anew after it.

/// What the fields of a cycle stand for.
struct Cycle {
    std::int16_t total; ///< `TotalNotes`
    std::int16_t beats; ///< `CycleBeats`
    std::int16_t notes; ///< `CycleNotes`
    bool operator==(const Cycle&) const = default;
};
/// A motif of 8 notes, once in 12, over 60: four of each twelve stay silent.
inline constexpr Cycle kWorkedExample{60, 12, 8};
/// The fields as they count: in careful manner a blank one stands for that of the worked example; in classic
/// one for the length or the loop for 8, and the notes for none.
[[nodiscard]] Cycle cycleOf(const EditState& edit, const Manners& manners);

/// Takes `CycleNotes` positions from @p start on out of the ticked channels of a range, and stamps them from
/// `PlayMark` + @p start over `TotalNotes` positions, one every `CycleBeats`. The gaps stay as they were.
/// @param start is -1 afterwards; with `SelectStart` in its place the selection goes
void CopyMelody(Workspace& workspace, int& start, int firstChannel, int lastChannel);
/// The stamping alone, of what the buffers hold, from `PlayMark` on, which stays.
void CopyRepeat(Workspace& workspace, int firstChannel, int lastChannel);

/// "Create Melody". The motif starts at the column that @p txtStart counts from 1; in classic manner one to
/// the right of that, and of what the field's own rule selects, which is meant.
void createMelody(Workspace& workspace, int txtStart);
/// The Score Editor's Duplicate, from `SelectStart` on: the channels from 0 with "Melody", else from 8; up to
/// 12 with Single Note Effects, else 7.
void duplicateMelody(Workspace& workspace);

// Rules of the fields

/// `TxtRep` and `TxtNt`, or `Txtbeats` and `Txtrepeat`: whichever was changed, no more notes are playable
/// than there are in the loop. What is blank in careful manner stays so.
void takeCycle(EditState& edit, const Manners& manners, int notesInLoop, int playableNotes);
/// `txtStart`: selects the position before the number, and the melody (`Txtlen`) grows to reach it.
void takeStart(Workspace& workspace, int txtStart);

/// The values of a field's scroll bar.
struct FieldRange {
    int least;
    int most;
};
/// What a click on a field's picture, @p width wide, makes of its value: 10 less in the left half, else 10
/// more, within the range.
[[nodiscard]] int steppedByPicture(int value, int x, int width, FieldRange range);

/// How far `vcrStart` goes: by a measure at its arrows, by ten beside its slider.
struct FieldSteps {
    int small;
    int large;
};
[[nodiscard]] FieldSteps startSteps(const Score& score);

/// `Chkmelody` and `Chkperc` tick or untick all boxes of their channels.
void pickMelody(EditState& edit, bool ticked);
void pickPercussion(EditState& edit, bool ticked);

} // namespace velmora
