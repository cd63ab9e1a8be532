// SPDX-License-Identifier: GPL-2.0-or-later
// Which routine each command of the keyboard presses: by button, menu and key alike.
#include "base/Settings.h"
#include "composition/Workspace.h"
#include "parts/CommandBinding.h"
#include "parts/Desk.h"
#include "parts/Windows.h"
#include "shell/CommandButton.h"
#include "shell/ControlPainter.h"
#include "shell/Frmmenu.h"
#include "sound/DeviceChooser.h"
#include "sound/MidiPort.h"
#include "synth/Commands.h"
#include "synth/ComposePanel.h"
#include "synth/KeyArea.h"
#include "synth/RecordLamp.h"
#include "synth/SchemePanel.h"
#include "synth/SoundOnePanel.h"
#include "synth/frmsynth.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QPainter>

namespace velmora {

namespace {
constexpr int kMargin = 12;
constexpr int kStripTop = 4;
constexpr int kStripHeight = 48;
constexpr int kButtonGap = 4;
constexpr int kGroupGap = 10;
constexpr int kLampTop = 16;
constexpr QSize kLamp(48, 24);
/// After these a group of buttons ends.
constexpr std::array kGroupEnds{synthLb1("edit"), synthLb1("stop"), synthLb1("silence"), synthLb1("studio")};
/// From left to right: "No Sound" stands beside the reset.
constexpr std::array kStripOrder{
    synthLb1("open"),    synthLb1("save"),  synthLb1("edit"),   synthLb1("record"), synthLb1("saveRecording"),
    synthLb1("loop"),    synthLb1("play"),  synthLb1("pause"),  synthLb1("stop"),   synthLb1("reset"),
    synthLb1("silence"), synthLb1("strip"), synthLb1("studio"), synthLb1("help"),   synthLb1("close")};

/// Vertical rules between the groups of the command strip.
class StripRule : public QWidget {
public:
    StripRule(const Appearance& look, QWidget* parent) : QWidget(parent), look_(look) {}

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        paintSeparator(painter, look_.skin(), 0, 0, height());
    }

private:
    const Appearance& look_;
};
} // namespace

void frmsynth::bindCommands() {
    constexpr CommandBank frmsynth::*Lb1 = &frmsynth::Lb1_;
    static constexpr auto kCommands = std::to_array<CommandBinding<frmsynth>>({
        {{Lb1, synthLb1("open")}, [](frmsynth& form) { form.Command1_Click(); }, "", "Ctrl+O"},
        {{Lb1, synthLb1("save")}, [](frmsynth& form) { form.Command6_Click(); }, "", "Ctrl+S"},
        {{Lb1, synthLb1("edit")}, [](frmsynth& form) { form.CmdEd_Click(); }, "", "Ctrl+E"},
        {{Lb1, synthLb1("record")}, [](frmsynth& form) { form.CmdRec_Click(); }, "", "Ctrl+R"},
        {{Lb1, synthLb1("saveRecording")},
         [](frmsynth& form) { form.CmdRecord_Click(); },
         "",
         "Ctrl+Shift+S"},
        {{Lb1, synthLb1("loop")}, [](frmsynth& form) { form.keyboard_.setLoop(!form.keyboard_.loops()); }},
        {{Lb1, synthLb1("play")}, [](frmsynth& form) { form.keyboard_.Check7_Click(); }, "", "Ctrl+P"},
        {{Lb1, synthLb1("pause")}, [](frmsynth& form) { form.keyboard_.Check6_Click(); }},
        {{Lb1, synthLb1("stop")}, [](frmsynth& form) { form.keyboard_.Check4_Click(); }},
        {{Lb1, synthLb1("reset")}, [](frmsynth& form) { form.keyboard_.panic(); }},
        {{Lb1, synthLb1("strip")}, [](frmsynth& form) { form.Command3_Click(); }, "mnukeybdtoolbars"},
        {{Lb1, synthLb1("silence")}, [](frmsynth& form) { form.keyboard_.panic(); }},
        {{Lb1, synthLb1("keep")}, [](frmsynth& form) { form.desk_.windows.keepPlayed(form); }, "", "Ctrl+K"},
        {{Lb1, synthLb1("help")}, [](frmsynth& form) { form.imgTitleHelp_Click(); }, "mnukeybdHelp", "F1"},
        {{Lb1, synthLb1("close")}, [](frmsynth& form) { form.close(); }, "mnukeybdclose"},
        {{}, [](frmsynth& form) { form.setDocked(!form.docking_.isOn()); }, "mnukeybdDock"},
        {{}, [](frmsynth& form) { form.Lmnu_Click(1); }, "mnuKeybdsetup"},
        {{}, [](frmsynth& form) { form.Lmnu_Click(2); }, "mnuKeybdCompose"},
        {{}, [](frmsynth& form) { form.Lmnu_Click(3); }, "mnukeybdSound1toolbar"},
        {{}, [](frmsynth& form) { form.Lmnu_Click(4); }, "mnukeybdSound2toolbar"},
    });
    for (const auto& [button, press, item, key] : kCommands)
        bindCommand(*this, desk_.menu,
                    {button.bank ? &(this->*button.bank) : nullptr, button.index, item, key},
                    [this, press = press] {
                        press(*this);
                        used();
                    });
    if (desk_.windows.has(Windows::Name::Record))
        Lb1_.bind(synthLb1("studio"), [this] { desk_.windows.open(Windows::Name::Record); });
    Lb1_[synthLb1("reset")].setForm(ButtonForm::Icon);
    Lb1_[synthLb1("reset")].setAccessibleName("MIDI reset");
    scheme_->onOpen = [this] { Command1_Click(); };
    scheme_->onSave = [this] { Command6_Click(); };
    scheme_->Check1_Click = [this](bool on) { setEditing(on); };
    scheme_->onScheme = [this](int index) { chooseScheme(index); };
    scheme_->onFit = [this] { fitKeyboard(); };
    compose_->onStepEntry = [this](bool on) { setStepEntry(on); };
    compose_->onOverdub = [this](bool on) { overdub_.setOn(on); };
    compose_->onTakes = [this](QWidget& button) { popUpTakes(button); };
    scheme_->onDevice = [this](int item) { chooseDevice(item); };
    for (std::size_t i = 0; i < kGroupEnds.size(); ++i)
        (new StripRule(look(), Ibak5()))->setObjectName(QStringLiteral("rule(%1)").arg(i));
}

