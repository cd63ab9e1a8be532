// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/EffectsPage.h"

#include "base/QtText.h"
#include "composition/MelodyMaker.h"
#include "composition/Workspace.h"
#include "parts/InstrumentField.h"
#include "shell/CommandButton.h"
#include "shell/ExToolTip.h"
#include "shell/ReadOut.h"
#include "shell/Slider.h"
#include "tableau/Commands.h"
#include "tableau/EffectGraph.h"
#include "tableau/StepMark.h"

#include <QComboBox>
#include <QLabel>

namespace velmora {

namespace {
constexpr int kMost = 127;
constexpr int kStrip = 20;
constexpr int kGraph = 3;
constexpr int kValue = 44; ///< the width of a read-out
constexpr int kListTop = 14;
constexpr const char* kInstrumentTip =
    "Select Single note Instrument.\nThe notes of a selection take it at once, and new notes of its channel";

/// A slider: its controls, where its value is kept, what it says.
struct EffectRow {
    const char* strip;
    const char* value;
    const char* mark;
    const char* here; ///< blank where there is none
    const char* caption;
    const char* shortCaption;
    const char* title;
    const char* tip;
    std::int16_t EffectSelectors::*kept;
    int middle; ///< what the slider's foot lacks to 0
};
constexpr std::array<EffectRow, 5> kEffectRows{{
    {"lblVolume", "vol3", "volumeSteps", "", "Volume", "Vol", "Single note Volume",
     "Select Single note Volume", &EffectSelectors::vol3, 0},
    {"LblMod", "T1", "Isld", "L1a", "Modulation", "Mod", "Single note Modulation",
     "Select Single note Modulation", &EffectSelectors::T1, 0},
    {"LblPan", "T2", "Isld1", "L2a", "Pan", "Pan", "Single note Pan", "Select Single note Pan",
     &EffectSelectors::T2, 64},
    {"LblReverb", "T3", "Isld2", "L3a", "Reverb", "Rev", "Single note Reverb", "Select Single note Reverb",
     &EffectSelectors::T3, 0},
    {"LblChorus", "T4", "Isld3", "L4a", "Chorus", "Cho", "Single note Chorus", "Select Single note Chorus",
     &EffectSelectors::T4, 0},
}};
} // namespace

/// How close the controls stand.
struct EffectsPage::Form {
    FormWidth from; ///< the widest window that may have it
    int instrument; ///< the widths of the lists
    int chord;
    int pitch; ///< from one slider to the next
    bool shortCaptions;
    bool iconsAlone;
};

EffectsPage::EffectsPage(const ToolPageParts& parts, Workspace& workspace, QWidget* parent)
    : ToolPage("TB2", parts, parent)
    , workspace_(workspace)
    , Check1(new CommandButton(parts.look, ButtonForm::IconOverText, this)) {
    Check1->setObjectName("Check1");
    Check1->setFace("effects", "Single Note");
    Check1->setCheckable(true);
    connect(Check1, &QAbstractButton::clicked, this, [this] { Check1_Click(); });
    addInstrument();
    addChord();
    addEffects();
    button(lb1("undo effects")).setParent(this);
    button(lb1("static")).setParent(this);
    order_ = {Check1, Text5, CmdInst, Combo3};
    for (const Effect& effect : effects_)
        order_.push_back(effect.strip);
    order_.insert(order_.end(), {&button(lb1("undo effects")), &button(lb1("static"))});
    EffectsPage::refresh();
}

void EffectsPage::addInstrument() {
    const auto pick = [this] {
        if (onPickInstrument)
            onPickInstrument();
    };
    instrumentCaption_ = addCaption("Instrument");
    Text5 = new InstrumentField(this);
    Text5->setObjectName("Text5");
    Text5->onOpen = pick;
    Text5->setAccessibleName("Instrument");
    CmdInst = new CommandButton(parts_.look, ButtonForm::Text, this);
    CmdInst->setObjectName("CmdInst");
    CmdInst->setFace("glyphs");
    CmdInst->setAccessibleName("Pick the instrument");
    parts_.tips.SetToolTip(*CmdInst, {"Instrument", kInstrumentTip, "glyphs"});
    connect(CmdInst, &QAbstractButton::clicked, this, pick);
}

void EffectsPage::addChord() {
    chordCaption_ = addCaption("Chord");
    Combo3 = new QComboBox(this);
    Combo3->setObjectName("Combo3");
    Combo3->setFocusPolicy(Qt::TabFocus);
    for (const ChordType& type : kChordTypes)
        Combo3->addItem(toQString(type.name));
    // Without a label a screen reader takes what is chosen for the name of the list.
    chordCaption_->setBuddy(Combo3);
    keepKeys(*Combo3);
    parts_.tips.SetToolTip(*Combo3, {"Chord", "Select Single note Chord Type", ""});
    connect(Combo3, &QComboBox::activated, this, [this](int type) { Combo3_Click(type); });
    chordHint = addCaption("");
    chordHint->setObjectName("chordHint");
}

void EffectsPage::addEffects() {
    for (std::size_t i = 0; i < kEffects; ++i) {
        const EffectRow& row = kEffectRows[i];
        Effect& effect = effects_[i];
        effect.caption = addCaption(row.caption);
        effect.strip = new Slider(parts_.look, Qt::Vertical, this);
        effect.strip->setObjectName(row.strip);
        effect.strip->setRange(-row.middle, kMost - row.middle);
        effect.strip->setRest(0);
        effect.value = new ReadOut(parts_.look, row.value, this);
        effect.mark = new StepMark(row.mark, this);
        const Tip tip{row.title, row.tip, ""};
        for (QWidget* part : std::initializer_list<QWidget*>{effect.strip, effect.value, effect.mark})
            parts_.tips.SetToolTip(*part, tip);
        if (*row.here) {
            effect.here = addCaption("");
            effect.here->setObjectName(row.here);
            effect.graph = new EffectGraph(parts_.look, QStringLiteral("Picture6(%1)").arg(i - 1), this);
            effect.note = addCaption("♪");
            effect.note->setObjectName(QString(row.here) + "note");
            effect.note->hide(); // until a note was looked at
            for (QWidget* part : {effect.here, effect.note})
                parts_.tips.SetToolTip(*part, {QString(row.caption) + " of the note",
                                               "What the note that you looked at last has; the number in the "
                                               "box is what notes will be given",
                                               ""});
        }
        connectEffect(i);
    }
}

void EffectsPage::connectEffect(std::size_t effect) {
    effects_[effect].strip->onDrag = [this, effect](int value) { setEffect(effect, value); };
    effects_[effect].mark->onHalf = [this, effect](int direction) {
        const EffectRow& row = kEffectRows[effect];
        const int value = workspace_.effects.*row.kept;
        setEffect(effect, steppedByPicture(value, direction, 0, {-row.middle, kMost - row.middle}));
        effects_[effect].strip->setValue(workspace_.effects.*row.kept);
    };
}

void EffectsPage::setEffect(std::size_t effect, int value) {
    const EffectRow& row = kEffectRows[effect];
    workspace_.effects.*row.kept = static_cast<std::int16_t>(value);
    effects_[effect].value->setText(QString::number(value));
}

void EffectsPage::Check1_Click() {
    workspace_.view.NoteEffectsOn = Check1->isChecked();
    if (onNoteEffects)
        onNoteEffects(Check1->isChecked());
}

void EffectsPage::Combo3_Click(int type) {
    workspace_.effects.Combo3 = static_cast<std::int16_t>(type);
    workspace_.chords.SelectChord(type);
    showHint();
    if (onChord)
        onChord(type);
}

void EffectsPage::showOn(bool on) {
    Check1->setChecked(on);
}

void EffectsPage::showEffects(int mod, int pan, int reverb, int chorus) {
    std::size_t effect = 1;
    for (const int value : {mod, pan, reverb, chorus}) {
        effects_[effect].here->setText(QString::number(value));
        effects_[effect].note->show();
        effects_[effect].strip->setValue(value);
        ++effect;
    }
}

void EffectsPage::showGraph(int mod, int pan, int reverb, int chorus) {
    std::size_t effect = 1;
    for (const int value : {mod, pan, reverb, chorus}) {
        effects_[effect].graph->showValue(value + kEffectRows[effect].middle);
        ++effect;
    }
}

/// The last type has no hint: the one before stays, and that is meant.
void EffectsPage::showHint() {
    const auto type = static_cast<std::size_t>(workspace_.effects.Combo3);
    if (type < kChordTypes.size() && !kChordTypes[type].hint.empty())
        hint_ = toQString(kChordTypes[type].hint);
    chordHint->setText(chordHint->fontMetrics().elidedText(hint_, Qt::ElideRight, chordHint->width()));
    parts_.tips.SetToolTip(*chordHint, {"Chord", hint_, ""});
}

void EffectsPage::layOut(FormWidth width) {
    static constexpr std::array<Form, 4> kForms{{
        {FormWidth::Full, 148, 136, 100, false, false},
        {FormWidth::Full, 148, 136, 96, false, false},
        {FormWidth::Compact, 112, 124, 76, true, false},
        {FormWidth::Small, 112, 124, 74, true, true},
    }};
    placeInFirstForm(kForms, width, this->width(), [this](const Form& form) { return place(form); });
    showHint();
    update();
}

int EffectsPage::place(const Form& form) {
    clearSeparators();
    Check1->setForm(form.iconsAlone ? ButtonForm::Icon : ButtonForm::IconOverText);
    const QSize face = Check1->sizeHint();
    Check1->setGeometry(0, (kHeight - face.height()) / 2, face.width(), face.height());
    int x = placeSeparator(placeLists(face.width() + 12, form));
    x = placeSeparator(placeEffects(x, form));
    return placeButtons(x, {lb1("undo effects"), lb1("static")}, form.iconsAlone) - 4;
}

int EffectsPage::placeLists(int x, const Form& form) {
    constexpr int kPicker = 28;
    instrumentCaption_->setGeometry(x, 0, form.instrument, 12);
    Text5->setGeometry(x, kListTop, form.instrument, 24);
    CmdInst->setGeometry(x + form.instrument + 4, kListTop, kPicker, 24);
    x += form.instrument + 4 + kPicker + 12;
    chordCaption_->setGeometry(x, 0, form.chord, 12);
    Combo3->setGeometry(x, kListTop, form.chord, 24);
    // Where the list is narrow its notes begin under the picker.
    const int right = x + form.chord + (form.shortCaptions ? 4 : 16);
    const int left = form.shortCaptions ? x - kPicker : x;
    chordHint->setGeometry(left, 40, right - left, 12);
    chordHint->setAlignment((form.shortCaptions ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    return right;
}

int EffectsPage::placeEffects(int x, const Form& form) {
    constexpr int kHere = 17;
    constexpr int kNote = 7; ///< the sign before it
    for (std::size_t i = 0; i < kEffects; ++i) {
        const Effect& effect = effects_[i];
        const int left = x + kStrip + 6;
        const int room = form.pitch - kStrip - 6 - 4;
        effect.strip->setGeometry(x, 0, kStrip, kHeight);
        if (effect.graph)
            effect.graph->setGeometry(x + kStrip, 2, kGraph, kHeight - 4);
        effect.caption->setText(form.shortCaptions ? kEffectRows[i].shortCaption : kEffectRows[i].caption);
        effect.caption->setGeometry(left, 2, form.shortCaptions ? kValue - kHere - kNote : room, 12);
        effect.value->setGeometry(left, 16, kValue, 20);
        effect.mark->setGeometry(left, 40, kValue, 12);
        // In words it stands beside the read-out, in short beside the caption.
        if (effect.here) {
            const QPoint at =
                form.shortCaptions ? QPoint(left + kValue - kHere - kNote, 2) : QPoint(left + kValue + 1, 20);
            effect.note->setGeometry(QRect(at, QSize(kNote, 12)));
            effect.here->setGeometry(QRect(at + QPoint(kNote, 0), QSize(kHere, 12)));
        }
        x += form.pitch;
    }
    return x - 4;
}

void EffectsPage::refresh() {
    const QString name = toQString(nameOfCode(workspace_.effects.NoteInstrumentPick));
    Text5->showName(name);
    // The whole name, which the field may cut.
    parts_.tips.SetToolTip(*Text5, {name, kInstrumentTip, "glyphs"});
    Combo3->setCurrentIndex(workspace_.effects.Combo3);
    showHint();
    for (std::size_t i = 0; i < kEffects; ++i) {
        const int value = workspace_.effects.*kEffectRows[i].kept;
        effects_[i].strip->setValue(value);
        effects_[i].value->setText(QString::number(value));
    }
    showOn(workspace_.view.NoteEffectsOn);
    tellWhatIsGiven();
}

void EffectsPage::tellWhatIsGiven() {
    static constexpr const char* kAll =
        "While this is pressed, a right click or drag over notes gives them the instrument, the chord, the "
        "volume and the effects that are chosen here";
    static constexpr const char* kTwo =
        "While this is pressed, a right click or drag over notes gives them the instrument and the chord "
        "that "
        "are chosen here. A right drag along the bar Note gives volume and effects";
    const bool all = workspace_.manners.givesWholeNoteAllEffects;
    parts_.tips.SetToolTip(*Check1, {"Single Note", all ? kAll : kTwo, "effects"});
}

} // namespace velmora
