// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/StavesPanel.h"

#include "base/Settings.h"
#include "notation/SongDocument.h"
#include "parts/ChannelSquare.h"
#include "parts/Desk.h"
#include "parts/NumberField.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"
#include "songwriter/SongParts.h"

#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>

namespace velmora {

namespace {
using notation::StaffClef;

constexpr int kBoxesLeft = 64;
constexpr int kBoxPitch = 28;
constexpr int kPercussionLeft = 16; ///< between melody and percussion
constexpr int kCountsLeft = 440;
constexpr int kCountPitch = 88;
constexpr int kStavesLeft = 724;

struct CountRow {
    StaffClef clef;
    const char* words;
    const char* text;
    const char* arrows;
};
constexpr std::array kCounts{
    CountRow{StaffClef::Treble, "Treble", "lblTreb", "VScroll3"},
    CountRow{StaffClef::Bass, "Bass", "LblBass", "VScroll4"},
    CountRow{StaffClef::Percussion, "Percussion", "Lbldrums", "VScroll6"},
};

int leftOf(int box) {
    return kBoxesLeft + box * kBoxPitch + (box >= 8 ? kPercussionLeft : 0);
}
} // namespace

StavesPanel::StavesPanel(const SongParts& parts, QWidget* parent) : QWidget(parent), parts_(parts) {
    setObjectName("stavesPanel");
    addBoxes();
    addRule(*this, parts_, {kCountsLeft - 16, 12, 2, 44});
    addCounts();
    addRule(*this, parts_, {kStavesLeft - 16, 12, 2, 44});
    addStaves();
}

void StavesPanel::addBoxes() {
    addCaption(*this, "Write", {12, 28, 48, 14});
    addCaption(*this, "Bass clef", {12, 47, 48, 14});
    for (int box = 0; box < static_cast<int>(chkChannel_.size()); ++box) {
        const int channel = notation::channelOfBox(box);
        const bool melody = channel < 8;
        const QString name = melody ? QStringLiteral("channel %1").arg(box + 1)
                                    : QStringLiteral("percussion channel %1").arg(box + 1);
        auto* square = new ChannelSquare(channel, this);
        square->setGeometry(leftOf(box) - 1, 4, 20, 20);
        auto* check = new QCheckBox(this);
        check->setObjectName(QStringLiteral("chkChannel(%1)").arg(box));
        check->setAccessibleName("Write " + name);
        check->setGeometry(leftOf(box) + 2, 28, 16, 16);
        parts_.desk.tips.SetToolTip(*check, {"Write " + name, "A staff for it; there are five at most", ""});
        connect(check, &QCheckBox::clicked, this, [this, box](bool ticked) {
            parts_.song.tick(box, ticked);
            refresh(); // a sixth is undone at once
        });
        chkChannel_[static_cast<std::size_t>(box)] = check;
    }
    for (int box = 0; box < static_cast<int>(ChkNotetype_.size()); ++box) {
        const auto index = static_cast<std::size_t>(box);
        auto* check = new QCheckBox(this);
        const QString name = QStringLiteral("Channel %1 in the bass clef").arg(box + 1);
        check->setObjectName(QStringLiteral("ChkNotetype(%1)").arg(box));
        check->setAccessibleName(name);
        check->setGeometry(leftOf(box) + 2, 47, 16, 16);
        parts_.desk.tips.SetToolTip(*check, {name, "Otherwise in the treble clef", ""});
        connect(check, &QCheckBox::clicked, this, [this, index](bool ticked) {
            parts_.song.setup.staves.ChkNotetype[index] = ticked;
            refresh();
        });
        ChkNotetype_[index] = check;
    }
}

void StavesPanel::addCounts() {
    most_ = addCaption(*this, "Staff configuration (5 Maximum)", {kCountsLeft, 4, 240, 14});
    int x = kCountsLeft;
    for (std::size_t i = 0; i < kCounts.size(); ++i) {
        const CountRow& row = kCounts[i];
        addCaption(*this, row.words, {x, 18, kCountPitch - 8, 14});
        auto* field = new NumberField(row.arrows, row.text, this);
        field->setAccessibleName(QStringLiteral("%1 staves").arg(row.words));
        field->setGeometry(x, 34, 64, 24);
        field->number = [this, clef = row.clef] { return parts_.song.staves(clef); };
        field->onStep = [this, clef = row.clef](int steps) { step(clef, steps > 0 ? 1 : -1); };
        parts_.desk.tips.SetToolTip(*field, {QStringLiteral("%1 staves").arg(row.words),
                                             "One more takes the next channel with notes", ""});
        counts_[i] = field;
        x += kCountPitch;
    }
}

void StavesPanel::addStaves() {
    all_ = addCheck(*this, parts_,
                    {"chkAllChannels",
                     "Write all channels",
                     "Otherwise the staff that is chosen alone: a page for one player",
                     {kStavesLeft, 4}},
                    [this](bool ticked) {
                        parts_.song.allChannels = ticked;
                        refresh();
                    });
    addCaption(*this, "Staff Position", {kStavesLeft, 38, 76, 14});
    for (int index = 1; index <= static_cast<int>(Opt_.size()); ++index) {
        const QString name = QStringLiteral("Write on Staff #%1").arg(index);
        auto* button = new QRadioButton(QString::number(index), this);
        button->setObjectName(QStringLiteral("Opt(%1)").arg(index));
        button->setAccessibleName(name);
        button->setGeometry(kStavesLeft + 80 + (index - 1) * 36, 34, 36, 24);
        parts_.desk.tips.SetToolTip(*button, {name, "The staff that is written alone", ""});
        connect(button, &QRadioButton::clicked, this, [this, index] { parts_.song.staff = index; });
        Opt_[static_cast<std::size_t>(index - 1)] = button;
    }
}

void StavesPanel::step(StaffClef clef, int by) {
    parts_.song.changeStaves(clef, parts_.song.staves(clef) + by);
    if (clef == StaffClef::Percussion)
        settings::save(parts_.desk.settings, settings::NumDrums,
                       static_cast<std::int16_t>(parts_.song.staves(clef)));
    refresh();
}

void StavesPanel::refresh() {
    const notation::StaffChoice& staves = parts_.song.setup.staves;
    for (std::size_t box = 0; box < chkChannel_.size(); ++box)
        chkChannel_[box]->setChecked(staves.chkChannel[box]);
    for (std::size_t box = 0; box < ChkNotetype_.size(); ++box)
        ChkNotetype_[box]->setChecked(staves.ChkNotetype[box]);
    for (std::size_t i = 0; i < kCounts.size(); ++i)
        counts_[i]->showNumber(parts_.song.staves(kCounts[i].clef));
    all_->setChecked(parts_.song.allChannels);
    for (std::size_t i = 0; i < Opt_.size(); ++i) {
        Opt_[i]->setChecked(parts_.song.staff == static_cast<int>(i) + 1);
        Opt_[i]->setEnabled(!parts_.song.allChannels);
    }
}

} // namespace velmora
