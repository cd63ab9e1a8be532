// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/Changes.h"
#include "composition/PressSound.h"
#include "tableau/Stroke.h"
#include "tableau/TableauScreen.h"

#include <optional>

namespace velmora {

class MidiPort;
class NotePlayer;
struct Workspace;

/// The gestures on both Tableaux: turns presses, drags and releases into cells of the Score.
///
/// The window feeds it every mouse event of the two boxes, with the button that is down (on a release the one
/// that was let go). Nothing here blocks but the sounding of a note.
class TableauInput final : private Watcher {
public:
    TableauInput(Workspace& workspace, NotePlayer& player, MidiPort& port, TableauScreen& screen);

    void MusicBox_MouseDown(MouseButton button, int shift, int x, int y);
    void MusicBox_MouseMove(MouseButton button, int shift, int x, int y);
    void MusicBox_MouseUp(MouseButton button, int shift, int x, int y);
    void Beatbox_MouseDown(MouseButton button, int shift, int x, int y);
    void Beatbox_MouseMove(MouseButton button, int shift, int x, int y);
    void Beatbox_MouseUp(MouseButton button, int shift, int x, int y);

    /// Ends a stroke whose release never comes as a release at the last known place would; nothing otherwise.
    /// To be called, too, before `MouseMode` changes and before the Tableaux are greyed.
    void cancel();
    [[nodiscard]] const Stroke& stroke() const { return stroke_; }

    /// The channels to return to when the other Tableau is clicked: those that were active last, whoever
    /// chose them.
    int LastMelodyChannel = 0;
    int LastDrumChannel = 8;

private:
    void changed(Changes changes) override;
    void rememberChannel();
    void press(Box box, MouseButton button, int x, int y);
    void move(Box box, MouseButton button, int x, int y);
    void release(Box box, MouseButton button, int x);

    bool takeChannel(Box box);
    void begin(Box box, MouseButton button, int x, int y);
    void pressLeft();
    void pressRight();
    void pressDraw();
    void showPressedEffects();
    void pressListen();
    void pressMark();
    void pressSelect();
    void eraseAt(int x);
    void changeByRightClick(int position);
    void openMenu();

    bool endAtEdge(int x);
    void dragDraw(int x, int y);
    void dragSelect(int x);
    void hover(Box box, int x);
    void followScroll();
    void reach(int column);

    void finish();
    void leaveView();
    void finishDraw();
    void writeDrawn(int first, int last);
    void finishSelect();

    void clearMarks();
    void keepForUndo();
    void markEdited();
    [[nodiscard]] int rowHeight(Box box) const;
    [[nodiscard]] Stroke::Kind kindOf(MouseButton button) const;
    [[nodiscard]] int pressPosition() const;

    Workspace& workspace_;
    NotePlayer& player_;
    TableauScreen& screen_;
    PressSound sound_;
    Stroke stroke_;
    std::optional<Act> act_; ///< a stroke is one, whatever it paints
    bool finishing_ = false; ///< ending a chord serves events; a press among them is refused
    Guests<Watcher>::Stay watching_;
};

} // namespace velmora
