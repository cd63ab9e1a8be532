// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Guests.h"
#include "base/Turns.h"
#include "score/NotePlayer.h"
#include "score/PlaybackEngine.h"
#include "score/PlayedScore.h"

namespace velmora {

class MessageLoop;
class MidiPort;
class PlaybackView;
class RecordingProgress;
struct Workspace;

/// Plays the score, and sounds single notes of it, for whoever asks: it is nobody's own. Who shows what
/// plays, or records it, comes and goes, also while it plays; without any of them everything plays just the
/// same.
///
/// Commands that play return when playing has ended, stopped or paused; events are served meanwhile.
class Player {
public:
    Player(const PlayedScore& played, MidiPort& port, MessageLoop& loop);
    Player(Workspace& workspace, MidiPort& port, MessageLoop& loop);

    /// Asked for everything that is to be seen, until the stay ends; it is not called after that.
    Guests<PlaybackView>::Stay show(PlaybackView& view) { return views_.join(view); }
    /// Told how far the song is while it shows that, and when the song's recording ends.
    Guests<RecordingProgress>::Stay join(RecordingProgress& recorder) { return recorders_.join(recorder); }

    /// Plays the whole score if nothing plays, or (@p stop) ends what plays.
    void PlayAndStop_Click(bool stop) { engine_.PlayAndStop_Click(stop); }
    /// Plays the marked segment if nothing plays.
    void playSegment() { engine_.playSegment(); }
    /// Back to position 0; only while nothing plays.
    void RewindBut_Click() { engine_.RewindBut_Click(); }
    /// At the next position. While nothing plays, it has the next play start at the mark.
    void pause();
    /// "Play Continuous Loop".
    void setLoop(bool on);

    /// All that sounds, whoever began it. What plays goes on with its next note.
    void silence();
    /// Ends what a channel plays that has just been muted: playing, which skips it from now on, would leave
    /// that on.
    void silenceMuted(int channel);
    /// For what is pressed rather than played.
    [[nodiscard]] NotePlayer& notes() { return notes_; }

    /// For long work of another kind that sounds: it stops what plays, and a newer play, or newer work of
    /// that kind, ends its turn. Work that may go on beside playing has `Turns` of its own.
    [[nodiscard]] Turn takeTurn() { return engine_.takeTurn(); }

private:
    PlayedScore played_;
    MidiPort& port_;
    NotePlayer notes_;
    Guests<PlaybackView> views_;
    Guests<RecordingProgress> recorders_;
    PlaybackEngine engine_;
};

} // namespace velmora
