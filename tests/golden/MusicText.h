// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/ScoreSetup.h"
#include "score/Score.h"
#include "sound/SetupState.h"

#include <array>
#include <string_view>

namespace velmora {

/// Notes of one channel, from left to right. A length is positions and holds until the next one:
///
///     c4:4  f#4  bb3   a note; middle C is c4
///     g3/min7          struck as a chord of that type
///     snare:4          a stroke on a percussion channel
///     r:4              rest
///     _:4              the note before goes on
///     |                bar line; it must fall on a multiple of the bar
struct VoiceText {
    std::string_view channel; ///< "0t" or "3b" with its clef, "10" for percussion; blank for no voice
    std::string_view notes;
};

/// A piece of music as a table's row has it.
struct MusicText {
    int upper = 4, lower = 4;
    int steps = 16;             ///< positions of a bar
    std::string_view key = "C"; ///< as `Key::word`, or "auto"
    std::array<VoiceText, 5> voices{};
};

/// The music on the grid, and what its panels say. A text that can't be read is an `std::invalid_argument`.
struct TypedMusic {
    explicit TypedMusic(const MusicText& text);

    Score score;
    SetupState meter;
    notation::ScoreSetup setup;
};

} // namespace velmora
