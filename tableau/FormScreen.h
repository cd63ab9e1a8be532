// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/PlaybackView.h"
#include "tableau/Picmain.h"
#include "tableau/TableauScreen.h"

namespace velmora {

class ChannelStrip;
class CommandBank;
class EffectsPage;
class Frmmenu;
class TextLine;
class TopBarOverlay;
class frminfo;
struct Workspace;

/// The parts of the composing window that show what gestures and playing do.
struct FormStrips {
    QWidget& window;
    const CommandBank& Cmd2;
    EffectsPage& effects;
    ChannelStrip& channels;
    TopBarOverlay& readOuts;
    Picmain& picmain;
    TextLine& textLine;
    frminfo& tips;
    const Frmmenu& menu;
};

/// What gestures and playing ask of the composing window, handed on to its strips.
class FormScreen final : public TableauScreen, public PlaybackView {
public:
    FormScreen(const FormStrips& strips, const Workspace& workspace);

    /// The squares, the track, the count of notes and the length of the scroll bar follow the Score.
    void showChannels();
    /// Before a note is looked at the read-outs say what the next one will sound like.
    void showNextNote();
    /// What came of a command, as the tool text: it stands until the composition changes, or the tool text.
    void mention(std::string_view text);
    /// The composition has changed.
    void dropMention();
    /// Tells about a surface, in Tips mode.
    void showTip(Picmain::Surface surface);

    // Gestures
    [[nodiscard]] int width(Box box) const override;
    void GetRow(Box box, int row) override;
    void PutRow(Box box, int row) override;
    void GetBox() override;
    void PutBox() override;
    void drawPressBall(int row, int column) override;
    void drawBand(Box box, int row, int fromColumn, int toColumn) override;
    void drawSelectEdge(int column) override;
    void blendSelectStrip() override;
    void drawSelectDrag(int fromColumn, int toColumn) override;
    void setPointer(Box box, Pointer pointer) override;
    void setToolText(std::string_view caption, std::string_view text) override;
    void showEffects(int modulation, int pan, int reverb, int chorus) override;
    void doNotemod(int position) override;
    void showNote(const NoteReadout& note, int column) override;
    void advanceScroll(int columns) override;
    void setScrollMaximum(int maximum) override;
    void openEditMenu() override;
    void openFileMenu() override;
    void showTip(Box box) override;

    // Playing
    void DisableControls() override;
    void EnableControls() override;
    void clearMusicBox() override;
    void DrawNoteArray() override;
    void DrawBeatArray() override;
    void drawBars() override;
    void followView() override;
    void showSongEnd() override;
    void GetColumn(int column) override;
    void PutColumn() override;
    void drawPlayLine(int column) override;
    void domodgraph() override;

private:
    void showReadOut(const NoteReadout& note);
    void setEditable(bool editable);

    FormStrips strips_;
    const Workspace& workspace_;
    bool mentions_ = false; ///< the tool text is of `mention`
};

} // namespace velmora
