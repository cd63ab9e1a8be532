// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Numbers.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace velmora {

struct ChordSteps;
struct Score;
struct SetupState;
struct Workspace;

// What the fields of the setup toolbar do to the Score and to their own record. None of it shows anything.

/// As `fieldNumber`, for a count of notes, which may be larger.
[[nodiscard]] std::optional<std::int32_t> fieldCount(std::string_view text);

/// What the ten positions of `VScroll1` and the six of `VScroll2` give.
inline constexpr std::array<std::int16_t, 10> kBeats{1, 2, 3, 4, 5, 6, 8, 10, 12, 16};
inline constexpr std::array<std::int16_t, 6> kNoteValues{1, 2, 4, 8, 16, 32};
/// From a value, which need not be in the list, so many entries up (or down, if negative), as far as it goes.
[[nodiscard]] std::int16_t stepped(std::span<const std::int16_t> list, std::int16_t value, int steps);

/// `NoteX` and `TxtMeter` change: they take the value, and `TxBeats` follows from both. In what they do with
/// a product above 16 that is no multiple of 16 the two differ, and that is meant. True if `TxBeats` changed.
bool NoteX_Change(SetupState& setup, Score& score, std::int16_t value);
bool TxtMeter_Change(SetupState& setup, Score& score, std::int16_t value);
/// `TxBeats` change: `NotesPerMeasure` is the value.
void TxBeats_Change(SetupState& setup, Score& score, std::int16_t value);

/// `LblTempo`: 0 to 500 in steps of 4, from a place along the bar.
[[nodiscard]] std::int16_t tempoAt(int offset, int barWidth);
/// `lblVolume`: 0 to 127 from a place along the bar, but the start of the bar gives 127.
[[nodiscard]] std::int16_t volumeAt(int offset, int barWidth);

/// The velocity, and the level, of the active channel.
void setVelocity(Score& score, SetupState& setup, std::int16_t value);
/// Every position of `Volume` of the active channel.
void fillVolume(Score& score, std::int16_t value);
/// The four controllers of the active channel into every position of its effect arrays. Nothing while the
/// toolbar is closed.
void fillEffects(Score& score, const SetupState& setup);

/// `Combo3`: the chord list's item, and its steps. The hint beside the other list stays.
void Combo3_Click(SetupState& setup, ChordSteps& chords, int item);
/// `Ch`: a chord for the whole melody channel, or none, whether notes stand there or not.
void Ch_Click(Score& score, SetupState& setup, int channel, bool ticked);

/// `TrackSel`: the channel's button alone is lit.
void showOnly(Score& score, int channel);

[[nodiscard]] std::int16_t lineHeightWithin(std::int16_t height);

/// "Add new notes" and "Subtract notes": false, and nothing changed, if no position would be left or there
/// would be more than memory is meant for. Notes that are cut off can be brought back with "Undo Last note".
bool setScoreLength(Workspace& workspace, std::int64_t numNotes);

} // namespace velmora
