// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/Score.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace velmora {

struct SetupState;

// What the score file and the undo snapshot have in common: lines, rows of numbers, sections and key lines.

/// An effect array and the keyword line that stands before its rows.
struct EffectSection {
    std::string_view keyword;
    ChannelGrid Score::*grid;
    std::int16_t cleared; ///< the value of a position that nobody changed
};

inline constexpr std::string_view kPolyphonicsKeyword = "Polyphonics";

/// The effect arrays in the order of the text. The value of position p is field p of a row and index p + 1
/// here.
inline constexpr std::array kEffectSections{
    EffectSection{"Volume", &Score::Volume, kClearedVolume},
    EffectSection{"Modulation_Change", &Score::Modulation_Change, kClearedEffect},
    EffectSection{"Pan_Change", &Score::Pan_Change, kClearedPan},
    EffectSection{"Reverb_Change", &Score::Reverb_Change, kClearedEffect},
    EffectSection{"Chorus_Change", &Score::Chorus_Change, kClearedEffect},
};
static_assert(kEffectSections.size() == 5);

inline constexpr int kPolyphonicsRows = 9; ///< rows 0 to 8; row 0 stays 0

/// The text without the mark that some editors put before UTF-8, which is no part of the first row.
[[nodiscard]] std::string_view withoutByteOrderMark(std::string_view text);

/// Walks the lines of a text that stays where it is. CR LF, LF and CR each end a line.
class SngLines {
public:
    explicit SngLines(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

    [[nodiscard]] bool atEnd() const { return at_ == end_; }
    /// The next line without its end; blank at the end of the text.
    std::string_view line();
    /// Reads the next line's fields into @p cells: a blank field is 0, one out of range leaves its cell as it
    /// was, and fields beyond the last cell are dropped. An empty line, and the end of the text, have no
    /// fields.
    /// @return the number of cells that had a field
    std::size_t row(std::span<std::int16_t> cells);

private:
    void slowField(std::int16_t& cell);
    void skipToLineEnd();
    void passLineEnd();

    const char* at_;
    const char* end_;
};

/// Builds the text: rows of numbers with single commas, lines ended by CR LF.
class SngWriter {
public:
    /// A text of about @p fields numbers.
    explicit SngWriter(std::size_t fields);

    void line(std::string_view text);
    void row(std::span<const std::int16_t> cells);
    void row(std::int16_t value, std::size_t count);
    [[nodiscard]] std::string take() { return std::move(text_); }

private:
    std::string text_;
    std::string scratch_; ///< one row; small enough to stay in the cache
};

/// What the key lines of one reading said so far.
struct MeterFields {
    std::int16_t TxBeats = 0;
    std::int16_t TxtMeter = 0;
    std::int16_t NoteX = 0;

    [[nodiscard]] bool complete() const { return TxBeats >= 1 && TxtMeter >= 1 && NoteX >= 1; }
};

/// Takes what a line says about the meter and the tempo. A key may stand anywhere in the line, and its value
/// is the number after the first "=". `NotesPerMeasure` follows `TxBeats`; nothing else is worked out.
void applyKeyLine(std::string_view line, Score& score, SetupState& setup, MeterFields& read);
/// The four key lines that end a text.
void writeKeyLines(SngWriter& out, std::int16_t tempo, const MeterFields& meter);
void writeKeyLines(SngWriter& out, const Score& score, const SetupState& setup);

/// Notes the percussion instruments of a row that was read in `BeatMemo`.
void rememberBeats(Score& score, int channel, std::size_t fields);
/// Marks a channel as used where a row that was read has a code of 1 or more; a head on row 0 doesn't count.
void markInUse(Score& score, int channel, std::size_t fields);

} // namespace velmora
