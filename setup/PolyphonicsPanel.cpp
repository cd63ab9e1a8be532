// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/PolyphonicsPanel.h"

#include "base/QtText.h"
#include "composition/SetupRules.h"
#include "composition/Workspace.h"
#include "parts/ChannelSquare.h"
#include "parts/Desk.h"
#include "setup/SetupParts.h"
#include "shell/ExToolTip.h"
#include "sound/Chords.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>

namespace velmora {

namespace {
constexpr int kFirstColumn = 172; ///< its middle
constexpr int kColumn = 40;
} // namespace

PolyphonicsPanel::PolyphonicsPanel(Desk& desk, QWidget* parent) : QWidget(parent), desk_(desk) {
    setObjectName("polyphonicsPanel");
    addList();
    addChannels();
}

void PolyphonicsPanel::addList() {
    QGroupBox* group = addGroup(*this, "Chord", {8, 8, 480, 76});
    Combo3 = new QComboBox(group);
    Combo3->setObjectName("Combo3");
    Combo3->setAccessibleName("Chord");
    Combo3->setGeometry(12, 40, 456, 24);
    for (const std::string_view name : kSetupChordNames)
        Combo3->addItem(toQString(name));
    desk_.tips.SetToolTip(*Combo3, {"Chord", "The chord that a ticked channel plays", ""});
    connect(Combo3, &QComboBox::activated, this,
            [this](int item) { Combo3_Click(desk_.workspace.setup, desk_.workspace.chords, item); });
}

void PolyphonicsPanel::addChannels() {
    QGroupBox* group = addGroup(*this, "Channels: Melody Group", {8, 92, 480, 164});
    addWords(*group, "Chord on channel", {12, 74, 140, 20});
    addWords(*group, "Strum chords", {12, 106, 140, 20});
    for (int channel = 0; channel < kMelodyChannels; ++channel) {
        const int middle = kFirstColumn + channel * kColumn;
        (new ChannelSquare(channel, group))->move(middle - 10, 42);
        Ch[channel] = addBox(*group, QStringLiteral("Ch(%1)").arg(channel), {middle, 84});
    }
    for (int channel = 0; channel < kMelodyChannels; ++channel)
        Chkstrum[channel] = addBox(*group, QStringLiteral("Chkstrum(%1)").arg(channel),
                                   {kFirstColumn + channel * kColumn, 116});
    for (int channel = 0; channel < kMelodyChannels; ++channel) {
        const QString number = QString::number(channel + 1);
        Ch[channel]->setAccessibleName("Chord on channel " + number);
        Chkstrum[channel]->setAccessibleName("Strum the chords of channel " + number);
        desk_.tips.SetToolTip(
            *Ch[channel], {"Chord on channel " + number, "Give every position the chord of the list", ""});
        desk_.tips.SetToolTip(*Chkstrum[channel],
                              {"Strum channel " + number, "Play the notes of a chord one after another", ""});
        connect(Ch[channel], &QCheckBox::clicked, this, [this, channel] { Ch_Click(channel); });
        connect(Chkstrum[channel], &QCheckBox::clicked, this,
                [this, channel](bool ticked) { desk_.workspace.setup.Chkstrum[channel] = ticked; });
    }
    addSmallWords(*group, "A right click on a note then gives it the chord of the list.", {12, 138, 456, 16});
}

void PolyphonicsPanel::Ch_Click(int channel) {
    velmora::Ch_Click(desk_.workspace, channel, Ch[channel]->isChecked());
}

void PolyphonicsPanel::refresh() {
    const SetupState& setup = desk_.workspace.setup;
    Combo3->setCurrentIndex(setup.Combo3);
    for (int channel = 0; channel < kMelodyChannels; ++channel) {
        Ch[channel]->setChecked(setup.Ch[channel]);
        Chkstrum[channel]->setChecked(setup.Chkstrum[channel]);
    }
}

} // namespace velmora
