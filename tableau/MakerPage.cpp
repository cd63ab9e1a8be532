// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/MakerPage.h"

#include "composition/CycleFields.h"
#include "composition/MelodyMaker.h"
#include "composition/Workspace.h"
#include "parts/ChannelSquare.h"
#include "parts/NumberField.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "shell/Slider.h"
#include "tableau/Commands.h"
#include "tableau/StepMark.h"

#include <QCheckBox>
#include <QLabel>

#include <algorithm>
#include <limits>

namespace velmora {

namespace {
constexpr int kFieldTop = 14;
constexpr int kLowFieldTop = 20; ///< without pictures
constexpr int kMarkTop = 40;
constexpr int kLongCycle = 64; ///< what the pictures of the cycle reach; a field takes more
constexpr std::size_t kStart = 0;
constexpr std::size_t kMelodyBoxes = 8;
constexpr int kBox = 14;

/// There is no box for MIDI's drum channel.
std::size_t channelOf(std::size_t box) {
    return box <= kMelodyBoxes ? box : box + 1;
}
} // namespace

/// How close the controls stand.
struct MakerPage::Form {
    FormWidth from; ///< the widest window that may have it
    int field;      ///< the width of a number
    int picture;    ///< and of its slider, 0 for none
    int gap;        ///< to the next number
    int twoRows;    ///< channels in the upper of two rows, each with its number beside its box; 0 for one row
    bool iconsAlone;
};

MakerPage::MakerPage(const ToolPageParts& parts, Workspace& workspace, QWidget* parent)
    : ToolPage("TB1", parts, parent)
    , workspace_(workspace) {
    addNumbers();
    addChannels();
    button(lb1("create melody")).setParent(this);
    button(lb1("undo melody")).setParent(this);
    for (const Number& number : numbers_)
        order_.insert(order_.end(), {number.field.number, number.picture});
    order_.insert(order_.end(), {Chkmelody, Chkperc});
    order_.insert(order_.end(), chkChannel.begin(), chkChannel.end());
    order_.insert(order_.end(), {&button(lb1("create melody")), &button(lb1("undo melody"))});
    MakerPage::refresh();
}

void MakerPage::addNumbers() {
    struct Row {
        FieldRow field;
        const char* picture;
    };
    static constexpr std::array<Row, kNumbers> kRows{{
        {{"vcrStart", "txtStart", "Start at X", "Starting Note Number ",
          "Select Starting Note Number  [-<<|>>+]"},
         "IStart1"},
        {{"VSLen", "Txtlen", "Total Length", "Length of Melody", "Select Length of Melody  [-<<|>>+]"},
         "ILength"},
        {{"VSrep", "TxtRep", "Cycle Length", "Number of Notes in Loop ",
          "Select Number of Notes in Loop  [-<<|>>+]"},
         "IRepeat"},
        {{"VSnt", "TxtNt", "Notes in cycle", "Number of Playable Notes in Loop",
          "Select Number of Playable Notes in Loop [-<<|>>+]"},
         "INotes"},
    }};
    EditState& edit = workspace_.edit;
    for (std::size_t i = 0; i < kNumbers; ++i) {
        Number& number = numbers_[i];
        number.value = {.get = [&edit, i]() -> int {
                            return i == kStart ? edit.txtStart : edit.*kCycleValues[i - 1].value;
                        },
                        .set = [this, i](std::int16_t value) { setNumber(i, value); },
                        .blank = [this, i] { return blankOf(i); }};
        number.field = addField(kRows[i].field, number.value);
        addPicture(number, kRows[i].picture, kRows[i].field);
    }
    // From measure to measure.
    Value& start = numbers_[kStart].value;
    start.step = [this] { return std::max(1, startSteps(workspace_.score).small); };
    start.least = 1;
    numbers_[kStart].field.number->onStep = [&start](int steps) { start.move(steps * start.step()); };
}

void MakerPage::addPicture(Number& number, const char* name, const FieldRow& row) {
    number.picture = new Slider(parts_.look, Qt::Horizontal, this);
    number.picture->setObjectName(name);
    number.picture->setAccessibleName(row.caption);
    number.picture->onDrag = [&number](int value) { number.value.set(static_cast<std::int16_t>(value)); };
    number.mark = new StepMark(QString(name) + "Steps", this);
    const auto half = [&number](int direction) { number.value.stepHalf(direction); };
    number.picture->onHalf = half;
    number.mark->onHalf = half;
    parts_.tips.SetToolTip(*number.picture, {row.title, row.tip, ""});
    parts_.tips.SetToolTip(*number.mark, {row.title, row.tip, ""});
}

void MakerPage::addChannels() {
    Chkmelody = addBox("Chkmelody", "Melody", "Melody", "Duplicate All Melody channels");
    Chkperc = addBox("Chkperc", "Percussion", "Percussion", "Duplicate All Percussion channels");
    EditState& edit = workspace_.edit;
    connect(Chkmelody, &QCheckBox::clicked, this, [this, &edit](bool ticked) {
        pickMelody(edit, ticked);
        refresh();
    });
    connect(Chkperc, &QCheckBox::clicked, this, [this, &edit](bool ticked) {
        pickPercussion(edit, ticked);
        refresh();
    });
    for (std::size_t i = 0; i < kChannels; ++i) {
        squares_[i] = new ChannelSquare(static_cast<int>(channelOf(i)), this);
        const QByteArray name = squares_[i]->accessibleName().toUtf8();
        chkChannel[i] = addBox(QStringLiteral("chkChannel(%1)").arg(i), "", name.constData(),
                               "Copy and repeat the notes of this channel");
        connect(chkChannel[i], &QCheckBox::clicked, this, [this, &edit, i](bool ticked) {
            edit.ChannelPicked[channelOf(i)] = ticked;
            refresh();
        });
    }
}

void MakerPage::setNumber(std::size_t index, std::int16_t value) {
    if (index == kStart)
        takeStart(workspace_, value);
    else
        kCycleValues[index - 1].set(workspace_, value);
    refresh();
    if (onCycle)
        onCycle();
}

std::optional<int> MakerPage::blankOf(std::size_t index) const {
    if (!workspace_.manners.motifBeginsAtStart)
        return std::nullopt;
    return index == kStart ? 1
                           : cycleOf(workspace_.edit, workspace_.manners).*kCycleValues[index - 1].counted;
}

bool MakerPage::isPicked(std::size_t box) const {
    return workspace_.edit.ChannelPicked[channelOf(box)];
}

void MakerPage::layOut(FormWidth width) {
    static constexpr std::array<Form, 4> kForms{{
        {FormWidth::Full, 64, 60, 8, 0, false},
        {FormWidth::Compact, 64, 60, 8, 8, false},
        {FormWidth::Compact, 56, 36, 4, 6, false},
        {FormWidth::Small, 64, 0, 12, 8, true},
    }};
    placeInFirstForm(kForms, width, this->width(), [this](const Form& form) { return place(form); });
    update();
}

int MakerPage::place(const Form& form) {
    clearSeparators();
    int x = placeSeparator(placeNumbers(0, form));
    x = placeBoxes(x, {Chkmelody, Chkperc}, form.twoRows > 0 ? 4 : 5, form.twoRows > 0 ? 28 : 26);
    x = placeSeparator(placeChannels(x + 8, form));
    return placeButtons(x, {lb1("create melody"), lb1("undo melody")}, form.iconsAlone) - 4;
}

int MakerPage::placeNumbers(int x, const Form& form) const {
    const bool pictures = form.picture > 0;
    for (const Number& number : numbers_) {
        const int right = x + form.field + 4;
        placeField(number.field, x, pictures ? kFieldTop : kLowFieldTop, form.field,
                   form.field + form.picture + form.gap);
        number.picture->setVisible(pictures);
        number.mark->setVisible(pictures);
        number.picture->setGeometry(right, kFieldTop + 2, form.picture, 20);
        const QSize mark = number.mark->sizeHint();
        number.mark->setGeometry(right + (form.picture - mark.width()) / 2, kMarkTop, mark.width(),
                                 mark.height());
        x += form.field + form.gap + (pictures ? form.picture + 4 : 0);
    }
    return x;
}

/// In one row the number stands over its box, in two beside it.
int MakerPage::placeChannels(int x, const Form& form) const {
    constexpr int kPitch = 24;
    constexpr int kWidePitch = 36;
    constexpr int kChip = 16;
    for (int i = 0; i < static_cast<int>(kChannels); ++i) {
        QWidget& square = *squares_[static_cast<std::size_t>(i)];
        QWidget& box = *chkChannel[static_cast<std::size_t>(i)];
        if (form.twoRows > 0) {
            const bool upper = i < form.twoRows;
            const int left = x + (upper ? i : i - form.twoRows) * kWidePitch;
            square.setGeometry(left, upper ? 4 : 32, kChip, kChip);
            box.setGeometry(left + kChip + 2, upper ? 5 : 33, kBox, kBox);
        } else {
            const int left = x + i * kPitch + (i >= static_cast<int>(kMelodyBoxes) ? 8 : 0);
            square.setGeometry(left, 3, 20, 20);
            box.setGeometry(left + 3, 32, kBox, kBox);
        }
    }
    return form.twoRows > 0 ? x + form.twoRows * kWidePitch - 4 : x + 12 * kPitch + 8;
}

void MakerPage::refresh() {
    constexpr int kMost = std::numeric_limits<std::int16_t>::max();
    const int notes = std::min(workspace_.score.NumNotes, kMost);
    for (std::size_t i = 0; i < kNumbers; ++i) {
        const Number& number = numbers_[i];
        showValue(*number.field.number, number.value);
        number.picture->setRange(number.value.least, i < 2 ? notes : kLongCycle);
        number.picture->setValue(number.value.counted());
    }
    for (std::size_t i = 0; i < kChannels; ++i)
        chkChannel[i]->setChecked(isPicked(i));
    const auto allOf = [this](std::size_t first, std::size_t last) {
        for (std::size_t box = first; box < last; ++box)
            if (!isPicked(box))
                return false;
        return true;
    };
    Chkmelody->setChecked(allOf(0, kMelodyBoxes));
    Chkperc->setChecked(allOf(kMelodyBoxes, kChannels));
}

} // namespace velmora
