// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/PagePainter.h"

#include "notation/MusicOutlines.h"
#include "notation/OutlineShapes.h"

#include <algorithm>
#include <cmath>

namespace velmora::notation {

namespace {
constexpr double kPixelMiddle = 0.5;

Point inPixel(Point at) {
    return {at.x + kPixelMiddle, at.y + kPixelMiddle};
}

/// With ends that fill their pixels.
LineMark reachingLine(const LineMark& mark) {
    const double reach = std::min(mark.width, 1.0) / 2;
    const Point from = inPixel(mark.from), to = inPixel(mark.to);
    const double dx = to.x - from.x, dy = to.y - from.y;
    if (dx == 0) {
        const double down = dy < 0 ? -reach : reach;
        return {{from.x, from.y - down}, {to.x, to.y + down}, mark.width};
    }
    const double right = dx < 0 ? -reach : reach;
    const double slope = dy / dx;
    return {{from.x - right, from.y - right * slope}, {to.x + right, to.y + right * slope}, mark.width};
}

class Visitor {
public:
    Visitor(const EngravedScore& score, PagePainter& painter) : score_(score), painter_(painter) {}
    void paint(const Mark& mark) {
        colour_ = mark.colour;
        std::visit(*this, mark.shape);
    }

    void operator()(const LineMark& line) {
        if (line.from == line.to && line.width > 1)
            painter_.ellipse({inPixel(line.from), line.width / 2, 1, true}, colour_);
        else
            painter_.line(reachingLine(line), colour_);
    }
    void operator()(const ImageMark& image) { painter_.fill(outlineOf(image.image), image.at, 1, colour_); }
    void operator()(const EllipseMark& ellipse) {
        EllipseMark placed = ellipse;
        placed.centre = inPixel(ellipse.centre);
        if (ellipse.filled) {
            const Point radii = radiiOf(ellipse);
            const double x = radii.x + kPixelMiddle, y = radii.y + kPixelMiddle;
            placed.radius = std::max(x, y);
            placed.aspect = y / x;
        }
        painter_.ellipse(placed, colour_);
    }
    void operator()(const TextMark& text) {
        static const TextStyle plain;
        const auto style = static_cast<std::size_t>(text.style);
        painter_.text(text.at, text.text, style < score_.styles.size() ? score_.styles[style] : plain,
                      colour_);
    }
    void operator()(const CurveMark& curve) {
        CurveMark placed = curve;
        std::transform(curve.points.begin(), curve.points.end(), placed.points.begin(), inPixel);
        painter_.curve(placed, colour_);
    }
    void operator()(const GlyphMark& glyph) {
        painter_.fill(outlineOf(glyph.glyph), inPixel(glyph.at), glyph.size, colour_);
    }

private:
    const EngravedScore& score_;
    PagePainter& painter_;
    Colour colour_ = kBlack;
};
} // namespace

void paintPage(const EngravedScore& score, const EngravedPage& page, PagePainter& painter) {
    Visitor visitor(score, painter);
    for (const Mark& mark : page.marks)
        visitor.paint(mark);
}

Outline slopedLine(const LineMark& line) {
    const double half = line.width / 2;
    const double dx = line.to.x - line.from.x, dy = line.to.y - line.from.y;
    // Across a steep line an upright end would be as long as the line itself.
    const bool steep = std::abs(dy) > std::abs(dx);
    const double length = std::hypot(dx, dy);
    const Point off = steep ? Point{dy / length * half, -dx / length * half} : Point{0, -half};
    Outline outline;
    addPolygon(outline, {{line.from.x + off.x, line.from.y + off.y},
                         {line.to.x + off.x, line.to.y + off.y},
                         {line.to.x - off.x, line.to.y - off.y},
                         {line.from.x - off.x, line.from.y - off.y}});
    return turnedRight(std::move(outline));
}

Point radiiOf(const EllipseMark& ellipse) {
    if (ellipse.aspect <= 0)
        return {ellipse.radius, 0};
    return ellipse.aspect < 1 ? Point{ellipse.radius, ellipse.radius * ellipse.aspect}
                              : Point{ellipse.radius / ellipse.aspect, ellipse.radius};
}

} // namespace velmora::notation
