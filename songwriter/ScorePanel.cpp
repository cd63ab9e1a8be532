// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/ScorePanel.h"

#include "base/QtText.h"
#include "composition/Workspace.h"
#include "notation/Keys.h"
#include "notation/SongDocument.h"
#include "parts/Desk.h"
#include "parts/NumberField.h"
#include "shell/ExToolTip.h"
#include "shell/ReadOut.h"
#include "shell/Slider.h"
#include "songwriter/SongParts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>

#include <algorithm>

namespace velmora {

namespace {
constexpr int kRow = 28;
constexpr int kCaption = 10;
constexpr int kLengthLeft = 268;
constexpr int kSizesLeft = 504;
constexpr int kSizePitch = 168;
constexpr int kSliderWidth = 96;
constexpr int kUnit = 10; ///< pixels of a slider's step
constexpr int kMostUnits = 30;
constexpr const char* kByItself = "by itself";

struct SizeRow {
    const char* words;
    const char* slider;
    const char* value;
    const char* tip;
    int notation::ScoreSetup::*size;
};
constexpr std::array kSizes{
    SizeRow{"Bar Width", "HScroll1", "Lbar", "How much room a bar takes", &notation::ScoreSetup::BarWidth},
    SizeRow{"Line Height", "HScroll2", "Label3", "The room between staves",
            &notation::ScoreSetup::SpacerHeight},
    SizeRow{"Page Header", "HScroll3", "Label2", "The room over the first staff",
            &notation::ScoreSetup::HeaderHeight},
};
} // namespace

ScorePanel::ScorePanel(const SongParts& parts, QWidget* parent) : QWidget(parent), parts_(parts) {
    setObjectName("scorePanel");
    Check1_ = addCheck(
        *this, parts_,
        {"Check1", "New Score", "Writing chooses channels and clefs by what the score holds", {12, kRow}},
        [this](bool ticked) { parts_.song.setup.newScore = ticked; });
    addRule(*this, parts_, {116, 12, 2, 44});
    addKey();
    addRule(*this, parts_, {kLengthLeft - 13, 12, 2, 44});
    addLength();
    addRule(*this, parts_, {kSizesLeft - 15, 12, 2, 44});
    addSizes();
    refresh();
}

void ScorePanel::addKey() {
    auto* words = addCaption(*this, "Key:", {132, kCaption, 80, 14});
    Combo1_ = new QComboBox(this);
    Combo1_->setObjectName("Combo1");
    Combo1_->setGeometry(132, kRow, 112, 24);
    for (const notation::Key& key : notation::kKeys)
        Combo1_->addItem(toQString(key.text));
    Combo1_->addItem(kByItself);
    words->setBuddy(Combo1_);
    Combo1_->setAccessibleName("Key");
    parts_.desk.tips.SetToolTip(*Combo1_,
                                {"Key",
                                 "The sharps or flats at the beginning of each line. By itself, the clean "
                                 "page finds it from the notes",
                                 ""});
    connect(Combo1_, &QComboBox::activated, this, [this](int index) {
        chooseKey(index == static_cast<int>(notation::kKeys.size()) ? notation::kAutomaticKey : index);
    });
}

void ScorePanel::chooseKey(int key) {
    parts_.song.setup.key = key;
    refresh();
    if (onKey)
        onKey();
}

void ScorePanel::addLength() {
    addCaption(*this, "Score Length", {kLengthLeft, kCaption, 120, 14});
    const auto add = [this](int x, int wordsWidth, const char* words, const char* arrows, const char* text,
                            const char* tip) {
        auto* label = new QLabel(words, this);
        label->setGeometry(x, kRow, wordsWidth, 24);
        auto* field = new NumberField(arrows, text, this);
        field->setAccessibleName(words);
        field->setGeometry(x + wordsWidth, kRow, 68, 24);
        field->setMost(kMostNotes);
        label->setBuddy(field);
        parts_.desk.tips.SetToolTip(*field, {words, tip, ""});
        return field;
    };
    Text4_ = add(kLengthLeft, 36, "Start", "VScroll2", "Text4", "The first position that is written");
    Text5_ =
        add(kLengthLeft + 116, 28, "End", "VScroll1", "Text5", "Behind the last position that is written");
    notation::SongDocument& song = parts_.song;
    const auto measure = [this] { return std::max<int>(parts_.desk.workspace.score.NotesPerMeasure, 1); };
    Text4_->number = [&song] { return song.setup.start; };
    Text4_->onNumber = [&song](int typed) { song.setup.start = typed; };
    Text4_->onStep = [&song, measure](int steps) {
        song.setup.start = std::clamp(song.setup.start + steps * measure(), 0, kMostNotes);
    };
    Text5_->number = [&song] { return song.end(); };
    Text5_->onNumber = [&song](int typed) { song.setup.end = typed; };
    Text5_->onStep = [&song, measure](int steps) {
        song.setup.end = std::clamp(song.end() + steps * measure(), 0, kMostNotes);
    };
}

void ScorePanel::addSizes() {
    int x = kSizesLeft;
    for (std::size_t i = 0; i < kSizes.size(); ++i) {
        const SizeRow& row = kSizes[i];
        addCaption(*this, row.words, {x, kCaption, 120, 14});
        auto* slider = new Slider(parts_.look, Qt::Horizontal, this);
        slider->setObjectName(row.slider);
        slider->setAccessibleName(row.words);
        slider->setRange(1, kMostUnits);
        slider->setSingleStep(1);
        slider->setPageStep(3);
        slider->setGeometry(x, kRow + 2, kSliderWidth, 20);
        parts_.desk.tips.SetToolTip(*slider, {row.words, row.tip, ""});
        slider->onDrag = [this, size = row.size](int value) {
            parts_.song.setup.*size = value * kUnit;
            refresh();
        };
        auto* value = new ReadOut(parts_.look, row.value, this);
        value->setGeometry(x + kSliderWidth + 8, kRow + 2, 44, 20);
        parts_.desk.tips.SetToolTip(*value, {row.words, row.tip, ""});
        sliders_[i] = slider;
        values_[i] = value;
        x += kSizePitch;
    }
}

void ScorePanel::refresh() {
    const notation::ScoreSetup& setup = parts_.song.setup;
    Check1_->setChecked(setup.newScore);
    Combo1_->setCurrentIndex(setup.key == notation::kAutomaticKey ? static_cast<int>(notation::kKeys.size())
                                                                  : setup.key);
    Text4_->showNumber(setup.start);
    Text5_->showNumber(parts_.song.end());
    for (std::size_t i = 0; i < kSizes.size(); ++i) {
        const int size = setup.*kSizes[i].size;
        if (!sliders_[i]->isSliderDown())
            sliders_[i]->setValue(size / kUnit);
        values_[i]->setText(QString::number(size));
        values_[i]->setAccessibleName(QStringLiteral("%1: %2").arg(kSizes[i].words).arg(size));
    }
}

} // namespace velmora
