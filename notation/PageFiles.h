// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"
#include "notation/TextMeasure.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velmora::notation {

/// Room that texts take where pages are painted by the installed fonts.
[[nodiscard]] std::unique_ptr<TextMeasure> fontMeasure();

/// A blank text, or why nothing can be painted (a library or font that is not there), as a sentence.
[[nodiscard]] std::string paintingProblem();

/// A page, or a part of it, as pixels: 32 bits each, 0xffRRGGBB, rows of @p width without padding.
/// @param scale device pixels a pixel of the page
/// @param left,top of the part in device pixels
void paintPixels(const EngravedScore& score, const EngravedPage& page, double scale, int left, int top,
                 int width, int height, std::uint32_t* pixels);

/// The most pixels that a picture may be wide or high: the library's own limit.
inline constexpr int kLargestPicture = 32767;

/// 8-bit grey, black on white; the file's bytes, none if it can't be painted. A coloured page has colours.
[[nodiscard]] std::string pngOf(const EngravedScore& score, const EngravedPage& page, double scale);
[[nodiscard]] std::string svgOf(const EngravedScore& score, const EngravedPage& page);

/// Where a page of the score stands on a sheet of paper, in points (72 an inch).
struct PagePlace {
    double paperWidth = 0, paperHeight = 0;
    double left = 0, top = 0; ///< of the page's picture
    double scale = 0.75;      ///< points a pixel
};
/// At its own size on paper of its size.
[[nodiscard]] PagePlace ownPaper(const EngravedScore& score);
/// Fitted and centred on paper, in its proportion.
[[nodiscard]] PagePlace fitted(const EngravedScore& score, double paperWidth, double paperHeight);

/// The pages of @p order (indices, in that order, repeated for copies), lines as lines and text as text.
/// @param goOn asked before each page if given; false ends with nothing
[[nodiscard]] std::optional<std::string> pdfOf(const EngravedScore& score, std::span<const int> order,
                                               const PagePlace& place, const std::string& title,
                                               const std::function<bool(int page)>& goOn = {});

} // namespace velmora::notation
