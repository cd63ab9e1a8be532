// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace velmora {

/// The text without the characters of @p blanks at its ends.
[[nodiscard]] constexpr std::string_view trimmed(std::string_view text, std::string_view blanks = " ") {
    const auto first = text.find_first_not_of(blanks);
    return first == text.npos ? std::string_view()
                              : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// A to Z become a to z; everything else stays, whatever the locale.
[[nodiscard]] constexpr char toLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
[[nodiscard]] inline std::string toLower(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) { return toLower(c); });
    return text;
}

} // namespace velmora
