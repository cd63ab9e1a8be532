// SPDX-License-Identifier: GPL-2.0-or-later
// The files of the keyboard: schemes, and the score that a take becomes.
#include "base/Dialogs.h"
#include "base/ProgramFolders.h"
#include "base/QtText.h"
#include "base/Settings.h"
#include "composition/Workspace.h"
#include "keyboard/KeyFile.h"
#include "keyboard/KeyboardLayout.h"
#include "keyboard/TakeScore.h"
#include "parts/Desk.h"
#include "shell/CommandButton.h"
#include "shell/MessageBox.h"
#include "synth/Commands.h"
#include "synth/SchemePanel.h"
#include "synth/frmsynth.h"

#include <QAction>
#include <QGuiApplication>
#include <QMenu>

#include <optional>
#include <system_error>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr std::string_view kKeyFilter = "Keys(*.key)|*.key";
constexpr std::string_view kScoreFilter = "SNG(*.sng)|*.sng";

bool isThere(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error);
}
} // namespace

void frmsynth::loadScheme() {
    KeyFilePath_ = settings::read(desk_.settings, settings::keyfile, "None");
    if (!isThere(KeyFilePath_))
        return;
    KeyScheme scheme = keyboard_.scheme();
    if (OpenKeyScheme(KeyFilePath_, scheme).empty())
        takeScheme(scheme, KeyFilePath_);
}

void frmsynth::takeScheme(const KeyScheme& scheme, const std::string& path) {
    keyboard_.setScheme(scheme);
    KeyFilePath_ = path;
    scheme_->showFile(toQString(fs::path(path).filename().string()));
    used();
}

/// The next start has it, too, where its file came with the program.
void frmsynth::chooseScheme(int index) {
    const auto shipped = shippedSchemes();
    if (index < 0 || static_cast<std::size_t>(index) >= shipped.size())
        return;
    const ShippedScheme& row = shipped[static_cast<std::size_t>(index)];
    const fs::path folder = shippedFolder("schemes").value_or(fs::path());
    takeScheme(row.scheme(), (folder / (std::string(row.file) + ".key")).string());
}

/// The scheme is kept among the user's own files, so that the next start has it.
void frmsynth::fitKeyboard() {
    const std::optional<Keymap> inUse = keymap();
    if (!inUse)
        return tell(skins(), this, "The layout of your keyboard could not be read.");
    const fs::path path = desk_.folders.home() / "My keyboard.key";
    takeScheme(fitScheme([&inUse](int position) { return inUse->typedBy(position); }).scheme, path.string());
    desk_.folders.makeHome();
    if (const std::string words = SaveKeyScheme(path, keyboard_.scheme()); !words.empty())
        tell(skins(), this, toQString(words));
}

/// A name that leads to nothing is ignored without a word; that is meant.
void frmsynth::Command1_Click() {
    const ChosenFile chosen =
        desk_.dialogs.OpenDialog("Open keyboard scheme", kKeyFilter, schemeFolder_.string());
    const std::string path = tidyFileName(chosen.path);
    if (path.empty() || !isThere(path))
        return;
    schemeFolder_ = fs::path(path).parent_path();
    KeyScheme scheme = keyboard_.scheme();
    if (const std::string words = OpenKeyScheme(path, scheme); !words.empty())
        tell(skins(), this, toQString(words));
    else
        takeScheme(scheme, path);
}

void frmsynth::Command6_Click() {
    const ChosenFile chosen =
        desk_.dialogs.SaveDialog("Save keyboard scheme", kKeyFilter, schemeFolder_.string());
    if (tidyFileName(chosen.path).empty())
        return;
    const std::string path = keyFileName(chosen.path);
    schemeFolder_ = fs::path(path).parent_path();
    if (const std::string words = SaveKeyScheme(path, keyboard_.scheme()); !words.empty())
        return tell(skins(), this, toQString(words));
    KeyFilePath_ = path;
    scheme_->showFile(toQString(fs::path(path).filename().string()));
}

/// Which of its two forms a saved recording is to have; nothing if the choice is left. True for the notes as
/// they were played.
std::optional<bool> frmsynth::asksForNotes(bool hasTrace) {
    if (!desk_.workspace.manners.savesNotesAsPlayed || notesOfTake().empty())
        return false;
    if (!hasTrace)
        return true;
    const QAbstractButton& button = Lb1_[synthLb1("saveRecording")];
    QMenu menu(this);
    const QAction* notes = menu.addAction("Notes as I played them");
    menu.addAction("Classic trace");
    const QAction* chosen = menu.exec(button.mapToGlobal(QPoint(0, button.height() + 2)));
    return chosen ? std::optional(chosen == notes) : std::nullopt;
}

void frmsynth::CmdRecord_Click() {
    switch (keyboard_.saveProblem()) {
    case Keyboard::Unsaveable::Recording:
        return;
    case Keyboard::Unsaveable::Nothing: // of the mouse's notes there is no trace
        if (desk_.workspace.manners.savesNotesAsPlayed && !notesOfTake().empty())
            break;
        return tell(skins(), this, toQString(kNothingToSave));
    case Keyboard::Unsaveable::No:
        break;
    }
    const std::optional<bool> asNotes = asksForNotes(keyboard_.saveProblem() == Keyboard::Unsaveable::No);
    if (!asNotes)
        return;
    const ChosenFile chosen =
        desk_.dialogs.SaveDialog("Save As SNG score", kScoreFilter, scoreFolder_.string());
    const fs::path path = takeScoreName(chosen.path);
    if (path.empty())
        return;
    scoreFolder_ = path.parent_path();
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const std::string words = *asNotes ? saveNotes(path) : keyboard_.SaveRecordingAsScore(path);
    QGuiApplication::restoreOverrideCursor();
    if (!words.empty())
        tell(skins(), this, toQString(words));
}

} // namespace velmora
