// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velmora {

/// What the onsets of notes are brought to, from coarse to fine.
enum class NoteGrid : std::uint8_t {
    Quarter,
    Eighth,
    EighthTriplet,
    Sixteenth,
    SixteenthTriplet,
    ThirtySecond
};

/// Ticks of a quarter: every grid has whole ones.
inline constexpr int kTicksPerQuarter = 24;

struct NoteGridRow {
    NoteGrid grid;
    std::string_view caption;
    int ticks; ///< of a step
};

inline constexpr std::array kNoteGrids{
    NoteGridRow{NoteGrid::Quarter, "1/4 Note", 24},
    NoteGridRow{NoteGrid::Eighth, "1/8 Note", 12},
    NoteGridRow{NoteGrid::EighthTriplet, "1/8 Triplet", 8},
    NoteGridRow{NoteGrid::Sixteenth, "1/16 Note", 6},
    NoteGridRow{NoteGrid::SixteenthTriplet, "1/16 Triplet", 4},
    NoteGridRow{NoteGrid::ThirtySecond, "1/32 Note", 3},
};
static_assert(kNoteGrids.size() == 6);

[[nodiscard]] constexpr const NoteGridRow& rowOf(NoteGrid grid) {
    return kNoteGrids[static_cast<std::size_t>(grid)];
}

} // namespace velmora
