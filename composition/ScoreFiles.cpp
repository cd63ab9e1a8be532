// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/ScoreFiles.h"

#include "base/Dialogs.h"
#include "base/Files.h"
#include "base/Settings.h"
#include "composition/MidiExport.h"
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
    , folder_(std::move(songs)) {}

ScoreFiles::Outcome ScoreFiles::open() {
    const ChosenFile chosen = dialogs_.OpenDialog("Open Score File", kOpenFilter, folder_.string());
    // The name keeps its case: two files may differ in nothing else.
    const std::string path = tidyFileName(chosen.path);
    return path.empty() ? Outcome{} : open(fs::path(path));
}

ScoreFiles::Outcome ScoreFiles::open(const fs::path& file) {
    const Busy busy(onBusy);
    const auto [problem, text] = readTextFile(file);
    if (problem == TextProblem::Unreadable)
        return {false,
                "The score \"" + file.string() + "\" can't be read. Is it there, a file, and yours to read?",
                {}};
    if (problem == TextProblem::NotText)
        return {false, "The file \"" + file.string() + "\" is no score: it isn't text.", {}};
    const Edit edit(workspace_, kAnotherScore);
    workspace_.keepReplaced("Open Score File");
    parseSng(text, openingReader(text), workspace_.score, workspace_.setup);
    workspace_.showFromStart();
    Outcome outcome{true, {}, true};
    workspace_.score.currentFile = file.string();
    if (onOpened)
        onOpened();
    folder_ = file.parent_path();
    if (!beginsWithANumber(withoutByteOrderMark(text)))
        outcome.words = "The file \"" + file.string() +
                        "\" doesn't look like a score. If it is the wrong one, Undo brings back what was "
                        "open before.";
    if (const auto longest = longestRow(text);
        longest > static_cast<std::size_t>(workspace_.score.NumNotes) + 1)
        outcome.words = "The score \"" + file.string() + "\" is " + std::to_string(longest) +
                        " notes long. Only the first " + std::to_string(workspace_.score.NumNotes + 1) +
                        " have room; saving it under the same name would lose the rest.";
    return outcome;
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

ScoreFiles::Outcome ScoreFiles::saveScore(const std::string& path) {
    const Busy busy(onBusy);
    Score& score = workspace_.score;
    const Edit edit(workspace_, Change::Name);
    const std::string before = std::exchange(score.currentFile, path);
    Outcome outcome = outcomeOfWriting(SavePoliFile(score, workspace_.setup));
    if (!outcome.done)
        score.currentFile = before;
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

} // namespace velmora
