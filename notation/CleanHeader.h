// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/CleanInk.h"

namespace velmora::notation {

/// How much room clef, key and time take at a line's begin, in spaces.
[[nodiscard]] double headerWidth(const WrittenScore& score, bool withTime);

/// Staff lines, clef, key and time signature of a staff.
void drawStaff(CleanInk& ink, const CleanLine& line, const WrittenScore& score, int staff);

/// Where a staff's lines begin and end, in spaces from its top: those of percussion have only the middle one.
[[nodiscard]] double staffTop(const Staff& staff);
[[nodiscard]] double staffBottom(const Staff& staff);

/// Bar numbers, and over the very first line the tempo.
void drawAbove(CleanInk& ink, const CleanLine& line, const WrittenScore& score);

/// Title and composer of a page.
/// @return the y below them
double drawTitle(EngravedPage& page, const CleanStyle& style, int number);

/// The margin of a page at its sides, in pixels.
[[nodiscard]] double sideMargin(const ScoreSetup& setup);
[[nodiscard]] double topMargin(const ScoreSetup& setup);
[[nodiscard]] double bottomMargin(const ScoreSetup& setup);

} // namespace velmora::notation
