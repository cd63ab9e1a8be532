// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/ScoreFiles.h"

#include "base/Dialogs.h"
#include "base/Files.h"
#include "base/Settings.h"
#include "composition/MidiExport.h"
#include "composition/OpenedScore.h"
#include "composition/Workspace.h"
#include "score/SngFile.h"
#include "score/SngText.h"

#include <string_view>
#include <utility>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr std::string_view kOpenFilter = "Score Files (*.sng) |*.sng|";
constexpr std::string_view kSaveFilter = "Velmora Score(*.sng)|*.sng|Midi(*.mid)|*.mid";
constexpr int kMidiFilter = 2;

/// A writer's words say which file and why; whoever saves wants to know what became of it, and what to do.
ScoreFiles::Outcome outcomeOfWriting(const std::string& words) {
    ScoreFiles::Outcome outcome;
    outcome.done = words.empty();
    if (!outcome.done)
        outcome.words =
            words + " Nothing is lost and nothing was replaced. Try another folder or another name.";
    return outcome;
}

/// As the scores of all forms do. One that doesn't is opened all the same, since a part of it may be sound.
bool beginsWithANumber(std::string_view text) {
    return !text.empty() && (text.front() == '-' || (text.front() >= '0' && text.front() <= '9'));
}

/// "2,400" for 2400.
std::string withCommas(std::size_t number) {
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3; at -= 3)
        text.insert(at - 3, 1, ',');
    return text;
}

class Busy {
public:
    explicit Busy(const std::function<void(bool)>& onBusy) : onBusy_(onBusy) { say(true); }
    ~Busy() { say(false); }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    void say(bool busy) const {
        if (onBusy_)
            onBusy_(busy);
    }
    const std::function<void(bool)>& onBusy_;
};
} // namespace

ScoreFiles::ScoreFiles(Workspace& workspace, clsDialog& dialogs, SettingsStore& settings, fs::path songs)
    : workspace_(workspace)
    , dialogs_(dialogs)
    , settings_(settings)
    , recent_(settings)
    , folder_(std::move(songs)) {}

ScoreFiles::Outcome ScoreFiles::open() {
    const ChosenFile chosen = dialogs_.OpenDialog("Open Score File", kOpenFilter, folder_.string());
    // The name keeps its case: two files may differ in nothing else.
    const std::string path = tidyFileName(chosen.path);
    return path.empty() ? Outcome{} : open(fs::path(path));
}

ScoreFiles::Text ScoreFiles::read(const fs::path& file) {
    TextFile found = readTextFile(file);
    switch (found.problem) {
    case TextProblem::Unreadable:
        return {.bytes = {},
                .problem = "The score \"" + file.string() +
                           "\" can't be read. Is it there, a file, and yours to read?"};
    case TextProblem::NotText:
        return {.bytes = {}, .problem = "The file \"" + file.string() + "\" is no score: it isn't text."};
    case TextProblem::None:
        break;
    }
    const SngReader reader = openingReader(found.text);
    return {.bytes = std::move(found.text), .reader = reader};
}

ScoreFiles::Outcome ScoreFiles::take(const Text& text, const fs::path& file, const fs::path& own) {
    const Edit edit(workspace_, kAnotherScore);
    workspace_.keepReplaced("Open Score File");
    const OpenedLength length = takeScore(text.bytes, text.reader, workspace_);
    const bool careful = workspace_.manners.asksBeforeLoss;
    const bool isScore = beginsWithANumber(withoutByteOrderMark(text.bytes));
    workspace_.score.currentFile = careful && !(isScore && length.whole) ? std::string() : own.string();
    workspace_.markSaved();
    if (onOpened)
        onOpened();
    Outcome outcome{true, {}, true};
    if (!isScore)
        outcome.words = "The file \"" + file.string() +
                        "\" doesn't look like a score. If it is the wrong one, Undo brings back what was "
                        "open before.";
    const int last = workspace_.score.NumNotes;
    if (length.grown)
        outcome.note = "The score is now " + withCommas(static_cast<std::size_t>(last)) +
                       " notes long, so that it holds all of " + file.filename().string();
    if (length.whole)
        return outcome;
    outcome.note.clear();
    if (careful)
        outcome.words = "The score \"" + file.string() + "\" is " + withCommas(length.longest) +
                        " notes long, and the longest that there can be has " +
                        withCommas(static_cast<std::size_t>(last) + 1) +
                        ". The rest was left out. The file keeps it: Save asks for another name.";
    else
        outcome.words = "The score \"" + file.string() + "\" is " + std::to_string(length.longest) +
                        " notes long. Only the first " + std::to_string(last + 1) +
                        " have room; saving it under the same name would lose the rest.";
    return outcome;
}

