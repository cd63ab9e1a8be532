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
constexpr std::ptrdiff_t kFastField = 6; ///< "-9999,"
constexpr std::ptrdiff_t kRoomToCompare = 8;

bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

/// The first end of a line; many characters at a time, since rows are long.
const char* findLineEnd(const char* at, const char* end) {
    constexpr std::ptrdiff_t kBlock = 32;
    while (end - at >= kBlock) {
        bool found = false;
        for (std::ptrdiff_t i = 0; i < kBlock; ++i)
            found |= isLineEnd(at[i]);
        if (found)
            break;
        at += kBlock;
    }
    return std::find_if(at, end, isLineEnd);
}

std::uint64_t eightBytes(const char* at) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, at, sizeof bytes);
    return bytes;
}

/// Whether the field of @p length characters before @p at, its comma included, stands there again. Eight
/// characters from @p at on are the text's.
bool isRepeated(const char* at, std::ptrdiff_t length) {
    const std::uint64_t different = eightBytes(at) ^ eightBytes(at - length);
    const auto others = static_cast<unsigned>(8 * (8 - length));
    return (std::endian::native == std::endian::little ? different << others : different >> others) == 0;
}

/// How often it does.
std::size_t repeats(const char* at, const char* end, std::ptrdiff_t length) {
    constexpr std::ptrdiff_t kWord = sizeof(std::uint64_t);
    const char* same = at;
    while (end - same >= kWord && eightBytes(same) == eightBytes(same - length))
        same += kWord;
    while (same != end && *same == same[-length])
        ++same;
    return static_cast<std::size_t>((same - at) / length);
}

/// The value of a digit; above 9 for everything else.
int digit(char c) {
    return static_cast<unsigned char>(c - '0');
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
    const std::ptrdiff_t lastComma = end == row ? 0 : 1;
    text.append(row, static_cast<std::size_t>(end - row - lastComma)).append("\r\n");
}
} // namespace

std::string_view withoutByteOrderMark(std::string_view text) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    return text.starts_with(kMark) ? text.substr(kMark.size()) : text;
}

void SngLines::passLineEnd() {
    if (at_ != end_ && *at_++ == '\r' && at_ != end_ && *at_ == '\n')
        ++at_;
}

void SngLines::skipToLineEnd() {
    at_ = findLineEnd(at_, end_);
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
        // Whole numbers of up to four digits with a comma after them; all else goes the slow way.
        while (fields < cells.size() && end_ - at > kFastField) {
            const char* const field = at;
            const bool negative = *at == '-';
            const char* next = at + (negative ? 1 : 0);
            const char* const fourth = next + 3;
            int magnitude = digit(*next++);
            if (magnitude > 9)
                break;
            for (int more = digit(*next); more <= 9 && next <= fourth; more = digit(*++next))
                magnitude = magnitude * 10 + more;
            if (*next != ',')
                break;
            const auto value = static_cast<std::int16_t>(negative ? -magnitude : magnitude);
            cells[fields++] = value;
            at = next + 1;
            const std::ptrdiff_t length = at - field;
            if (end_ - at < kRoomToCompare || !isRepeated(at, length))
                continue;
            // Most rows say the same over long stretches.
            const std::size_t more = std::min(repeats(at, end_, length), cells.size() - fields);
            std::fill_n(cells.begin() + static_cast<std::ptrdiff_t>(fields), more, value);
            fields += more;
            at += static_cast<std::ptrdiff_t>(more) * length;
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

void writeKeyLines(SngWriter& out, std::int16_t tempo, const MeterFields& meter) {
    out.line("Tempo=" + std::to_string(tempo));
    out.line("Notes per measure=" + std::to_string(meter.TxBeats));
    out.line("Beats per measure=" + std::to_string(meter.TxtMeter));
    out.line("Note Value=" + std::to_string(meter.NoteX));
}

void writeKeyLines(SngWriter& out, const Score& score, const SetupState& setup) {
    writeKeyLines(out, score.Tempo, {setup.TxBeats, setup.TxtMeter, setup.NoteX});
}

void rememberBeats(Score& score, int channel, std::size_t fields) {
    if (channel < kFirstPercussion)
        return;
    const auto codes = std::as_const(score.NoteInstrument).row(channel).first(fields);
    for (std::size_t position = 0; position < std::min(codes.size(), score.BeatMemo[0].size()); ++position) {
        if (codes[position] >= 1)
            score.rememberBeat(channel, static_cast<int>(position), codes[position]);
    }
}

void markInUse(Score& score, int channel, std::size_t fields) {
    const auto cells = std::as_const(score.NoteCell).row(channel).first(fields);
    if (std::ranges::any_of(cells, [](std::int16_t cell) { return cell >= 1; }))
        score.ChannelInUse[channel] = true;
}

} // namespace velmora
