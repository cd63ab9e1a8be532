// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace velmora::cli {

/// What a word of a step stands for.
enum class StepWord : std::uint8_t {
    None,
    Channel,  ///< 0 to 8 and 10 to 12
    Melody,   ///< a channel of `MusicBox`
    Channels, ///< several, as bits
    Code,     ///< of an instrument that has a name
    Chord,
    Value,
    Pan,
    Row,    ///< of the Score, in the view
    Column, ///< a position in the view
    Position,
    Count,
    Switch, ///< 1 for `on`, 0 for `off`
};

/// The words of a text, which blanks separate.
[[nodiscard]] std::vector<std::string_view> wordsOf(std::string_view text);
/// What @p word says; nothing if it is no such word.
[[nodiscard]] std::optional<int> valueOf(StepWord kind, std::string_view word);
/// What is wanted instead, for the user.
[[nodiscard]] std::string_view wantedFor(StepWord kind);

} // namespace velmora::cli
