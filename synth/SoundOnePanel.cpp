// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/SoundOnePanel.h"

#include "base/QtText.h"
#include "base/Settings.h"
#include "composition/Workspace.h"
#include "keyboard/Keyboard.h"
#include "parts/Desk.h"
#include "parts/InstrumentField.h"
#include "parts/Windows.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "synth/KeyboardBar.h"

#include <QCheckBox>
#include <QRadioButton>

#include <algorithm>

namespace velmora {

namespace {
constexpr int kPercussionChannel = 9;
constexpr int kInstrumentWidth = 200;
constexpr int kColumnGap = 24;
constexpr int kCaption = 52;
constexpr int kReadOut = 124; ///< "-2 Octave Shift "
constexpr int kWidestBars = 420;
constexpr int kPolynotesWidth = 184;
constexpr int kOctavesWidth = 152;
constexpr int kOctaveStep = 50;
constexpr int kDotStep = 20;
constexpr int kRowStep = 30;
constexpr int kFirstRow = 12;

struct PolynotesRow {
    const char* name;
    const char* caption;
    const char* tip;
    Polynotes polynotes;
};
constexpr std::array<PolynotesRow, 3> kPolynotes{{
    {"Check10", "Single Notes", "A key plays its own note", Polynotes::Single},
    {"Check2", "Polynotes on Spacebar down", "A key plays the chord while the space bar is down",
     Polynotes::OnSpacebar},
    {"Check8", "Always play polynotes", "A key plays the chord", Polynotes::Always},
}};
constexpr std::array<int, 6> kOctaves{-2, -1, 0, 1, 2, 3};
} // namespace

SoundOnePanel::SoundOnePanel(const SynthParts& parts, QWidget* parent)
    : SynthPanel(parts, "Picture19", parent)
    , Command5(addButton("Command5", "Instrument:  Click to select",
                         "Choose what the keys sound like from the list of all instruments",
                         [this] { Command5_Click(); }))
    , LblInstrument(new InstrumentField(this))
    , octave_(new KeyboardBar(parts, KeyboardSlider::Octave, this))
    , chord_(new KeyboardBar(parts, KeyboardSlider::Chord, this))
    , strum_(new KeyboardBar(parts, KeyboardSlider::Strum, this))
    , Chkstrum(addCheck("Chkstrum", "Strum", "The notes of a chord follow each other",
                        [this](bool on) { parts_.keyboard.setStrum(on); })) {
    LblInstrument->setObjectName("LblInstrument");
    LblInstrument->setAccessibleName("Instrument");
    LblInstrument->onOpen = [this] { Command5_Click(); };
    parts.desk.tips.SetToolTip(*LblInstrument, {"Instrument", "What the keys sound like", ""});
    addPolynotes();
    addOctaves();
}

/// One of the three is on; a click on it leaves it on.
void SoundOnePanel::addPolynotes() {
    for (std::size_t i = 0; i < kPolynotes.size(); ++i) {
        const PolynotesRow& row = kPolynotes[i];
        polynotes_[i] = addCheck(row.name, row.caption, row.tip, [this, chosen = row.polynotes](bool /*on*/) {
            parts_.keyboard.setPolynotes(chosen);
            parts_.onDone();
        });
    }
}

void SoundOnePanel::addOctaves() {
    for (std::size_t i = 0; i < kOctaves.size(); ++i) {
        const int octaves = kOctaves[i];
        const QString caption = QString::number(octaves);
        Option5[i] = addRadio(QStringLiteral("Option5(%1)").arg(i), qPrintable(caption), [this, octaves] {
            parts_.keyboard.Option5_Click(octaves);
            octave_->showWords(QString::number(octaves) + QStringLiteral(" Octave Shift "));
        });
        Option5[i]->setAutoExclusive(false); // the slider may stand between them
        parts_.desk.tips.SetToolTip(*Option5[i],
                                    {caption + " Octave Shift", "Moves all keys by whole octaves", ""});
    }
    for (std::size_t i = 0; i < OptOct.size(); ++i) {
        // A strip without an action; that is meant.
        OptOct[i] = addRadio(QStringLiteral("OptOct(%1)").arg(i), "", [] {});
        parts_.desk.tips.SetToolTip(*OptOct[i], {i == 0 ? "Single Note" : "Octave", "", ""});
    }
}

void SoundOnePanel::Command5_Click() {
    if (parts_.keyboard.controls().SoundChannel == kPercussionChannel)
        return;
    parts_.desk.windows.pickInstrument(*window(), [this](PickedInstrument picked) {
        if (picked.melody)
            instrumentPicked();
    });
}

void SoundOnePanel::instrumentPicked() {
    const InstrumentSelection& chosen = parts_.desk.workspace.instruments;
    parts_.keyboard.chooseInstrument(chosen.MelodyInstrument, chosen.MelodyInstrumentName);
    settings::save(parts_.desk.settings, settings::Intrumentval, chosen.MelodyInstrument);
    settings::save(parts_.desk.settings, settings::Inst_Name, chosen.MelodyInstrumentName);
    showInstrument(toQString(chosen.MelodyInstrumentName), chosen.MelodyInstrument);
    parts_.onUse();
}

void SoundOnePanel::layOut(int width) {
    int x = kMargin;
    Command5->setGeometry(x, 10, kInstrumentWidth, 24);
    LblInstrument->setGeometry(x, 40, kInstrumentWidth, 24);
    for (std::size_t i = 0; i < OptOct.size(); ++i)
        OptOct[i]->setGeometry(x + static_cast<int>(i) * kDotStep, 73, 16, 20);
    x += kInstrumentWidth + kColumnGap;
    const int room = width - x - kMargin - kPolynotesWidth - kOctavesWidth - 2 * kColumnGap;
    const int bars = std::min(kWidestBars, room);
    int row = kFirstRow;
    for (KeyboardBar* bar : {octave_, chord_, strum_}) {
        bar->setSides(kCaption, kReadOut);
        bar->setGeometry(x, row, bars, 20);
        row += kRowStep;
    }
    x += bars + kColumnGap;
    for (std::size_t i = 0; i < polynotes_.size(); ++i)
        putAt(*polynotes_[i], x, kFirstRow + static_cast<int>(i) * kRowStep);
    x += kPolynotesWidth + kColumnGap;
    putAt(*Chkstrum, x, kFirstRow);
    for (std::size_t i = 0; i < Option5.size(); ++i) {
        const int at = static_cast<int>(i);
        putAt(*Option5[i], x + at % 3 * kOctaveStep, kFirstRow + (1 + at / 3) * kRowStep);
    }
    setRules({kMargin + kInstrumentWidth + kColumnGap / 2, x - kPolynotesWidth - 3 * kColumnGap / 2,
              x - kColumnGap / 2});
}

void SoundOnePanel::showInstrument(const QString& name, int program) {
    program_ = program;
    LblInstrument->showName(name);
}

void SoundOnePanel::refresh() {
    const Keyboard& keyboard = parts_.keyboard;
    if (keyboard.program() != program_)
        showInstrument(toQString(nameOfCode(keyboard.program())), keyboard.program());
    for (KeyboardBar* bar : {octave_, chord_, strum_})
        bar->refresh();
    for (std::size_t i = 0; i < kPolynotes.size(); ++i)
        polynotes_[i]->setChecked(keyboard.controls().polynotes == kPolynotes[i].polynotes);
    Chkstrum->setChecked(keyboard.controls().Chkstrum);
    for (std::size_t i = 0; i < kOctaves.size(); ++i)
        Option5[i]->setChecked(keyboard.controls().OctaveShift == kOctaves[i] * 12);
}

} // namespace velmora
