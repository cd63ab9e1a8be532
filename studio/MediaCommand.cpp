// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/MediaCommand.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <utility>

namespace velmora {

namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f";

/// What stands for each capital letter of a pattern.
using Slots = std::array<std::string_view, 26>;

constexpr std::size_t slot(char letter) {
    return static_cast<std::size_t>(letter - 'A');
}

bool sameWord(std::string_view word, std::string_view keyword) {
    return std::ranges::equal(
        word, keyword, {}, [](char c) { return toLower(c); }, [](char c) { return toLower(c); });
}

/// Takes the first word off the text; blank at its end.
std::string_view takeWord(std::string_view& text) {
    const auto begin = std::min(text.find_first_not_of(kBlanks), text.size());
    const auto end = std::min(text.find_first_of(kBlanks, begin), text.size());
    const std::string_view word = text.substr(begin, end - begin);
    text.remove_prefix(end);
    return word;
}

std::string_view withoutQuotes(std::string_view text) {
    text = trimmed(text, kBlanks);
    return text.size() >= 2 && text.front() == '"' && text.back() == '"' ? text.substr(1, text.size() - 2)
                                                                         : text;
}

// Values

bool readWhole(std::string_view text, std::int64_t& value) {
    if (text.empty() || text.find_first_not_of("0123456789") != text.npos)
        return false;
    if (std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc::result_out_of_range)
        value = std::numeric_limits<std::int64_t>::max();
    return true;
}

/// A place within a file; one before its beginning is a number, too.
bool readPlace(std::string_view text, std::optional<std::int64_t>& value) {
    if (text.empty())
        return true;
    const bool isNegative = text.front() == '-';
    std::int64_t number = 0;
    if (!readWhole(text.substr(isNegative ? 1 : 0), number))
        return false;
    value = isNegative ? -number : number;
    return true;
}

bool readSeconds(std::string_view text, double& value) {
    // What else from_chars knows ("inf", "nan", "1e9") are aliases here.
    if (text.find_first_not_of("0123456789.") != text.npos)
        return false;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    return read.ec == std::errc() && read.ptr == text.data() + text.size();
}

// What a row reads beside the alias, from the slots of its pattern. False if it is no such thing.

bool readNothing(const Slots& /*slots*/, MediaCommand& /*command*/) {
    return true;
}

bool readRange(const Slots& slots, MediaCommand& command) {
    return readPlace(slots[slot('X')], command.from) && readPlace(slots[slot('Y')], command.to);
}

bool readFormat(const Slots& slots, MediaCommand& command) {
    WaveNumbers& format = command.format;
    return readWhole(slots[slot('R')], format.rate) && readWhole(slots[slot('C')], format.channels) &&
           readWhole(slots[slot('B')], format.bits) && readWhole(slots[slot('L')], format.alignment) &&
           readWhole(slots[slot('S')], format.bytesPerSecond);
}

bool readPath(const Slots& slots, MediaCommand& command) {
    command.path = withoutQuotes(slots[slot('P')]);
    return !command.path.empty();
}

bool readWait(const Slots& slots, MediaCommand& command) {
    return readSeconds(slots[slot('S')], command.seconds);
}

/// One kind of command. In its pattern small words are keywords, capital letters stand for a word, the `P` at
/// the end for all that follows; what is in brackets may be left out.
struct CommandRow {
    std::string_view pattern;
    MediaAct act;
    bool (*read)(const Slots&, MediaCommand&);
};
constexpr std::array kRows{
    CommandRow{"play A [from X] [to Y]", MediaAct::Play, readRange},
    CommandRow{"pause A", MediaAct::Pause, readNothing},
    CommandRow{"resume A", MediaAct::Resume, readNothing},
    CommandRow{"stop A", MediaAct::Stop, readNothing},
    CommandRow{"close all", MediaAct::CloseAll, readNothing},
    CommandRow{"close A", MediaAct::Close, readNothing},
    CommandRow{"set A time format frames", MediaAct::CountFrames, readNothing},
    CommandRow{"set A time format ms", MediaAct::CountMilliseconds, readNothing},
    CommandRow{"set A samplespersec R channels C bitspersample B alignment L bytespersec S",
               MediaAct::SetFormat, readFormat},
    CommandRow{"status A length", MediaAct::AskLength, readNothing},
    CommandRow{"status A position", MediaAct::AskPosition, readNothing},
    CommandRow{"status A mode", MediaAct::AskMode, readNothing},
    CommandRow{"record A", MediaAct::Record, readNothing},
    CommandRow{"capability A can save", MediaAct::AskWhetherItSaves, readNothing},
    CommandRow{"save A P", MediaAct::Save, readPath},
    CommandRow{"delete A", MediaAct::Delete, readNothing},
    CommandRow{"wait S", MediaAct::WaitSeconds, readWait}, // a number is no alias here
    CommandRow{"wait A", MediaAct::WaitForPlayer, readNothing},
};
constexpr std::string_view kOpenIsSaid = "open PATH type MPEGVideo alias A";

bool isSlot(std::string_view word) {
    return word.size() == 1 && word.front() >= 'A' && word.front() <= 'Z';
}

/// How well a line goes with a pattern.
struct Match {
    bool whole = false;
    int keywords = 0; ///< how many there were before they parted
};

Match match(std::string_view pattern, std::string_view line, Slots& slots) {
    Match match;
    while (true) {
        std::string_view wanted = takeWord(pattern);
        if (wanted == "P") {
            slots[slot('P')] = line;
            match.whole = true;
            return match;
        }
        std::string_view rest = line;
        const std::string_view word = takeWord(rest);
        if (wanted.empty()) {
            match.whole = word.empty();
            return match;
        }
        const bool mayLack = wanted.front() == '[';
        if (mayLack)
            wanted.remove_prefix(1);
        if (wanted.back() == ']')
            wanted.remove_suffix(1);
        if (isSlot(wanted) ? !word.empty() : sameWord(word, wanted)) {
            match.keywords += isSlot(wanted) ? 0 : 1;
            if (isSlot(wanted))
                slots[slot(wanted.front())] = word;
            line = rest;
        } else if (mayLack) {
            takeWord(pattern); // a keyword that is left out takes its value along
        } else {
            return match;
        }
    }
}

// "open"

/// The paths of `"one" "another"`, if there are two or more.
std::vector<std::string> rowOf(std::string_view text) {
    std::vector<std::string> row;
    for (text = trimmed(text, kBlanks); !text.empty(); text = trimmed(text, kBlanks)) {
        const auto end = text.find('"', 1);
        if (text.front() != '"' || end == text.npos || end == 1)
            return {};
        row.emplace_back(text.substr(1, end - 1));
        text.remove_prefix(end + 1);
    }
    return row.size() < 2 ? std::vector<std::string>() : row;
}

/// What stands behind the path: "type MPEGVideo alias A", and what may follow it.
struct OpenTail {
    std::string_view type;
    std::string_view alias;
};
std::optional<OpenTail> readTail(std::string_view text) {
    OpenTail tail;
    if (!sameWord(takeWord(text), "type"))
        return std::nullopt;
    tail.type = takeWord(text);
    const std::string_view keyword = takeWord(text);
    tail.alias = takeWord(text);
    if (!sameWord(keyword, "alias") || tail.alias.empty())
        return std::nullopt;
    std::string_view more = takeWord(text);
    if (sameWord(more, "parent")) {
        if (takeWord(text).empty())
            return std::nullopt;
        more = takeWord(text);
    }
    if (!more.empty() && !sameWord(more, "style")) // a style is all the rest
        return std::nullopt;
    return tail;
}

std::optional<MediaCommand> readOpen(std::string_view afterOpen) {
    std::optional<OpenTail> tail;
    std::string_view path;
    // A path may have all of these words, too: the last place where they can begin counts.
    std::string_view rest = afterOpen;
    for (std::string_view word = takeWord(rest); !word.empty(); word = takeWord(rest)) {
        const auto begin = static_cast<std::size_t>(word.data() - afterOpen.data());
        if (const auto found = readTail(afterOpen.substr(begin))) {
            tail = found;
            path = afterOpen.substr(0, begin);
        }
    }
    if (!tail || sameWord(tail->alias, "all"))
        return std::nullopt;
    MediaCommand command;
    command.alias = tail->alias;
    if (sameWord(tail->type, "waveaudio") && sameWord(trimmed(path, kBlanks), "new")) {
        command.act = MediaAct::OpenRecorder;
        return command;
    }
    if (!sameWord(tail->type, "MPEGVideo"))
        return std::nullopt;
    command.act = MediaAct::OpenPlayer;
    command.path = withoutQuotes(path);
    command.row = rowOf(path);
    return command;
}

std::string said(std::string_view pattern) {
    return "isn't understood; say: " + std::string(pattern);
}

} // namespace

