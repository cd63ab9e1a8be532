// SPDX-License-Identifier: GPL-2.0-or-later
// Which routine each command of the composing window presses: by button, menu and key alike.
#include "base/Settings.h"
#include "composition/Player.h"
#include "composition/ScoreFiles.h"
#include "composition/Workspace.h"
#include "keyboard/StepEntry.h"
#include "parts/CommandBinding.h"
#include "parts/Desk.h"
#include "parts/Windows.h"
#include "shell/Frmmenu.h"
#include "shell/MenuStrip.h"
#include "shell/frminfo.h"
#include "studio/ScoreExport.h"
#include "tableau/ChannelStrip.h"
#include "tableau/Commands.h"
#include "tableau/EffectsPage.h"
#include "tableau/FormScreen.h"
#include "tableau/Picmain.h"
#include "tableau/ScoreExports.h"
#include "tableau/ToolPanel.h"
#include "tableau/form1.h"

#include <QAction>
#include <QGuiApplication>

namespace velmora {

namespace {
constexpr int kSquareTip = 6;

/// The other windows, each with its button and its item in the menus; those that are still to come stay
/// disabled.
struct WindowRow {
    int lb1;
    std::string_view item;
    Windows::Name name;
};
constexpr auto kWindows = std::to_array<WindowRow>({
    {lb1("setup"), "mnuSetup", Windows::Name::frmsetup},
    {lb1("keyboard"), "", Windows::Name::frmsynth},
    {lb1("studio"), "mnuRecordtool", Windows::Name::Record},
    {lb1("songwriter"), "", Windows::Name::MDIScore},
    {lb1("tutorial"), "mnuTutorial", Windows::Name::Wiz},
});

/// The same on the controls of the effects.
struct ControlTip {
    const char* control;
    int tip;
};
constexpr std::array<ControlTip, 8> kControlTips{{
    {"CmdInst", 7},
    {"Text5", 7},
    {"Combo3", 8},
    {"lblVolume", 9},
    {"LblMod", 9},
    {"LblPan", 9},
    {"LblReverb", 9},
    {"LblChorus", 9},
}};
constexpr int kUndoEffectsTip = 10;
constexpr int kStaticTip = 11;
} // namespace

/// Each command with its button, its menu item and its key.
void form1::bindCommands() {
    constexpr CommandBank form1::*Cmd2 = &form1::Cmd2_;
    constexpr CommandBank form1::*Lb1 = &form1::Lb1_;
    static constexpr auto kCommands = std::to_array<CommandBinding<form1>>({
        {{Cmd2, cmd2("clear")}, [](form1& form) { form.ClearAll(); }, "mnuNew", "Ctrl+N"},
        {{Lb1, lb1("clear")}, [](form1& form) { form.ClearAll(); }},
        {{Cmd2, cmd2("open")}, [](form1& form) { form.Command33_Click(); }, "mnuOpen", "Ctrl+O"},
        {{Cmd2, cmd2("save")}, [](form1& form) { form.Command34_Click(); }, "mnuSaveAs2", "Ctrl+Shift+S"},
        // In classic manners both items ask for a name; that is meant.
        {{}, [](form1& form) { form.save(); }, "mnuSave2", "Ctrl+S"},
        {{}, [](form1& form) { form.exportScore(ExportFormat::Midi); }, "mnuExportMidi"},
        {{}, [](form1& form) { form.exportScore(ExportFormat::Wav); }, "mnuExportWav"},
        {{}, [](form1& form) { form.exportScore(ExportFormat::Mp3); }, "mnuExportMp3"},
        {{}, [](form1& form) { form.Command3_Click(); }, "mnuExit", "Ctrl+Q"},
        {{Lb1, lb1("undo")}, [](form1& form) { form.OpenforUndo(); }, "undo", "Ctrl+Z"},
        {{Lb1, lb1("redo")}, [](form1& form) { form.redo(); }, "redo", "Ctrl+Shift+Z"},
        {{}, [](form1& form) { form.redo(); }, "", "Ctrl+Y"},
        {{}, [](form1& form) { form.desk_.windows.keepPlayed(form); }, "keepPlayed", "Ctrl+K"},
        {{Lb1, lb1("help")}, [](form1& form) { form.imgTitleHelp_Click(); }, "", "F1"},
        {{}, [](form1& form) { form.desk_.windows.help("index"); }, "mnuHelpfile"},

        {{Cmd2, cmd2("play")}, [](form1& form) { form.PlayAndStop_Click(false); }, "mnuPlay"},
        {{Cmd2, cmd2("stop")}, [](form1& form) { form.PlayAndStop_Click(true); }, "mnuStopPlaying"},
        {{}, [](form1& form) { form.PlayAndStop_Click(form.desk_.workspace.play.Playing); }, "", "Space"},
        {{Cmd2, cmd2("segment")}, [](form1& form) { form.PlaySelection_Click(); }},
        // With nothing playing, Play starts at the mark.
        {{Cmd2, cmd2("pause")},
         [](form1& form) { form.desk_.player.pause(); }, "mnupause"},
        {{Cmd2, cmd2("rewind")}, [](form1& form) { form.desk_.player.RewindBut_Click(); }, "mnuRewind", "Home"},
        {{Cmd2, cmd2("line")},
         [](form1& form) { form.showPlayLine(!form.desk_.workspace.play.ShowPlayLine); }},
        {{Cmd2, cmd2("loop")}, [](form1& form) { form.setLoop(!form.desk_.workspace.play.LoopOn); }},
        {{Lb1, lb1("silence")}, [](form1& form) { form.Command32_Click(); }, "mnuStopall"},

        {{Cmd2, cmd2("mode")}, [](form1& form) { form.FunctionBut_Click(); }},
        {{Lb1, lb1("mode")}, [](form1& form) { form.FunctionBut_Click(); }},
        {{Lb1, lb1("static")}, [](form1& form) { form.Check4_Click(); }},
        {{Lb1, lb1("maker")}, [](form1& form) { form.showToolPage(ToolPanel::Maker); }},
        {{Lb1, lb1("effects")}, [](form1& form) { form.showToolPage(ToolPanel::Effects); }},
        {{Lb1, lb1("editor")}, [](form1& form) { form.showToolPage(ToolPanel::Editor); }},

        {{Lb1, lb1("percussion")},
         [](form1& form) { form.showPercussion(!form.parts_.percussion); }, "mnuPercussion"},
        {{Lb1, lb1("colourful")}, [](form1& form) { form.setNotationStyle(0); }, "mnuNotestyle1"},
        {{Lb1, lb1("traditional")}, [](form1& form) { form.setNotationStyle(1); }, "mnuNotestyle2"},
        {{Lb1, lb1("accidentals")},
         [](form1& form) { form.setAccidentals(!form.desk_.workspace.view.Accidentals); }},
        {{}, [](form1& form) { form.setAccidentals(true); }, "mnuAccidentals"},
        {{}, [](form1& form) { form.setAccidentals(false); }, "mnuNoAccidentals"},
        {{Lb1, lb1("hide")},
         [](form1& form) { form.showEditingToolbar(!form.parts_.editingToolbar); }, "mnuEdit"},

        // On many keyboards "+" needs Shift; its key without is the same to the hand.
        {{}, [](form1& form) { form.zoomRows(1); }, "", "Ctrl++"},
        {{}, [](form1& form) { form.zoomRows(1); }, "", "Ctrl+="},
        {{}, [](form1& form) { form.zoomRows(-1); }, "", "Ctrl+-"},
        {{}, [](form1& form) { form.resetRows(); }, "", "Ctrl+0"},

        {{}, [](form1& form) { form.setStepEntry(!form.stepEntry_->isOn()); }, "mnuStepEntry"},
        {{}, [](form1& form) { form.setClassic(!form.isClassic()); }, "mnuClassic"},
        {{Lb1, lb1("erase")}, [](form1& form) {
             form.desk_.workspace.view.NoteEffectsOn = false;
             form.setRightClickMode(RightClick::Erase);
         }, "mnuerase"},
        // The other way to it is a tick of `Ch` in the setup toolbar.
        {{Lb1, lb1("chord")}, [](form1& form) {
             const bool on = form.desk_.workspace.view.RightClickMode == RightClick::Polyphonic;
             form.setRightClickMode(on ? RightClick::Erase : RightClick::Polyphonic);
         }},
        {{Lb1, lb1("menu")}, [](form1& form) { form.setRightClickMode(RightClick::Menu); }, "mnuMenu"},
        {{Lb1, lb1("tips")}, [](form1& form) {
             const bool on = form.desk_.workspace.view.RightClickMode == RightClick::Tips;
             form.setRightClickMode(on ? RightClick::Erase : RightClick::Tips);
         }, "mnuTips"},
    });
    velmora::bindCommands<form1>(*this, desk_.menu, kCommands);
    for (const auto& [index, item, name] : kWindows)
        if (desk_.windows.has(name))
            bindCommand(*this, desk_.menu, {&Lb1_, index, item},
                        [this, name = name] { desk_.windows.open(name); });
    exports_->onWords = [this](const QString& words) { screen_->mention(words.toStdString()); };
    files_->onOpened = [this] { opened_ = true; };
    desk_.menu.onPrepare(*this, [this] { showModes(); });
    channelStrip_->Label8_Click = [this](int channel) { Label8_Click(channel); };
    files_->onBusy = [](bool busy) {
        if (busy)
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        else
            QGuiApplication::restoreOverrideCursor();
    };
}

void form1::bindRightClick() {
    Picmain_->onRightPress = [this](Picmain::Surface surface, QPoint at) {
        if (surface == Picmain::Surface::None)
            desk_.menu.popup("mnupopup6").popup(at);
        else if (desk_.workspace.view.RightClickMode == RightClick::Tips)
            screen_->showTip(surface);
    };
    channelStrip_->onRightPress = [this](int channel) { rightPressOnSquare(channel); };
    const auto tell = [this](QWidget& control, int tip) {
        control.setContextMenuPolicy(Qt::CustomContextMenu);
        connect(&control, &QWidget::customContextMenuRequested, this, [this, &control, tip] {
            if (desk_.workspace.view.RightClickMode == RightClick::Tips)
                frminfo_->showBeside(control, tip);
        });
    };
    for (const ControlTip& row : kControlTips)
        tell(*toolPanel_->findChild<QWidget*>(QLatin1String(row.control)), row.tip);
    tell(Lb1_[lb1("undo effects")], kUndoEffectsTip);
    tell(Lb1_[lb1("static")], kStaticTip);
    toolbMenu_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(toolbMenu_, &QWidget::customContextMenuRequested, this,
            [this](QPoint at) { desk_.menu.popup("mnupopup6").popup(toolbMenu_->mapToGlobal(at)); });
    frminfo_->onDontShow = [this] { setRightClickMode(RightClick::Erase); };
}

void form1::setRightClickMode(RightClick mode) {
    const Edit edit(desk_.workspace, Change::Modes);
    desk_.workspace.view.RightClickMode = mode;
}

void form1::rightPressOnSquare(int channel) {
    if (desk_.workspace.view.RightClickMode == RightClick::Tips)
        frminfo_->showBeside(*channelStrip_->square(channel), kSquareTip);
    else
        toggleMuted(channel);
}

void form1::toggleMuted(int channel) {
    if (!channelStrip_->square(channel))
        return;
    desk_.workspace.toggleMuted(channel);
    desk_.player.silenceMuted(channel);
}

bool form1::isClassic() const {
    return desk_.workspace.manners == Manners::classic();
}

void form1::setStepEntry(bool on) {
    stepEntry_->setOn(on);
    settings::save(desk_.settings, settings::Step_entry, on);
    showModes();
    announce(desk_.workspace, Change::Modes);
}

void form1::setClassic(bool classic) {
    desk_.workspace.setManners(Manners::of(classic));
    settings::save(desk_.settings, settings::Classic, classic ? 1 : 0);
}

void form1::showPercussion(bool shown) {
    parts_.percussion = shown;
    settings::save(desk_.settings, settings::Percussion, shown);
    layOut();
    showModes();
}

void form1::showEditingToolbar(bool shown) {
    parts_.editingToolbar = shown;
    settings::save(desk_.settings, settings::Editing_Toolbar, shown);
    layOut();
    showModes();
}

void form1::setNotationStyle(int style) {
    const Edit edit(desk_.workspace, Change::Looks);
    desk_.workspace.view.Notationstyle = static_cast<std::int16_t>(style);
    settings::save(desk_.settings, settings::Notationstyle, static_cast<std::int16_t>(style));
}

void form1::setAccidentals(bool shown) {
    const Edit edit(desk_.workspace, Change::Looks);
    desk_.workspace.view.Accidentals = shown;
    settings::save(desk_.settings, settings::Accidentals, shown);
}

void form1::showPlayLine(bool shown) {
    const Edit edit(desk_.workspace, Change::Modes);
    desk_.workspace.play.ShowPlayLine = shown;
    settings::save(desk_.settings, settings::Playing_position, shown);
}

void form1::setLoop(bool on) {
    const Edit edit(desk_.workspace, Change::Modes);
    desk_.player.setLoop(on);
}

/// A tab of the tool panel was pressed.
void form1::showToolPage(int page) {
    const Edit edit(desk_.workspace, Change::Modes);
    toolPanel_->showPage(static_cast<ToolPanel::Page>(page));
    desk_.workspace.view.NoteEffectsOn = page == ToolPanel::Effects;
}

/// A tick in another window may have changed it.
void form1::mentionRightClick(RightClick mode) {
    if (mode == RightClick::Polyphonic && shownRightClick_ != mode)
        screen_->mention("A right click now gives notes the chord of the list in the setup toolbar");
    shownRightClick_ = mode;
}

/// Every button and menu item that stands for a mode follows it.
void form1::showModes() {
    struct ModeRow {
        const char* item;
        int button; ///< of `Lb1`
        bool on;
    };
    const Workspace& workspace = desk_.workspace;
    const bool traditional = workspace.view.Notationstyle == 1;
    const bool accidentals = workspace.view.Accidentals;
    const RightClick mode = workspace.view.RightClickMode;
    const ModeRow rows[]{
        {"mnuPercussion", lb1("percussion"), parts_.percussion},
        {"mnuNotestyle1", lb1("colourful"), !traditional},
        {"mnuNotestyle2", lb1("traditional"), traditional},
        {"mnuAccidentals", lb1("accidentals"), accidentals},
        {"mnuerase", lb1("erase"), mode == RightClick::Erase && !workspace.view.NoteEffectsOn},
        {"mnuMenu", lb1("menu"), mode == RightClick::Menu},
        {"mnuTips", lb1("tips"), mode == RightClick::Tips},
    };
    for (const ModeRow& row : rows) {
        Lb1_.setOn(row.button, row.on);
        desk_.menu.item(row.item).setChecked(row.on);
    }
    desk_.menu.item("mnuNoAccidentals").setChecked(!accidentals);
    desk_.menu.item("mnuClassic").setChecked(isClassic());
    desk_.menu.item("mnuStepEntry").setChecked(stepEntry_->isOn());
    desk_.menu.item("mnuEdit").setChecked(parts_.editingToolbar);
    Lb1_.setOn(lb1("chord"), mode == RightClick::Polyphonic);
    mentionRightClick(mode);
    Lb1_[lb1("accidentals")].setEnabled(traditional);
    for (const char* item : {"mnuAccidentals", "mnuNoAccidentals"})
        desk_.menu.item(item).setEnabled(traditional);
    Cmd2_.setOn(cmd2("line"), workspace.play.ShowPlayLine);
    Cmd2_.setOn(cmd2("loop"), workspace.play.LoopOn);
    Lb1_.setOn(lb1("static"), workspace.view.Check4);
    toolPanel_->effects().showOn(workspace.view.NoteEffectsOn);
    if (mode != RightClick::Tips)
        frminfo_->hide();
    showMouseMode();
}

} // namespace velmora
