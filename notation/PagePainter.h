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

/// What a page is painted on. Coordinates are pixels of `Pic1` as a plane: pixel n reaches from n to n + 1.
/// The surface scales.
class PagePainter {
public:
    virtual ~PagePainter() = default;
    /// From end to end: nothing sticks out beyond them. Never of length 0.
    virtual void line(const LineMark& line, Colour colour) = 0;
    /// A filled outline, each point times @p scale and then moved to @p at. Areas run clockwise on the page.
    virtual void fill(const Outline& outline, Point at, double scale, Colour colour) = 0;
    /// Filled, or a line of one pixel that the radius runs in the middle of.
    virtual void ellipse(const EllipseMark& ellipse, Colour colour) = 0;
    virtual void curve(const CurveMark& curve, Colour colour) = 0;
    virtual void text(Point at, std::string_view text, const TextStyle& style, Colour colour) = 0;
};

/// Paints the marks in their order.
///
/// A mark's place is a pixel: what is drawn by a pen or about an origin stands in the middle of that pixel,
/// while images and texts begin at its corner. So a line 1 wide at y fills the row y of pixels, and from x to
/// z it fills z too. A filled ellipse is drawn by the pen as well, and so is half a pixel larger all round.
void paintPage(const EngravedScore& score, const EngravedPage& page, PagePainter& painter);

/// A sloped line's corners, its ends upright; round the page clockwise.
[[nodiscard]] Outline slopedLine(const LineMark& line);
/// Half axes of an ellipse.
[[nodiscard]] Point radiiOf(const EllipseMark& ellipse);

} // namespace velmora::notation