MediaReading readMediaCommand(std::string_view line) {
    line = trimmed(line, kBlanks);
    if (line.find('\0') != line.npos)
        return {std::nullopt, mediaSentence(line, "holds a character that no command has.")};
    std::string_view afterOpen = line;
    if (sameWord(takeWord(afterOpen), "open")) {
        auto command = readOpen(afterOpen);
        return command ? MediaReading{std::move(command), {}}
                       : MediaReading{std::nullopt, mediaSentence(line, said(kOpenIsSaid))};
    }
    const CommandRow* nearest = nullptr;
    int most = 0;
    for (const CommandRow& row : kRows) {
        Slots slots;
        const Match found = match(row.pattern, line, slots);
        if (found.whole) {
            MediaCommand command;
            command.act = row.act;
            command.alias = slots[slot('A')];
            if (row.read(slots, command))
                return {std::move(command), {}};
        }
        if (found.keywords > most) {
            most = found.keywords;
            nearest = &row;
        }
    }
    return {std::nullopt, nearest ? mediaSentence(line, said(nearest->pattern))
                                  : mediaSentence(line, "is no media command.")};
}

// Sentences

namespace {

constexpr std::string_view kCut = "...";

bool continuesCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
}

/// The first bytes of a text, so many at the most, with no character in pieces.
std::string_view firstBytes(std::string_view text, std::size_t count) {
    if (count >= text.size())
        return text;
    while (count > 0 && continuesCharacter(text[count]))
        --count;
    return text.substr(0, count);
}
std::string_view lastBytes(std::string_view text, std::size_t count) {
    if (count >= text.size())
        return text;
    auto begin = text.size() - count;
    while (begin < text.size() && continuesCharacter(text[begin]))
        ++begin;
    return text.substr(begin);
}

