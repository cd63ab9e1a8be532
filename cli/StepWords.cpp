// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/StepWords.h"

#include "cli/HeadlessWindow.h"
#include "cli/ScoreOptions.h"
#include "score/Score.h"
#include "sound/Chords.h"
#include "sound/Instruments.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace velmora::cli {

namespace {
constexpr std::string_view kBlanks = " \t\r";
constexpr int kMostCount = std::numeric_limits<std::int16_t>::max();

bool isMelody(int channel) {
    return channel >= 0 && channel < kMelodyChannels;
}
bool isCode(int code) {
    return identifierOfCode(code).has_value();
}
bool isChord(int type) {
    return type >= 0 && type < static_cast<int>(kChordTypes.size());
}
bool isValue(int value) {
    return value >= 0 && value <= 127;
}
bool isPan(int pan) {
    return pan >= -64 && pan <= 63;
}
bool isPosition(int position) {
    return position >= 0 && position <= kMostNotes;
}
bool isCount(int count) {
    return count >= 0 && count <= kMostCount;
}

std::optional<int> numberOf(std::string_view word) {
    int number = 0;
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

template<bool (*Accepts)(int)>
std::optional<int> number(std::string_view word) {
    const auto value = numberOf(word);
    return value && Accepts(*value) ? value : std::nullopt;
}

std::optional<int> channels(std::string_view word) {
    if (word == "none")
        return 0;
    unsigned bits = 0;
    for (;;) {
        const auto comma = word.find(',');
        const auto channel = number<isChannel>(word.substr(0, comma));
        if (!channel)
            return std::nullopt;
        bits |= 1U << static_cast<unsigned>(*channel);
        if (comma == word.npos)
            return static_cast<int>(bits);
        word.remove_prefix(comma + 1);
    }
}

std::optional<int> onOrOff(std::string_view word) {
    if (word == "on")
        return 1;
    return word == "off" ? std::optional(0) : std::nullopt;
}

std::optional<int> nothing(std::string_view /*word*/) {
    return std::nullopt;
}

struct WordRule {
    StepWord kind;
    std::string_view wanted;
    std::optional<int> (*read)(std::string_view);
};
using enum StepWord;
constexpr std::array kWordRules{
    WordRule{None, "a word", nothing},
    WordRule{Channel, "a channel: 0 to 8 and 10 to 12", number<isChannel>},
    WordRule{Melody, "a melody channel, 0 to 7", number<isMelody>},
    WordRule{Channels, "channels with commas between, or none", channels},
    WordRule{Code, "an instrument: 0 to 127, percussion 128 to 174", number<isCode>},
    WordRule{Chord, "a chord type, 0 to 7", number<isChord>},
    WordRule{Value, "a value, 0 to 127", number<isValue>},
    WordRule{Pan, "a pan, -64 to 63", number<isPan>},
    WordRule{Row, "a row in the view, 42 to 127", number<HeadlessWindow::showsRow>},
    WordRule{Column, "a position in the view, 0 to 99", number<HeadlessWindow::showsPosition>},
    WordRule{Position, "a position", number<isPosition>},
    WordRule{Count, "a number, 0 to 32767", number<isCount>},
    WordRule{Switch, "on or off", onOrOff},
};
static_assert(kWordRules.size() == static_cast<std::size_t>(Switch) + 1);

const WordRule& ruleOf(StepWord kind) {
    return kWordRules[static_cast<std::size_t>(kind)];
}
} // namespace

std::vector<std::string_view> wordsOf(std::string_view text) {
    std::vector<std::string_view> words;
    for (auto begin = text.find_first_not_of(kBlanks); begin != text.npos;
         begin = text.find_first_not_of(kBlanks)) {
        text.remove_prefix(begin);
        const auto end = std::min(text.find_first_of(kBlanks), text.size());
        words.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return words;
}

std::optional<int> valueOf(StepWord kind, std::string_view word) {
    return ruleOf(kind).read(word);
}

std::string_view wantedFor(StepWord kind) {
    return ruleOf(kind).wanted;
}

} // namespace velmora::cli
