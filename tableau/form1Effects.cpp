// SPDX-License-Identifier: GPL-2.0-or-later
// Single Note Effects in the composing window.
#include "base/QtText.h"
#include "composition/NoteEffects.h"
#include "composition/Workspace.h"
#include "parts/Application.h"
#include "shell/MessageBox.h"
#include "tableau/Commands.h"
#include "tableau/EffectsPage.h"
#include "tableau/MakerPage.h"
#include "tableau/Picmain.h"
#include "tableau/ToolPanel.h"
#include "tableau/TopBarOverlay.h"
#include "tableau/form1.h"

namespace velmora {

void form1::bindEffects() {
    EffectsPage& page = toolPanel_->effects();
    screen_.onApplyEffects = [this](int head) {
        if (applyNoteEffects(app_.workspace, player_.notes(), head))
            screen_.DrawNoteArray();
    };
    screen_.onEffects = [&page](int modulation, int pan, int reverb, int chorus) {
        page.showEffects(modulation, pan, reverb, chorus);
    };
    screen_.onNotemod = [this](int position) { doNotemod(position); };
    screen_.onModgraph = [this, &page] {
        if (!app_.workspace.view.NoteEffectsOn)
            return;
        const EffectPlaces places =
            domodgraph(app_.workspace.score, app_.workspace.play.PlayPosition, ToolPage::kHeight);
        page.showGraph(places[0].shown, places[1].shown, places[2].shown, places[3].shown);
    };
    page.onPickInstrument = [this] { CmdInst_Click(); };
    page.onChord = [this](int /*type*/) {
        TopBarOverlay_->setField(TopBarOverlay::Label7, toQString(app_.workspace.chords.Label7));
    };
    toolPanel_->maker().onStart = [this] { DrawNoteArray(); };
    page.onNoteEffects = [this](bool on) {
        app_.workspace.view.NoteEffectsOn = on;
        if (on)
            app_.workspace.view.Check4 = false;
        showModes();
    };
    Lb1_.bind(lb1("undo effects"), [this] { ClearEffects(); });
}

/// The effects of a position, as its note will sound.
void form1::doNotemod(int position) {
    const EffectPlaces places = velmora::doNotemod(app_.workspace.score, position, ToolPage::kHeight);
    toolPanel_->effects().showEffects(places[0].shown, places[1].shown, places[2].shown, places[3].shown);
}

/// The note under the mouse, or along a drag, takes what the selectors say.
void form1::applyAlong(int x) {
    const int column = x / kColumnWidth;
    const auto note = applyAlongIndicator(app_.workspace, app_.workspace.view.ViewFirstColumn + column);
    if (!note)
        return;
    doNotemod(app_.workspace.view.ViewFirstColumn + column);
    screen_.showNote(*note, column);
    screen_.setToolText({}, noteLine(*note));
    Picmain_->drawPolynoteBar();
    screen_.DrawNoteArray();
}

void form1::CmdInst_Click() {
    if (app_.setup.pickInstrument)
        app_.setup.pickInstrument([this](std::int16_t code) { noteInstrumentPicked(code); });
}

/// For the notes of a selection at once, and for those that take effects from now on.
void form1::noteInstrumentPicked(std::int16_t code) {
    const std::string_view refused = applyInstrumentToSelection(app_.workspace, code);
    toolPanel_->effects().refresh();
    showEdited();
    showNextNote();
    if (!refused.empty())
        tell(skins(), this, toQString(refused));
}

void form1::ClearEffects() {
    PlayAndStop_Click(true);
    velmora::ClearEffects(app_.workspace);
    showScore();
}

} // namespace velmora
