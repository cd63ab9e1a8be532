// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Numbers.h"

#include <array>
#include <cstddef>
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

/// What the toolbar's sound sliders stand for: the level, which notes have as their volume, and the four
/// controllers, which they have as effects.
enum class SoundValue : std::uint8_t { Volume, Modulation, Pan, Reverb, Chorus };
inline constexpr std::size_t kSoundValues = 5;

/// The slider of a controller was moved: its value on the active channel, and in careful manner every
/// position of its effect array, and of that alone.
void setController(Workspace& workspace, SoundValue controller, std::int16_t value);
/// The four controllers of the active channel into every position of its effect arrays. Nothing while the
/// toolbar is closed.
void fillEffects(Workspace& workspace);

/// What a slider shows.
struct ShownSound {
    std::int16_t value = 0;
    bool varies = false; ///< other notes of the channel have another
    bool operator==(const ShownSound&) const = default;
};
/// Of the active channel, in the order of `SoundValue`: the channel's own values; in careful manner those of
/// the note at the play mark, or else the next one, or else the first.
[[nodiscard]] std::array<ShownSound, kSoundValues> shownSound(const Workspace& workspace);

/// The usual channel change: makes the channel the active one. In careful manner what is chosen for new notes
/// becomes the channel's instrument; in classic, while the toolbar is open, the channel takes the toolbar's
/// effects.
void chooseChannel(Workspace& workspace, int channel);
/// `TrackSel` of the toolbar: the same, and its button alone is lit; in classic manner it takes the chosen
/// instrument, and so do its notes within the selection.
void TrackSel_Click(Workspace& workspace, const SettingsStore& settings, int channel);
/// Gives the chosen instrument, or if none is yet that of the settings, to the active channel and to its
/// notes within the selection, which "Undo Last note" brings back.
void applyInstrument(Workspace& workspace, const SettingsStore& settings);

/// `Combo3`: the chord list's item, and its steps. The hint beside the other list stays.
void Combo3_Click(SetupState& setup, ChordSteps& chords, int item);
/// What the chord list stores: the type of its chord; in classic manner its index, one below, which is meant.
[[nodiscard]] std::int16_t listedChord(const Workspace& workspace);
/// `Ch`: a chord for the whole melody channel, or none, whether notes stand there or not.
/// A tick also has a right click give notes the chord of the list.
void Ch_Click(Workspace& workspace, int channel, bool ticked);

/// `Text3`: the height of a row of `MusicBox`, within its bounds.
void Text3_Change(Workspace& workspace, std::int16_t height);

/// "Add new notes" and "Subtract notes": false, and nothing changed, if no position would be left or there
/// would be more than memory is meant for. Notes that are cut off can be brought back with "Undo Last note".
bool setScoreLength(Workspace& workspace, std::int64_t numNotes);

} // namespace velmora
