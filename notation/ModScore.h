// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/ScoreSetup.h"
#include "notation/WrittenScore.h"

#include <string>

namespace velmora {
struct Score;
struct SetupState;
} // namespace velmora

namespace velmora::notation {

/// The vertical place of a row on the classic page before the header is added: four pixels a diatonic step,
/// with the few irregularities of the table, which are meant.
[[nodiscard]] int RowToY(int row);

/// `NoteName` of a cell on the classic page, a head or a continuation.
[[nodiscard]] std::string SpellNote(int cell, bool KeyIsFlat);

/// The staves for what the score holds: treble or bass by the mean of a channel's first ten notes, five at
/// most.
[[nodiscard]] StaffChoice AssignStaves(const Score& score, int NotesPerMeasure);

/// The ticked channels as staves: treble by channel, then bass, then percussion.
[[nodiscard]] std::vector<Staff> stavesOf(const StaffChoice& choice);

/// The classic reading.
[[nodiscard]] WrittenScore readClassic(const Score& score, const SetupState& meter, const ScoreSetup& setup);

/// The clean reading: every bar of a staff is filled without gap or overlap, and what it holds can be read
/// back.
[[nodiscard]] WrittenScore readClean(const Score& score, const SetupState& meter, const ScoreSetup& setup);

/// The one that the setup chooses. `NotesPerMeasure` is 1 or more, else nothing is written.
[[nodiscard]] WrittenScore readScore(const Score& score, const SetupState& meter, const ScoreSetup& setup);

} // namespace velmora::notation