ScoreFiles::Outcome ScoreFiles::open(const fs::path& file) {
    const Busy busy(onBusy);
    const Text text = read(file);
    if (!text.problem.empty())
        return {false, text.problem, {}};
    folder_ = file.parent_path();
    recent_.add(file);
    return take(text, file, file);
}

ScoreFiles::Outcome ScoreFiles::openDemo(const fs::path& file, const std::string& title) {
    const Busy busy(onBusy);
    Text text = read(file);
    if (!text.problem.empty())
        return {false, text.problem, {}};
    // Some are in the first form, and only their own reader finds their tempo.
    if (formOf(text.bytes) == SngForm::First)
        text.reader = SngReader::OpenFile;
    Outcome outcome = take(text, file, {});
    if (outcome.note.empty())
        outcome.note = "A demo: " + title;
    return outcome;
}

ScoreFiles::Outcome ScoreFiles::openRecent(const fs::path& file) {
    std::error_code error;
    if (fs::exists(file, error) || error)
        return open(file);
    recent_.remove(file);
    return {false,
            "The score \"" + file.string() +
                "\" is not there any more: it was removed, or has another name or place now. It has left the "
                "list of recent files.",
            {}};
}

bool ScoreFiles::savesToOwnFile() const {
    return workspace_.manners.asksBeforeLoss && !workspace_.score.currentFile.empty();
}

bool ScoreFiles::canSave() const {
    return savesToOwnFile() || workspace_.holdsNotes();
}

ScoreFiles::Outcome ScoreFiles::save() {
    return savesToOwnFile() ? saveScore(workspace_.score.currentFile) : saveAs();
}

ScoreFiles::Outcome ScoreFiles::saveAs() {
    if (!workspace_.holdsNotes())
        return {};
    const std::string& current = workspace_.score.currentFile;
    const ChosenFile chosen =
        dialogs_.SaveDialog("Save music file", kSaveFilter, current.empty() ? folder_.string() : current);
    const std::string path = tidyFileName(chosen.path);
    if (path.empty())
        return {};
    folder_ = fs::path(path).parent_path();
    return chosen.filterIndex == kMidiFilter ? exportMidi(withExtension(path, ".mid"))
                                             : saveScore(withExtension(path, ".sng"));
}

ScoreFiles::Outcome ScoreFiles::saveScore(const fs::path& file) {
    const Busy busy(onBusy);
    Score& score = workspace_.score;
    const Edit edit(workspace_, Change::Name);
    const std::string before = std::exchange(score.currentFile, file.string());
    Outcome outcome = outcomeOfWriting(SavePoliFile(score, workspace_.setup));
    if (!outcome.done) {
        score.currentFile = before;
        return outcome;
    }
    workspace_.markSaved();
    recent_.add(file);
    return outcome;
}

ScoreFiles::Outcome ScoreFiles::exportMidi(const std::string& path) {
    const Busy busy(onBusy);
    std::int32_t size = settings::read(settings_, settings::NumBytes);
    const std::int32_t before = size;
    Outcome outcome = outcomeOfWriting(writeMidi(path, PerformedScore::of(workspace_), size));
    if (size != before)
        settings::save(settings_, settings::NumBytes, size);
    return outcome;
}

std::string unsavedQuestion(const Workspace& workspace) {
    const fs::path file = workspace.score.currentFile;
    const std::string what = file.empty()
                                 ? "The score is in no file yet."
                                 : "\"" + file.filename().string() + "\" has changes that are not saved.";
    return what + "\n\nDo you want to save it first?";
}

} // namespace velmora
