// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ScoreExports.h"

#include "base/Dialogs.h"
#include "base/ProgramFolders.h"
#include "base/QtText.h"
#include "composition/Performance.h"
#include "composition/Workspace.h"
#include "parts/Desk.h"
#include "shell/MessageBox.h"
#include "shell/ProgressWindow.h"
#include "studio/ExportThread.h"

namespace velmora {

namespace fs = std::filesystem;

namespace {
QString quoted(const fs::path& file) {
    return u'"' + toQString(file.filename().string()) + u'"';
}
} // namespace

ScoreExports::ScoreExports(Desk& desk, QWidget& window) : desk_(desk), window_(window) {
    timer_.setInterval(kTick);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
}

ScoreExports::~ScoreExports() = default;

void ScoreExports::start(ExportFormat format) {
    const ExportKind& kind = exportKind(format);
    if (!desk_.workspace.holdsNotes())
        return say("There are no notes yet, so there is nothing to export");
    if (isBusy() && format != ExportFormat::Midi)
        return say(quoted(thread_->file()) + " is still being written; one file of sound is made at a time");
    const fs::path file = askForName(kind);
    if (file.empty())
        return;
    if (format != ExportFormat::Midi)
        return makeSound(kind, file);
    const ExportOutcome outcome = exportMidi(desk_.workspace, file);
    if (outcome.end == ExportOutcome::End::Failed)
        tell(desk_.skins, &window_, toQString(exportWords(outcome, file)));
    else
        say(toQString(exportWords(outcome, file)));
}

fs::path ScoreExports::askForName(const ExportKind& kind) const {
    const fs::path place = exportPlace(desk_.workspace.score.currentFile, desk_.folders.songs(), kind.format);
    const ChosenFile chosen = desk_.dialogs.SaveDialog(kind.title, kind.filter, place.string());
    const std::string path = tidyFileName(chosen.path);
    return path.empty() ? fs::path() : fs::path(withExtension(path, kind.extension));
}

void ScoreExports::makeSound(const ExportKind& kind, const fs::path& file) {
    if (isBusy()) // the dialog took its time
        return;
    thread_ = std::make_unique<ExportThread>(SoundJob{.messages = perform(desk_.workspace).messages,
                                                      .file = file,
                                                      .format = kind.format,
                                                      .soundFont = findSoundFont().value_or(fs::path())});
    progress_ = std::make_unique<ProgressWindow>(desk_.skins, desk_.tips, &window_, toQString(kind.title),
                                                 "Writing " + quoted(file));
    progress_->onCancel = [this] {
        if (thread_)
            thread_->cancel();
    };
    ticks_ = 0;
    timer_.start();
}

void ScoreExports::look() {
    ++ticks_;
    if (thread_->hasEnded())
        return end();
    if (ticks_ * kTick == kPatience)
        progress_->open();
    progress_->showShare(thread_->share());
}

/// Who has waited before the window reads there what came of it; else a line is enough, and no press.
void ScoreExports::end() {
    timer_.stop();
    const std::unique_ptr<ExportThread> ended = std::move(thread_);
    const ExportOutcome outcome = ended->outcome();
    const QString words = toQString(exportWords(outcome, ended->file()));
    const bool isWatched = progress_->isVisible();
    if (outcome.end != ExportOutcome::End::Done || !isWatched)
        progress_.reset();
    else
        progress_->finish(words);
    if (outcome.end == ExportOutcome::End::Failed)
        tell(desk_.skins, &window_, words);
    else
        say(words);
}

bool ScoreExports::mayLeave() {
    if (!isBusy())
        return true;
    const QString question = "Velmora is still writing %1.\nDo you want to stop that and leave?";
    return askYesNo(desk_.skins, &window_, question.arg(quoted(thread_->file()))) == Answer::Yes || !isBusy();
}

void ScoreExports::stop() {
    timer_.stop();
    progress_.reset();
    thread_.reset();
}

void ScoreExports::say(const QString& words) const {
    if (onWords)
        onWords(words);
}

} // namespace velmora
