// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velmora {

struct Score;
struct SetupState;

// The score file ".sng": a text of comma-separated rows without a header, in three generations. A reader
// knows a section by its place only; whichever reader is used on whichever generation, what comes out follows
// from that.

/// What stands after the 26 rows of notes and instruments.
enum class SngForm : std::uint8_t {
    First,  ///< tempo line, instruments of the channels
    Second, ///< the same, then chord types and effects
    Newest, ///< instruments of the channels, chord types and effects, key lines
};

enum class SngReader : std::uint8_t { OpenPoliFile, OpenFile, OpenPoliFile2, OpenSegment };

/// One reader: the generation it expects, and what it does beside filling the Score.
struct SngRules {
    SngReader reader;
    SngForm form;
    std::optional<std::int16_t> tempoCap;
    std::optional<int> keyboardInstrument;
    double beatboxHeight;
    bool showsTempo;
};

inline constexpr std::array kSngRules{
    SngRules{SngReader::OpenPoliFile, SngForm::Newest, std::nullopt, std::nullopt, 24.0, true},
    SngRules{SngReader::OpenFile, SngForm::First, 400, 24, 36.0, true},
    SngRules{SngReader::OpenPoliFile2, SngForm::Second, 400, std::nullopt, 36.0, true},
    SngRules{SngReader::OpenSegment, SngForm::First, std::nullopt, std::nullopt, 36.0, false},
};
static_assert(kSngRules.size() == 4);

/// What a window does after a score was read, beside painting it anew.
struct SngOpened {
    bool showTempo = true;                 ///< `TempoLabel` shows `Tempo`, its change handler not acting
    std::optional<double> beatboxHeight;   ///< there is percussion: `Beatbox` gets this height
    std::optional<int> keyboardInstrument; ///< the keyboard's current instrument becomes this
};

/// Reads a score from memory. The notes of the Score are cleared first and its effects are not, so old effect
/// values stay wherever the text has none. `FindEndOfSong` runs at the end. Any bytes will do; what makes no
/// sense is left out.
SngOpened parseSng(std::string_view bytes, SngReader reader, Score& score, SetupState& setup);

/// The same from a file. Nothing comes back for a file that can't be read, and the Score is as it was.
std::optional<SngOpened> OpenPoliFile(const std::filesystem::path& path, Score& score, SetupState& setup);
std::optional<SngOpened> OpenFile(const std::filesystem::path& path, Score& score, SetupState& setup);
std::optional<SngOpened> OpenPoliFile2(const std::filesystem::path& path, Score& score, SetupState& setup);
std::optional<SngOpened> OpenSegment(const std::filesystem::path& path, Score& score, SetupState& setup);

/// Positions of the longest of the 13 note rows: a Score whose `NumNotes` is at least this loses no note.
[[nodiscard]] std::size_t longestRow(std::string_view bytes);

/// The score in the newest form.
[[nodiscard]] std::string serializePoliFile(const Score& score, const SetupState& setup);

/// Writes the newest form to the current file; with no current file, does nothing.
/// @return the reason in words if it failed, the old file being untouched; blank otherwise
[[nodiscard]] std::string SavePoliFile(const Score& score, const SetupState& setup);

/// A recording of the keyboard in the second form: @p cells on channel 0 with one instrument for everything,
/// and no effects.
[[nodiscard]] std::string serializeRecording(std::span<const std::int16_t> cells, std::int16_t instrument,
                                             std::int16_t tempo);

} // namespace velmora
