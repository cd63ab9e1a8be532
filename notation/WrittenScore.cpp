// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/WrittenScore.h"

#include <array>

namespace velmora::notation {

namespace {
constexpr std::array<std::string_view, 10> kValueNames{"whole",
                                                       "half",
                                                       "quarter",
                                                       "eighth",
                                                       "sixteenth",
                                                       "thirtysecond",
                                                       "sixtyfourth",
                                                       "hundredtwentyeighth",
                                                       "twohundredfiftysixth",
                                                       "fivehundredtwelfth"};
} // namespace

std::string textOf(const Value& value) {
    if (value.wholeBar)
        return "bar";
    std::string text(kValueNames.at(static_cast<std::size_t>(value.value)));
    text.append(value.dots, '.');
    if (value.triplet)
        text += '3';
    return text;
}

} // namespace velmora::notation
