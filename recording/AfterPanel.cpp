// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/AfterPanel.h"

#include "parts/Desk.h"
#include "parts/Windows.h"
#include "recording/RecordSettings.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"

#include <QCheckBox>

namespace velmora {

namespace {
struct BoxRow {
    const char* name;
    const char* words;
    const char* tip;
    bool SessionState::*value;
};
constexpr std::array kBoxes{
    BoxRow{"Check2", "Encode to MP3", "The MP3 file is ready when the recording ends", &SessionState::Check2},
    BoxRow{"Check3", "Delete WAV after encoding",
           "A recording's WAV file goes once its MP3 file is whole; never a file that you opened",
           &SessionState::Check3},
    BoxRow{"Check4", "Show position in the main window",
           "The line that runs over the notes. Without it, less is to be painted", &SessionState::Check4},
};
constexpr int kFirstRow = 32;
constexpr int kRow = 21;
} // namespace

AfterPanel::AfterPanel(const StudioParts& parts, SessionState& state, QWidget* parent)
    : QGroupBox("After Recording", parent)
    , state_(state)
    , take_(new CommandButton(parts.look, ButtonForm::Text, this))
    , LBLBtnCDw(new CommandButton(parts.look, ButtonForm::Text, this))
    , Command1(new CommandButton(parts.look, ButtonForm::Text, this))
    , log_(new CommandButton(parts.look, ButtonForm::Text, this)) {
    setObjectName("afterPanel");
    addBoxes(parts.desk);
    const auto build = [&](CommandButton& button, const char* name, const char* words, const Tip& tip,
                           const QRect& place) {
        button.setObjectName(name);
        button.setFace("", words);
        button.setGeometry(place);
        parts.desk.tips.SetToolTip(button, tip);
    };
    build(*take_, "showTake", "The Take",
          {"The Take", "Its picture, to hear and cut out a part; its title and artist", "sound"},
          {12, 100, 132, 24});
    build(*LBLBtnCDw, "LBLBtnCDw", "Burn CD",
          {"Burn CD", "Writes music files to an audio CD, or to an image of one", "disc"},
          {152, 100, 136, 24});
    build(*Command1, "Command1", "Volume Control",
          {"Show system sound mixer",
           "The volume of your desktop; recordings of Velmora's sound are free of it", "mixer"},
          {12, 128, 132, 24});
    build(*log_, "showLog", "Show Log",
          {"Show Log", "All messages of the Recording Studio, with the times of day", "log"},
          {152, 128, 136, 24});
    for (std::size_t i = 0; i + 1 < boxes_.size(); ++i)
        setTabOrder(boxes_[i], boxes_[i + 1]);
    setTabOrder(boxes_.back(), take_);
    setTabOrder(take_, LBLBtnCDw);
    setTabOrder(LBLBtnCDw, Command1);
    setTabOrder(Command1, log_);
}

void AfterPanel::addBoxes(Desk& desk) {
    int y = kFirstRow;
    for (std::size_t i = 0; i < kBoxes.size(); ++i) {
        const BoxRow& row = kBoxes[i];
        auto* box = new QCheckBox(row.words, this);
        box->setObjectName(row.name);
        box->setGeometry(12, y, box->sizeHint().width(), 20);
        desk.tips.SetToolTip(*box, {row.words, row.tip, ""});
        connect(box, &QCheckBox::clicked, this, [this, &desk, value = row.value](bool ticked) {
            state_.*value = ticked;
            saveChoices(state_, desk.settings);
        });
        boxes_[i] = box;
        y += kRow;
    }
}

void AfterPanel::refresh() {
    const bool free = !state_.isLocked && !state_.isRecording;
    for (std::size_t i = 0; i < boxes_.size(); ++i) {
        boxes_[i]->setChecked(state_.*kBoxes[i].value);
        boxes_[i]->setEnabled(free);
    }
    take_->setEnabled(free);
    Command1->setEnabled(free);
    log_->setEnabled(free);
}

} // namespace velmora
