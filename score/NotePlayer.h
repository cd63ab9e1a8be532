// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

class MessageLoop;
class MidiPort;
struct ChordSteps;
struct PlayState;
struct Score;
struct SetupState;

/// Sounds and silences single notes of the Score: as messages on the port, at the moment of the call.
class NotePlayer {
public:
    NotePlayer(Score& score, const SetupState& setup, const PlayState& state, ChordSteps& chords,
               MidiPort& port, MessageLoop& loop);

    /// The channel that `StopNote`, `StartNoteBtnDn` and `StopNoteBtnUp` act on; callers set it first.
    int CurrentChannel = 0;

    /// Starts the note of @p row, with its controllers and chord, as set at the playback position.
    /// A strummed chord takes up to 115 ms, in which nothing else is served.
    void Startnote(int row, int channel);
    /// Ends the note of @p row on `CurrentChannel`, and its chord.
    void StopNote(int row);

    /// The same two for a note pressed on the Tableau at score position @p position, on `CurrentChannel`.
    void StartNoteBtnDn(int row, int position);
    void StopNoteBtnUp(int row, int position);

    /// Gives a channel its instrument: a program is sent at once, a percussion key is kept for its notes.
    /// A percussion code on a melody channel leaves the previous program playing.
    void ChangeInstrument(int code, int channel);

private:
    struct Pitch {
        int note;
        int ch; ///< MIDI channel index
    };
    [[nodiscard]] Pitch pitchOf(int row, int channel) const;
    void sendControllers(int ch, int position);
    void sendChord(Pitch pitch, int channel, int type);
    void start(int row, int channel, int position);
    void stop(int row, int channel, int position);
    void soften(int channel);
    void strum(int channel, int milliseconds);
    [[nodiscard]] int velocity(int channel) const;

    Score& score_;
    const SetupState& setup_;
    const PlayState& state_;
    ChordSteps& chords_;
    MidiPort& port_;
    MessageLoop& loop_;
};

} // namespace velmora
