// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/PlayState.h"
#include "score/Score.h"
#include "score/UndoSnapshot.h"
#include "score/ViewState.h"
#include "sound/Chords.h"
#include "sound/Instruments.h"
#include "sound/SetupState.h"
#include "tableau/EditState.h"

#include <optional>
#include <string>

namespace velmora {

class ProgramFolders;
class SettingsStore;

/// The most positions of a score: more than seven hours of music, 128 MB.
inline constexpr int kMostNotes = 200'000;

/// The one Score of the program and the records about it: what the composing window, and through it every
/// other room, works on. Made when that window loads, alive until the program ends.
struct Workspace {
    /// The start values: those of the settings, an empty score, the folder of songs made.
    Workspace(const SettingsStore& settings, const ProgramFolders& folders);

    Score score;
    SetupState setup;
    ViewState view;
    PlayState play;
    ChordSteps chords;
    InstrumentSelection instruments;
    UndoSnapshot undo;
    EditState edit;
    EffectSelectors effects;

    bool CopyonlyOneTrack = false; ///< block commands work on the active channel only

    /// `TrackSel_Click` of the composing window: makes the channel the active one, and lets playing visit it.
    void selectChannel(int channel);
    /// Has playing and the search for the song's end skip the channel, or visit it again.
    void toggleMuted(int channel);
    /// Whether there is anything to save, once `FindEndOfSong` has run: also what that leaves out, notes of
    /// muted channels and a single one in position 0.
    [[nodiscard]] bool holdsNotes();
    /// Empties everything: a new score. `undoLast` brings the old one back.
    void clear();
    /// Keeps the whole score before something takes its place. One without notes does not displace a score
    /// that can still be brought back: clearing twice costs nothing.
    void keepWhole();
    /// "Undo Last note" takes the newest change back, and that one alone: the score as a whole if it was
    /// replaced, but the channel of the last edit if there was an edit since. False if there is nothing to
    /// undo.
    bool undoLast();

private:
    /// A score that was cleared or opened over, with the fields that go with it.
    struct Replaced {
        Score score;
        SetupState setup;
        int snapshots; ///< of `undo` at that time: a later edit's snapshot goes first
    };
    [[nodiscard]] bool canBringBack() const { return replaced_ && replaced_->snapshots == undo.snapshots; }

    std::optional<Replaced> replaced_;
};

/// The tempo and the meter in words, for the strip beside the menus.
[[nodiscard]] std::string topBarText(const Score& score, const SetupState& setup);

} // namespace velmora
