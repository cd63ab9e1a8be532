// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

/// What playing asks of who shows it; every request may be left unanswered.
class PlaybackView {
public:
    virtual ~PlaybackView() = default;

    /// Greys `MusicBox`, `Beatbox`, `HScroll1` and `VScroll1`, and nothing else.
    virtual void DisableControls() {}
    virtual void EnableControls() {}

    virtual void clearMusicBox() {}
    virtual void DrawNoteArray() {}
    virtual void DrawBeatArray() {}
    virtual void drawBars() {} ///< `Pic2a` and `Pic3`
    /// `HScroll1` follows `ViewFirstColumn` without acting on it.
    virtual void followView() {}
    /// `FindEndOfSong` has run: `LblNumnotes` and the channel markers follow the Score.
    virtual void showSongEnd() {}

    /// A position has begun to sound, at that moment.
    virtual void positionSounds(int /*position*/, double /*moment*/) {}

    /// Saves the pixels of a column of the view, on both boxes.
    virtual void GetColumn(int /*column*/) {}
    /// Puts the saved pixels back, which takes the play line away. Who has come in since has saved none.
    virtual void PutColumn() {}
    /// Draws the play line over a column of the view, on both boxes.
    virtual void drawPlayLine(int /*column*/) {}
    /// The effect graph follows the play position, if that tool is on.
    virtual void domodgraph() {}
};

} // namespace velmora