std::string withoutMiddle(std::string_view text, std::size_t room) {
    if (text.size() <= room)
        return std::string(text);
    const std::size_t kept = room - kCut.size();
    // Its end tells more: of a path it is the file's name.
    return std::string(firstBytes(text, kept / 4)).append(kCut).append(lastBytes(text, kept - kept / 4));
}

std::string inOneLine(std::string text) {
    if (text.size() > kMediaErrorBytes)
        text = std::string(firstBytes(text, kMediaErrorBytes - kCut.size())).append(kCut);
    std::ranges::replace_if(
        text, [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; }, ' ');
    return text;
}

constexpr std::size_t kLeastName = 24; ///< bytes that a long name keeps

std::string fitted(std::string_view before, std::string_view name, std::string_view behind) {
    const std::size_t others = before.size() + behind.size();
    const std::size_t room = std::max(kLeastName, kMediaErrorBytes - std::min(others, kMediaErrorBytes));
    return inOneLine(std::string(before).append(withoutMiddle(name, room)).append(behind));
}

} // namespace

std::string mediaSentence(std::string_view name, std::string_view rest) {
    return fitted("\"", name, "\" " + std::string(rest));
}

std::string mediaSentenceHolding(std::string_view sentence, std::string_view name) {
    const auto place = name.empty() ? sentence.npos : sentence.find(name);
    if (place == sentence.npos)
        return sentence.size() <= kMediaErrorBytes ? inOneLine(std::string(sentence))
                                                   : mediaSentence(name, sentence);
    return fitted(sentence.substr(0, place), name, sentence.substr(place + name.size()));
}

} // namespace velmora
