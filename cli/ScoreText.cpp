// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/ScoreText.h"

#include "base/Files.h"
#include "cli/Commands.h"
#include "cli/ScoreOptions.h"
#include "score/Score.h"

#include <cstdio>
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

std::string readScoreText(const std::filesystem::path& file, SngReader reader) {
    auto bytes = readWholeFile(file);
    if (!bytes)
        throw Failure("The score \"" + file.string() +
                      "\" can't be read; is it there, a file, and yours to read?");
    // The window takes any bytes for a score. Here what comes of them could take the place of a good one.
    if (bytes->find('\0') != bytes->npos)
        throw Failure("The file \"" + file.string() + "\" is no score: it isn't text.");
    if (reader == SngReader::OpenPoliFile && looksOlder(*bytes))
        std::fprintf(stderr, "velmora-cli: the score \"%s\" looks like an older form; see --form\n",
                     file.c_str());
    if (longestRow(*bytes) > static_cast<std::size_t>(kMostNotes) + 1)
        std::fprintf(stderr, "velmora-cli: %s: only the first %d positions are read\n", file.c_str(),
                     kMostNotes + 1);
    return *std::move(bytes);
}

} // namespace velmora::cli
