// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/CairoLibrary.h"
#include "notation/TextMeasure.h"

#include <memory>
#include <string_view>

namespace velmora::notation {

/// Sets lines of text by the installed fonts, alike at every scale and on every surface.
///
/// Thread-safe: no; to be used on the thread that made it.
class PageText {
public:
    PageText();
    PageText(const PageText&) = delete;
    PageText& operator=(const PageText&) = delete;
    ~PageText();

    [[nodiscard]] TextExtent extent(std::string_view text, const TextStyle& style);
    /// The line's top left corner at @p at.
    void show(cairo_t* on, Point at, std::string_view text, const TextStyle& style);

private:
    void set(std::string_view text, const TextStyle& style);

    PangoLayout* layout_ = nullptr; ///< none where a library is missing
    TextStyle style_;
};

} // namespace velmora::notation
