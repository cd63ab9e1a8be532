// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/NotesPanel.h"

#include "notation/SongDocument.h"
#include "songwriter/SongParts.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QRadioButton>

namespace velmora {

namespace {
constexpr int kUpper = 8;
constexpr int kLower = 36;
constexpr std::array kSizes{"2", "3", "4"};
constexpr std::array kSizeNames{"Option1", "Option2", "Option3"};
} // namespace

NotesPanel::NotesPanel(const SongParts& parts, QWidget* parent) : QWidget(parent), parts_(parts) {
    setObjectName("notesPanel");
    notation::ScoreSetup& setup = parts_.song.setup;
    classic_ = addCheck(
        *this, parts_,
        {"chkClassic", "Classic page", "The older page, by the letter of the older rules", {12, kUpper}},
        [this, &setup](bool ticked) {
            setup.classicPage = ticked;
            if (onClassic)
                onClassic();
        });
    learn_ = addCheck(
        *this, parts_,
        {"chkLearn", "Learn to read", "Notes in the colours of the grid, with their letters", {160, kUpper}},
        [&setup](bool ticked) { setup.learnToRead = ticked; });
    voices_ = addCheck(*this, parts_,
                       {"chkVoices", "Two voices", "Two channels of one clef share a staff", {160, kLower}},
                       [&setup](bool ticked) { setup.twoVoices = ticked; });
    addRule(*this, parts_, {296, 12, 2, 44});
    Check2_ =
        addCheck(*this, parts_,
                 {"Check2", "Join Notes", "Short notes under one beam, on the classic page", {312, kUpper}},
                 [this, &setup](bool ticked) {
                     setup.joinNotes = ticked ? joined_ : 0;
                     refresh();
                 });
    auto* sizes = new QButtonGroup(this);
    for (std::size_t i = 0; i < Option_.size(); ++i) {
        const int size = static_cast<int>(i) + 2;
        Option_[i] = addChoice(*this, parts_,
                               {kSizeNames[i],
                                kSizes[i],
                                "How many notes are joined at most",
                                {316 + static_cast<int>(i) * 40, kLower}},
                               [this, &setup, size] {
                                   joined_ = size;
                                   if (setup.joinNotes > 0)
                                       setup.joinNotes = size;
                               });
        Option_[i]->setAccessibleName(QStringLiteral("Join up to %1 notes").arg(size));
        sizes->addButton(Option_[i]);
    }
    addRule(*this, parts_, {452, 12, 2, 44});
    auto* spacing = new QButtonGroup(this);
    addCaption(*this, "Note Spacing", {468, kUpper + 5, 80, 14});
    Optspc2_ = addChoice(
        *this, parts_,
        {"Optspc2", "Proportional", "Proportional spacing: long notes take more room", {552, kUpper}},
        [&setup] { setup.spacing = notation::NoteSpacing::Proportional; });
    Optspc1_ = addChoice(
        *this, parts_,
        {"Optspc1", "Symmetrical", "Symmetrical spacing: all notes take nearly the same", {552, kLower}},
        [&setup] { setup.spacing = notation::NoteSpacing::Symmetrical; });
    spacing->addButton(Optspc1_);
    spacing->addButton(Optspc2_);
    addRule(*this, parts_, {684, 12, 2, 44});
    Check4_ = addCheck(
        *this, parts_,
        {"Check4", "Insert \"Repeat\"  Signs", "The score ends without its final bar lines", {700, kUpper}},
        [&setup](bool ticked) { setup.repeatSigns = ticked; });
    Check5_ =
        addCheck(*this, parts_, {"Check5", "Number Bars and Lines", "A number at the bars", {700, kLower}},
                 [&setup](bool ticked) { setup.numbers = ticked; });
    refresh();
}

void NotesPanel::refresh() {
    const notation::ScoreSetup& setup = parts_.song.setup;
    if (setup.joinNotes > 0)
        joined_ = setup.joinNotes;
    classic_->setChecked(setup.classicPage);
    learn_->setChecked(setup.learnToRead);
    learn_->setEnabled(!setup.classicPage);
    voices_->setChecked(setup.twoVoices);
    voices_->setEnabled(!setup.classicPage);
    Check2_->setChecked(setup.joinNotes > 0);
    Check2_->setEnabled(setup.classicPage); // the clean page beams by the beat
    for (std::size_t i = 0; i < Option_.size(); ++i) {
        Option_[i]->setChecked(joined_ == static_cast<int>(i) + 2);
        Option_[i]->setEnabled(setup.classicPage && setup.joinNotes > 0);
    }
    Optspc1_->setChecked(setup.spacing == notation::NoteSpacing::Symmetrical);
    Optspc2_->setChecked(setup.spacing == notation::NoteSpacing::Proportional);
    Check4_->setChecked(setup.repeatSigns);
    Check5_->setChecked(setup.numbers);
}

} // namespace velmora