void frmsynth::bindMenu() {
    desk_.menu.onPrepare(*this, "mnukeybdpopup1",
                         [this] { desk_.menu.item("mnukeybdDock").setChecked(docking_.isOn()); });
    desk_.menu.onPrepare(*this, "mnukeybdpopup2", [this] {
        desk_.menu.item("mnukeybdtoolbars").setChecked(stripShown_);
        desk_.menu.item("mnukeybdSound1toolbar").setChecked(Lmnu_[2]->isChecked());
        desk_.menu.item("mnukeybdSound2toolbar").setChecked(Lmnu_[3]->isChecked());
    });
}

void frmsynth::setDocked(bool docked) {
    docking_.setOn(docked);
    settings::save(desk_.settings, settings::Synthup, docked);
}

/// A right click beside the controls.
void frmsynth::contextMenuEvent(QContextMenuEvent* event) {
    const QWidget* at = childAt(event->pos());
    if (!at || at == Ibak5())
        desk_.menu.popup("mnukeybdpopup1").popup(event->globalPos());
}

/// Under its tab.
void frmsynth::popUpTools() {
    const QAbstractButton* tab = Lmnu_[4];
    desk_.menu.popup("mnukeybdpopup2").popup(tab->mapToGlobal(QPoint(0, tab->height() + 2)));
}

void frmsynth::layOutStrip() {
    int x = kMargin;
    std::size_t group = 0;
    for (const int index : kStripOrder) {
        CommandButton& button = Lb1_[index];
        button.setGeometry(x, kStripTop, std::max(kStripHeight, button.sizeHint().width()), kStripHeight);
        x += button.width() + kButtonGap;
        if (group < kGroupEnds.size() && index == kGroupEnds[group]) {
            if (auto* rule = findChild<QWidget*>(QStringLiteral("rule(%1)").arg(group)))
                rule->setGeometry(x + 3, kStripTop + 4, 2, kStripHeight - 8);
            x += kGroupGap;
            ++group;
        }
    }
    lamp_->setGeometry(QRect({width() - kMargin - kLamp.width() - 4, kLampTop}, kLamp));
}

void frmsynth::CmdEd_Click() {
    setEditing(!keyboard_.controls().Check1);
}

void frmsynth::setEditing(bool on) {
    presses_.forget();
    keyboard_.setEditing(on);
    Picture1_->setEditing(on);
    if (!on && !focusWidget())
        Picture1_->setFocus();
    used();
}

/// The command of the composing window, where it is written.
void frmsynth::setStepEntry(bool on) {
    QAction& command = desk_.menu.item("mnuStepEntry");
    if (settings::read(desk_.settings, settings::Step_entry) != on)
        command.trigger();
}

/// The device that the list names, or the one after it where that one fails.
void frmsynth::chooseDevice(int item) {
    releaseAll();
    {
        const Edit edit(desk_.workspace, Change::Device);
        desk_.workspace.setup.Combo2 = desk_.devices.chooseOrNext(item);
    }
    keyboard_.sendInstrumentAgain();
    scheme_->listDevices();
    used();
    soundOne_->instrumentButton().setFocus();
}

} // namespace velmora
