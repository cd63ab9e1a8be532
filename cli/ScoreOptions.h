// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/Performance.h"
#include "score/Manners.h"
#include "score/SngFile.h"

#include <filesystem>
#include <optional>
#include <vector>

class QCommandLineParser;

namespace velmora::cli {

/// How a score is opened and performed: the options that several commands share.
struct ScoreOptions {
    std::optional<SngReader> reader; ///< none: the one that Open takes for the text
    Manners manners = Manners::careful();
    std::optional<int> topChannel; ///< none: as if every channel that holds notes had been selected
    std::optional<int> topMelodyHint;
    std::optional<PerformedSegment> segment;
    std::vector<int> mute;
    std::vector<int> strum;
    std::filesystem::path soundFont; ///< blank for the best one installed
};

/// `--form` alone, which every command that opens a score has.
void addFormOption(QCommandLineParser& parser);
/// `--classic`, which every command that performs or changes a score has.
void addClassicOption(QCommandLineParser& parser);
[[nodiscard]] Manners readManners(const QCommandLineParser& parser);
/// `--form`, `--classic` and all options of performing.
void addScoreOptions(QCommandLineParser& parser);
/// These throw UsageError for a value that is no such thing.
[[nodiscard]] std::optional<SngReader> readForm(const QCommandLineParser& parser);
/// Channels with commas between, of an option that may be there several times.
[[nodiscard]] std::vector<int> readChannels(const QCommandLineParser& parser, const char* option);
[[nodiscard]] ScoreOptions readScoreOptions(const QCommandLineParser& parser);
/// The positional arguments behind the command's name.
[[nodiscard]] std::vector<std::filesystem::path> fileArguments(const QCommandLineParser& parser);

} // namespace velmora::cli
