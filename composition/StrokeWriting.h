// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>

namespace velmora {

struct Manners;
struct Score;

// What strokes do to the cells of one channel. Positions outside the Score are passed over.

/// A note as a stroke draws it: a head at `first` and continuations up to `last`.
struct DrawnNote {
    int channel = 0;
    int row = 0;
    int first = 0;
    int last = 0;
};

/// The cells that a note covers.
struct NoteCells {
    int first = 0;
    int last = 0;
    bool operator==(const NoteCells&) const = default;
};

/// The note that the cell at @p position is of; that position alone where it is empty.
[[nodiscard]] NoteCells noteAt(const Score& score, int channel, int position);

/// Writes head and continuations with the channel's instrument; an older note that starts before is cut
/// there.
void writeNote(Score& score, const DrawnNote& note);
/// What remains of an older note after @p last becomes a note of its own.
void splitAfter(Score& score, int channel, int last);

/// Gives a note its volume where playing reads it: of the active channel one after the head, of all others at
/// the head itself. Where notes touch, both leave the other's alone as far as that goes.
void giveVolume(Score& score, int channel, std::int16_t volume, NoteCells cells);

/// Whether a right click finds something here. A head on row 0 counts as empty; that is meant.
[[nodiscard]] bool answersRightClick(const Score& score, int channel, int position);
/// The first position at or to the left of @p position that is no continuation; -1 if there is none.
[[nodiscard]] int headOf(const Score& score, int channel, int position);
/// The same; on a melody channel each continuation passed loses its chord and effects.
int walkToHead(Score& score, int channel, int position);
/// Empties the head and the continuations after it. Melody loses chord and effects with it, percussion its
/// entries of `BeatMemo`.
void eraseNote(Score& score, int channel, int head);

/// The four effects of a position as `ClearAll` leaves them; the volume stays.
void resetEffects(Score& score, int channel, int position);
/// Gives @p position, and the head of the note there, a chord; where types are stored, the whole note, since
/// playing asks a note's last cell which chord is to end. Percussion has none. True if any changed.
bool setChord(Score& score, const Manners& manners, int channel, int position, int chord);

/// Copies five cells of a channel, from @p position on, to the start of the copy buffers.
void copyFiveCells(Score& score, int channel, int position);

} // namespace velmora
