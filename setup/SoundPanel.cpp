// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/SoundPanel.h"

#include "composition/SetupRules.h"
#include "composition/Workspace.h"
#include "parts/ChannelSquare.h"
#include "parts/Desk.h"
#include "setup/SetupParts.h"
#include "shell/ExToolTip.h"
#include "shell/ReadOut.h"
#include "shell/Slider.h"
#include "sound/Midimod.h"

#include <QGroupBox>
#include <QScopedValueRollback>

#include <algorithm>

namespace velmora {

namespace {
constexpr int kMost = 127;
constexpr int kRow = 38;
constexpr int kFirstRow = 48;
constexpr QChar kVaries(u'\u2026'); ///< behind a value that not all notes have

/// A controller: its bar, its label, where its value is kept and how it is sent.
struct EffectRow {
    const char* bar;
    const char* label;
    const char* caption;
    const char* tip;
    SoundValue value;
    void (*send)(MidiPort&, int value, int channel);
    int middle; ///< the value that is shown as 0
};
constexpr std::array<EffectRow, 4> kEffectRows{{
    {"LblMod", "LMod", "Modulation", "How much the notes waver", SoundValue::Modulation, SendModulation, 0},
    {"LblPan", "LPan", "Pan", "Where the channel stands, from left to right", SoundValue::Pan, SendPan, 64},
    {"LblReverb", "LReverb", "Reverb", "How much the room answers", SoundValue::Reverb, SendReverb, 0},
    {"LblChorus", "LChorus", "Chorus", "As if several played", SoundValue::Chorus, SendChorus, 0},
}};
} // namespace

SoundPanel::SoundPanel(Desk& desk, const Appearance& look, QWidget* parent)
    : QWidget(parent)
    , desk_(desk)
    , look_(look)
    , group_(addGroup(*this, "Sound Control", {8, 8, 480, 248}))
    , square_(new ChannelSquare(0, group_))
    , Label15(new ReadOut(look, "Label15", group_)) {
    setObjectName("soundPanel");
    QLabel* words = addSmallWords(*group_, "Channel", {360, 4, 80, 20});
    words->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    square_->move(448, 4);
    varies_ = addSmallWords(*group_,
                            kVaries + QStringLiteral(" Other notes of the channel have another value. A "
                                                     "slider that you move gives its own to all."),
                            {12, 228, 460, 16});
    varies_->setObjectName("varies");
    lblVolume = addRow("lblVolume", "Volume", Label15, "The volume of the channel's notes", 0);
    lblVolume->setRange(0, kMost);
    lblVolume->onDrag = [this](int value) {
        goOn();
        dragVolume(value);
    };
    for (std::size_t effect = 0; effect < kEffects; ++effect) {
        const EffectRow& row = kEffectRows[effect];
        labels_[effect] = new ReadOut(look, row.label, group_);
        bars_[effect] = addRow(row.bar, row.caption, labels_[effect], row.tip, static_cast<int>(effect) + 1);
        bars_[effect]->setRange(-row.middle, kMost - row.middle);
        bars_[effect]->setRest(0);
        bars_[effect]->onDrag = [this, effect](int value) {
            goOn();
            dragEffect(effect, value);
        };
    }
}

void SoundPanel::goOn() {
    if (!act_)
        act_.emplace(desk_.workspace);
}

Slider* SoundPanel::addRow(const char* bar, const char* caption, QLabel* value, const char* tip, int row) {
    const int y = kFirstRow + row * kRow;
    addWords(*group_, caption, {12, y, 80, 20});
    auto* slider = new Slider(look_, Qt::Horizontal, group_);
    slider->setObjectName(bar);
    slider->setAccessibleName(caption);
    slider->setGeometry(96, y, 308, 20);
    value->setGeometry(416, y, 52, 20);
    value->setAccessibleDescription(caption);
    desk_.tips.SetToolTip(*slider, {caption, tip, ""});
    slider->onRelease = [this] { act_.reset(); };
    return slider;
}

void SoundPanel::dragVolume(int value) {
    const QScopedValueRollback dragging(dragging_, lblVolume);
    const std::int16_t volume = volumeAt(value, kMost);
    Label15->setText(QString::number(volume));
    if (lblVolume_Change)
        lblVolume_Change(volume);
}

void SoundPanel::dragEffect(std::size_t effect, int value) {
    const int channel = desk_.workspace.score.ActiveChannel;
    if (!desk_.workspace.setup.channels.contains(channel))
        return;
    const QScopedValueRollback dragging(dragging_, bars_[effect]);
    const EffectRow& row = kEffectRows[effect];
    const auto stored = static_cast<std::int16_t>(value + row.middle);
    labels_[effect]->setText(QString::number(value));
    setController(desk_.workspace, row.value, stored);
    row.send(desk_.port, stored, channel);
}

/// The pointer stays where the user has it.
void SoundPanel::show(Slider& slider, QLabel& label, const ShownSound& sound, int middle) const {
    const int value = sound.value - middle;
    if (&slider != dragging_)
        slider.setValue(value);
    label.setText(QString::number(value) + (sound.varies ? QString(' ') + kVaries : QString()));
}

void SoundPanel::refresh() {
    const int channel = desk_.workspace.score.ActiveChannel;
    if (!desk_.workspace.setup.channels.contains(channel))
        return;
    const auto sound = shownSound(desk_.workspace);
    square_->setChannel(channel);
    show(*lblVolume, *Label15, sound.front(), 0);
    for (std::size_t effect = 0; effect < kEffects; ++effect)
        show(*bars_[effect], *labels_[effect], sound[effect + 1], kEffectRows[effect].middle);
    varies_->setVisible(std::ranges::any_of(sound, &ShownSound::varies));
}

} // namespace velmora
