// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/MarkBox.h"

#include "notation/CleanMusic.h"

#include <algorithm>
#include <cmath>

namespace velmora::notation {

namespace {

constexpr double kPicture = 32; ///< of the glyph table

/// What the painter's pen adds at ends of lines and round ellipses.
constexpr double kPen = 0.5;

/// The part of a letter's height that goes below the line of writing.
constexpr double kBelowWriting = 0.22;
constexpr double kAboveWriting = 0.7;
constexpr double kPixelsAPoint = 4.0 / 3;

Box boxOf(const LineMark& line) {
    const double half = line.width / 2;
    const bool upright = line.from.x == line.to.x;
    const double reach = std::min(half, kPen);
    const double x = upright ? half : reach;
    const double y = upright ? reach : half;
    return {std::min(line.from.x, line.to.x) - x, std::min(line.from.y, line.to.y) - y,
            std::max(line.from.x, line.to.x) + x, std::max(line.from.y, line.to.y) + y};
}
Box boxOf(const EllipseMark& ellipse) {
    const Point radii = radiiOf(ellipse);
    const double x = radii.x + kPen, y = radii.y + kPen;
    return {ellipse.centre.x - x, ellipse.centre.y - y, ellipse.centre.x + x, ellipse.centre.y + y};
}
Box boxOf(const GlyphMark& glyph) {
    const Box& room = roomOf(glyph.glyph);
    return {glyph.at.x + room.left * glyph.size, glyph.at.y + room.top * glyph.size,
            glyph.at.x + room.right * glyph.size, glyph.at.y + room.bottom * glyph.size};
}
Box boxOf(const CurveMark& curve) {
    Box box{curve.points[0].x, curve.points[0].y, curve.points[0].x, curve.points[0].y};
    constexpr int kSteps = 8;
    for (int i = 1; i <= kSteps; ++i) {
        const Point at = pointOf(curve, static_cast<double>(i) / kSteps);
        box.left = std::min(box.left, at.x);
        box.right = std::max(box.right, at.x);
        box.top = std::min(box.top, at.y);
        box.bottom = std::max(box.bottom, at.y);
    }
    const double half = curve.width / 2;
    return {box.left, box.top - half, box.right, box.bottom + half};
}

void move(Point& point, double right, double down) {
    point.x += right;
    point.y += down;
}

} // namespace

Point pointOf(const CurveMark& curve, double t) {
    const double s = 1 - t;
    const auto at = [&](double Point::*axis) {
        return s * s * s * curve.points[0].*axis + 3 * s * s * t * curve.points[1].*axis +
               3 * s * t * t * curve.points[2].*axis + t * t * t * curve.points[3].*axis;
    };
    return {at(&Point::x), at(&Point::y)};
}

Box boxOf(const Mark& mark, const std::vector<TextStyle>& styles, TextMeasure& measure) {
    if (const auto* text = std::get_if<TextMark>(&mark.shape)) {
        const TextStyle& style = styles[static_cast<std::size_t>(text->style)];
        const TextExtent extent = measure.extent(text->text, style);
        const double writing = text->at.y + extent.baseline;
        const double size = style.points * kPixelsAPoint;
        return {text->at.x, writing - size * kAboveWriting, text->at.x + extent.width,
                writing + size * kBelowWriting};
    }
    if (const auto* image = std::get_if<ImageMark>(&mark.shape))
        return {image->at.x, image->at.y, image->at.x + kPicture, image->at.y + kPicture};
    if (const auto* line = std::get_if<LineMark>(&mark.shape))
        return boxOf(*line);
    if (const auto* ellipse = std::get_if<EllipseMark>(&mark.shape))
        return boxOf(*ellipse);
    if (const auto* curve = std::get_if<CurveMark>(&mark.shape))
        return boxOf(*curve);
    return boxOf(std::get<GlyphMark>(mark.shape));
}

void moveMark(Mark& mark, double right, double down) {
    if (auto* text = std::get_if<TextMark>(&mark.shape))
        move(text->at, right, down);
    else if (auto* image = std::get_if<ImageMark>(&mark.shape))
        move(image->at, right, down);
    else if (auto* line = std::get_if<LineMark>(&mark.shape)) {
        move(line->from, right, down);
        move(line->to, right, down);
    } else if (auto* ellipse = std::get_if<EllipseMark>(&mark.shape))
        move(ellipse->centre, right, down);
    else if (auto* glyph = std::get_if<GlyphMark>(&mark.shape))
        move(glyph->at, right, down);
    else
        for (Point& point : std::get<CurveMark>(mark.shape).points)
            move(point, right, down);
}

} // namespace velmora::notation
