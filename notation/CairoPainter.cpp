// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CairoPainter.h"

#include "notation/OutlineShapes.h"

#include <algorithm>
#include <cmath>

namespace velmora::notation {

namespace {
void setColour(cairo_t* on, Colour colour) {
    const auto part = [&](int shift) { return ((colour >> shift) & 0xFF) / 255.0; };
    cairo().cairo_set_source_rgb(on, part(16), part(8), part(0));
}

/// The pixel edge next to @p at; of two that are as near the upper left one.
double pixelEdge(double at) {
    return std::ceil(at - 0.5);
}
} // namespace

CairoPainter::CairoPainter(cairo_t* on, Surface surface, double scale)
    : on_(on)
    , surface_(surface)
    , scale_(scale) {
    cairo().cairo_scale(on_, scale, scale);
    setColour(on_, colour_);
}

CairoPainter::~CairoPainter() {
    flush();
    for (const Stamp& stamp : stamps_)
        cairo().cairo_surface_destroy(stamp.surface);
}

void CairoPainter::use(Colour colour) {
    if (colour == colour_)
        return;
    flush();
    colour_ = colour;
    setColour(on_, colour);
}

void CairoPainter::flush() {
    if (filling_) {
        cairo().cairo_fill(on_);
        filling_ = false;
    }
    if (lines_.empty())
        return;
    if (surface_ == Surface::Pixels) {
        cairo().cairo_save(on_);
        cairo().cairo_scale(on_, 1 / scale_, 1 / scale_);
        for (const auto& [from, to, width] : lines_)
            cairo().cairo_rectangle(on_, from.x, from.y, to.x - from.x, to.y - from.y);
        cairo().cairo_fill(on_);
        cairo().cairo_restore(on_);
    } else {
        strokeLines();
    }
    lines_.clear();
}

void CairoPainter::strokeLines() {
    std::stable_sort(lines_.begin(), lines_.end(),
                     [](const LineMark& a, const LineMark& b) { return a.width < b.width; });
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        cairo().cairo_move_to(on_, lines_[i].from.x, lines_[i].from.y);
        cairo().cairo_line_to(on_, lines_[i].to.x, lines_[i].to.y);
        if (i + 1 == lines_.size() || lines_[i + 1].width != lines_[i].width) {
            cairo().cairo_set_line_width(on_, lines_[i].width);
            cairo().cairo_stroke(on_);
        }
    }
}

void CairoPainter::addPixels(const LineMark& line) {
    const double thick = std::max(1.0, std::round(line.width * scale_));
    const bool level = line.from.y == line.to.y;
    const auto along = [&](double a, double b) {
        const double first = pixelEdge(std::min(a, b) * scale_);
        return std::pair(first, std::max(first + 1, pixelEdge(std::max(a, b) * scale_)));
    };
    const auto across = [&](double middle) {
        const double first = pixelEdge((middle - line.width / 2) * scale_);
        return std::pair(first, first + thick);
    };
    const auto [left, right] = level ? along(line.from.x, line.to.x) : across(line.from.x);
    const auto [top, bottom] = level ? across(line.from.y) : along(line.from.y, line.to.y);
    lines_.push_back({{left, top}, {right, bottom}, 0});
}

void CairoPainter::line(const LineMark& line, Colour colour) {
    use(colour);
    if (line.from.x != line.to.x && line.from.y != line.to.y)
        addFilled(slopedLine(line));
    else if (surface_ == Surface::Pixels)
        addPixels(line);
    else
        lines_.push_back(line);
}

void CairoPainter::addPath(cairo_t* to, const Outline& outline, Point at, double scale) {
    const auto x = [&](const Point& point) { return at.x + point.x * scale; };
    const auto y = [&](const Point& point) { return at.y + point.y * scale; };
    for (const auto& [kind, points] : outline) {
        switch (kind) {
        case PathStep::Kind::Move:
            cairo().cairo_move_to(to, x(points[0]), y(points[0]));
            break;
        case PathStep::Kind::Line:
            cairo().cairo_line_to(to, x(points[0]), y(points[0]));
            break;
        case PathStep::Kind::Curve:
            cairo().cairo_curve_to(to, x(points[0]), y(points[0]), x(points[1]), y(points[1]), x(points[2]),
                                   y(points[2]));
            break;
        case PathStep::Kind::Close:
            cairo().cairo_close_path(to);
            break;
        }
    }
}

void CairoPainter::addFilled(const Outline& outline) {
    addPath(on_, outline, {}, 1);
    filling_ = filling_ || !outline.empty();
}

cairo_surface_t* CairoPainter::stampOf(const Outline& outline, double scale) {
    for (const Stamp& stamp : stamps_)
        if (stamp.from == &outline && stamp.scale == scale && stamp.colour == colour_ &&
            same(stamp.outline, outline))
            return stamp.surface;
    const auto [left, top, right, bottom] = boundsOf(outline);
    const cairo_rectangle_t room{std::floor(left * scale) - 1, std::floor(top * scale) - 1,
                                 std::ceil((right - left) * scale) + 3,
                                 std::ceil((bottom - top) * scale) + 3};
    cairo_surface_t* const surface = cairo().cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &room);
    cairo_t* const on = cairo().cairo_create(surface);
    setColour(on, colour_);
    addPath(on, outline, {}, scale);
    cairo().cairo_fill(on);
    cairo().cairo_destroy(on);
    stamps_.push_back({&outline, outline, scale, colour_, surface});
    return surface;
}

void CairoPainter::fill(const Outline& outline, Point at, double scale, Colour colour) {
    use(colour);
    if (outline.empty())
        return;
    if (surface_ == Surface::Pixels) {
        addPath(on_, outline, at, scale);
        filling_ = true;
        return;
    }
    cairo().cairo_set_source_surface(on_, stampOf(outline, scale), at.x, at.y);
    cairo().cairo_paint(on_);
    setColour(on_, colour_);
}

void CairoPainter::ellipse(const EllipseMark& ellipse, Colour colour) {
    use(colour);
    const Point radii = radiiOf(ellipse);
    Outline outline;
    if (ellipse.filled)
        addEllipse(outline, ellipse.centre, radii.x, radii.y);
    else
        addRing(outline, ellipse.centre, radii.x, radii.y, 1);
    addFilled(outline);
}

void CairoPainter::curve(const CurveMark& curve, Colour colour) {
    use(colour);
    Outline lens;
    addLens(lens, curve);
    addFilled(lens);
}

void CairoPainter::text(Point at, std::string_view text, const TextStyle& style, Colour colour) {
    use(colour);
    flush();
    if (!text_)
        text_.emplace();
    text_->show(on_, at, text, style);
}

} // namespace velmora::notation
