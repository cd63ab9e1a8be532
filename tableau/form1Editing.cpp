// SPDX-License-Identifier: GPL-2.0-or-later
// The editing commands of the composing window: by button, tool panel, menu and key.
#include "base/QtText.h"
#include "composition/BlockChannels.h"
#include "composition/MelodyMaker.h"
#include "composition/ScoreEditing.h"
#include "composition/Workspace.h"
#include "parts/CommandBinding.h"
#include "parts/Desk.h"
#include "shell/ExToolTip.h"
#include "shell/Frmmenu.h"
#include "tableau/Commands.h"
#include "tableau/FormScreen.h"
#include "tableau/TableauInput.h"
#include "tableau/form1.h"

#include <QAction>

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

namespace velmora {

namespace {
/// A block command: its button in the bar, its button on the Score Editor, its item in the Edit menu.
struct BlockRow {
    int cmd2;
    int lb1;
    std::string_view item; ///< blank where the menu has none
    const char* key;       ///< of the item
    Mouse itemMode;        ///< what the mouse does after the item
    bool pastes;           ///< the Score Editor's button clears the marks afterwards
    void (form1::*press)();
};
constexpr auto kBlockRows = std::to_array<BlockRow>({
    {cmd2("copy"), lb1("copy"), "mnuCopy", "Ctrl+C", Mouse::Select, false, &form1::copyIt},
    {cmd2("cut"), lb1("cut"), "mnuCut", "Ctrl+X", Mouse::Select, false, &form1::CutBut_Click},
    {cmd2("overwrite"), lb1("overwrite"), "mnuPasteoverwrite", "Ctrl+V", Mouse::Cursor, true,
     &form1::PasteBut_Click},
    {cmd2("insert"), lb1("insert"), "mnuPasteInsert", "Ctrl+Shift+V", Mouse::Cursor, true,
     &form1::PasteIntoBut_Click},
    {cmd2("spaces"), lb1("spaces"), "", nullptr, Mouse::Select, false, &form1::InsertColumnBut_Click},
});
} // namespace

void form1::bindEditing() {
    for (const BlockRow& row : kBlockRows) {
        Cmd2_.bind(row.cmd2, [this, &row] { (this->*row.press)(); });
        Lb1_.bind(row.lb1, [this, &row] {
            setMouseMode(Mouse::Select);
            (this->*row.press)();
            if (row.pastes)
                clearMarks();
        });
        bindCommand(*this, desk_.menu, {.item = row.item, .key = row.key}, [this, &row] {
            setMouseMode(row.itemMode);
            (this->*row.press)();
        });
    }
    Cmd2_.bind(cmd2("duplicate"), [this] { CopyNotes_Click(); });
    Lb1_.bind(lb1("duplicate"), [this] { CopyMelody_Click(); });
    Lb1_.bind(lb1("create melody"), [this] { Cmdo_Click(); });
    Lb1_.bind(lb1("undo melody"), [this] { OpenforUndo(); });
}

/// In classic manners, without a ticked channel, copying, pasting and stamping move nothing, and nobody would
/// know why.
void form1::mentionBoxes() {
    const Workspace& workspace = desk_.workspace;
    if (!workspace.manners.oneChannelSet && !workspace.CopyonlyOneTrack &&
        std::ranges::none_of(workspace.edit.ChannelPicked, std::identity()))
        screen_->mention("No channel is ticked in the Melody Maker, so nothing was copied");
}

/// What a command has done where nothing is to be seen of it, or why it has done nothing.
void form1::mentionMarked(bool done, std::string_view verb) {
    const Workspace& workspace = desk_.workspace;
    if (!workspace.manners.takesWhatIsMarked)
        return;
    if (!done)
        return screen_->mention("Nothing is selected: mark a part of the score first");
    screen_->mention(std::string(verb) + " " + columnsInWords(workspace.edit.SelectSpan + 1) + " of " +
                     blockChannelsInWords(workspace));
}

/// A command that may change any cell, and with that the song's end; it returns whether it did.
void form1::editNotes(const std::function<bool()>& command) {
    Edit edit(desk_.workspace);
    if (!command())
        return;
    desk_.workspace.score.FindEndOfSong();
    edit.add(Change::Channels); // those in use
}

void form1::copyIt() {
    bool copied = false;
    editNotes([&] {
        copied = velmora::copyIt(desk_.workspace);
        return copied;
    });
    if (copied)
        mentionBoxes();
    mentionMarked(copied, "Copied");
}

void form1::CutBut_Click() {
    bool cut = false;
    editNotes([&] { return cut = velmora::CutBut_Click(desk_.workspace); });
    mentionMarked(cut, "Cut");
}

void form1::PasteBut_Click() {
    editNotes([this] {
        velmora::PasteBut_Click(desk_.workspace, input_->stroke().ViewCol);
        return true;
    });
    mentionBoxes();
}

void form1::PasteIntoBut_Click() {
    editNotes([this] {
        velmora::PasteIntoBut_Click(desk_.workspace, input_->stroke().ViewCol);
        return true;
    });
    mentionBoxes();
}

void form1::InsertColumnBut_Click() {
    editNotes([this] {
        velmora::InsertColumnBut_Click(desk_.workspace, input_->stroke().ViewCol);
        return true;
    });
}

void form1::CopyNotes_Click() {
    editNotes([this] {
        duplicateNotes(desk_.workspace, [this] {
            input_->MusicBox_MouseDown(MouseButton::Left, 0, 1, 1);
            input_->MusicBox_MouseUp(MouseButton::Left, 0, 1, 1);
        });
        return true;
    });
}

void form1::CopyMelody_Click() {
    setMouseMode(Mouse::Select);
    editNotes([this] {
        duplicateMelody(desk_.workspace);
        return true;
    });
    mentionBoxes();
}

void form1::Cmdo_Click() {
    setCursor(Qt::WaitCursor);
    editNotes([this] {
        createMelody(desk_.workspace, desk_.workspace.edit.txtStart);
        return true;
    });
    unsetCursor();
    mentionBoxes();
}

void form1::setMouseMode(Mouse mode) {
    input_->cancel();
    const Edit edit(desk_.workspace, Change::Modes);
    desk_.workspace.view.MouseMode = mode;
}

void form1::clearMarks() {
    const Edit edit(desk_.workspace, Change::Marks);
    ViewState& view = desk_.workspace.view;
    view.SelectStart = view.SelectEnd = -1;
    view.PlayMark = 0;
}

/// The undo commands say what they would do, and are disabled where that is nothing.
void form1::showUndo() {
    const Workspace& workspace = desk_.workspace;
    showStep({lb1("undo"), lb1("undo melody")}, "undo", workspace.undoStep(), "Undo");
    showStep({lb1("redo")}, "redo", workspace.redoStep(), "Redo");
}

void form1::showStep(std::initializer_list<int> buttons, const char* item, std::string_view step,
                     const QString& verb) {
    const QString text = step.empty() ? QStringLiteral("There is nothing to take back")
                                      : QStringLiteral("%1: %2").arg(verb, toQString(step).trimmed());
    for (const int index : buttons) {
        Lb1_[index].setEnabled(!step.empty());
        const CommandRow& row = Lb1_.row(index);
        desk_.tips.SetToolTip(Lb1_[index], {toQString(row.title), text, std::string(row.icon)});
    }
    desk_.menu.item(item).setEnabled(!step.empty());
}

} // namespace velmora
