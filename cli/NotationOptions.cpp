// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/NotationOptions.h"

#include "base/Files.h"
#include "cli/Commands.h"
#include "cli/Session.h"
#include "cli/Words.h"
#include "notation/Keys.h"
#include "notation/LyricsExtras.h"
#include "notation/ModScore.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>

namespace velmora::cli {

namespace {

using notation::ScoreSetup;

constexpr int kLeastSize = 10; ///< of header, spacer and bar
constexpr int kLargestSize = 300;
constexpr int kLeastPage = 200;
constexpr int kLargestPage = 10'000;
constexpr std::array kJoins{0, 2, 3, 4};

struct NamedPage {
    const char* name;
    int width, height;
};
constexpr std::array kPages{NamedPage{"a4", 794, 1123}, NamedPage{"letter", 816, 1056}};

[[noreturn]] void refuse(const char* option, const QString& text, const char* wanted) {
    throw UsageError(std::string("--") + option + " takes " + wanted + ", not \"" + toBytes(text) + "\"");
}

std::optional<int> numberOption(const QCommandLineParser& parser, const char* option, int lowest, int highest,
                                const char* wanted) {
    if (!parser.isSet(option))
        return std::nullopt;
    return readNumber(parser, option, lowest, highest, wanted);
}

std::optional<int> sizeOption(const QCommandLineParser& parser, const char* option) {
    return numberOption(parser, option, kLeastSize, kLargestSize, "pixels, 10 to 300");
}

std::optional<int> positionOption(const QCommandLineParser& parser, const char* option) {
    return numberOption(parser, option, 0, kMostNotes, "a position, 0 to 200000");
}

std::optional<int> keyOption(const QCommandLineParser& parser, bool classic) {
    if (!parser.isSet("key"))
        return std::nullopt;
    const QString text = parser.value("key");
    const std::string word = toBytes(text);
    if (word == "auto" && !classic)
        return notation::kAutomaticKey;
    const auto* const found = std::ranges::find(notation::kKeys, word, &notation::Key::word);
    if (found == notation::kKeys.end())
        refuse("key", text,
               classic ? "C G D A E B F Bb Eb Ab Db or Gb" : "C G D A E B F Bb Eb Ab Db Gb or auto");
    return static_cast<int>(found - notation::kKeys.begin());
}

int joinOption(const QCommandLineParser& parser) {
    constexpr const char* kWanted = "0, 2, 3 or 4";
    const int join = readNumber(parser, "join", kJoins.front(), kJoins.back(), kWanted);
    if (std::ranges::find(kJoins, join) == kJoins.end())
        refuse("join", parser.value("join"), kWanted);
    return join;
}

notation::NoteSpacing spacingOption(const QCommandLineParser& parser) {
    const QString text = parser.value("spacing");
    if (text == "proportional")
        return notation::NoteSpacing::Proportional;
    if (text == "symmetrical")
        return notation::NoteSpacing::Symmetrical;
    refuse("spacing", text, "proportional or symmetrical");
}

/// Ticks what one word of `--channels` names: "0t", "3b", "10".
void tickChannel(const QString& word, notation::StaffChoice& staves) {
    constexpr const char* kWanted =
        "channels with commas between, 0 to 7 with t or b behind, 8, 10, 11 or 12 without";
    const bool hasClef = word.endsWith('t') || word.endsWith('b');
    bool isNumber = false;
    const int channel = (hasClef ? word.chopped(1) : word).toInt(&isNumber);
    const int box = isNumber ? notation::boxOfChannel(channel) : -1;
    if (box < 0 || hasClef != (channel < kMelodyChannels))
        refuse("channels", word, kWanted);
    const auto index = static_cast<std::size_t>(box);
    if (staves.chkChannel[index])
        throw UsageError("--channels names channel " + std::to_string(channel) + " twice");
    staves.chkChannel[index] = true;
    if (hasClef)
        staves.ChkNotetype[index] = word.endsWith('b');
}

notation::StaffChoice stavesOption(const QCommandLineParser& parser) {
    notation::StaffChoice staves;
    for (const QString& list : parser.values("channels"))
        for (const QString& word : list.split(','))
            tickChannel(word, staves);
    if (staves.StaffCount() > notation::kMostStaves)
        throw UsageError("--channels takes five channels at most");
    return staves;
}

std::pair<int, int> pageOption(const QCommandLineParser& parser) {
    const QString text = parser.value("page");
    for (const NamedPage& page : kPages)
        if (text == page.name)
            return {page.width, page.height};
    const QStringList sides = text.split('x');
    bool areNumbers = sides.size() == 2;
    std::array<int, 2> pixels{};
    for (std::size_t i = 0; i < pixels.size() && areNumbers; ++i) {
        pixels[i] = sides[static_cast<int>(i)].toInt(&areNumbers);
        areNumbers = areNumbers && pixels[i] >= kLeastPage && pixels[i] <= kLargestPage;
    }
    if (!areNumbers)
        refuse("page", text, "a4, letter or WxH in pixels, each 200 to 10000");
    return {pixels[0], pixels[1]};
}

std::optional<std::string> titleOption(const QCommandLineParser& parser) {
    if (!parser.isSet("title"))
        return std::nullopt;
    const QString title = parser.value("title");
    if (std::ranges::any_of(title, [](QChar c) { return c < QChar(' '); }))
        throw UsageError("--title takes one line of text");
    return toBytes(title);
}

ScoreSetup setupOption(const QCommandLineParser& parser) {
    ScoreSetup setup;
    setup.classicPage = parser.isSet("classic");
    setup.key = setup.classicPage ? 0 : notation::kAutomaticKey;
    setup.end = positionOption(parser, "end").value_or(-1);
    setup.joinNotes = joinOption(parser);
    setup.spacing = spacingOption(parser);
    setup.repeatSigns = parser.isSet("repeat-signs");
    setup.numbers = parser.isSet("numbers");
    setup.titleEveryPage = parser.isSet("title-every-page");
    setup.newScore = !parser.isSet("channels");
    setup.staves = stavesOption(parser);
    std::tie(setup.pageWidth, setup.pageHeight) = pageOption(parser);
    return setup;
}

/// A size as the panel can show it.
int shownSize(double pixels) {
    return static_cast<int>(std::lround(std::clamp<double>(pixels, kLeastSize, kLargestSize)));
}

/// What the lyrics say is set first; the call's words win.
ScoreSetup setupOf(const NotationOptions& options, const notation::LyricsFile& lyrics) {
    ScoreSetup setup = options.setup;
    const auto set = [](int& size, const std::optional<int>& word, const std::optional<double>& read) {
        size = word ? *word : read ? shownSize(*read) : size;
    };
    set(setup.HeaderHeight, options.HeaderHeight, lyrics.HeaderHeight);
    set(setup.SpacerHeight, options.SpacerHeight, lyrics.SpacerHeight);
    set(setup.BarWidth, options.BarWidth, lyrics.BarWidth);
    const bool isKey =
        lyrics.key && *lyrics.key >= 0 && *lyrics.key < static_cast<int>(notation::kKeys.size());
    setup.key = options.key.value_or(isKey ? *lyrics.key : setup.key);
    setup.start = options.start.value_or(std::clamp(lyrics.start.value_or(0), 0, kMostNotes));
    setup.title = options.title.value_or(lyrics.title.value_or(""));
    notation::takeExtras(lyrics.extras, setup);
    return setup;
}

/// What stands in the file; nothing where no file is named.
std::string lyricsBytes(const std::filesystem::path& file) {
    if (file.empty())
        return {};
    auto bytes = readWholeFile(file);
    if (!bytes)
        throw Failure("The lyrics \"" + file.string() +
                      "\" can't be read; is it there, a file, and yours to read?");
    return std::move(*bytes);
}

} // namespace

int readNumber(const QCommandLineParser& parser, const char* option, int lowest, int highest,
               const char* wanted) {
    const QString text = parser.value(option);
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    if (!isNumber || value < lowest || value > highest)
        refuse(option, text, wanted);
    return value;
}

void addNotationOptions(QCommandLineParser& parser) {
    addFormOption(parser);
    parser.addOptions({
        {"classic", "Writes the classic page, not the clean one."},
        {"header", "Header's height in pixels, 10 to 300 (default: 60).", "pixels"},
        {"spacer", "Room between staves in pixels, 10 to 300 (default: 60).", "pixels"},
        {"bar-width", "Bar width in pixels, 10 to 300 (default: 60).", "pixels"},
        {"key", "The key: C G D A E B F Bb Eb Ab Db Gb, or auto (default: auto; C with --classic).", "key"},
        {"join", "Notes under a beam with --classic: 0 (none), 2, 3 or 4 (default: 0).", "number", "0"},
        {"spacing", "Note spacing: proportional, symmetrical (default: proportional).", "spacing",
         "proportional"},
        {"start", "The position to start at (default: 0).", "position"},
        {"end", "The position to end before (default: the end of the song).", "position"},
        {"channels", "The channels to write, with their clefs: 0t, 3b, 10 (default: by themselves).",
         "C[,C]"},
        {"mute", "Leaves these channels out.", "C[,C]"},
        {"title", "The title.", "text"},
        {"title-every-page", "Prints title and page number on each page."},
        {"numbers", "Numbers the bars."},
        {"repeat-signs", "Ends without the lines of an end."},
        {"page", "The page: a4, letter, or its size in pixels, WxH (default: a4).", "page", "a4"},
        {"lyrics", "A lyrics file that is opened before the score is written.", "file"},
    });
}

NotationOptions readNotationOptions(const QCommandLineParser& parser) {
    NotationOptions options;
    options.score.reader = readForm(parser);
    options.score.manners = readManners(parser);
    options.score.mute = readChannels(parser, "mute");
    options.setup = setupOption(parser);
    options.HeaderHeight = sizeOption(parser, "header");
    options.SpacerHeight = sizeOption(parser, "spacer");
    options.BarWidth = sizeOption(parser, "bar-width");
    options.key = keyOption(parser, options.setup.classicPage);
    options.start = positionOption(parser, "start");
    options.title = titleOption(parser);
    options.lyrics = toBytes(parser.value("lyrics"));
    if (parser.isSet("lyrics") && options.lyrics.empty())
        throw UsageError("a file needs a name");
    return options;
}

notation::LyricsFile readLyrics(const std::filesystem::path& file) {
    return notation::parseLyrics(lyricsBytes(file));
}

ReadMusic readMusic(const std::filesystem::path& file, const NotationOptions& options) {
    notation::LyricsFile lyrics = readLyrics(options.lyrics);
    const Session session(file, options.score);
    if (session.score.NotesPerMeasure < 1)
        throw Failure("The score \"" + file.string() +
                      "\" has no measures to write: its notes per measure are below 1.");
    ReadMusic music;
    music.setup = setupOf(options, lyrics);
    music.score = notation::readScore(session.score, session.setup, music.setup);
    music.items = std::move(lyrics.items);
    return music;
}

} // namespace velmora::cli
