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

/// One reader: the generation it expects, and the highest tempo it lets in.
struct SngRules {
    SngReader reader;
    SngForm form;
    std::optional<std::int16_t> tempoCap;
};

inline constexpr std::array kSngRules{
    SngRules{SngReader::OpenPoliFile, SngForm::Newest, std::nullopt},
    SngRules{SngReader::OpenFile, SngForm::First, 400},
    SngRules{SngReader::OpenPoliFile2, SngForm::Second, 400},
    SngRules{SngReader::OpenSegment, SngForm::First, std::nullopt},
};
static_assert(kSngRules.size() == 4);

/// The form that a text has, as far as it shows: line 27 has a single field in the older ones, and the second
/// names its chord types in line 29.
[[nodiscard]] SngForm formOf(std::string_view bytes);
/// The reader by which a score is opened: the first form has always been opened as the newest, and is known
/// by what comes of that; the second would lose its first note so.
[[nodiscard]] SngReader openingReader(std::string_view bytes);

/// Reads a score from memory. The notes of the Score are cleared first and its effects are not, so old effect
/// values stay wherever the text has none. `FindEndOfSong` runs at the end. Any bytes will do; what makes no
/// sense is left out, and so is a byte-order mark.
void parseSng(std::string_view bytes, SngReader reader, Score& score, SetupState& setup);

/// The same from a file; false for one that can't be read or is no text, and the Score is as it was.
bool OpenPoliFile(const std::filesystem::path& path, Score& score, SetupState& setup);
bool OpenFile(const std::filesystem::path& path, Score& score, SetupState& setup);
bool OpenPoliFile2(const std::filesystem::path& path, Score& score, SetupState& setup);
bool OpenSegment(const std::filesystem::path& path, Score& score, SetupState& setup);

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
