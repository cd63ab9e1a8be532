// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/FormatPanel.h"

#include "base/QtText.h"
#include "parts/Desk.h"
#include "recording/RecordSettings.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"

#include <QComboBox>

namespace velmora {

namespace {
constexpr int kPadding = 12;
constexpr QRect kFormat(12, 50, 284, 24);
constexpr QRect kQuality(12, 94, 104, 24);
constexpr QRect kBitrate(124, 94, 72, 24);
constexpr QRect kEncode(204, 94, 92, 24);
} // namespace

FormatPanel::FormatPanel(const StudioParts& parts, SessionState& state, QWidget* parent)
    : QGroupBox("Formats", parent)
    , state_(state)
    , tips_(parts.desk.tips)
    , cbxFormat(addList(*this, parts.desk,
                        {"cbxFormat", "WAV Recording Format", "Select WAV recording format",
                         "The more samples a second and the more bits, the better and the larger", kFormat}))
    , Combo3(addList(*this, parts.desk,
                     {"Combo3", "MP3 Quality", "MP3 Quality",
                      "How carefully an MP3 file is made; the better, the slower", kQuality}))
    , Combo4(addList(*this, parts.desk,
                     {"Combo4", "MP3 Bitrate", "MP3 Bitrate",
                      "Kilobits a second of an MP3 file; the more, the better and the larger", kBitrate}))
    , Command20(new CommandButton(parts.look, ButtonForm::Text, this)) {
    setObjectName("formatPanel");
    for (std::size_t i = 0; i < kOfferedFormats; ++i)
        cbxFormat->addItem(toQString(offeredFormat(i).text));
    for (const EncoderQuality& quality : kEncoderQualities)
        Combo3->addItem(toQString(quality.text));
    for (const int bitrate : kMp3Bitrates)
        Combo4->addItem(QString::number(bitrate));
    const auto follow = [&](QComboBox* list, std::size_t SessionState::*index) {
        connect(list, &QComboBox::activated, this, [this, &desk = parts.desk, index](int item) {
            state_.*index = static_cast<std::size_t>(item);
            saveChoices(state_, desk.settings);
        });
    };
    follow(cbxFormat, &SessionState::cbxFormat);
    follow(Combo3, &SessionState::Combo3);
    follow(Combo4, &SessionState::Combo4);
    Command20->setObjectName("Command20");
    Command20->setGeometry(kEncode);
}

void FormatPanel::resizeEvent(QResizeEvent* event) {
    QGroupBox::resizeEvent(event);
    cbxFormat->resize(width() - 2 * kPadding, cbxFormat->height());
    Command20->resize(width() - kPadding - Command20->x(), Command20->height());
}

void FormatPanel::refresh() {
    const bool free = !state_.isLocked && !state_.isRecording;
    const auto show = [free](QComboBox& list, std::size_t index) {
        list.setCurrentIndex(index < static_cast<std::size_t>(list.count()) ? static_cast<int>(index) : -1);
        list.setEnabled(free);
    };
    show(*cbxFormat, state_.cbxFormat);
    show(*Combo3, state_.Combo3);
    show(*Combo4, state_.Combo4);
    const QString words = state_.isEncoding ? "Stop Encoding" : "Encode File";
    if (Command20->text() != words) {
        Command20->setFace("", words);
        tips_.SetToolTip(*Command20, {words,
                                      state_.isEncoding ? "Ends it; no MP3 file is left of it"
                                                        : "Makes an MP3 file of the WAV file under Messages",
                                      "encode"});
    }
    Command20->setEnabled(free || state_.isEncoding);
}

} // namespace velmora
