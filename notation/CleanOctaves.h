// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/WrittenScore.h"

#include <span>
#include <vector>

namespace velmora::notation {

/// Where all notes of a staff are written an octave nearer.
struct OctaveRange {
    int from, to; ///< positions; `to` is behind the last
    int octaves;  ///< above 0 for "8va", below for "8vb"
};

/// The place of a head on its staff, in steps of the scale from the middle line; 0 for a drum.
[[nodiscard]] int placeOnStaff(const Pitch& pitch, StaffClef clef);

/// Finds the ranges of a staff. Beyond three ledger lines notes are written an octave nearer, and what stands
/// under one beam with them. Ranges that are less than two beats apart are one where what is between them
/// can be read so, and one of two kinds takes the whole of it.
/// @param notes of the staff, by their positions
[[nodiscard]] std::vector<OctaveRange> findOctaves(std::span<const Written* const> notes, StaffClef clef,
                                                   const WrittenScore& score);

} // namespace velmora::notation
