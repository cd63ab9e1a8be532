// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/SoundTwoPanel.h"

#include "composition/SetupRules.h"
#include "composition/Workspace.h"
#include "keyboard/Keyboard.h"
#include "parts/Desk.h"
#include "shell/Appearance.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"
#include "synth/KeyboardBar.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPainter>
#include <QRadioButton>

#include <algorithm>

namespace velmora {

namespace {
using enum KeyboardSlider;
/// Row by row.
constexpr std::array kSliders{Channel, Volume, Modulation, Pan, Reverb, Chorus};
constexpr int kColumns = 3;
constexpr int kFirstRow = 22;
constexpr int kRowStep = 40;
constexpr int kColumnGap = 12;
constexpr int kWidestBar = 280; ///< with its sides
constexpr int kCaption = 76;
constexpr int kReadOut = 48;
constexpr int kHoldWidth = 72; ///< of the column of "Hold" and "Mute"
constexpr int kChecksWidth = 100;
constexpr int kRadioWidth = 144;
constexpr int kTwoColumns = 1136; ///< from here on the tempos stand in two columns
constexpr int kRule = 14;
constexpr int kLight = 12;
constexpr int kLightStep = 20;
constexpr QSize kField(64, 24);
constexpr int kMostBeats = 1000;

struct TempoRow {
    const char* caption;
    int beats;
};
constexpr std::array<TempoRow, 4> kTempos{{
    {"180 beats per minute", 180},
    {"120 beats per minute", 120},
    {"60 beats per minute", 60},
    {"30 beats per minute", 30},
}};
} // namespace

/// A lamp for one beat of the measure.
class SoundTwoPanel::BeatLight : public QWidget {
public:
    BeatLight(const Appearance& look, int index, QWidget* parent) : QWidget(parent), look_(look) {
        setObjectName(QStringLiteral("pctBeat(%1)").arg(index));
        setAccessibleName(QStringLiteral("Beat %1").arg(index + 1));
    }
    void light(bool on) {
        if (on != on_)
            update();
        on_ = on;
        setAccessibleDescription(on ? "on" : "");
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const Skin& skin = look_.skin();
        QPainter painter(this);
        fillRounded(painter, rect(), width() / 2.0, toQColor(on_ ? skin.accent : skin.readOut),
                    toQColor(skin.fieldEdge));
    }

private:
    const Appearance& look_;
    bool on_ = false;
};

SoundTwoPanel::SoundTwoPanel(const SynthParts& parts, QWidget* parent)
    : SynthPanel(parts, "Picture4", parent) {
    for (const KeyboardSlider slider : kSliders)
        bars_.push_back(new KeyboardBar(parts, slider, this));
    Keyboard& keyboard = parts.keyboard;
    ChkSustain = addCheck("ChkSustain", "Hold", "Notes go on sounding after their key",
                          [&keyboard](bool on) { keyboard.ChkSustain_Click(on); });
    ChkMute = addCheck("ChkMute", "Mute", "The channel is marked as silent",
                       [&keyboard](bool on) { keyboard.ChkMute_Click(on); });
    addMetronome();
}

void SoundTwoPanel::addMetronome() {
    Keyboard& keyboard = parts_.keyboard;
    chkRunning = addCheck("chkRunning", "Metronome", "Beats four to a measure while you play",
                          [this, &keyboard](bool on) {
                              keyboard.chkRunning_Click(on);
                              if (!on)
                                  showBeat(0);
                          });
    Check9 = addCheck("Check9", "Tone", "The beats are heard, too",
                      [&keyboard](bool on) { keyboard.setTone(on); });
    for (std::size_t i = 0; i < kTempos.size(); ++i) {
        const int beats = kTempos[i].beats;
        Optbeat[i] = addRadio(QStringLiteral("Optbeat(%1)").arg(i), kTempos[i].caption,
                              [&keyboard, beats] { keyboard.setBeatsPerMinute(beats); });
        Optbeat[i]->setAutoExclusive(false); // none of them may be the one
        parts_.desk.tips.SetToolTip(
            *Optbeat[i], {kTempos[i].caption, "How fast the metronome beats, from its next start on", ""});
        pctBeat[i] = new BeatLight(parts_.look, static_cast<int>(i), this);
    }
    txtValue = new QLineEdit(this);
    txtValue->setObjectName("txtValue");
    txtValue->setAccessibleName("Beats per minute");
    txtValue->setAlignment(Qt::AlignCenter);
    txtValue->setMaxLength(4);
    parts_.desk.tips.SetToolTip(
        *txtValue,
        {"Beats per minute", "1 to 1000; how fast the metronome beats, from its next start on", ""});
    connect(txtValue, &QLineEdit::textEdited, this, [this](const QString& text) { typed(text); });
    connect(txtValue, &QLineEdit::editingFinished, this, [this] { refresh(); });
    connect(txtValue, &QLineEdit::returnPressed, this, [this] { parts_.onDone(); });
}

void SoundTwoPanel::typed(const QString& text) {
    const auto beats = fieldNumber(text.toStdString());
    if (!beats || *beats < 1 || *beats > kMostBeats)
        return;
    parts_.keyboard.setBeatsPerMinute(*beats);
    parts_.onUse();
}

void SoundTwoPanel::layOut(int width) {
    const bool oneColumn = width < kTwoColumns;
    const int metronome = kChecksWidth + (oneColumn ? 1 : 2) * kRadioWidth;
    const int room = width - 2 * kMargin - kHoldWidth - kRule - metronome;
    const int column = std::min(kWidestBar, room / kColumns);
    for (std::size_t i = 0; i < bars_.size(); ++i) {
        const int at = static_cast<int>(i);
        bars_[i]->setSides(kCaption, kReadOut);
        bars_[i]->setGeometry(kMargin + at % kColumns * column, kFirstRow + at / kColumns * kRowStep,
                              column - kColumnGap, 20);
    }
    const int hold = kMargin + kColumns * column;
    putAt(*ChkSustain, hold + 10, kFirstRow);
    putAt(*ChkMute, hold + 10, kFirstRow + kRowStep);
    setRules({hold - 4, hold + kHoldWidth});
    layOutMetronome(hold + kHoldWidth + kRule, oneColumn);
}

void SoundTwoPanel::layOutMetronome(int x, bool oneColumn) {
    const int top = oneColumn ? 4 : 9;
    const int step = oneColumn ? 24 : 32;
    putAt(*chkRunning, x, top);
    putAt(*Check9, x, top + step);
    const int lights = oneColumn ? 58 : 77;
    for (std::size_t i = 0; i < pctBeat.size(); ++i) {
        const int at = static_cast<int>(i);
        pctBeat[i]->setGeometry(x + 1 + at * kLightStep, lights, kLight, kLight);
        const int column = oneColumn ? 0 : at % 2;
        const int row = oneColumn ? at : at / 2;
        putAt(*Optbeat[i], x + kChecksWidth + column * kRadioWidth, top + row * step);
    }
    txtValue->setGeometry(QRect(oneColumn ? QPoint(x, 76) : QPoint(x + kChecksWidth, 71), kField));
}

void SoundTwoPanel::refresh() {
    for (KeyboardBar* bar : bars_)
        bar->refresh();
    const Keyboard& keyboard = parts_.keyboard;
    const auto& channels = parts_.desk.workspace.setup.channels;
    if (const int channel = keyboard.controls().SoundChannel; channels.contains(channel)) {
        ChkSustain->setChecked(channels[channel].hold != 0);
        ChkMute->setChecked(channels[channel].mute != 0);
    }
    const int beats = keyboard.metronome().BeatsPerMinute;
    chkRunning->setChecked(keyboard.metronome().isRunning());
    Check9->setChecked(keyboard.controls().Check9);
    for (std::size_t i = 0; i < kTempos.size(); ++i)
        Optbeat[i]->setChecked(kTempos[i].beats == beats);
    const bool isTyped = txtValue->hasFocus() && txtValue->isModified();
    if (!isTyped)
        txtValue->setText(QString::number(beats));
}

void SoundTwoPanel::showBeat(int number) {
    for (std::size_t i = 0; i < pctBeat.size(); ++i)
        pctBeat[i]->light(static_cast<int>(i) == number - 1);
}

} // namespace velmora
