// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/ComposePanel.h"

#include "base/Settings.h"
#include "composition/SetupRules.h"
#include "composition/Workspace.h"
#include "keyboard/Keyboard.h"
#include "parts/Desk.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "shell/ReadOut.h"
#include "synth/KeyboardBar.h"

#include <QCheckBox>
#include <QLabel>

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora {

namespace {
using enum KeyboardSlider;
constexpr std::array kSliders{Speed, Pauses, Compression, Tempo};
constexpr int kFirstRow = 22;
constexpr int kRowStep = 40;
constexpr int kFirstCheck = 10;
constexpr int kCheckStep = 22;
constexpr int kCaption = 104;
constexpr int kReadOut = 48;
constexpr int kColumnGap = 16;
constexpr int kWidestBar = 360;
constexpr int kChecksWidth = 112;
constexpr int kPositionWidth = 136;
constexpr int kKeepWidth = 188;
} // namespace

ComposePanel::ComposePanel(const SynthParts& parts, CommandButton& keep, QWidget* parent)
    : SynthPanel(parts, "Picture17", parent)
    , Check3(addCheck("Check3", "Insert pauses", "Held notes are played short",
                      [this](bool on) { parts_.keyboard.setInsertPauses(on); }))
    , Check5(addCheck("Check5", "Loop Play", "The recording is played again and again",
                      [this](bool on) { parts_.keyboard.setLoop(on); }))
    , countIn_(addCheck("countIn", "Count-in", "A bar of the metronome comes before a recording",
                        [](bool /*on*/) {}))
    , overdub_(addCheck("overdub", "Overdub",
                        "While the score plays, what you play is written into it; Undo takes back a pass",
                        [this](bool on) { onOverdub(on); }))
    , takes_(addButton("takes", "Takes...", "The last twenty recordings, to hear and to choose from",
                       [this] { onTakes(*takes_); }))
    , positionWords_(addWords("Position"))
    , Text9(new ReadOut(parts.look, "Text9", this))
    , keep_(keep)
    , stepEntry_(addCheck("stepEntry", "Step entry",
                          "While the mouse rests on the Tableau, notes of a MIDI keyboard are written there, "
                          "one after the other",
                          [this](bool on) { onStepEntry(on); })) {
    for (const KeyboardSlider slider : kSliders)
        bars_.push_back(new KeyboardBar(parts, slider, this));
    bars_.back()->onValue = [this](double tempo) { storeTempo(tempo); };
    bars_.back()->onRelease = [this] { act_.reset(); };
    Text9->setAccessibleName("Position");
    Text9->setText("0");
    parts.desk.tips.SetToolTip(*Text9, {"Position", "Where in the recording playing is", ""});
    keep_.setParent(this);
    keep_.setForm(ButtonForm::Text); // in a panel it has a face
}

/// The open score has it at once.
void ComposePanel::storeTempo(double tempo) {
    if (!act_)
        act_.emplace(parts_.desk.workspace);
    setTempo(parts_.desk.workspace, static_cast<std::int16_t>(std::lround(tempo)));
}

void ComposePanel::layOut(int width) {
    const int right = width - kMargin - kKeepWidth;
    const int position = right - kColumnGap - kPositionWidth;
    const int checks = position - kColumnGap - kChecksWidth;
    const int column = std::min(kWidestBar, (checks - kColumnGap - kMargin) / 2);
    for (std::size_t i = 0; i < bars_.size(); ++i) {
        const int at = static_cast<int>(i);
        bars_[i]->setSides(kCaption, kReadOut);
        bars_[i]->setGeometry(kMargin + at % 2 * column, kFirstRow + at / 2 * kRowStep, column - kColumnGap,
                              20);
    }
    int x = kMargin + 2 * column;
    int y = kFirstCheck;
    for (QCheckBox* check : {Check3, Check5, countIn_, overdub_}) {
        putAt(*check, x + kColumnGap, y);
        y += kCheckStep;
    }
    setRules({x, x + kColumnGap + kChecksWidth});
    x += 2 * kColumnGap + kChecksWidth;
    positionWords_->setGeometry(x, kFirstRow, 60, 20);
    Text9->setGeometry(x + 60, kFirstRow, 64, 20);
    takes_->setGeometry(x, kFirstRow + kRowStep - 2, 124, 24);
    x += kPositionWidth + kColumnGap;
    keep_.setGeometry(x, 20, kKeepWidth, 24);
    putAt(*stepEntry_, x, kFirstRow + kRowStep);
}

void ComposePanel::refresh() {
    for (KeyboardBar* bar : bars_)
        bar->refresh();
    Check3->setChecked(parts_.keyboard.controls().Check3);
    Check5->setChecked(parts_.keyboard.loops());
    stepEntry_->setChecked(settings::read(parts_.desk.settings, settings::Step_entry));
}

bool ComposePanel::countsIn() const {
    return countIn_->isChecked();
}

void ComposePanel::showPosition(int position) {
    Text9->setText(QString::number(position));
}

} // namespace velmora
