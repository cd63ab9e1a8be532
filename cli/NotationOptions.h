// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "cli/ScoreOptions.h"
#include "notation/LyricsFile.h"
#include "notation/ScoreSetup.h"
#include "notation/WrittenScore.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

class QCommandLineParser;

namespace velmora::cli {

/// How a score is written: the panels, as far as the call's words set them.
struct NotationOptions {
    ScoreOptions score;
    notation::ScoreSetup setup; ///< without what follows, which a lyrics file may say as well
    std::optional<int> HeaderHeight;
    std::optional<int> SpacerHeight;
    std::optional<int> BarWidth;
    std::optional<int> key;
    std::optional<int> start;
    std::optional<std::string> title;
    std::filesystem::path lyrics; ///< blank for none
};

void addNotationOptions(QCommandLineParser& parser);
/// Throws UsageError for a value that is no such thing.
[[nodiscard]] NotationOptions readNotationOptions(const QCommandLineParser& parser);

/// A whole number of an option's value; throws UsageError for another.
[[nodiscard]] int readNumber(const QCommandLineParser& parser, const char* option, int lowest, int highest,
                             const char* wanted);

/// Throws Failure for a file that can't be read; a blank path gives what says nothing.
[[nodiscard]] notation::LyricsFile readLyrics(const std::filesystem::path& file);

/// A score as it was read, and by which panels.
struct ReadMusic {
    notation::ScoreSetup setup;
    notation::WrittenScore score;
    std::vector<notation::LyricsItem> items;
};
/// Opens the lyrics, if there are any, and then the score. Throws Failure if it can't.
[[nodiscard]] ReadMusic readMusic(const std::filesystem::path& file, const NotationOptions& options);

} // namespace velmora::cli
