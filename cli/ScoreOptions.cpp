// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/ScoreOptions.h"

#include "cli/Commands.h"
#include "cli/Words.h"
#include "score/Score.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <utility>

namespace velmora::cli {

namespace {

constexpr std::array<std::pair<const char*, SngReader>, 3> kForms{{
    {"newest", SngReader::OpenPoliFile},
    {"second", SngReader::OpenPoliFile2},
    {"first", SngReader::OpenFile},
}};

[[noreturn]] void refuse(const char* option, const QString& text, const char* wanted) {
    throw UsageError(std::string("--") + option + " takes " + wanted + ", not \"" + toBytes(text) + "\"");
}

int number(const char* option, const QString& text, int highest, const char* wanted) {
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    if (!isNumber || value < 0 || value > highest)
        refuse(option, text, wanted);
    return value;
}

std::optional<int> channelOption(const QCommandLineParser& parser, const char* option) {
    if (!parser.isSet(option))
        return std::nullopt;
    return number(option, parser.value(option), kUsedChannels - 1, "a channel, 0 to 12");
}

PerformedSegment segmentOf(const QString& text) {
    constexpr const char* kWanted = "two positions A:B, the first not past the second";
    const QStringList ends = text.split(':');
    if (ends.size() != 2)
        refuse("segment", text, kWanted);
    const PerformedSegment segment{number("segment", ends[0], kMostNotes, kWanted),
                                   number("segment", ends[1], kMostNotes, kWanted)};
    if (segment.first > segment.last)
        refuse("segment", text, kWanted);
    return segment;
}

} // namespace

void addFormOption(QCommandLineParser& parser) {
    parser.addOption(
        {"form",
         "The form that the score is read as: newest, second, first (default: as Open File reads it).",
         "form"});
}

void addClassicOption(QCommandLineParser& parser) {
    parser.addOption({"classic", "Goes by the old rules, as the window with \"Classic behaviour\" ticked."});
}

void addScoreOptions(QCommandLineParser& parser) {
    addFormOption(parser);
    addClassicOption(parser);
    parser.addOptions({
        {"top-channel", "The highest channel that sounds (default: the highest with notes).", "channel"},
        {"top-melody-hint",
         "The highest melody channel edited (default: 0), which rules chords in MIDI files with --classic.",
         "channel"},
        {"segment", "Plays positions A to B only, as \"Play Segment\" does (15 percent faster).", "A:B"},
        {"mute", "Leaves these channels out.", "C[,C]"},
        {"strum", "Strums the chords of these channels.", "C[,C]"},
        {"soundfont", "The SoundFont of the built-in synthesizer.", "file"},
    });
}

std::optional<SngReader> readForm(const QCommandLineParser& parser) {
    if (!parser.isSet("form"))
        return std::nullopt;
    const QString form = parser.value("form");
    const auto* const known =
        std::ranges::find_if(kForms, [&form](const auto& one) { return form == one.first; });
    if (known == kForms.end())
        refuse("form", form, "newest, second or first");
    return known->second;
}

Manners readManners(const QCommandLineParser& parser) {
    return Manners::of(parser.isSet("classic"));
}

std::vector<int> readChannels(const QCommandLineParser& parser, const char* option) {
    std::vector<int> channels;
    for (const QString& list : parser.values(option))
        for (const QString& one : list.split(','))
            channels.push_back(
                number(option, one, kUsedChannels - 1, "channels, 0 to 12, with commas between"));
    return channels;
}

ScoreOptions readScoreOptions(const QCommandLineParser& parser) {
    ScoreOptions options;
    options.reader = readForm(parser);
    options.manners = readManners(parser);
    options.topChannel = channelOption(parser, "top-channel");
    options.topMelodyHint = channelOption(parser, "top-melody-hint");
    if (parser.isSet("segment"))
        options.segment = segmentOf(parser.value("segment"));
    options.mute = readChannels(parser, "mute");
    options.strum = readChannels(parser, "strum");
    options.soundFont = toBytes(parser.value("soundfont"));
    return options;
}

std::vector<std::filesystem::path> fileArguments(const QCommandLineParser& parser) {
    std::vector<std::filesystem::path> files;
    for (const QString& name : parser.positionalArguments())
        files.emplace_back(toBytes(name));
    if (std::ranges::find(files, std::filesystem::path()) != files.end())
        throw UsageError("a file needs a name");
    return files;
}

} // namespace velmora::cli
