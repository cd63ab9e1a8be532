// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/ProgramFolders.h"
#include "base/Settings.h"
#include "base/SettingsStore.h"
#include "cli/Commands.h"
#include "cli/EditSteps.h"
#include "cli/HeadlessWindow.h"
#include "cli/Interrupt.h"
#include "cli/ScoreOptions.h"
#include "cli/ScoreText.h"
#include "cli/Words.h"
#include "score/SngFile.h"
#include "score/SngText.h"

#include <QCommandLineParser>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

namespace velmora::cli {

namespace {

namespace fs = std::filesystem;

/// The settings of a window started for the first time, with a score of a given length.
class FreshSettings : public SettingsStore {
public:
    FreshSettings(int numNotes, bool classic) : numNotes_(std::to_string(numNotes)), classic_(classic) {}
    [[nodiscard]] std::string GetSetting(std::string_view /*section*/, std::string_view key,
                                         std::string_view fallback) const override {
        if (key == settings::NumNotes.key)
            return numNotes_;
        return std::string(classic_ && key == settings::Classic.key ? "1" : fallback);
    }
    void SaveSetting(std::string_view /*section*/, std::string_view /*key*/,
                     std::string_view /*value*/) override {}

private:
    std::string numNotes_;
    bool classic_;
};

struct EditJob {
    fs::path in;
    fs::path out;
    std::vector<StepCall> steps;
};

std::vector<StepCall> stepsOf(const QStringList& words) {
    if (words == QStringList{"-"})
        return parseLines(
            std::string(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()));
    std::vector<StepCall> steps;
    for (const QString& word : words)
        steps.push_back(parseStep(toBytes(word)));
    return steps;
}

EditJob jobOf(const QCommandLineParser& parser) {
    const QStringList words = parser.positionalArguments();
    if (words.size() < 3)
        throw UsageError("IN.sng, OUT.sng and at least one step are wanted, or - for steps to read");
    EditJob job{toBytes(words[0]), toBytes(words[1]), {}};
    if (job.in.empty() || job.out.empty())
        throw UsageError("a file needs a name");
    std::error_code error;
    if (fs::equivalent(job.in, job.out, error))
        throw UsageError("\"" + job.out.string() + "\" would replace the score it is made from");
    job.steps = stepsOf(words.mid(2));
    return job;
}

/// Long enough for every row of the file, so that nothing is lost that no one could bring back here: the
/// effects of the last position stand one further.
int numNotesFor(std::size_t longestRow) {
    return static_cast<int>(std::clamp<std::size_t>(longestRow, kUsualNotes, kMostNotes));
}

bool hasEffectsAt(const Score& score, int index) {
    const auto differs = [&](const ChannelGrid& grid, std::int16_t cleared) {
        for (int row = 0; row < kUsedChannels; ++row) {
            if (grid.valueOr(row, index, cleared) != cleared)
                return true;
        }
        return false;
    };
    return differs(score.Polyphonics, 0) || std::ranges::any_of(kEffectSections, [&](const auto& section) {
               return differs(score.*section.grid, section.cleared);
           });
}

/// Ends the score with its last position, as in the window that saved it, if nothing stands behind that.
void trimEnd(Score& score, std::size_t longestRow) {
    const int last = score.NumNotes;
    if (last > kUsualNotes && longestRow == static_cast<std::size_t>(last) && !hasEffectsAt(score, last))
        score.resizeNotes(last - 1);
}

void performAll(const EditJob& job, HeadlessWindow& window) {
    for (const StepCall& call : job.steps)
        checkPositions(call, window.workspace.score.NumNotes);
    for (const StepCall& call : job.steps) {
        if (interrupted())
            throw Failure("Writing \"" + job.out.string() +
                          "\" was cancelled; what was there before still is.");
        perform(call, window);
    }
}

int run(const QCommandLineParser& parser) {
    const auto form = readForm(parser);
    const EditJob job = jobOf(parser);
    const auto [text, reader] = readScoreText(job.in, form);
    const std::size_t longest = longestRow(text);
    catchInterrupts(); // so that the folder does not stay
    const QTemporaryDir home;
    if (!home.isValid())
        throw Failure("No folder can be made for the step to undo: " + home.errorString().toStdString());
    HeadlessWindow window(FreshSettings(numNotesFor(longest), parser.isSet("classic")),
                          ProgramFolders(fs::path(QFile::encodeName(home.path()).toStdString())));
    Workspace& workspace = window.workspace;
    parseSng(text, reader, workspace.score, workspace.setup);
    trimEnd(workspace.score, longest);
    workspace.beginHistory();
    performAll(job, window);

    workspace.score.currentFile = job.out.string();
    if (const std::string problem = SavePoliFile(workspace.score, workspace.setup); !problem.empty())
        throw Failure(problem);
    return 0;
}

void addOptions(QCommandLineParser& parser) {
    addFormOption(parser);
    addClassicOption(parser);
}

} // namespace

const Command kEdit{"edit",
                    " IN.sng OUT.sng STEP...|-",
                    "Carries steps out on a score as the composing window would; - reads them, a line each.",
                    addOptions,
                    run,
                    [] { return "Steps:" + listOfSteps() + "\n"; }};

} // namespace velmora::cli
