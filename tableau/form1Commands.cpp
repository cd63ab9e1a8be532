// SPDX-License-Identifier: GPL-2.0-or-later
// Which routine each command of the composing window presses: by button, menu and key alike.
#include "base/Settings.h"
#include "composition/Workspace.h"
#include "parts/Application.h"
#include "shell/Frmmenu.h"
#include "shell/MenuStrip.h"
#include "shell/frminfo.h"
#include "tableau/ChannelStrip.h"
#include "tableau/EffectsPage.h"
#include "tableau/ToolPanel.h"
#include "tableau/form1.h"

#include <QAction>
#include <QGuiApplication>
#include <QShortcut>

namespace velmora {

namespace {
/// A press of the right button on each surface, in Tips mode.
struct SurfaceTip {
    Picmain::Surface surface;
    int tip;
};
constexpr std::array<SurfaceTip, 5> kSurfaceTips{{
    {Picmain::Surface::MusicBox, 1},
    {Picmain::Surface::Beatbox, 2},
    {Picmain::Surface::Guide, 3},
    {Picmain::Surface::Pic2a, 4},
    {Picmain::Surface::Pic3, 5},
}};
constexpr int kSquareTip = 6;

/// The same on the controls of the effects.
struct ControlTip {
    const char* control;
    int tip;
};
constexpr std::array<ControlTip, 10> kControlTips{{
    {"CmdInst", 7},
    {"Text5", 7},
    {"Combo3", 8},
    {"lblVolume", 9},
    {"LblMod", 9},
    {"LblPan", 9},
    {"LblReverb", 9},
    {"LblChorus", 9},
    {"Lb1(20)", 10},
    {"Lb1(21)", 11},
}};
} // namespace

void form1::bindItem(std::string_view item, std::function<void()> routine) {
    app_.menu.bind(item, std::move(routine));
}

void form1::bindFileCommands() {
    Cmd2_.bind(0, [this] { ClearAll(); });
    Cmd2_.bind(1, [this] { Command33_Click(); });
    Cmd2_.bind(2, [this] { mSaveAs_Click(); });
    files_.onBusy = [](bool busy) {
        if (busy)
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        else
            QGuiApplication::restoreOverrideCursor();
    };
    Lb1_.bind(0, [this] { ClearAll(); });
    Lb1_.bind(4, [this] { OpenforUndo(); });
    Lb1_.bind(8, [this] { imgTitleHelp_Click(); });
    if (app_.setup.open) {
        Lb1_.bind(1, [this] { app_.setup.open(); });
        bindItem("mnuSetup", [this] { Lb1_Click(1); });
    }
    bindItem("mnuOpen", [this] { Cmd2_Click(1); });
    bindItem("mnuSaveAs2", [this] { Command34_Click(); });
    bindItem("mnuSave2", [this] { Command34_Click(); }); // both items ask for a name; that is meant
    bindItem("mnuNew", [this] { Cmd2_Click(0); });
    bindItem("mnuExit", [this] { Command3_Click(); });
    bindItem("undo", [this] { Lb1_Click(4); });
    bindItem("mnuHelpfile", [this] { app_.openHelp("index"); });
}

void form1::bindPlayCommands() {
    PlayState& play = app_.workspace.play;
    Cmd2_.bind(3, [this] { PlayAndStop_Click(false); });
    Cmd2_.bind(4, [this] { PlaySelection_Click(); });
    Cmd2_.bind(5, [this] { player_.pause(); }); // with nothing playing, Play starts at the mark
    Cmd2_.bind(6, [this] { PlayAndStop_Click(true); });
    Cmd2_.bind(7, [this] { player_.RewindBut_Click(); });
    Cmd2_.bind(8, [this, &play] {
        play.ShowPlayLine = !play.ShowPlayLine;
        settings::save(app_.settings, settings::Playing_position, play.ShowPlayLine);
        showModes();
    });
    Cmd2_.bind(9, [this, &play] {
        player_.setLoop(!play.LoopOn);
        showModes();
    });
    Lb1_.bind(6, [this] { Command32_Click(); });
    bindItem("mnuRewind", [this] { player_.RewindBut_Click(); });
    bindItem("mnuPlay", [this] { PlayAndStop_Click(false); });
    bindItem("mnupause", [this] { Cmd2_Click(5); });
    bindItem("mnuStopPlaying", [this] { PlayAndStop_Click(true); });
    bindItem("mnuStopall", [this] { Command32_Click(); });
}

void form1::bindViewCommands() {
    Cmd2_.bind(10, [this] { FunctionBut_Click(); });
    Lb1_.bind(24, [this] { FunctionBut_Click(); });
    Lb1_.bind(21, [this] { Check4_Click(); });
    channelStrip_->Label8_Click = [this](int channel) { Label8_Click(channel); };
    for (int tab = 0; tab < 3; ++tab)
        Lb1_.bind(17 + tab, [this, tab] {
            toolPanel_->showPage(static_cast<ToolPanel::Page>(tab));
            app_.workspace.view.NoteEffectsOn = tab == ToolPanel::Effects;
            showModes();
        });
    Lb1_.bind(9, [this] { showPercussion(!parts_.percussion); });
    Lb1_.bind(10, [this] { setNotationStyle(0); });
    Lb1_.bind(11, [this] { setNotationStyle(1); });
    Lb1_.bind(12, [this] { setAccidentals(!app_.workspace.view.Accidentals); });
    Lb1_.bind(16, [this] { showEditingToolbar(!parts_.editingToolbar); });
    bindItem("mnuPercussion", [this] { Lb1_Click(9); });
    bindItem("mnuEdit", [this] { Lb1_Click(16); });
    bindItem("mnuNotestyle1", [this] { setNotationStyle(0); });
    bindItem("mnuNotestyle2", [this] { setNotationStyle(1); });
    bindItem("mnuAccidentals", [this] { setAccidentals(true); });
    bindItem("mnuNoAccidentals", [this] { setAccidentals(false); });
    app_.menu.onPrepare([this] { showModes(); });
}

void form1::bindLooks() {
    for (int skin = 1; skin <= kSkinCount; ++skin)
        app_.menu.bind("mnuSkin", skin, [this, skin] { skins().Skintype_Click(skin); });
    for (int style = 2; style <= static_cast<int>(kButtonStyles.size()); ++style)
        app_.menu.bind("mnuButton", style, [this, style] { skins().Btnstyle_Click(style); });
    for (std::int16_t style = 0; style <= 2; ++style)
        app_.menu.bind("mnuXPtooltext", style, [this, style] {
            app_.menu.tickTooltextStyle(style);
            settings::save(app_.settings, settings::ToolText_type, style);
        });
}

void form1::bindRightClick() {
    Lb1_.bind(13, [this] {
        app_.workspace.view.NoteEffectsOn = false;
        setRightClickMode(RightClick::Erase);
    });
    Lb1_.bind(14, [this] { setRightClickMode(RightClick::Menu); });
    Lb1_.bind(15, [this] {
        const bool on = app_.workspace.view.RightClickMode == RightClick::Tips;
        setRightClickMode(on ? RightClick::Erase : RightClick::Tips);
    });
    bindItem("mnuerase", [this] { Lb1_Click(13); });
    bindItem("mnuMenu", [this] { Lb1_Click(14); });
    bindItem("mnuTips", [this] { Lb1_Click(15); });
    Picmain_->onRightPress = [this](Picmain::Surface surface, QPoint at) { rightPress(surface, at); };
    screen_.onTip = [this](Box box) {
        showTip(box == Box::MusicBox ? Picmain::Surface::MusicBox : Picmain::Surface::Beatbox);
    };
    screen_.onMenu = [this](std::string_view popup) { app_.menu.popup(popup).exec(QCursor::pos()); };
    channelStrip_->onRightPress = [this](int channel) { rightPressOnSquare(channel); };
    for (const ControlTip& row : kControlTips) {
        auto* control = toolPanel_->findChild<QWidget*>(QLatin1String(row.control));
        control->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(control, &QWidget::customContextMenuRequested, this, [this, control, tip = row.tip] {
            if (app_.workspace.view.RightClickMode == RightClick::Tips)
                frminfo_->showBeside(*control, tip);
        });
    }
    toolbMenu_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(toolbMenu_, &QWidget::customContextMenuRequested, this,
            [this](QPoint at) { app_.menu.popup("mnupopup6").popup(toolbMenu_->mapToGlobal(at)); });
    frminfo_->onDontShow = [this] { setRightClickMode(RightClick::Erase); };
}

void form1::bindKeys() {
    struct KeyRow {
        QKeySequence key;
        std::function<void()> press;
    };
    const auto item = [this](const char* name) { return [this, name] { app_.menu.item(name).trigger(); }; };
    const KeyRow rows[]{
        {QKeySequence("Ctrl+O"), item("mnuOpen")},
        {QKeySequence("Ctrl+S"), item("mnuSave2")},
        {QKeySequence("Ctrl+Shift+S"), item("mnuSaveAs2")},
        {QKeySequence("Ctrl+N"), item("mnuNew")},
        {QKeySequence("Ctrl+Q"), item("mnuExit")},
        {QKeySequence("Ctrl+Z"), item("undo")},
        {QKeySequence("Ctrl+X"), item("mnuCut")},
        {QKeySequence("Ctrl+C"), item("mnuCopy")},
        {QKeySequence("Ctrl+V"), item("mnuPasteoverwrite")},
        {QKeySequence("Ctrl+Shift+V"), item("mnuPasteInsert")},
        {QKeySequence(Qt::Key_F1), [this] { imgTitleHelp_Click(); }},
        {QKeySequence(Qt::Key_Home), item("mnuRewind")},
        {QKeySequence(Qt::Key_Space), [this] { PlayAndStop_Click(app_.workspace.play.Playing); }},
    };
    for (const KeyRow& row : rows) {
        auto* shortcut = new QShortcut(row.key, this);
        shortcut->setAutoRepeat(false);
        connect(shortcut, &QShortcut::activated, this, row.press);
    }
}

void form1::setRightClickMode(RightClick mode) {
    app_.workspace.view.RightClickMode = mode;
    if (mode != RightClick::Tips)
        frminfo_->hide();
    showModes();
}

void form1::showTip(Picmain::Surface surface) {
    for (const SurfaceTip& row : kSurfaceTips) {
        if (row.surface != surface)
            continue;
        if (surface == Picmain::Surface::MusicBox)
            frminfo_->showForTableau(*this, Picmain_->musicBoxTop());
        else
            frminfo_->showBeside(*Picmain_->surface(surface), row.tip);
    }
}

void form1::rightPress(Picmain::Surface surface, QPoint at) {
    if (surface == Picmain::Surface::None)
        app_.menu.popup("mnupopup6").popup(at);
    else if (app_.workspace.view.RightClickMode == RightClick::Tips)
        showTip(surface);
}

void form1::rightPressOnSquare(int channel) {
    if (app_.workspace.view.RightClickMode == RightClick::Tips)
        frminfo_->showBeside(*channelStrip_->square(channel), kSquareTip);
    else
        toggleMuted(channel);
}

void form1::toggleMuted(int channel) {
    if (!channelStrip_->square(channel))
        return;
    app_.workspace.toggleMuted(channel);
    player_.silenceMuted(channel);
    showSongEnd();
    DrawNoteArray();
    DrawBeatArray();
    if (app_.setup.refresh)
        app_.setup.refresh();
}

void form1::showPercussion(bool shown) {
    parts_.percussion = shown;
    settings::save(app_.settings, settings::Percussion, shown);
    layOut();
    showModes();
}

void form1::showEditingToolbar(bool shown) {
    parts_.editingToolbar = shown;
    settings::save(app_.settings, settings::Editing_Toolbar, shown);
    layOut();
    showModes();
}

void form1::setNotationStyle(int style) {
    app_.workspace.view.Notationstyle = static_cast<std::int16_t>(style);
    settings::save(app_.settings, settings::Notationstyle, static_cast<std::int16_t>(style));
    layOut();
    showModes();
}

void form1::setAccidentals(bool shown) {
    app_.workspace.view.Accidentals = shown;
    settings::save(app_.settings, settings::Accidentals, shown);
    layOut();
    showModes();
}

/// Every button and menu item that stands for a mode follows it.
void form1::showModes() {
    const Workspace& workspace = app_.workspace;
    const bool traditional = workspace.view.Notationstyle == 1;
    Cmd2_.setOn(8, workspace.play.ShowPlayLine);
    Cmd2_.setOn(9, workspace.play.LoopOn);
    Lb1_.setOn(9, parts_.percussion);
    Lb1_.setOn(10, !traditional);
    Lb1_.setOn(11, traditional);
    Lb1_.setOn(12, workspace.view.Accidentals);
    Lb1_[12].setEnabled(traditional);
    showMouseMode();
    Lb1_.setOn(21, workspace.view.Check4);
    toolPanel_->effects().showOn(workspace.view.NoteEffectsOn);
    const RightClick mode = workspace.view.RightClickMode;
    Lb1_.setOn(13, mode == RightClick::Erase);
    Lb1_.setOn(14, mode == RightClick::Menu);
    Lb1_.setOn(15, mode == RightClick::Tips);
    app_.menu.prepare(app_.settings, parts_.percussion);
    app_.menu.item("mnuerase").setChecked(mode == RightClick::Erase);
    app_.menu.item("mnuMenu").setChecked(mode == RightClick::Menu);
    app_.menu.item("mnuTips").setChecked(mode == RightClick::Tips);
}

} // namespace velmora
