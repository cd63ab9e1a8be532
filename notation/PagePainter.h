// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"

#include <array>
#include <string_view>
#include <vector>

namespace velmora::notation {

/// A step of an outline, in a glyph's own units.
struct PathStep {
    enum class Kind : std::uint8_t { Move, Line, Curve, Close };
    Kind kind;
    std::array<Point, 3> points; ///< as many as the kind takes, from the first
};
using Outline = std::vector<PathStep>;

/// What a page is painted on. Coordinates are pixels of `Pic1`; the surface scales.
class PagePainter {
public:
    virtual ~PagePainter() = default;
    virtual void line(const LineMark& line, Colour colour) = 0;
    /// A filled outline, each point times @p scale and then moved to @p at.
    virtual void fill(const Outline& outline, Point at, double scale, Colour colour) = 0;
    virtual void ellipse(const EllipseMark& ellipse, Colour colour) = 0;
    virtual void curve(const CurveMark& curve, Colour colour) = 0;
    virtual void text(Point at, std::string_view text, const TextStyle& style, Colour colour) = 0;
};

/// Paints the marks in their order.
void paintPage(const EngravedScore& score, const EngravedPage& page, PagePainter& painter);

} // namespace velmora::notation
