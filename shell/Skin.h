// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace velmora {

/// A colour, 0 to 255 each.
struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    constexpr bool operator==(const Rgb&) const = default;
};

inline constexpr Rgb kWhite{255, 255, 255};
inline constexpr Rgb kBlack{0, 0, 0};

/// From the top of a face to its foot, or the two tones of a pattern.
struct RgbPair {
    Rgb from;
    Rgb to;
};

struct GradientStop {
    double at = 0; ///< 0 to 1
    Rgb colour;
};

/// How the second tone of a panel lies on the first.
enum class PanelPattern : std::uint8_t {
    Pinstripe,
    Dimple,
    BrushedDown,
    Rivets,
    BrushedAcross,
    Weave,
    Plain
};

/// Everything that tells one skin from another. It colours frames, panels and controls, and never changes
/// where they stand or how large they are.
struct Skin {
    std::string_view caption; ///< as the menu names it
    int ellipse = 0;     ///< width and height of the ellipse that rounds the window's corners; 0 for square
    int extraHeight = 0; ///< the rounded rectangle is this much taller than the window, and cut at its foot
    int edgeWidth = 4;
    std::array<GradientStop, 4> titleStops;
    bool titleAcross = false; ///< the title's gradient runs from left to right
    Rgb titleText;
    Rgb edgeOuter, edgeLight, edgeBody;
    RgbPair panel;
    PanelPattern pattern = PanelPattern::Plain;
    Rgb text, dim, line; ///< text, captions, rules
    Rgb field, fieldText, fieldEdge;
    Rgb readOut;
    RgbPair face, hot, pressed, checked;
    Rgb buttonEdge, groove;
    RgbPair pointer;
    Rgb accent, focus;
};

inline constexpr int kSkinCount = 8;

/// The skin of a value of the setting "Skin type", 1 to 8; the nearest for any other.
[[nodiscard]] const Skin& skinOf(int skinType);

/// The colour @p share (0 to 1) of the way from one to the other.
[[nodiscard]] Rgb mix(Rgb from, Rgb to, double share);
/// Relative luminance and contrast ratio (1 to 21) as WCAG 2.1 defines them.
[[nodiscard]] double luminance(Rgb colour);
[[nodiscard]] double contrast(Rgb one, Rgb other);

/// Whether the panels are darker than the text on them.
[[nodiscard]] bool isDark(const Skin& skin);
/// The colour of recording, bright enough for the skin's panels.
[[nodiscard]] Rgb recordRed(const Skin& skin);
/// The accent of an icon on a checked face.
[[nodiscard]] Rgb checkedAccent(const Skin& skin);

} // namespace velmora
