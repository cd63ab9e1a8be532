// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/KeptNotes.h"
#include "keyboard/NoteGrid.h"
#include "keyboard/Quantiser.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

struct PlayedNote;
struct Phrase;
struct Workspace;

inline constexpr std::string_view kKeepName = "Keep what I just played";

/// How the user wants a phrase kept.
struct KeepChoice {
    NoteGrid grid = NoteGrid::Sixteenth;
    NoteLengths lengths = NoteLengths::Legato;
    int channel = 0; ///< of melody
};

/// A phrase as it would stand in the Score.
struct KeepPlan {
    std::vector<KeptNote> notes; ///< in the order of their heads
    KeepChoice choice;
    int mark = 0;             ///< where the first begins
    int ticksPerPosition = 6; ///< of the Score, as it will be
    double firstBeat = 0;     ///< of the pulse, where the first begins
    /// A Score without notes takes its steps from the phrase: its tempo, and positions in a measure.
    struct Steps {
        std::int16_t tempo = 100;
        std::int16_t notesPerMeasure = 16;
        bool operator==(const Steps&) const = default;
    };
    std::optional<Steps> steps;
    int withoutRoom = 0; ///< notes for which no channel is free
    int pastEnd = 0;     ///< notes past the end of a Score that doesn't grow
    int replaced = 0;    ///< older notes that make room

    /// One past the last position.
    [[nodiscard]] int end() const;
};

/// The grids that fall on positions: all of them in a Score without notes, whose steps can be chosen.
[[nodiscard]] std::vector<NoteGrid> gridsFor(const Workspace& workspace);
/// What the user is offered first: the simplest grid that the Score has, and the active channel, or else the
/// first.
[[nodiscard]] KeepChoice firstChoice(const Workspace& workspace, const Phrase& phrase);

/// The phrase from the play mark on. Notes that begin together, or sound on, go to further melody channels
/// that are free there.
[[nodiscard]] KeepPlan planKeep(const Workspace& workspace, const Phrase& phrase, const KeepChoice& choice);
/// What the plan leaves out or replaces, in words; blank for nothing.
[[nodiscard]] std::string planText(const KeepPlan& plan);
/// Writes it, as one step of undo.
void keepPlan(Workspace& workspace, const KeepPlan& plan);

/// A recording as a score in which notes stand as they were played: on positions so short that nothing is
/// moved by more than one, at the speed of the take. More notes at a time than there are channels cut the
/// one that has sounded longest.
/// @return the reason in words if it failed, an old file being untouched; blank otherwise
[[nodiscard]] std::string saveNotesAsPlayed(const std::filesystem::path& path,
                                            std::span<const PlayedNote> notes);

} // namespace velmora
