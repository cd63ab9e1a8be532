// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/SourcePanel.h"

#include "parts/Desk.h"
#include "recording/LevelBars.h"
#include "recording/SessionButton.h"
#include "shell/ExToolTip.h"

#include <QComboBox>
#include <QRadioButton>

namespace velmora {

namespace {
struct SourceRow {
    const char* name;
    const char* words;
    const char* tip;
    const char* text;
};
/// In the order of RecordingSource.
constexpr std::array kSources{
    SourceRow{"Optsourcesng", "Notes (SNG)", "Record from SNG file or not",
              "The score of the composing window plays from its beginning, and the recording ends with it"},
    SourceRow{"Optsourcemid", "MIDI File", "Record from MID file",
              "A MIDI file plays, and the recording ends with it"},
    SourceRow{"Optsourcekeyboard", "Keyboard", "Record what you play",
              "The keyboard's window opens, and the recording goes on until you stop it"},
};
constexpr int kFirstRow = 35;
constexpr int kRow = 28;
constexpr QRect kCapture(132, 3, 156, 21);
constexpr QRect kLevels(108, 36, 18, 80);
constexpr QRect kStart(132, 36, 156, 36);
constexpr QRect kStop(132, 80, 156, 36);
} // namespace

SourcePanel::SourcePanel(const StudioParts& parts, SessionState& state, QWidget* parent)
    : QGroupBox("Recording Source", parent)
    , state_(state)
    , capture_(addList(*this, parts.desk,
                       {"capture", "", "What is recorded",
                        "Velmora's own sound is taken as it is, whatever the volume of your desktop. "
                        "Everything that sounds is what all programs play together",
                        kCapture}))
    , levels_(new LevelBars(parts.look, this)) {
    setObjectName("sourcePanel");
    capture_->addItem("Velmora's sound");
    capture_->addItem("Everything that sounds");
    connect(capture_, &QComboBox::activated, this,
            [this](int item) { state_.capture = static_cast<CaptureSource>(item); });
    addSources(parts.desk.tips);
    levels_->setGeometry(kLevels);
    parts.desk.tips.SetToolTip(*levels_, {"Level",
                                          "How loud the recording is, left and right. A red lamp says that "
                                          "it was too loud, and is clipped",
                                          ""});
    addButtons(parts);
}

void SourcePanel::addSources(ExToolTip& tips) {
    int y = kFirstRow;
    for (std::size_t i = 0; i < kSources.size(); ++i) {
        const SourceRow& row = kSources[i];
        auto* radio = new QRadioButton(row.words, this);
        radio->setObjectName(row.name);
        radio->setGeometry(12, y, std::min(radio->sizeHint().width(), kLevels.left() - 14), 20);
        tips.SetToolTip(*radio, {row.tip, row.text, ""});
        connect(radio, &QRadioButton::clicked, this,
                [this, i] { state_.source = static_cast<RecordingSource>(i); });
        sources_[i] = radio;
        y += kRow;
    }
}

void SourcePanel::addButtons(const StudioParts& parts) {
    const auto add = [&](const char* name, const char* icon, const char* words, const char* text,
                         const QRect& place) {
        auto* button = new SessionButton(parts.look, icon, words, this);
        button->setObjectName(name);
        button->setGeometry(place);
        parts.desk.tips.SetToolTip(*button, {words, text, icon});
        return button;
    };
    CmdrecordSNG = add("CmdrecordSNG", "record", "Start Recording",
                       "Plays the source, and records it to a WAV file", kStart);
    CmdStopRecording = add("CmdStopRecording", "stop", "Stop Recording",
                           "Ends the recording; what was recorded is in its file", kStop);
}

void SourcePanel::refresh() {
    const bool free = !state_.isLocked && !state_.isRecording;
    for (std::size_t i = 0; i < sources_.size(); ++i) {
        sources_[i]->setChecked(static_cast<std::size_t>(state_.source) == i);
        sources_[i]->setEnabled(free);
    }
    capture_->setCurrentIndex(static_cast<int>(state_.capture));
    capture_->setEnabled(free);
    // Where the keyboard was, it stays: what ends the recording is next.
    if (state_.isRecording && CmdrecordSNG->hasFocus())
        CmdStopRecording->setFocus();
    CmdrecordSNG->setHeld(state_.isRecording);
    CmdrecordSNG->setEnabled(free);
    if (!state_.isRecording)
        levels_->clear();
}

} // namespace velmora
