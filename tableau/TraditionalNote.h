// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/NoteGlyphs.h"
#include "score/ViewState.h"

#include <optional>

namespace velmora {

// How a span of cells is written in the traditional notation of the Tableau.

inline constexpr int kHeadInRow = 5; ///< from the top of a row to the middle of a head

/// `GlyphDrop`: pixels from the left of a span to its head. None if a measure has no cells or more than 16:
/// then the last note's stands.
[[nodiscard]] std::optional<int> glyphDrop(int notesPerMeasure, int cells);
/// The same for the note itself: an accidental needs room, and no head leaves its span to the left.
[[nodiscard]] int headOffset(int glyphDrop, std::optional<Accidental> accidental);

/// The value that comes nearest to the span's share of the measure; none for a measure of nothing.
[[nodiscard]] std::optional<NoteValue> noteValue(int notesPerMeasure, int cells);

/// What the name of the row ends in.
[[nodiscard]] std::optional<Accidental> accidentalOf(int row);

/// @param y of the middle of the head, on `MusicBox`
[[nodiscard]] Stem stemOf(int y, int topRow, int lineHeight, bool bassStaff);
[[nodiscard]] inline Stem stemOf(int y, const ViewState& view, bool bassStaff) {
    return stemOf(y, view.ViewTopRow, view.Line_Height, bassStaff);
}

} // namespace velmora
