// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/ChannelsPanel.h"

#include "base/QtText.h"
#include "composition/SetupRules.h"
#include "composition/Workspace.h"
#include "parts/ChannelColours.h"
#include "parts/ChannelSquare.h"
#include "parts/Desk.h"
#include "parts/InstrumentField.h"
#include "setup/SetupParts.h"
#include "shell/ControlPainter.h"
#include "shell/ExToolTip.h"
#include "shell/ReadOut.h"
#include "shell/SkinPainter.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QPainter>

namespace velmora {

namespace {
constexpr QSize kButton(52, 28);
constexpr int kNoChannel = kFirstPercussion + 1; ///< MIDI's drum channel is none of the program's

/// A button with the channel's colour and number.
class ChannelButton : public QAbstractButton {
public:
    ChannelButton(const Appearance& look, int channel, QWidget* parent)
        : QAbstractButton(parent)
        , look_(look)
        , channel_(channel) {
        setCheckable(true);
        setAttribute(Qt::WA_Hover);
        setFocusPolicy(Qt::TabFocus);
        setText(QString::fromLatin1(kChannelColours[channel].caption));
        setAccessibleName("Channel " + text());
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        const ControlState state{
            .enabled = isEnabled(), .hot = underMouse(), .pressed = isDown(), .checked = isChecked()};
        paintFace(painter, look_, rect(), ButtonPlace::Panel, state);
        if (state.pressed)
            painter.translate(1, 1);
        paintChip(painter, QPoint(8, (height() - 16) / 2), channel_);
        painter.setPen(inkOn(look_.skin(), state));
        painter.setFont(textFont(12, isChecked()));
        painter.drawText(rect().adjusted(24, 0, 0, 0), Qt::AlignCenter, text());
    }

private:
    const Appearance& look_;
    int channel_;
};
} // namespace

ChannelsPanel::ChannelsPanel(Desk& desk, const Appearance& look, QWidget* parent)
    : QWidget(parent)
    , desk_(desk)
    , look_(look)
    , channels_(new QButtonGroup(this)) {
    setObjectName("channelsPanel");
    addChannels(*addGroup(*this, "Channels: Melody Group", {8, 8, 480, 120}), 0, kMelodyChannels - 1, 58);
    addChannels(*addGroup(*this, "Channels: Percussion Group", {8, 136, 244, 120}), kFirstPercussion,
                kUsedChannels - 1, 56);
    addInstruments(*addGroup(*this, "Instruments", {260, 136, 228, 120}), look);
    connect(channels_, &QButtonGroup::idClicked, this, [this](int channel) {
        if (TrackSel_Click)
            TrackSel_Click(channel);
    });
}

void ChannelsPanel::addChannels(QGroupBox& group, int first, int last, int pitch) {
    int x = 12;
    std::vector<QCheckBox*> boxes;
    for (int channel = first; channel <= last; ++channel) {
        if (channel == kNoChannel)
            continue;
        auto* button = new ChannelButton(look_, channel, &group);
        button->setObjectName(QStringLiteral("TrackSel(%1)").arg(channel));
        button->setGeometry(QRect(QPoint(x, 36), kButton));
        channels_->addButton(button, channel);
        desk_.tips.SetToolTip(*button, {button->accessibleName(), "Make this the active channel", ""});
        TrackSel[channel] = button;

        QCheckBox* box =
            addBox(group, QStringLiteral("TrackHide(%1)").arg(channel), {x + kButton.width() / 2, 79});
        box->setAccessibleName("Hide channel " + button->text());
        desk_.tips.SetToolTip(
            *box, {"Hide this channel", "Channel " + button->text() + " is neither shown nor played", ""});
        connect(box, &QCheckBox::clicked, this, [this, channel](bool hidden) {
            if (TrackHide_Click)
                TrackHide_Click(channel, hidden);
        });
        TrackHide[channel] = box;
        boxes.push_back(box);
        x += pitch;
    }
    addSmallWords(group, "Hide this channel", {12, 94, 140, 16});
    for (QCheckBox* box : boxes) // after the buttons, in the order of Tab
        box->raise();
}

void ChannelsPanel::addInstruments(QGroupBox& group, const Appearance& look) {
    struct FieldRow {
        InstrumentField** field;
        const char* name;
        const char* words;
        const char* tip;
    };
    int y = 34;
    for (const FieldRow& row :
         {FieldRow{&LblInst1, "LblInst1", "Melody",
                   "New melody notes get it, and the notes of a selection. Click to pick"},
          FieldRow{&LblInst2, "LblInst2", "Percussion",
                   "New beats get it, and the beats of a selection. Click to pick"}}) {
        addSmallWords(group, row.words, {12, y, 56, 24});
        auto* field = new InstrumentField(&group);
        field->setObjectName(row.name);
        field->setAccessibleName(QString(row.words) + " instrument");
        field->setGeometry(68, y, 148, 24);
        field->onOpen = [this] {
            if (LblInst_DblClick)
                LblInst_DblClick();
        };
        desk_.tips.SetToolTip(*field, {QString(row.words) + " instrument", row.tip, ""});
        *row.field = field;
        y += 28;
    }
    addSmallWords(group, "Volume", {12, 92, 56, 20});
    Label2 = new ReadOut(look, "Label2", &group);
    Label2->setGeometry(68, 92, 52, 20);
    desk_.tips.SetToolTip(*Label2, {"Volume", "The volume of the active channel", ""});
}

void ChannelsPanel::refresh() {
    const Score& score = desk_.workspace.score;
    const InstrumentSelection& chosen = desk_.workspace.instruments;
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        if (!TrackSel[channel])
            continue;
        if (channel == score.ActiveChannel)
            TrackSel[channel]->setChecked(true);
        TrackHide[channel]->setChecked(score.ChannelMuted[channel]);
    }
    LblInst1->showName(toQString(chosen.MelodyInstrumentName));
    LblInst2->showName(toQString(chosen.PercussionInstrumentName));
    Label2->setText(QString::number(shownSound(desk_.workspace).front().value));
}

bool ChannelsPanel::isPressed(int channel) const {
    const QAbstractButton* button = TrackSel[channel];
    return button && button->isChecked();
}

} // namespace velmora
