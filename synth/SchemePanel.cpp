// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/SchemePanel.h"

#include "base/QtText.h"
#include "keyboard/Keyboard.h"
#include "keyboard/KeyboardLayout.h"
#include "parts/Desk.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "shell/ReadOut.h"
#include "sound/DeviceChooser.h"
#include "sound/MidiInputs.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>

#include <algorithm>

namespace velmora {

namespace {
constexpr int kColumnGap = 24;
constexpr int kFileWords = 128;
constexpr int kFileWidth = 332;
constexpr int kSchemesWidth = 200;
constexpr int kWidestDevices = 360;
constexpr int kRow = 24;
} // namespace

SchemePanel::SchemePanel(const SynthParts& parts, QWidget* parent)
    : SynthPanel(parts, "Picture16", parent)
    , Label7(addWords("Keyboard Setup File "))
    , Label3(new ReadOut(parts.look, "Label3", this))
    , Command1(addButton("Command1", "Open", "Open a file that says which computer key plays which key",
                         [this] { onOpen(); }))
    , Command6(addButton("Command6", "Save", "Keep the labels of the keys in a file", [this] { onSave(); }))
    , Check1(addCheck("Check1", "Edit", "Edit Keyboard setup", [this](bool on) { Check1_Click(on); })) {
    Label7->setObjectName("Label7");
    Label3->setText("keyboard.key");
    addSchemes();
    addDevices();
    addInputs();
}

void SchemePanel::addSchemes() {
    schemeWords_ = addWords("Schemes");
    schemes_ = new QComboBox(this);
    schemes_->setObjectName("schemes");
    schemes_->setAccessibleName("Schemes");
    schemes_->setPlaceholderText("Choose");
    for (const ShippedScheme& shipped : shippedSchemes())
        schemes_->addItem(toQString(shipped.name));
    schemes_->setCurrentIndex(-1);
    parts_.desk.tips.SetToolTip(*schemes_, {"Schemes", "Labels for the keyboards of other countries", ""});
    connect(schemes_, &QComboBox::activated, this, [this](int index) { onScheme(index); });
    fit_ = addButton("fitKeyboard", "Fit my keyboard", "Labels every key with what your own keyboard types",
                     [this] { onFit(); });
}

void SchemePanel::addInputs() {
    inputWords_ = addWords("MIDI inputs");
    inputs_ = new QListWidget(this);
    inputs_->setObjectName("inputs");
    inputs_->setAccessibleName("MIDI inputs");
    inputs_->setSelectionMode(QAbstractItemView::NoSelection);
    inputs_->setFocusPolicy(Qt::TabFocus);
    parts_.desk.tips.SetToolTip(
        *inputs_,
        {"MIDI inputs", "What is plugged in plays these keys at once; nothing is to be chosen", ""});
}

/// What is there plays by itself.
void SchemePanel::listInputs() {
    inputs_->clear();
    for (const MidiInputs::Source& source : parts_.desk.inputs.sources())
        inputs_->addItem(toQString(source.name));
    if (inputs_->count() > 0)
        return;
    auto* none = new QListWidgetItem("None plugged in", inputs_);
    none->setFlags(Qt::NoItemFlags);
}

void SchemePanel::addDevices() {
    deviceWords_ = addWords("Midi Device");
    Combo1 = new QComboBox(this);
    Combo1->setObjectName("Combo1");
    Combo1->setAccessibleName("Midi Device");
    parts_.desk.tips.SetToolTip(*Combo1, {"Midi Device", "The device through which everything sounds", ""});
    connect(Combo1, &QComboBox::activated, this, [this](int item) { onDevice(item); });
}

void SchemePanel::listDevices() {
    if (Combo1->view()->isVisible())
        return;
    const DeviceChooser::List list = parts_.desk.devices.list();
    if (list.texts != listed_) {
        listed_ = list.texts;
        Combo1->clear();
        for (const std::string& text : list.texts)
            Combo1->addItem(toQString(text));
    }
    Combo1->setCurrentIndex(list.item);
}

void SchemePanel::layOut(int width) {
    int x = kMargin;
    Label7->setGeometry(x, 12, kFileWords, 20);
    Label3->setGeometry(x + kFileWords, 12, kFileWidth - kFileWords, 20);
    Command1->setGeometry(x, 56, 72, kRow);
    Command6->setGeometry(x + 80, 56, 72, kRow);
    putAt(*Check1, x + 172, 58);
    x += kFileWidth + kColumnGap;
    schemeWords_->setGeometry(x, 12, 56, 20);
    schemes_->setGeometry(x + 56, 10, kSchemesWidth - 56, kRow);
    fit_->setGeometry(x, 56, kSchemesWidth, kRow);
    x += kSchemesWidth + kColumnGap;
    const int devices = std::min(kWidestDevices, width - kMargin - x);
    deviceWords_->setGeometry(x, 12, 76, 20);
    Combo1->setGeometry(x + 76, 10, devices - 76, kRow);
    inputWords_->setGeometry(x, 44, 76, 20);
    inputs_->setGeometry(x + 76, 44, devices - 76, 48);
    setRules({kMargin + kFileWidth + kColumnGap / 2, x - kColumnGap / 2});
}

void SchemePanel::refresh() {
    showEditing(parts_.keyboard.controls().Check1);
    const auto shipped = shippedSchemes();
    const auto chosen = std::ranges::find_if(shipped, [this](const ShippedScheme& row) {
        return std::ranges::equal(row.labels, parts_.keyboard.scheme().labels);
    });
    schemes_->setCurrentIndex(chosen == shipped.end() ? -1 : static_cast<int>(chosen - shipped.begin()));
}

void SchemePanel::showFile(const QString& name) {
    Label3->setText(name);
}

void SchemePanel::showEditing(bool on) {
    Check1->setChecked(on);
}

void SchemePanel::showEvent(QShowEvent* event) {
    SynthPanel::showEvent(event);
    listDevices();
    listInputs();
}

} // namespace velmora
