// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/TimingPanel.h"

#include "composition/SetupRules.h"
#include "composition/Workspace.h"
#include "parts/Desk.h"
#include "parts/NumberField.h"
#include "setup/SetupParts.h"
#include "shell/ExToolTip.h"
#include "shell/Slider.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QScopedValueRollback>

#include <limits>

namespace velmora {

namespace {
constexpr int kMostTempo = 500;
constexpr int kTempoStep = 4;
constexpr int kTempoPage = 20;
} // namespace

TimingPanel::TimingPanel(Desk& desk, const Appearance& look, QWidget* parent) : QWidget(parent), desk_(desk) {
    setObjectName("timingPanel");
    addTempo(*addGroup(*this, "Timing", {8, 8, 480, 100}), look);
    QGroupBox* meter = addGroup(*this, "Meter", {8, 116, 480, 140});
    TxtMeter =
        addField(*meter, "VScroll1", "TxtMeter", "Beats per measure", "How many beats a measure has", 12);
    NoteX =
        addField(*meter, "VScroll2", "NoteX", "Note value", "The note that is a beat: 4 for a quarter", 168);
    TxBeats = addField(*meter, "measureArrows", "TxBeats", "Notes per measure",
                       "How many columns stand between measure lines", 324);
    Workspace& workspace = desk_.workspace;
    const SetupState& setup = workspace.setup;
    TxtMeter->number = [&setup] { return setup.TxtMeter; };
    TxtMeter->onNumber = [this, &workspace](std::int16_t number) {
        goOn();
        TxtMeter_Change(workspace, number);
    };
    TxtMeter->onStep = [&workspace](int steps) {
        TxtMeter_Change(workspace, stepped(kBeats, workspace.setup.TxtMeter, steps));
    };
    NoteX->number = [&setup] { return setup.NoteX; };
    NoteX->onNumber = [this, &workspace](std::int16_t number) {
        goOn();
        NoteX_Change(workspace, number);
    };
    NoteX->onStep = [&workspace](int steps) {
        NoteX_Change(workspace, stepped(kNoteValues, workspace.setup.NoteX, steps));
    };
    TxBeats->number = [&setup] { return setup.TxBeats; };
    TxBeats->onNumber = [this, &workspace](std::int16_t number) {
        goOn();
        TxBeats_Change(workspace, number);
    };
    TxBeats->onStep = [&workspace](int steps) {
        const int most = std::numeric_limits<std::int16_t>::max();
        TxBeats_Change(workspace,
                       static_cast<std::int16_t>(std::clamp(workspace.setup.TxBeats + steps, 1, most)));
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
        goOn();
        const QScopedValueRollback dragging(dragging_, true);
        setTempo(desk_.workspace, tempoAt(value, kMostTempo));
    };
    LblTempo->onRelease = [this] {
        act_.reset();
        LblTempo->setValue(desk_.workspace.score.Tempo);
    };
    desk_.tips.SetToolTip(*LblTempo, {"Tempo", "How fast the score is played, from the next play on", ""});

    TempoLabel = new QLineEdit(&group);
    TempoLabel->setObjectName("TempoLabel");
    TempoLabel->setAccessibleName("Tempo");
    TempoLabel->setAlignment(Qt::AlignCenter);
    TempoLabel->setGeometry(408, 60, 60, 24);
    desk_.tips.SetToolTip(*TempoLabel, {"Tempo", "The tempo as a number", ""});
    connect(TempoLabel, &QLineEdit::textEdited, this, [this](const QString& text) {
        goOn();
        if (const auto tempo = fieldNumber(text.toStdString()))
            setTempo(desk_.workspace, *tempo);
    });
    connect(TempoLabel, &QLineEdit::editingFinished, this, [this] {
        act_.reset();
        TempoLabel->setText(QString::number(desk_.workspace.score.Tempo));
    });
}

NumberField* TimingPanel::addField(QGroupBox& group, const char* arrows, const char* text,
                                   const char* caption, const char* tip, int x) {
    addSmallWords(group, caption, {x, 48, 144, 16});
    auto* field = new NumberField(arrows, text, &group);
    field->setGeometry(x, 68, 88, 24);
    field->setAccessibleName(caption);
    desk_.tips.SetToolTip(*field, {caption, tip, ""});
    connect(field, &QAbstractSpinBox::editingFinished, this, [this] { act_.reset(); });
    return field;
}

void TimingPanel::goOn() {
    if (!act_)
        act_.emplace(desk_.workspace);
}

void TimingPanel::refresh() {
    const SetupState& setup = desk_.workspace.setup;
    const std::int16_t tempo = desk_.workspace.score.Tempo;
    if (!dragging_)
        LblTempo->setValue(tempo);
    if (!TempoLabel->isModified() || fieldNumber(TempoLabel->text().toStdString()) != tempo)
        TempoLabel->setText(QString::number(tempo));
    TxtMeter->showNumber(setup.TxtMeter);
    NoteX->showNumber(setup.NoteX);
    TxBeats->showNumber(setup.TxBeats);
}

} // namespace velmora
