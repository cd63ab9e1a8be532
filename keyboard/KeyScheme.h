// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/PianoKeys.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// Which computer key plays which key of the keyboard: its labels, UTF-8, normally of one character each.
struct KeyScheme {
    std::array<std::string, kPianoKeys> labels;

    /// The one that stands there until a file replaces it. "G", "H" and "J" stand twice in it; that is meant.
    [[nodiscard]] static const KeyScheme& builtIn();

    /// The lowest key with exactly this label.
    [[nodiscard]] std::optional<int> keyOf(std::string_view label) const;

    bool operator==(const KeyScheme&) const = default;
};

} // namespace velmora
