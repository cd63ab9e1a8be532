// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

class MidiPort;
class NotePlayer;
struct PlayState;
struct Score;

/// The note that sounds while a mouse button is down on a Tableau. What it starts it also ends, whatever
/// channel is active and whatever the view shows by then.
class PressSound {
public:
    PressSound(Score& score, PlayState& play, NotePlayer& player, MidiPort& port);

    /// Sounds @p row at the velocity of the position. A muted channel stays silent.
    void press(int channel, int row, int position);
    /// Sounds the note that stands at @p position as playing would; nothing on an empty cell.
    /// @param own with the cell's own instrument instead of the channel's
    void audition(int channel, int position, bool own);
    /// Ends the pressed note, if one sounds.
    void release();
    /// Ends what any visible channel may still sound at @p position, and then all sound.
    void silenceAt(int position);
    void silence();

private:
    void setVelocity(int channel, int position);

    Score& score_;
    PlayState& play_;
    NotePlayer& player_;
    MidiPort& port_;

    bool sounding_ = false;
    int channel_ = 0;
    int row_ = 0;
    int position_ = 0;
};

} // namespace velmora
