// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/LyricsExtras.h"

#include "base/Text.h"
#include "notation/ScoreSetup.h"

#include <algorithm>
#include <optional>

namespace velmora::notation {

namespace {
constexpr std::string_view kComposer = "Composer=";
constexpr std::string_view kTempo = "TempoWords=";
constexpr std::string_view kVerse = "Words=";

/// What stands behind the key, where the line has it.
std::optional<std::string> behind(std::string_view line, std::string_view key) {
    if (!line.starts_with(key))
        return std::nullopt;
    return std::string(line.substr(key.size()));
}
} // namespace

std::string extrasOf(const ScoreSetup& setup) {
    std::string lines;
    const auto add = [&lines](std::string_view key, const std::string& words) {
        if (!words.empty())
            lines += std::string(key) + words + "\r\n";
    };
    add(kComposer, setup.composer);
    add(kTempo, setup.tempoWords);
    for (const std::string& verse : setup.verses)
        add(kVerse, verse);
    return lines;
}

bool isExtra(std::string_view line) {
    return behind(line, kComposer) || behind(line, kTempo) || behind(line, kVerse);
}

void takeExtras(std::string_view lines, ScoreSetup& setup) {
    setup.composer = setup.tempoWords = {};
    setup.verses.clear();
    while (!lines.empty()) {
        const std::size_t end = std::min(lines.find('\n'), lines.size());
        std::string_view line = lines.substr(0, end);
        lines.remove_prefix(std::min(end + 1, lines.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (auto words = behind(line, kComposer))
            setup.composer = *words;
        else if (words = behind(line, kTempo); words)
            setup.tempoWords = *words;
        else if (words = behind(line, kVerse); words)
            setup.verses.push_back(*words);
    }
}

std::string versesLine(const ScoreSetup& setup) {
    std::string line;
    for (const std::string& verse : setup.verses)
        line += (line.empty() ? "" : " | ") + verse;
    return line;
}

void setVersesLine(std::string_view line, ScoreSetup& setup) {
    setup.verses.clear();
    while (!line.empty()) {
        const std::size_t end = std::min(line.find('|'), line.size());
        if (const std::string_view verse = trimmed(line.substr(0, end)); !verse.empty())
            setup.verses.emplace_back(verse);
        line.remove_prefix(std::min(end + 1, line.size()));
    }
}

} // namespace velmora::notation
