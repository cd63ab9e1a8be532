// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/WrittenScore.h"

#include <array>
#include <vector>

namespace velmora {
struct Score;
} // namespace velmora

namespace velmora::notation {

/// A note of the grid: a head and its continuations.
struct GridNote {
    int start;
    int end; ///< behind its last cell
    int row;
    int chord;   ///< type, 0 for none
    int drumKey; ///< of a percussion channel, -1 for none
};

/// The notes of a channel whose heads stand from @p first on before @p end, cut there. A continuation without
/// a head in that range is no note.
[[nodiscard]] std::vector<GridNote> notesOf(const Score& score, int channel, int first, int end);

/// The MIDI note of a row; rows below the lowest are taken for it.
[[nodiscard]] int midiNoteOf(int row);

/// The further notes of a chord type, in semitones, as they sound.
struct ChordTones {
    std::array<int, 3> semitones{};
    int count = 0;
};
[[nodiscard]] ChordTones chordTones(int chord);

} // namespace velmora::notation
