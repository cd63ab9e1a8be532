// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QRect>
#include <QSize>

#include <cstdint>

namespace velmora {

/// How much room the composing window has across.
enum class FormWidth : std::uint8_t {
    Full,
    Compact, ///< below 1280: window buttons lose their words, tool tabs show icons, squares stand closer
    Small    ///< below 1000: labelled buttons become icons, note styles fold behind a "more" button
};
[[nodiscard]] FormWidth formWidth(int width);

inline constexpr QSize kLeastForm{880, 520};
inline constexpr int kMargin = 12; ///< between the window's sides and what stands in it

/// What of the window is shown, and how high `Beatbox` is.
struct FormParts {
    bool percussion = true;
    bool editingToolbar = true;
    int beatboxHeight = 0; ///< a multiple of 12; 0 for what suits the window
};

/// Where everything in the composing window stands, in pixels of the window. What is hidden is an empty
/// rectangle, and its height goes to `MusicBox`.
struct FormLayout {
    QRect menuStrip, buttonBar, toolPanel, channelStrip, readOuts;
    QRect pic3, pic2a, beatbox, splitter, guide, musicBox;
    QRect horizontalBar, verticalBar, textLine;
};
[[nodiscard]] FormLayout formLayout(QSize window, const FormParts& parts);

} // namespace velmora
