// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/SngText.h"

#include "score/Numbers.h"
#include "sound/SetupState.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>
#include <utility>
#include <vector>

namespace velmora {

namespace {
using namespace std::string_view_literals;

constexpr std::size_t kLongestField = 7; ///< "-32768,"

bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

/// What eight characters of the text, the first in the lowest byte, begin with.
struct ShortNumber {
    int digits;          ///< 0 to 8
    std::uint32_t value; ///< for 1 to 7 digits
};

ShortNumber shortNumber(std::uint64_t characters) {
    constexpr std::uint64_t kZeros = 0x3030303030303030;
    constexpr std::uint64_t kTop = 0x8080808080808080;
    const std::uint64_t nibbles = characters ^ kZeros;
    // A byte above 9 sets its top bit here. A carry out of a byte can only reach bytes that don't matter any
    // more.
    const std::uint64_t others = ((nibbles + 0x7676767676767676) | nibbles) & kTop;
    const int digits = std::countr_zero(others) / 8;
    // The digits move to the top, zeros follow below, and neighbours are joined: 8 of one, 4 of two, 2 of
    // four.
    std::uint64_t joined = nibbles << (64 - 8 * std::max(digits, 1));
    joined = joined * 10 + (joined >> 8);
    joined = (((joined & 0x000000FF000000FF) * 0x000F424000000064) +
              (((joined >> 16) & 0x000000FF000000FF) * 0x0000271000000001)) >>
             32;
    return {digits, static_cast<std::uint32_t>(joined)};
}

/// The text of a number with the comma after it, ready to be copied as eight bytes.
struct FieldText {
    char text[kLongestField];
    std::uint8_t size;
};
static_assert(sizeof(FieldText) == 8);

/// Texts of -1 to 1127: every cell and every effect value.
constexpr int kFirstTabled = -1;
constexpr auto kFieldTexts = [] {
    std::array<FieldText, 1129> table{};
    for (int i = 0; i < static_cast<int>(table.size()); ++i) {
        FieldText& entry = table[static_cast<std::size_t>(i)];
        const int value = i + kFirstTabled;
        if (value < 0)
            entry.text[entry.size++] = '-';
        const int magnitude = value < 0 ? -value : value;
        for (int unit = 1000; unit > 0; unit /= 10) {
            if (magnitude >= unit || unit == 1)
                entry.text[entry.size++] = static_cast<char>('0' + magnitude / unit % 10);
        }
        entry.text[entry.size++] = ',';
    }
    return table;
}();

/// Writes "value," and returns the place after it; eight bytes of room are needed.
char* putField(char* to, std::int16_t value) {
    const auto entry = static_cast<std::size_t>(value - kFirstTabled);
    if (entry < kFieldTexts.size()) {
        std::memcpy(to, &kFieldTexts[entry], sizeof(FieldText));
        return to + kFieldTexts[entry].size;
    }
    to = std::to_chars(to, to + kLongestField, value).ptr;
    *to = ',';
    return to + 1;
}

void finishRow(std::string& text, const char* row, const char* end) {
    text.append(row,
                static_cast<std::size_t>(end - row - (end != row ? 1 : 0))); // no comma after the last field
    text.append("\r\n");
}
} // namespace

void SngLines::passLineEnd() {
    if (at_ != end_ && *at_++ == '\r' && at_ != end_ && *at_ == '\n')
        ++at_;
}

void SngLines::skipToLineEnd() {
    at_ = std::find_if(at_, end_, isLineEnd);
}

std::string_view SngLines::line() {
    const char* const begin = at_;
    skipToLineEnd();
    const std::string_view found(begin, static_cast<std::size_t>(at_ - begin));
    passLineEnd();
    return found;
}

void SngLines::slowField(std::int16_t& cell) {
    const char* const begin = at_;
    at_ = std::find_if(at_, end_, [](char c) { return c == ',' || isLineEnd(c); });
    if (const auto value = parseInt16({begin, static_cast<std::size_t>(at_ - begin)}))
        cell = *value;
}

std::size_t SngLines::row(std::span<std::int16_t> cells) {
    if (atEnd() || isLineEnd(*at_)) {
        passLineEnd();
        return 0;
    }
    std::size_t fields = 0;
    const char* at = at_;
    for (;;) {
        // Whole numbers of up to five digits, while eight characters can be loaded and one more looked at.
        if constexpr (std::endian::native == std::endian::little) {
            while (fields < cells.size() && end_ - at > 8) {
                std::uint64_t characters = 0;
                std::memcpy(&characters, at, sizeof characters);
                const int sign = (characters & 0xFF) == '-' ? 1 : 0;
                const auto [digits, magnitude] = shortNumber(characters >> (8 * sign));
                const char* const stop = at + sign + digits;
                if (digits < 1 || digits > 5 || magnitude > 32767 || *stop != ',')
                    break;
                const int value = static_cast<int>(magnitude);
                cells[fields++] = static_cast<std::int16_t>(sign ? -value : value);
                at = stop + 1;
            }
        }
        at_ = at;
        if (fields == cells.size())
            break;
        slowField(cells[fields++]);
        if (atEnd() || *at_ != ',')
            break;
        at = ++at_;
    }
    skipToLineEnd();
    passLineEnd();
    return fields;
}

SngWriter::SngWriter(std::size_t fields) {
    text_.reserve(fields * 4 + 1024); // cells take 4 or 5 characters, everything else less
}

void SngWriter::line(std::string_view text) {
    text_.append(text).append("\r\n");
}

void SngWriter::row(std::span<const std::int16_t> cells) {
    if (scratch_.size() < (cells.size() + 1) * kLongestField + 1)
        scratch_.resize((cells.size() + 1) * kLongestField + 1);
    char* to = scratch_.data();
    for (const std::int16_t cell : cells)
        to = putField(to, cell);
    finishRow(text_, scratch_.data(), to);
}

void SngWriter::row(std::int16_t value, std::size_t count) {
    const std::vector<std::int16_t> cells(count, value);
    row(cells);
}

void applyKeyLine(std::string_view line, Score& score, SetupState& setup, MeterFields& read) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return;
    const auto value = parseInt16(line.substr(equals + 1));
    if (!value)
        return;
    if (line.find("Notes per measure="sv) != std::string_view::npos)
        score.NotesPerMeasure = setup.TxBeats = read.TxBeats = *value;
    if (line.find("Beats per measure="sv) != std::string_view::npos)
        setup.TxtMeter = read.TxtMeter = *value;
    if (line.find("Note Value="sv) != std::string_view::npos)
        setup.NoteX = read.NoteX = *value;
    if (line.find("Tempo="sv) != std::string_view::npos)
        score.Tempo = *value;
}

void writeKeyLines(SngWriter& out, const Score& score, const SetupState& setup) {
    out.line("Tempo=" + std::to_string(score.Tempo));
    out.line("Notes per measure=" + std::to_string(setup.TxBeats));
    out.line("Beats per measure=" + std::to_string(setup.TxtMeter));
    out.line("Note Value=" + std::to_string(setup.NoteX));
}

bool rememberBeats(Score& score, int channel, std::size_t fields) {
    if (channel < kFirstPercussion)
        return false;
    const auto codes = std::as_const(score.NoteInstrument).row(channel).first(fields);
    bool any = false;
    for (std::size_t position = 0; position < codes.size(); ++position) {
        if (codes[position] < 1)
            continue;
        any = true;
        score.rememberBeat(channel, static_cast<int>(position), codes[position]);
    }
    return any;
}

void markInUse(Score& score, int channel, std::size_t fields) {
    const auto cells = std::as_const(score.NoteCell).row(channel).first(fields);
    if (std::ranges::any_of(cells, [](std::int16_t cell) { return cell >= 1; }))
        score.ChannelInUse[static_cast<std::size_t>(channel)] = true;
}

} // namespace velmora
