// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

// The string table of instrument and percussion names. An identifier numbers its rows; a code is what the
// Score stores: 0 to 127 a program, 128 and up a percussion key + 93.

inline constexpr int kFirstPercussionCode = 128;      ///< codes from here on name a percussion key
inline constexpr int kKeyToCode = 93;                 ///< percussion code - percussion key
inline constexpr int kFirstPercussionIdentifier = 35; ///< the General MIDI percussion key itself
inline constexpr int kLastPercussionIdentifier = 81;
inline constexpr int kFirstInstrumentIdentifier = 100; ///< program + 100
inline constexpr int kLastInstrumentIdentifier = 227;
inline constexpr int kPercussionCount = kLastPercussionIdentifier - kFirstPercussionIdentifier + 1;
inline constexpr int kInstrumentCount = kLastInstrumentIdentifier - kFirstInstrumentIdentifier + 1;
static_assert(kPercussionCount == 47 && kInstrumentCount == 128);

/// Blank for an identifier that the table doesn't have.
[[nodiscard]] std::string_view nameOfIdentifier(int identifier);
/// Blank for a code without a name.
[[nodiscard]] std::string_view nameOfCode(int code);
[[nodiscard]] std::optional<std::int16_t> codeOfIdentifier(int identifier);
[[nodiscard]] std::optional<int> identifierOfCode(int code);

/// What the instrument picker chose last.
struct InstrumentSelection {
    std::int16_t MelodyInstrument = 24;      ///< settings key `Intrumentval`
    std::int16_t PercussionInstrument = 128; ///< settings key `Intrumentval2`
    std::string MelodyInstrumentName;        ///< shown in `LblInst1`; blank for a code without a name
    std::string PercussionInstrumentName;    ///< shown in `LblInst2`
    std::int16_t SecondInstrument = 0;       ///< the keyboard's second voice
    std::string SecondInstrumentName;
    bool PickSecond = false; ///< the picker serves the keyboard's second voice
};

} // namespace velmora
