// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace velmora {

/// The number a text begins with: blanks, a sign, digits, a fraction, an exponent, each optional. Reading
/// stops at the first character that is no part of a number; a text without one is 0. A number too large for
/// a double comes back infinite, one too small as 0. Only the point is a decimal mark, whatever the locale.
[[nodiscard]] double leadingNumber(std::string_view text);

/// The nearest whole number, halves to the even one: 2.5 is 2, 3.5 is 4.
[[nodiscard]] double roundHalfEven(double value);

/// @p value rounded by `roundHalfEven`; nothing where the type can't hold it, so that the caller leaves out
/// the statement.
[[nodiscard]] std::optional<std::int16_t> toInt16(double value);
[[nodiscard]] std::optional<std::int32_t> toInt32(double value);

/// `leadingNumber` and then the conversion.
[[nodiscard]] std::optional<std::int16_t> parseInt16(std::string_view text);
[[nodiscard]] std::optional<std::int32_t> parseInt32(std::string_view text);

/// The number that a text field holds: 0 for a text without one and for a number below 0; nothing where it is
/// too large, so that what the field stands for stays as it was.
[[nodiscard]] std::optional<std::int16_t> fieldNumber(std::string_view text);

} // namespace velmora
