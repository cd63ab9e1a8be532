// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace velmora {

namespace {
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Whether an unsigned number that a double can't hold is too large; if not, it is too small.
bool isTooLarge(std::string_view number) {
    const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, mark);
    const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
    const auto first = static_cast<std::int64_t>(mantissa.find_first_of("123456789"));
    std::int64_t exponent = 0;
    if (mark != number.size()) {
        std::string_view digits = number.substr(mark + 1);
        if (digits.starts_with('+'))
            digits.remove_prefix(1);
        const auto end = digits.data() + digits.size();
        if (std::from_chars(digits.data(), end, exponent).ec == std::errc::result_out_of_range)
            return !digits.starts_with('-');
    }
    return exponent > first - point; // the first digit's place decides; doubles end hundreds of places from 0
}

template<typename Integer>
std::optional<Integer> checked(double value) {
    const double rounded = roundHalfEven(value);
    if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max()))
        return std::nullopt;
    return static_cast<Integer>(rounded);
}
} // namespace

double leadingNumber(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    // What from_chars would read beyond this, a second sign or a word for infinity, is no number here.
    if (text.empty() || !(isDigit(text.front()) || text.front() == '.'))
        return 0;
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) {
        const std::string_view number(text.data(), static_cast<std::size_t>(end - text.data()));
        value = isTooLarge(number) ? std::numeric_limits<double>::infinity() : 0;
    }
    return negative ? -value : value;
}

double roundHalfEven(double value) {
    return std::nearbyint(value); // the rounding mode that every thread starts with
}

std::optional<std::int16_t> toInt16(double value) {
    return checked<std::int16_t>(value);
}

std::optional<std::int32_t> toInt32(double value) {
    return checked<std::int32_t>(value);
}

std::optional<std::int16_t> parseInt16(std::string_view text) {
    return toInt16(leadingNumber(text));
}

std::optional<std::int32_t> parseInt32(std::string_view text) {
    return toInt32(leadingNumber(text));
}

std::optional<std::int16_t> fieldNumber(std::string_view text) {
    return toInt16(std::max(0.0, leadingNumber(text)));
}

} // namespace velmora
