// SPDX-License-Identifier: GPL-2.0-or-later
// Recordings of the keyboard: how they begin, the stack of the last ones, and the notes that belong to one.
#include "base/MessageLoop.h"
#include "base/QtText.h"
#include "base/SteadyClock.h"
#include "composition/Workspace.h"
#include "keyboard/KeepPhrase.h"
#include "keyboard/PlayedLog.h"
#include "parts/Desk.h"
#include "shell/MessageBox.h"
#include "synth/ComposePanel.h"
#include "synth/KeyArea.h"
#include "synth/SoundTwoPanel.h"
#include "synth/frmsynth.h"

#include <QAction>
#include <QDateTime>
#include <QLocale>
#include <QMenu>

#include <algorithm>

namespace velmora {

void frmsynth::CmdRec_Click() {
    if (countIn_.isRunning())
        endCountIn();
    else if (compose_->countsIn() && keyboard_.recording() == TakeRecorder::State::Off)
        countIn();
    else
        keyboard_.CmdRec_Click();
    Picture1_->setFocus();
}

/// A bar of beats, and then the recording. What would be overwritten is asked before.
void frmsynth::countIn() {
    if (keyboard_.take.size() > 2 && !confirmOverwrite())
        return;
    mayOverwrite_ = true;
    keyboard_.chkRunning_Click(true);
    countIn_.start(keyboard_.metronome().BeatsPerMeasure);
    used();
}

void frmsynth::endCountIn() {
    countIn_.cancel();
    mayOverwrite_ = false;
    used();
}

void frmsynth::lookAtTake() {
    const bool records = keyboard_.recording() == TakeRecorder::State::On;
    const auto seconds = takes_.look(keyboard_.take, records, keyboard_.controls().Text2 * 0.001);
    if (seconds)
        takesAlarm_.setTo(steadySeconds() + *seconds);
    else
        takesAlarm_.stop();
}

void frmsynth::popUpTakes(QWidget& button) {
    QMenu menu(this);
    const QLocale here;
    const bool records = keyboard_.recording() != TakeRecorder::State::Off;
    const auto& takes = takes_.takes();
    for (std::size_t i = 0; i < takes.size(); ++i) {
        const QDateTime when = QDateTime::fromMSecsSinceEpoch(takes[i].when);
        const double seconds = static_cast<double>(takes[i].length) / 1000;
        QAction* const row = menu.addAction(
            QStringLiteral("%1   %2 s")
                .arg(here.toString(when, QLocale::ShortFormat), here.toString(seconds, 'f', 1)));
        row->setEnabled(!records);
        connect(row, &QAction::triggered, this, [this, i] { chooseTake(i); });
    }
    for (const std::string& words : takes_.unreadable())
        menu.addAction(toQString(words))->setEnabled(false);
    if (menu.isEmpty())
        menu.addAction("Nothing has been recorded yet")->setEnabled(false);
    menu.addSeparator();
    QAction* const undo = menu.addAction("Undo the last overdub");
    undo->setEnabled(desk_.workspace.undoStep() == Overdub::kStep);
    connect(undo, &QAction::triggered, this, [this] { overdub_.undoPass(); });
    menu.exec(button.mapToGlobal(QPoint(0, button.height() + 2)));
}

void frmsynth::chooseTake(std::size_t index) {
    if (keyboard_.recording() != TakeRecorder::State::Off)
        return;
    keyboard_.Check4_Click();
    if (const std::string words = takes_.choose(index, keyboard_.take); !words.empty())
        return tell(skins(), this, toQString(words));
    recorded_.reset();
    keyboard_.Check7_Click();
    used();
}

/// What a hand played while the take was recorded, by the mouse, too.
std::vector<PlayedNote> frmsynth::notesOfTake() const {
    return recorded_ ? desk_.played.between(recorded_->first, recorded_->last) : std::vector<PlayedNote>();
}

std::string frmsynth::saveNotes(const std::filesystem::path& path) {
    std::string words = saveNotesAsPlayed(path, notesOfTake());
    if (words.empty()) { // a take is saved once
        keyboard_.take.clear();
        recorded_.reset();
        showTransport();
    }
    return words;
}

} // namespace velmora
