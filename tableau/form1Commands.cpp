// SPDX-License-Identifier: GPL-2.0-or-later
// Which routine each command of the composing window presses: by button, menu and key alike.
#include "base/Settings.h"
#include "composition/Workspace.h"
#include "parts/Application.h"
#include "shell/Frmmenu.h"
#include "shell/MenuStrip.h"
#include "shell/frminfo.h"
#include "tableau/ChannelStrip.h"
#include "tableau/Commands.h"
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
    app_.menu.bind(*this, item, std::move(routine));
}

void form1::bindFileCommands() {
    Cmd2_.bind(cmd2("clear"), [this] { ClearAll(); });
    Cmd2_.bind(cmd2("open"), [this] { Command33_Click(); });
    Cmd2_.bind(cmd2("save"), [this] { mSaveAs_Click(); });
    files_.onBusy = [](bool busy) {
        if (busy)
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        else
            QGuiApplication::restoreOverrideCursor();
    };
    Lb1_.bind(lb1("clear"), [this] { ClearAll(); });
    Lb1_.bind(lb1("undo"), [this] { OpenforUndo(); });
    Lb1_.bind(lb1("help"), [this] { imgTitleHelp_Click(); });
    if (app_.setup.open) {
        Lb1_.bind(lb1("setup"), [this] { app_.setup.open(); });
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
    Cmd2_.bind(cmd2("play"), [this] { PlayAndStop_Click(false); });
    Cmd2_.bind(cmd2("segment"), [this] { PlaySelection_Click(); });
    Cmd2_.bind(cmd2("pause"),
               [&play] { play.PausePending = true; }); // with nothing playing, Play starts at the mark
    Cmd2_.bind(cmd2("stop"), [this] { PlayAndStop_Click(true); });
    Cmd2_.bind(cmd2("rewind"), [this] { engine_.RewindBut_Click(); });
    Cmd2_.bind(cmd2("line"), [this, &play] {
        play.ShowPlayLine = !play.ShowPlayLine;
        settings::save(app_.settings, settings::Playing_position, play.ShowPlayLine);
        showModes();
    });
    Cmd2_.bind(cmd2("loop"), [this, &play] {
        play.LoopOn = !play.LoopOn;
        showModes();
    });
    Lb1_.bind(lb1("silence"), [this] { Command32_Click(); });
    bindItem("mnuRewind", [this] { engine_.RewindBut_Click(); });
    bindItem("mnuPlay", [this] { PlayAndStop_Click(false); });
    bindItem("mnupause", [this] { Cmd2_Click(5); });
    bindItem("mnuStopPlaying", [this] { PlayAndStop_Click(true); });
    bindItem("mnuStopall", [this] { Command32_Click(); });
}

void form1::bindViewCommands() {
    Cmd2_.bind(cmd2("mode"), [this] { FunctionBut_Click(); });
    Lb1_.bind(lb1("mode"), [this] { FunctionBut_Click(); });
    Lb1_.bind(lb1("static"), [this] { Check4_Click(); });
    channelStrip_->Label8_Click = [this](int channel) { Label8_Click(channel); };
    for (int tab = 0; tab < 3; ++tab)
        Lb1_.bind(lb1("maker") + tab, [this, tab] {
            toolPanel_->showPage(static_cast<ToolPanel::Page>(tab));
            app_.workspace.view.NoteEffectsOn = tab == ToolPanel::Effects;
            showModes();
        });
    Lb1_.bind(lb1("percussion"), [this] { showPercussion(!parts_.percussion); });
    Lb1_.bind(lb1("colourful"), [this] { setNotationStyle(0); });
    Lb1_.bind(lb1("traditional"), [this] { setNotationStyle(1); });
    Lb1_.bind(lb1("accidentals"), [this] { setAccidentals(!app_.workspace.view.Accidentals); });
    Lb1_.bind(lb1("hide"), [this] { showEditingToolbar(!parts_.editingToolbar); });
    bindItem("mnuPercussion", [this] { Lb1_Click(9); });
    bindItem("mnuEdit", [this] { Lb1_Click(16); });
    bindItem("mnuNotestyle1", [this] { setNotationStyle(0); });
    bindItem("mnuNotestyle2", [this] { setNotationStyle(1); });
    bindItem("mnuAccidentals", [this] { setAccidentals(true); });
    bindItem("mnuNoAccidentals", [this] { setAccidentals(false); });
    app_.menu.onPrepare(*this, [this] { showModes(); });
}

void form1::bindRightClick() {
    Lb1_.bind(lb1("erase"), [this] {
        app_.workspace.view.NoteEffectsOn = false;
        setRightClickMode(RightClick::Erase);
    });
    Lb1_.bind(lb1("menu"), [this] { setRightClickMode(RightClick::Menu); });
    Lb1_.bind(lb1("tips"), [this] {
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
    Workspace& workspace = app_.workspace;
    workspace.toggleMuted(channel);
    const auto index = static_cast<std::size_t>(channel);
    std::int16_t& cell = workspace.score.PlayedCell[index];
    if (workspace.play.Playing && workspace.score.ChannelMuted[index] && cell >= 0) {
        // Playing, which skips the channel from now on, would leave this note on.
        player_.CurrentChannel = channel;
        player_.StopNote(cellRow(cell));
        cell = kEmptyCell;
    }
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
    struct ModeRow {
        int button; ///< of `Lb1`
        const char* item;
        bool on;
    };
    const Workspace& workspace = app_.workspace;
    const bool traditional = workspace.view.Notationstyle == 1;
    const bool accidentals = workspace.view.Accidentals;
    const RightClick mode = workspace.view.RightClickMode;
    const ModeRow rows[]{
        {lb1("percussion"), "mnuPercussion", parts_.percussion},
        {lb1("colourful"), "mnuNotestyle1", !traditional},
        {lb1("traditional"), "mnuNotestyle2", traditional},
        {lb1("accidentals"), "mnuAccidentals", accidentals},
        {lb1("erase"), "mnuerase", mode == RightClick::Erase},
        {lb1("menu"), "mnuMenu", mode == RightClick::Menu},
        {lb1("tips"), "mnuTips", mode == RightClick::Tips},
    };
    for (const ModeRow& row : rows) {
        Lb1_.setOn(row.button, row.on);
        app_.menu.item(row.item).setChecked(row.on);
    }
    app_.menu.item("mnuNoAccidentals").setChecked(!accidentals);
    app_.menu.item("mnuEdit").setChecked(parts_.editingToolbar);
    Lb1_[lb1("accidentals")].setEnabled(traditional);
    for (const char* item : {"mnuAccidentals", "mnuNoAccidentals"})
        app_.menu.item(item).setEnabled(traditional);
    Cmd2_.setOn(cmd2("line"), workspace.play.ShowPlayLine);
    Cmd2_.setOn(cmd2("loop"), workspace.play.LoopOn);
    Lb1_.setOn(lb1("static"), workspace.view.Check4);
    toolPanel_->effects().showOn(workspace.view.NoteEffectsOn);
    showMouseMode();
}

} // namespace velmora
