// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"

#include <string_view>

namespace velmora::notation {

/// A line of text, in pixels.
struct TextExtent {
    double width = 0;
    double height = 0;   ///< of its line
    double baseline = 0; ///< below the top
};

/// How much room texts take. Layouts of words ask it; pages without text do not depend on it.
class TextMeasure {
public:
    virtual ~TextMeasure() = default;
    [[nodiscard]] virtual TextExtent extent(std::string_view text, const TextStyle& style) = 0;
};

/// By a table of the widths of a common serif face: the same on every machine.
class PlainTextMeasure : public TextMeasure {
public:
    [[nodiscard]] TextExtent extent(std::string_view text, const TextStyle& style) override;
};

} // namespace velmora::notation
