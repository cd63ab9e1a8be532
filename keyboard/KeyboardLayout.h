// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/KeyScheme.h"
#include "keyboard/PianoKeys.h"

#include <array>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace velmora {

/// A keyboard scheme that comes with the program.
struct ShippedScheme {
    std::string_view name; ///< as the user reads it
    std::string_view file; ///< what it is called as a file, without its ending
    std::array<std::string_view, kPianoKeys> labels;

    [[nodiscard]] KeyScheme scheme() const;
};

/// The built-in one first.
[[nodiscard]] std::span<const ShippedScheme> shippedSchemes();

/// What a key of the computer types without Shift, UTF-8; blank where it types no character by itself.
struct TypedText {
    std::string plain;
    std::string capital; ///< the same as a capital, where there is one
    bool operator==(const TypedText&) const = default;
};

/// A scheme, and the place of the computer key for each of its labels.
struct FittedScheme {
    KeyScheme scheme;
    std::array<int, kPianoKeys> positions; ///< Linux's code of the key; 0 where there was none left
};

/// "Fit my keyboard": what stands on the computer keys at fixed places. The two lower letter rows are a piano
/// of an octave and a third from key 0 on, what is left of them and the upper rows go on from the left to the
/// right. Letters are capitals. A place that types nothing, or what another one does, is taken by a spare
/// key.
///
/// @param typedBy what the key at a place types
[[nodiscard]] FittedScheme fitScheme(const std::function<TypedText(int position)>& typedBy);

} // namespace velmora
