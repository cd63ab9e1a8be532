// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Numbers.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace velmora {

class SettingsStore;
struct ChordSteps;
struct Score;
struct SetupState;
struct Workspace;

// What the fields of the setup toolbar do to the Score and to their own record. None of it shows anything;
// who watches the workspace does.

/// As `fieldNumber`, for a count of notes, which may be larger.
[[nodiscard]] std::optional<std::int32_t> fieldCount(std::string_view text);

/// What the ten positions of `VScroll1` and the six of `VScroll2` give.
inline constexpr std::array<std::int16_t, 10> kBeats{1, 2, 3, 4, 5, 6, 8, 10, 12, 16};
inline constexpr std::array<std::int16_t, 6> kNoteValues{1, 2, 4, 8, 16, 32};
/// From a value, which need not be in the list, so many entries up (or down, if negative), as far as it goes.
[[nodiscard]] std::int16_t stepped(std::span<const std::int16_t> list, std::int16_t value, int steps);

/// `NoteX` and `TxtMeter` change: they take the value, and `TxBeats` follows from both. In what they do with
/// a product above 16 that is no multiple of 16 the two differ, and that is meant. True if `TxBeats` changed.
bool NoteX_Change(Workspace& workspace, std::int16_t value);
bool TxtMeter_Change(Workspace& workspace, std::int16_t value);
/// `TxBeats` change: `NotesPerMeasure` is the value.
void TxBeats_Change(Workspace& workspace, std::int16_t value);

void setTempo(Workspace& workspace, std::int16_t tempo);

/// `LblTempo`: 0 to 500 in steps of 4, from a place along the bar.
[[nodiscard]] std::int16_t tempoAt(int offset, int barWidth);
/// `lblVolume`: 0 to 127 from a place along the bar, but the start of the bar gives 127.
[[nodiscard]] std::int16_t volumeAt(int offset, int barWidth);

/// The velocity, and the level, of the active channel.
void setVelocity(Workspace& workspace, std::int16_t value);
/// Every position of `Volume` of the active channel.
void fillVolume(Workspace& workspace, std::int16_t value);
/// The four controllers of the active channel into every position of its effect arrays. Nothing while the
/// toolbar is closed.
void fillEffects(Workspace& workspace);

/// The usual channel change: makes the channel the active one and, while the toolbar is open, gives it the
/// toolbar's effects.
void chooseChannel(Workspace& workspace, int channel);
/// `TrackSel` of the toolbar: the same, and its button alone is lit, and it takes the chosen instrument.
void TrackSel_Click(Workspace& workspace, const SettingsStore& settings, int channel);
/// Gives the chosen instrument, or if none is yet that of the settings, to the active channel and to its
/// notes within the selection, which "Undo Last note" brings back.
void applyInstrument(Workspace& workspace, const SettingsStore& settings);

/// `Combo3`: the chord list's item, and its steps. The hint beside the other list stays.
void Combo3_Click(SetupState& setup, ChordSteps& chords, int item);
/// `Ch`: a chord for the whole melody channel, or none, whether notes stand there or not.
/// A tick also has a right click give notes the chord of the list.
void Ch_Click(Workspace& workspace, int channel, bool ticked);

/// `Text3`: the height of a row of `MusicBox`, within its bounds.
void Text3_Change(Workspace& workspace, std::int16_t height);

/// "Add new notes" and "Subtract notes": false, and nothing changed, if no position would be left or there
/// would be more than memory is meant for. Notes that are cut off can be brought back with "Undo Last note".
bool setScoreLength(Workspace& workspace, std::int64_t numNotes);

} // namespace velmora
/// What the chord list stores: the type of its chord; in classic manner its index, one below, which is meant.
[[nodiscard]] std::int16_t listedChord(const Workspace& workspace);
