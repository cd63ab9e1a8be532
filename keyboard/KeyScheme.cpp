// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/KeyScheme.h"

#include <algorithm>
#include <cstddef>

namespace velmora {

const KeyScheme& KeyScheme::builtIn() {
    // A piano's shape from the lowest letter row upward. "G", "H" and "J" stand twice, as meant: the second
    // ones are out of the computer keyboard's reach.
    static const KeyScheme kBuiltIn{{
        "Z", "S", "X", "D", "C", "V", "G", "B",  "H", "N", "J", "M", ",", //
        "F", "G", "H", "J", "K", "L", ":", "\"",                          //
        "Q", "W", "E", "R", "T", "Y", "U", "I",  "O", "P", "{", "}",      //
        "1", "2", "3", "4", "5", "6", "7", "8",  "9", "0", "]",
    }};
    return kBuiltIn;
}

std::optional<int> KeyScheme::keyOf(std::string_view label) const {
    const auto found = std::ranges::find(labels, label);
    if (found == labels.end())
        return std::nullopt;
    return static_cast<int>(found - labels.begin());
}

} // namespace velmora
