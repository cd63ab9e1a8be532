// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/Skin.h"

#include <array>
#include <string_view>

namespace velmora {

/// How the faces of buttons are cut. Sizes and places are the same in all styles.
struct ButtonStyle {
    std::string_view caption; ///< in the menu; blank for the style that no entry stands for
    int radius;               ///< of the corners, or `kHalfHeight`
    bool faceAtRest;          ///< buttons in bars have a face at rest, too
    bool face;                ///< false: buttons in bars never have one
    bool hairline;            ///< without a face, an edge shows where the mouse is
};

inline constexpr int kHalfHeight = -1; ///< both ends are half circles

inline constexpr auto kButtonStyles = std::to_array<ButtonStyle>({
    {"", 4, false, true, false},
    {"Rectangular", 0, true, true, false},
    {"Rounded", 6, true, true, false},
    {"Hidden", 4, false, false, false},
    {"Flat", 4, false, false, true},
    {"Round", kHalfHeight, true, true, false},
});
static_assert(kButtonStyles.size() == 6);

/// What the user has chosen of the looks, as the settings "Skin type" and "Skin buttons" hold it; for values
/// that stand for nothing, the first of each.
struct Appearance {
    int skinType = 1;
    int buttonStyle = 1;

    [[nodiscard]] const Skin& skin() const { return skinOf(skinType); }
    [[nodiscard]] const ButtonStyle& buttons() const {
        const auto index = static_cast<std::size_t>(buttonStyle) - 1;
        return kButtonStyles[index < kButtonStyles.size() ? index : 0];
    }
};

} // namespace velmora
