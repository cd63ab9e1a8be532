// SPDX-License-Identifier: GPL-2.0-or-later
// Single Note Effects in the composing window.
#include "base/QtText.h"
#include "composition/NoteEffects.h"
#include "composition/Workspace.h"
#include "parts/Desk.h"
#include "parts/FrmInst.h"
#include "shell/MessageBox.h"
#include "tableau/Commands.h"
#include "tableau/EffectsPage.h"
#include "tableau/FormScreen.h"
#include "tableau/Picmain.h"
#include "tableau/ToolPanel.h"
#include "tableau/TopBarOverlay.h"
#include "tableau/form1.h"

namespace velmora {

void form1::bindEffects() {
    EffectsPage& page = toolPanel_->effects();
    page.onPickInstrument = [this] { CmdInst_Click(); };
    page.onChord = [this](int /*type*/) {
        TopBarOverlay_->setField(TopBarOverlay::Label7, toQString(desk_.workspace.chords.Label7));
    };
    page.onNoteEffects = [this](bool on) {
        const Edit edit(desk_.workspace, Change::Modes);
        desk_.workspace.view.NoteEffectsOn = on;
        if (on)
            desk_.workspace.view.Check4 = false;
    };
    Lb1_.bind(lb1("undo effects"), [this] { ClearEffects(); });
}

/// The note under the mouse, or along a drag, takes what the selectors say.
void form1::applyAlong(int x) {
    const int column = x / kColumnWidth;
    const auto note = applyAlongIndicator(desk_.workspace, desk_.workspace.view.ViewFirstColumn + column);
    if (!note)
        return;
    screen_->doNotemod(desk_.workspace.view.ViewFirstColumn + column);
    screen_->showNote(*note, column);
    screen_->setToolText({}, noteLine(*note));
}

void form1::CmdInst_Click() {
    desk_.windows.pickInstrument(*this, [this](PickedInstrument picked) {
        if (picked.melody || picked.percussion)
            noteInstrumentPicked(
                FrmInst::codeFor(picked, desk_.workspace.score.ActiveChannel, desk_.workspace.instruments));
    });
}

/// For the notes of a selection at once, and for those that take effects from now on.
void form1::noteInstrumentPicked(std::int16_t code) {
    std::string_view refused;
    editNotes([&] {
        refused = applyInstrumentToSelection(desk_.workspace, code);
        return refused.empty();
    });
    if (!refused.empty())
        tell(skins(), this, toQString(refused));
}

void form1::ClearEffects() {
    PlayAndStop_Click(true);
    velmora::ClearEffects(desk_.workspace);
}

} // namespace velmora
