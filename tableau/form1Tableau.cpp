// SPDX-License-Identifier: GPL-2.0-or-later
// How the Tableau of the composing window is wired: the mouse to the gestures, and those to the strips.
#include "base/QtText.h"
#include "base/Settings.h"
#include "composition/NoteReadout.h"
#include "composition/SetupRules.h"
#include "composition/Workspace.h"
#include "parts/Desk.h"
#include "shell/ExToolTip.h"
#include "shell/frminfo.h"
#include "tableau/ChannelStrip.h"
#include "tableau/Commands.h"
#include "tableau/FormScreen.h"
#include "tableau/Picmain.h"
#include "tableau/PolynoteDrag.h"
#include "tableau/TableauInput.h"
#include "tableau/ToolPanel.h"
#include "tableau/ViewGeometry.h"
#include "tableau/form1.h"

namespace velmora {

namespace {
constexpr int kLeastSplit = 200; ///< the gap is dragged only where `Picmain` is at least so high
constexpr const char* kDrawTip = "Draw Mode is in effect. \nDraw notes by clicking mouse";
constexpr const char* kSelectTip =
    "Select Mode is in effect.  \nUse mouse to select score sections for editing";
} // namespace

void form1::bindTableau() {
    TableauBox::Mouse& melody = Picmain_->mouseOn(Picmain::Surface::MusicBox);
    melody.down = [this](MouseButton button, int shift, int x, int y) {
        Picmain_->setFocus(Qt::MouseFocusReason);
        input_->MusicBox_MouseDown(button, shift, x, y);
    };
    melody.move = [this](MouseButton button, int shift, int x, int y) {
        input_->MusicBox_MouseMove(button, shift, x, y);
    };
    melody.up = [this](MouseButton button, int shift, int x, int y) {
        input_->MusicBox_MouseUp(button, shift, x, y);
    };
    melody.lost = [this] { input_->cancel(); };
    // The mouse leaves at the end, too, when this window is nothing but its base.
    melody.over = [&view = desk_.workspace.view](bool isOver) { view.PointerInMusicBox = isOver; };

    TableauBox::Mouse& beat = Picmain_->mouseOn(Picmain::Surface::Beatbox);
    beat.down = [this](MouseButton button, int shift, int x, int y) {
        Picmain_->setFocus(Qt::MouseFocusReason);
        input_->Beatbox_MouseDown(button, shift, x, y);
    };
    beat.move = [this](MouseButton button, int shift, int x, int y) {
        input_->Beatbox_MouseMove(button, shift, x, y);
    };
    beat.up = [this](MouseButton button, int shift, int x, int y) {
        input_->Beatbox_MouseUp(button, shift, x, y);
    };
    beat.lost = [this] { input_->cancel(); };

    Picmain_->onScrolled = [this] { PrintTopBar(); };
    Picmain_->onZoom = [this](int notches, int y) { zoomRows(notches, y); };
    Picmain_->onSplit = [this](int height) {
        if (Picmain_->height() < kLeastSplit)
            return;
        const int rows = (std::max(height, 0) + kBeatRowHeight / 2) / kBeatRowHeight;
        parts_.beatboxHeight = std::max(1, rows) * kBeatRowHeight;
        layOut();
    };
}

void form1::zoomRows(int notches, std::optional<int> y) {
    setRowHeight(zoomedLineHeight(desk_.workspace.view.Line_Height, notches), y);
}

void form1::resetRows() {
    setRowHeight(ViewState().Line_Height, std::nullopt);
}

/// A stroke reckons with rows as high as they were when it began.
void form1::setRowHeight(int height, std::optional<int> y) {
    ViewState& view = desk_.workspace.view;
    if (height == view.Line_Height || input_->stroke().PressActive)
        return;
    const int at = y.value_or(Picmain_->surface(Picmain::Surface::MusicBox)->height() / 2);
    kept_ = {view.ViewTopRow + at / std::max(1, view.Line_Height), at, view.ViewFirstColumn,
             view.ViewLastColumn};
    Text3_Change(desk_.workspace, static_cast<std::int16_t>(height));
    kept_.reset();
    settings::save(desk_.settings, settings::Line_Height, static_cast<std::int16_t>(view.Line_Height));
}

void form1::bindBars() {
    const auto isTips = [this] { return desk_.workspace.view.RightClickMode == RightClick::Tips; };
    // A drag that leaves its bar changes nothing that is out of view.
    const auto isOn = [this](Picmain::Surface bar, int x) {
        return x >= 0 && x < Picmain_->surface(bar)->width();
    };
    TableauBox::Mouse& indicator = Picmain_->mouseOn(Picmain::Surface::Pic2a);
    indicator.down = [this, isTips](MouseButton button, int /*shift*/, int x, int /*y*/) {
        if (button == MouseButton::Right && isTips())
            screen_->showTip(Picmain::Surface::Pic2a);
        else if (button == MouseButton::Left)
            Pic2a_MouseDown(x);
        else {
            indicatorAct_.emplace(desk_.workspace);
            applyAlong(x);
        }
    };
    indicator.up = [this](MouseButton, int, int, int) { indicatorAct_.reset(); };
    indicator.lost = [this] { indicatorAct_.reset(); };
    indicator.move = [this, isTips, isOn](MouseButton button, int /*shift*/, int x, int /*y*/) {
        if (button == MouseButton::Right && !isTips() && isOn(Picmain::Surface::Pic2a, x))
            applyAlong(x);
    };
    TableauBox::Mouse& chords = Picmain_->mouseOn(Picmain::Surface::Pic3);
    chords.down = [this, isTips](MouseButton button, int /*shift*/, int x, int /*y*/) {
        if (button == MouseButton::Right && isTips())
            screen_->showTip(Picmain::Surface::Pic3);
        else
            Pic3_MouseMove(button, x);
    };
    chords.move = [this, isTips, isOn](MouseButton button, int /*shift*/, int x, int /*y*/) {
        const bool asksForTip = button == MouseButton::Right && isTips();
        if (button == MouseButton::None || (!asksForTip && isOn(Picmain::Surface::Pic3, x)))
            Pic3_MouseMove(button, x);
    };
    chords.up = [this](MouseButton /*button*/, int /*shift*/, int x, int /*y*/) {
        Pic3_MouseMove(MouseButton::None, x);
    };
}

void form1::Pic2a_MouseDown(int x) {
    const int column = x / kColumnWidth;
    const NoteReadout note =
        velmora::Pic2a_MouseDown(desk_.workspace, desk_.workspace.view.ViewFirstColumn + column);
    screen_->showNote(note, column);
    screen_->setToolText({}, noteLine(note));
}

void form1::Pic3_MouseMove(MouseButton button, int x) {
    if (desk_.workspace.play.Playing)
        return;
    const auto column = polynotes_->move(desk_.workspace, button, x, desk_.workspace.effects.Combo3);
    if (column)
        Picmain_->markPolynote(*column);
}

void form1::FunctionBut_Click() {
    setMouseMode(desk_.workspace.view.MouseMode == Mouse::Select ? Mouse::Draw : Mouse::Select);
}

/// Pointer and buttons show what the left mouse button does: both are pressed while it draws.
void form1::showMouseMode() {
    const bool selects = desk_.workspace.view.MouseMode == Mouse::Select;
    for (const Box box : {Box::MusicBox, Box::Beatbox})
        screen_->setPointer(box, pointerAtRest(desk_.workspace.view.MouseMode));
    CommandButton& onPage = Lb1_[lb1("mode")];
    CommandButton& onBar = Cmd2_[cmd2("mode")];
    const CommandRow& row = Lb1_.row(lb1("mode"));
    onPage.setFace(row.icon, selects ? QStringLiteral("Select") : QStringLiteral("Draw"));
    onPage.setChecked(!selects);
    onBar.setChecked(!selects);
    const QString tip = QLatin1String(selects ? kSelectTip : kDrawTip);
    for (CommandButton* button : {&onPage, &onBar})
        desk_.tips.SetToolTip(*button, {toQString(row.title), tip, std::string(row.icon)});
}

/// A click plays a note and draws nothing; this and the effects of single notes exclude each other.
void form1::Check4_Click() {
    const Edit edit(desk_.workspace, Change::Modes);
    ViewState& view = desk_.workspace.view;
    view.Check4 = !view.Check4;
    if (view.Check4)
        view.NoteEffectsOn = false;
}

} // namespace velmora
