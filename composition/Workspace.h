// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/Changes.h"
#include "composition/EditState.h"
#include "score/Manners.h"
#include "score/PlayState.h"
#include "score/Score.h"
#include "score/UndoSnapshot.h"
#include "score/ViewState.h"
#include "sound/Chords.h"
#include "sound/Instruments.h"
#include "sound/SetupState.h"

#include <string>
#include <string_view>

namespace velmora {

class ProgramFolders;
class SettingsStore;

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

    Manners manners;               ///< `setManners` changes them
    bool CopyonlyOneTrack = false; ///< block commands work on the active channel only

    Watchers watchers; ///< told of every `Edit`; all that follow here are edits

    /// "Classic behaviour", or careful: from now on.
    void setManners(const Manners& chosen);
    /// `TrackSel_Click` of the composing window: makes the channel the active one, and lets playing visit it.
    void selectChannel(int channel);
    /// Has playing and the search for the song's end skip the channel, or visit it again.
    void toggleMuted(int channel);
    /// Whether there is anything to save, once `FindEndOfSong` has run: also what that leaves out, notes of
    /// muted channels and a single one in position 0.
    [[nodiscard]] bool holdsNotes();
    /// Empties everything: a new score. `undoLast` brings the old one back.
    void clear();
    /// The view and the marks as after a score has taken the place of another.
    void showFromStart();
    /// Keeps the active channel before a stroke or a change of its notes.
    void keepChannelForUndo(std::string_view step = UndoSnapshot::kNoteStep);
    /// Keeps the whole score before a command changes cells of many channels; @p step names the command to
    /// the user, with a text that lasts.
    void keepForUndo(std::string_view step);
    /// Keeps the whole score before another one takes its place. One without notes does not displace a score
    /// that can still be brought back: clearing twice costs nothing.
    void keepReplaced(std::string_view step);
    /// "Undo Last note" and "Undo Last Step" take the newest change back, and that one alone. False if there
    /// is nothing to undo.
    bool undoLast();
    /// What that would take back, "Cut Selection" say, for the tips; blank while there is nothing.
    [[nodiscard]] std::string_view undoStep() const { return undo.step(); }
};

/// The tempo and the meter in words, for the strip beside the menus.
[[nodiscard]] std::string topBarText(const Score& score, const SetupState& setup);

} // namespace velmora
