// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/GridNotes.h"
#include "notation/Spelling.h"

#include <vector>

namespace velmora::notation {

/// A note of the grid with its heads: the written one, then those of its chord.
struct SpelledHeads {
    GridNote note{};
    std::vector<Pitch> pitches; ///< without signs
    std::vector<SpelledNote> spelled;
};

/// Spells the notes of a voice by the key, each with a look at the one that follows, and places them on a
/// staff of
/// @p clef: four pixels a diatonic step, with no sign yet.
[[nodiscard]] std::vector<SpelledHeads> spellVoice(const std::vector<GridNote>& notes, StaffClef clef,
                                                   int key);

} // namespace velmora::notation
