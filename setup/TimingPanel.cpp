// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/TimingPanel.h"

#include "composition/SetupRules.h"
#include "composition/Workspace.h"
#include "parts/Application.h"
#include "parts/NumberField.h"
#include "setup/ComposingWindow.h"
#include "setup/SetupParts.h"
#include "shell/ExToolTip.h"
#include "shell/Slider.h"

#include <QGroupBox>
#include <QLineEdit>

#include <limits>

namespace velmora {

namespace {
constexpr int kMostTempo = 500;
constexpr int kTempoStep = 4;
constexpr int kTempoPage = 20;
} // namespace

TimingPanel::TimingPanel(Application& application, const ComposingWindow& form, const Appearance& look,
                         QWidget* parent)
    : QWidget(parent)
    , app_(application)
    , form_(form) {
    setObjectName("timingPanel");
    addTempo(*addGroup(*this, "Timing", {8, 8, 480, 100}), look);
    QGroupBox* meter = addGroup(*this, "Meter", {8, 116, 480, 140});
    TxtMeter =
        addField(*meter, "VScroll1", "TxtMeter", "Beats per measure", "How many beats a measure has", 12);
    NoteX =
        addField(*meter, "VScroll2", "NoteX", "Note value", "The note that is a beat: 4 for a quarter", 168);
    TxBeats = addField(*meter, "measureArrows", "TxBeats", "Notes per measure",
                       "How many columns stand between measure lines", 324);
    SetupState& setup = app_.workspace.setup;
    TxtMeter->number = [&setup] { return setup.TxtMeter; };
    TxtMeter->onNumber = [this](std::int16_t number) { TxtMeter_Change(number); };
    TxtMeter->onStep = [this, &setup](int steps) { TxtMeter_Change(stepped(kBeats, setup.TxtMeter, steps)); };
    NoteX->number = [&setup] { return setup.NoteX; };
    NoteX->onNumber = [this](std::int16_t number) { NoteX_Change(number); };
    NoteX->onStep = [this, &setup](int steps) { NoteX_Change(stepped(kNoteValues, setup.NoteX, steps)); };
    TxBeats->number = [&setup] { return setup.TxBeats; };
    TxBeats->onNumber = [this](std::int16_t number) { TxBeats_Change(number); };
    TxBeats->onStep = [this, &setup](int steps) {
        const int most = std::numeric_limits<std::int16_t>::max();
        TxBeats_Change(static_cast<std::int16_t>(std::clamp(setup.TxBeats + steps, 1, most)));
    };
}

void TimingPanel::addTempo(QGroupBox& group, const Appearance& look) {
    addWords(group, "Tempo (playing speed)", {12, 36, 200, 20});
    LblTempo = new Slider(look, Qt::Horizontal, &group);
    LblTempo->setObjectName("LblTempo");
    LblTempo->setAccessibleName("Tempo (playing speed)");
    LblTempo->setRange(0, kMostTempo);
    LblTempo->setSingleStep(kTempoStep);
    LblTempo->setPageStep(kTempoPage);
    LblTempo->setGeometry(12, 62, 384, 20);
    LblTempo->onDrag = [this](int value) {
        setTempo(tempoAt(value, kMostTempo));
        TempoLabel->setText(QString::number(app_.workspace.score.Tempo));
    };
    LblTempo->onRelease = [this] { LblTempo->setValue(app_.workspace.score.Tempo); };
    app_.tips.SetToolTip(*LblTempo, {"Tempo", "How fast the score is played, from the next play on", ""});

    TempoLabel = new QLineEdit(&group);
    TempoLabel->setObjectName("TempoLabel");
    TempoLabel->setAccessibleName("Tempo");
    TempoLabel->setAlignment(Qt::AlignCenter);
    TempoLabel->setGeometry(408, 60, 60, 24);
    app_.tips.SetToolTip(*TempoLabel, {"Tempo", "The tempo as a number", ""});
    connect(TempoLabel, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (const auto tempo = fieldNumber(text.toStdString())) {
            setTempo(*tempo);
            LblTempo->setValue(*tempo);
        }
    });
    connect(TempoLabel, &QLineEdit::editingFinished, this,
            [this] { TempoLabel->setText(QString::number(app_.workspace.score.Tempo)); });
}

NumberField* TimingPanel::addField(QGroupBox& group, const char* arrows, const char* text,
                                   const char* caption, const char* tip, int x) {
    addSmallWords(group, caption, {x, 48, 144, 16});
    auto* field = new NumberField(arrows, text, &group);
    field->setGeometry(x, 68, 88, 24);
    field->setAccessibleName(caption);
    app_.tips.SetToolTip(*field, {caption, tip, ""});
    return field;
}

void TimingPanel::setTempo(std::int16_t tempo) {
    app_.workspace.score.Tempo = tempo;
    ask(form_.PrintTopBar);
}

void TimingPanel::TxtMeter_Change(std::int16_t value) {
    meterChanged(velmora::TxtMeter_Change(app_.workspace.setup, app_.workspace.score, value));
}

void TimingPanel::NoteX_Change(std::int16_t value) {
    meterChanged(velmora::NoteX_Change(app_.workspace.setup, app_.workspace.score, value));
}

void TimingPanel::TxBeats_Change(std::int16_t value) {
    velmora::TxBeats_Change(app_.workspace.setup, app_.workspace.score, value);
    showBeats();
    ask(form_.PrintTopBar);
}

void TimingPanel::meterChanged(bool beatsChanged) {
    if (beatsChanged)
        showBeats();
    ask(form_.PrintTopBar);
    ask(form_.DrawNoteArray);
}

void TimingPanel::showBeats() {
    TxBeats->showNumber(app_.workspace.setup.TxBeats);
    TempoLabel->setText(QString::number(app_.workspace.score.Tempo));
    ask(form_.DrawNoteArray);
    ask(form_.DrawBeatArray);
}

void TimingPanel::refresh() {
    const SetupState& setup = app_.workspace.setup;
    LblTempo->setValue(app_.workspace.score.Tempo);
    TempoLabel->setText(QString::number(app_.workspace.score.Tempo));
    TxtMeter->showNumber(setup.TxtMeter);
    NoteX->showNumber(setup.NoteX);
    TxBeats->showNumber(setup.TxBeats);
}

} // namespace velmora
