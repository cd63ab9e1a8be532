// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/NoteGrid.h"
#include "keyboard/PhraseMeter.h"
#include "keyboard/PlayedNote.h"

#include <span>
#include <vector>

namespace velmora {

struct Pulse;

/// A played note on a grid. Ticks count from beat 0 of the pulse.
struct GridNote {
    int start = 0;
    int length = 0; ///< at least a step
    std::uint8_t note = 60;
    std::uint8_t velocity = 100;
    std::uint8_t program = 0;

    [[nodiscard]] int end() const { return start + length; }
    bool operator==(const GridNote&) const = default;
};

enum class NoteLengths : std::uint8_t {
    Legato,  ///< each to the next; only a silence of a beat or more stays one
    AsPlayed ///< to the nearest step
};

/// The coarsest grid that keeps what was played apart, as the likeliest reading of it goes.
[[nodiscard]] NoteGrid simplestGrid(std::span<const PlayedNote> notes, const Pulse& pulse, PhraseMeter meter);

/// @param notes in the order of their onsets
/// @return in the same order; notes of one place and pitch are one note
[[nodiscard]] std::vector<GridNote> quantise(std::span<const PlayedNote> notes, const Pulse& pulse,
                                             PhraseMeter meter, NoteGrid grid, NoteLengths lengths);

[[nodiscard]] std::vector<double> onsetsOf(std::span<const PlayedNote> notes);

} // namespace velmora
