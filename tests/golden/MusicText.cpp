// SPDX-License-Identifier: GPL-2.0-or-later
#include "golden/MusicText.h"

#include "notation/Keys.h"
#include "sound/Instruments.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmora {

namespace {
constexpr int kMostPositions = 4000;
constexpr int kDrumRow = 50;

struct NamedNumber {
    std::string_view name;
    int number;
};
constexpr std::array kLetters{NamedNumber{"c", 0}, NamedNumber{"d", 2}, NamedNumber{"e", 4},
                              NamedNumber{"f", 5}, NamedNumber{"g", 7}, NamedNumber{"a", 9},
                              NamedNumber{"b", 11}};
constexpr std::array kChords{NamedNumber{"maj", 1},  NamedNumber{"min", 2},  NamedNumber{"maj7", 3},
                             NamedNumber{"min7", 4}, NamedNumber{"m7b5", 5}, NamedNumber{"oct", 6},
                             NamedNumber{"oct3", 7}};
constexpr std::array kDrums{NamedNumber{"bass", 36}, NamedNumber{"stick", 37},  NamedNumber{"snare", 38},
                            NamedNumber{"hat", 42},  NamedNumber{"tom", 45},    NamedNumber{"crash", 49},
                            NamedNumber{"ride", 51}, NamedNumber{"cowbell", 56}};

template<std::size_t N>
std::optional<int> numberOf(const std::array<NamedNumber, N>& table, std::string_view name) {
    const auto* const found = std::ranges::find(table, name, &NamedNumber::name);
    return found == table.end() ? std::nullopt : std::optional(found->number);
}

std::optional<int> readInteger(std::string_view text) {
    int number = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
    return problem == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::vector<std::string_view> wordsOf(std::string_view text) {
    constexpr std::string_view kBlanks = " \n";
    std::vector<std::string_view> words;
    for (std::size_t from = text.find_first_not_of(kBlanks); from != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(kBlanks, from), text.size());
        words.push_back(text.substr(from, end - from));
        from = text.find_first_not_of(kBlanks, end);
    }
    return words;
}

/// Cuts @p text at the first @p mark and gives what was behind it.
std::string_view cutAt(std::string_view& text, char mark) {
    const std::size_t at = text.find(mark);
    if (at == std::string_view::npos)
        return {};
    const std::string_view behind = text.substr(at + 1);
    text = text.substr(0, at);
    return behind;
}

/// The row of "f#4".
std::optional<int> rowOf(std::string_view name) {
    if (name.size() < 2)
        return std::nullopt;
    const auto letter = numberOf(kLetters, name.substr(0, 1));
    const bool hasSign = name[1] == '#' || name[1] == 'b';
    const auto octave = readInteger(name.substr(hasSign ? 2 : 1));
    if (!letter || !octave)
        return std::nullopt;
    const int sign = !hasSign ? 0 : name[1] == '#' ? 1 : -1;
    return RowToNote((*octave + 1) * 12 + *letter + sign);
}

/// Puts the words of one voice on the grid.
class VoiceWriter {
public:
    VoiceWriter(Score& score, int channel, const MusicText& text)
        : score_(score)
        , channel_(channel)
        , bar_(text.steps) {}

    void write(std::string_view word) {
        if (word == "|") {
            if (position_ % bar_ != 0)
                fail("a bar line stands within the bar at position " + std::to_string(position_));
            return;
        }
        std::string_view name = word;
        if (const std::string_view length = cutAt(name, ':'); !length.empty())
            length_ = readInteger(length).value_or(0);
        if (length_ < 1 || position_ + length_ > kMostPositions)
            fail("no length of '" + std::string(word) + "'");
        if (name == "_")
            hold();
        else if (name != "r")
            strike(name);
        position_ += length_;
    }

private:
    [[noreturn]] void fail(const std::string& what) const {
        throw std::invalid_argument("channel " + std::to_string(channel_) + ": " + what);
    }
    void hold() {
        const int before = score_.NoteCell.valueOr(channel_, position_ - 1, -1);
        if (before < 0)
            fail("nothing to hold at position " + std::to_string(position_));
        for (int i = 0; i < length_; ++i)
            score_.NoteCell.set(channel_, position_ + i, static_cast<std::int16_t>(cellRow(before) + 1000));
    }
    void strike(std::string_view name) {
        const std::string whole(name);
        const std::string_view chordName = cutAt(name, '/');
        const auto chord = chordName.empty() ? 0 : numberOf(kChords, chordName);
        const bool isDrum = channel_ >= kFirstPercussion;
        const auto key = isDrum ? numberOf(kDrums, name) : rowOf(name);
        if (!key || !chord)
            fail("what is '" + whole + "'?");
        const int row = isDrum ? kDrumRow : *key;
        for (int i = 0; i < length_; ++i) {
            score_.NoteCell.set(channel_, position_ + i,
                                static_cast<std::int16_t>(i == 0 ? row : row + 1000));
            if (isDrum)
                score_.NoteInstrument.set(channel_, position_ + i,
                                          static_cast<std::int16_t>(*key + kKeyToCode));
            else
                score_.Polyphonics.set(channel_ + 1, position_ + i, static_cast<std::int16_t>(*chord));
        }
    }

    Score& score_;
    int channel_;
    int bar_;
    int position_ = 0;
    int length_ = 0;
};

/// Ticks the voice's channel, and gives it.
int tick(notation::StaffChoice& staves, std::string_view word) {
    const char clef = word.back();
    const bool hasClef = clef == 't' || clef == 'b';
    const int channel = readInteger(hasClef ? word.substr(0, word.size() - 1) : word).value_or(-1);
    const int box = notation::boxOfChannel(channel);
    if (box < 0 || hasClef != (channel < kMelodyChannels))
        throw std::invalid_argument("no channel '" + std::string(word) + "'");
    staves.chkChannel.at(static_cast<std::size_t>(box)) = true;
    if (hasClef)
        staves.ChkNotetype.at(static_cast<std::size_t>(box)) = clef == 'b';
    return channel;
}

int keyOf(std::string_view word) {
    const auto* const found = std::ranges::find(notation::kKeys, word, &notation::Key::word);
    if (found == notation::kKeys.end() && word != "auto")
        throw std::invalid_argument("no key '" + std::string(word) + "'");
    return word == "auto" ? notation::kAutomaticKey : static_cast<int>(found - notation::kKeys.begin());
}
} // namespace

TypedMusic::TypedMusic(const MusicText& text) : score(kMostPositions) {
    meter.TxtMeter = static_cast<std::int16_t>(text.upper);
    meter.NoteX = static_cast<std::int16_t>(text.lower);
    score.NotesPerMeasure = static_cast<std::int16_t>(text.steps);
    setup.key = keyOf(text.key);
    setup.newScore = false;
    for (const VoiceText& voice : text.voices) {
        if (voice.channel.empty())
            continue;
        VoiceWriter writer(score, tick(setup.staves, voice.channel), text);
        for (const std::string_view word : wordsOf(voice.notes))
            writer.write(word);
    }
    score.FindEndOfSong();
}

} // namespace velmora
