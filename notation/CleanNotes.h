// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/CleanInk.h"

namespace velmora::notation {

/// Heads, stems, flags, dots, accidentals, ledger lines and rests of one staff.
void drawNotes(CleanInk& ink, const CleanLine& line, int staff, const CleanMusic& music);

/// Beams of one staff; before the notes, whose stems they end.
void drawBeams(CleanInk& ink, const CleanLine& line, int staff, const CleanMusic& music);

/// Ties of one staff, also those that come from the line before or go on to the next.
void drawTies(CleanInk& ink, const CleanLine& line, int staff, const CleanMusic& music);

/// Names of drums above a percussion staff: whole where one first comes up, short at every further change.
void drawDrumNames(CleanInk& ink, const CleanLine& line, int staff, const CleanMusic& music);

/// Slurs over the notes of one syllable in the first staff.
/// @param slurs numbers of the first and the last note, ascending
void drawSlurs(CleanInk& ink, const CleanLine& line, const std::vector<std::pair<int, int>>& slurs,
               const CleanMusic& music);

/// The 3 of triplets; after the notes, over which brackets stand.
void drawTriplets(CleanInk& ink, const CleanLine& line, int staff, const CleanMusic& music);

/// "8va" with its dashes; last of all that belongs to the notes.
void drawOctaves(CleanInk& ink, const CleanLine& line, int staff, const CleanMusic& music);

/// Where the stem of @p sign stands, in spaces from its column.
[[nodiscard]] double stemOf(const CleanSign& sign, const CleanMusic& music);

} // namespace velmora::notation
