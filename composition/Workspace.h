// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/Changes.h"
#include "composition/EditState.h"
#include "score/Manners.h"
#include "score/PlayState.h"
#include "score/Score.h"
#include "score/UndoHistory.h"
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
    UndoSnapshot undo;   ///< the one step of classic manners
    UndoHistory history; ///< of careful ones, kept in both
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
    /// The score has been read, and nothing before it is to be undone.
    void beginHistory();

    // Before a command changes the Score. @p step names it to the user, with a text that lasts. In classic
    // manners the one step is kept now; the history notices by itself.

    /// Before a stroke or a change of the active channel's notes.
    void keepChannelForUndo(std::string_view step = UndoSnapshot::kNoteStep);
    /// Before a command changes cells of many channels.
    void keepForUndo(std::string_view step);
    /// Before another score takes the place. One without notes does not displace a score that can still be
    /// brought back: clearing twice costs nothing.
    void keepReplaced(std::string_view step);

    /// What undoing or redoing did.
    struct Undone {
        bool done = false; ///< false if there was nothing, and nothing has changed
        UndoHistory::Changed changed{};
        explicit operator bool() const { return done; }
    };
    /// "Undo Last note" and "Undo Last Step" take the newest change back: in classic manners that one alone.
    Undone undoLast();
    /// "Redo" does what was undone last; never anything in classic manners.
    Undone redoLast();
    /// What they would do, "Cut 12 columns" say, for the tips; blank while there is nothing.
    [[nodiscard]] std::string_view undoStep() const;
    [[nodiscard]] std::string_view redoStep() const;

    /// Whether the score would be lost: it holds something that its file, if it has one, does not.
    [[nodiscard]] bool isUnsaved() const;
    /// The score is in its file as it is now, or, within an edit, as it will be at its end.
    void markSaved();

    /// What is marked lies within the score.
    void keepMarksWithin();

private:
    Undone step(std::optional<UndoHistory::Changed> (UndoHistory::*go)(Score&, SetupState&));
};

/// The tempo and the meter in words, for the strip beside the menus.
[[nodiscard]] std::string topBarText(const Score& score, const SetupState& setup);

} // namespace velmora
