// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/EditorPage.h"

#include "base/QtText.h"
#include "composition/BlockChannels.h"
#include "composition/CycleFields.h"
#include "parts/NumberField.h"
#include "shell/CommandButton.h"
#include "tableau/Commands.h"

#include <QCheckBox>
#include <QLabel>

namespace velmora {

namespace {
constexpr int kFieldTop = 20;
constexpr int kBoxPitch = 18;
constexpr int kSpaces = 56;
constexpr int kChannelWords = 60; ///< three short lines
} // namespace

/// How close the controls stand.
struct EditorPage::Form {
    FormWidth from; ///< the widest window that may have it
    int field;      ///< the width of a number
    int pitch;      ///< from one to the next
    bool iconsAlone;
};

EditorPage::EditorPage(const ToolPageParts& parts, Workspace& workspace, QWidget* parent)
    : ToolPage("TB4", parts, parent)
    , workspace_(workspace)
    , edit_(workspace.edit) {
    for (const int index : {lb1("clear"), lb1("mode"), lb1("copy"), lb1("cut"), lb1("insert"),
                            lb1("overwrite"), lb1("spaces"), lb1("duplicate")})
        button(index).setParent(this);
    addFields();
    addBoxes();
    channels_ = addCaption("");
    channels_->setObjectName("blockChannels");
    channels_->setWordWrap(true);
    order_ = {&button(lb1("clear")),
              &button(lb1("mode")),
              &button(lb1("copy")),
              &button(lb1("cut")),
              &button(lb1("insert")),
              &button(lb1("overwrite")),
              Txtspc.number,
              &button(lb1("spaces")),
              cycle_[0].number,
              cycle_[1].number,
              cycle_[2].number,
              Check5,
              Check3,
              Check2,
              &button(lb1("duplicate"))};
    EditorPage::refresh();
}

void EditorPage::addFields() {
    Txtspc = addField({"spcArrows", "Txtspc", "Spaces", "Insert # Space(s) ", "How many spaces to insert"},
                      {.get = [this] { return edit_.Txtspc; },
                       .set = [this](std::int16_t number) { edit_.Txtspc = number; }});
    constexpr std::array<FieldRow, kCycleFields> kRows{{
        {"notesArrows", "Txtnotes", "Total Length", "Total duplicated notes",
         "How long the notes are repeated"},
        {"beatsArrows", "Txtbeats", "Cycle Length", "Notes in the duplicated cycle",
         "From the start of one repetition to that of the next"},
        {"repeatArrows", "Txtrepeat", "Notes in cycle", "Playable notes in the duplicated cycle",
         "How many notes are copied and repeated"},
    }};
    for (std::size_t i = 0; i < kCycleFields; ++i) {
        values_[i] = {.get = [this, i] { return edit_.*kCycleValues[i].value; },
                      .set =
                          [this, i](std::int16_t number) {
                              kCycleValues[i].set(workspace_, number);
                              refresh();
                              if (onCycle)
                                  onCycle();
                          },
                      .blank = [this, i]() -> std::optional<int> {
                          if (!workspace_.manners.motifBeginsAtStart)
                              return std::nullopt;
                          return cycleOf(edit_, workspace_.manners).*kCycleValues[i].counted;
                      }};
        cycle_[i] = addField(kRows[i], values_[i]);
    }
}

void EditorPage::addBoxes() {
    struct BoxRow {
        QCheckBox** box;
        const char* name;
        const char* words;
        const char* tip;
        bool EditState::*value;
    };
    for (const BoxRow& row :
         {BoxRow{&Check5, "Check5", "Melody", "Duplicate the melody channels", &EditState::Check5},
          BoxRow{&Check3, "Check3", "Percussion", "Duplicate the percussion channels", &EditState::Check3},
          BoxRow{&Check2, "Check2", "Edit All Tracks", "Edit the melody channels, too",
                 &EditState::Check2}}) {
        QCheckBox* box = addBox(row.name, row.words, row.words, row.tip);
        connect(box, &QCheckBox::clicked, this, [this, value = row.value](bool ticked) {
            edit_.*value = ticked;
            refresh();
        });
        *row.box = box;
    }
}

void EditorPage::layOut(FormWidth width) {
    static constexpr std::array<Form, 3> kForms{{
        {FormWidth::Full, 72, 80, false},
        {FormWidth::Compact, 60, 68, false},
        {FormWidth::Small, 72, 80, true},
    }};
    // The close form has room in every window that is not small.
    placeInFirstForm(kForms, width, this->width(), [this](const Form& form) { return place(form); });
    update();
}

int EditorPage::place(const Form& form) {
    clearSeparators();
    int x = placeButtons(0, {lb1("clear"), lb1("mode")}, form.iconsAlone);
    x = placeButtons(placeSeparator(x), {lb1("copy"), lb1("cut"), lb1("insert"), lb1("overwrite")},
                     form.iconsAlone);
    x = placeField(Txtspc, placeSeparator(x), kFieldTop, kSpaces, kSpaces + 4);
    x = placeButtons(x, {lb1("spaces")}, form.iconsAlone);
    x = placeSeparator(x);
    for (const Field& field : cycle_)
        x = placeField(field, x, kFieldTop, form.field, form.pitch);
    x = placeBoxes(x + 4, {Check5, Check3, Check2}, 0, kBoxPitch);
    const int end = placeButtons(x + 8, {lb1("duplicate")}, form.iconsAlone);
    channels_->setGeometry(end + 8, 0, std::max(0, width() - end - 12), kHeight);
    return end + kChannelWords;
}

void EditorPage::refresh() {
    Txtspc.number->showNumber(edit_.Txtspc);
    for (std::size_t i = 0; i < kCycleFields; ++i)
        showValue(*cycle_[i].number, values_[i]);
    Check5->setChecked(edit_.Check5);
    Check3->setChecked(edit_.Check3);
    Check2->setChecked(edit_.Check2);
    const bool same = workspace_.manners.oneChannelSet;
    const std::string words = same ? "Works on " + blockChannelsInWords(workspace_) : std::string();
    channels_->setText(toQString(words));
    channels_->setVisible(same);
}

} // namespace velmora
