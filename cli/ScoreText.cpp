// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/ScoreText.h"

#include "base/Files.h"
#include "cli/Commands.h"
#include "cli/ScoreOptions.h"
#include "score/Score.h"

#include <cstdio>
#include <string_view>
#include <utility>

namespace velmora::cli {

namespace {
/// A score in the newest form names its chord types in line 28, an older one doesn't.
bool looksOlder(std::string_view bytes) {
    constexpr int kLinesBefore = 27;
    for (int line = 0; line < kLinesBefore; ++line) {
        const auto end = bytes.find('\n');
        if (end == bytes.npos)
            return false;
        bytes.remove_prefix(end + 1);
    }
    return !bytes.starts_with("Polyphonics");
}
} // namespace

ScoreText readScoreText(const std::filesystem::path& file, std::optional<SngReader> reader) {
    TextFile read = readTextFile(file);
    if (read.problem == TextProblem::Unreadable)
        throw Failure("The score \"" + file.string() +
                      "\" can't be read; is it there, a file, and yours to read?");
    if (read.problem == TextProblem::NotText)
        throw Failure("The file \"" + file.string() + "\" is no score: it isn't text.");
    ScoreText score{std::move(read.text), SngReader::OpenPoliFile};
    score.reader = reader.value_or(openingReader(score.text));
    if (score.reader == SngReader::OpenPoliFile && looksOlder(score.text))
        std::fprintf(stderr, "velmora-cli: the score \"%s\" looks like an older form; see --form\n",
                     file.c_str());
    if (longestRow(score.text) > static_cast<std::size_t>(kMostNotes) + 1)
        std::fprintf(stderr, "velmora-cli: %s: only the first %d positions are read\n", file.c_str(),
                     kMostNotes + 1);
    return score;
}

} // namespace velmora::cli
