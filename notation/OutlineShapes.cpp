// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/OutlineShapes.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

namespace velmora::notation {

namespace {
using Kind = PathStep::Kind;

/// How far the handles of a quarter of a circle reach, of its radius.
constexpr double kQuarterHandle = 0.5522847498;
/// How far a curve's middle follows its two handles.
constexpr double kHandleShare = 0.75;
/// Half the thickness of a lens at its ends, at most.
constexpr double kLensEnd = 0.3;

Point last(const PathStep& step) {
    return step.points[static_cast<std::size_t>(std::max(0, pointsOf(step.kind) - 1))];
}

/// Twice the area, positive where the outline runs clockwise on the page. Handles stand for their curves.
double turnOf(const Outline& outline) {
    double sum = 0;
    Point first, pen;
    const auto go = [&](Point to) {
        sum += pen.x * to.y - to.x * pen.y;
        pen = to;
    };
    for (const PathStep& step : outline) {
        if (step.kind == Kind::Move)
            first = pen = step.points[0];
        else if (step.kind == Kind::Close)
            go(first);
        else
            for (int i = 0; i < pointsOf(step.kind); ++i)
                go(step.points[static_cast<std::size_t>(i)]);
    }
    return sum;
}

/// One contour of @p steps, backwards.
void addBackwards(Outline& to, std::span<const PathStep> steps) {
    const auto drawn = steps.first(steps.back().kind == Kind::Close ? steps.size() - 1 : steps.size());
    to.push_back({Kind::Move, {last(drawn.back())}});
    for (std::size_t i = drawn.size() - 1; i > 0; --i) {
        const PathStep& step = drawn[i];
        const Point before = last(drawn[i - 1]);
        if (step.kind == Kind::Curve)
            to.push_back({Kind::Curve, {step.points[1], step.points[0], before}});
        else
            to.push_back({Kind::Line, {before}});
    }
    to.push_back({Kind::Close, {}});
}

double along(double a, double b, double c, double d, double t) {
    const double s = 1 - t;
    return s * s * s * a + 3 * s * s * t * b + 3 * s * t * t * c + t * t * t * d;
}
/// Widens @p low and @p high by what one coordinate of a curve reaches.
void reach(double a, double b, double c, double d, double& low, double& high) {
    const double square = -a + 3 * b - 3 * c + d, linear = 2 * (a - 2 * b + c), constant = b - a;
    std::array<double, 2> turns{-1, -1};
    if (std::abs(square) < 1e-12) {
        if (linear != 0)
            turns[0] = -constant / linear;
    } else if (const double under = linear * linear - 4 * square * constant; under >= 0) {
        turns = {(-linear + std::sqrt(under)) / (2 * square), (-linear - std::sqrt(under)) / (2 * square)};
    }
    for (const double t : turns)
        if (t > 0 && t < 1) {
            low = std::min(low, along(a, b, c, d, t));
            high = std::max(high, along(a, b, c, d, t));
        }
}
} // namespace

void addPolygon(Outline& to, std::initializer_list<Point> corners) {
    Kind kind = Kind::Move;
    for (const Point& corner : corners) {
        to.push_back({kind, {corner}});
        kind = Kind::Line;
    }
    to.push_back({Kind::Close, {}});
}

void addBox(Outline& to, double left, double top, double right, double bottom) {
    addPolygon(to, {{left, top}, {right, top}, {right, bottom}, {left, bottom}});
}

void addEllipse(Outline& to, Point centre, double radiusX, double radiusY) {
    const auto at = [&](double x, double y) { return Point{centre.x + x * radiusX, centre.y + y * radiusY}; };
    constexpr double k = kQuarterHandle;
    to.push_back({Kind::Move, {at(1, 0)}});
    to.push_back({Kind::Curve, {at(1, k), at(k, 1), at(0, 1)}});
    to.push_back({Kind::Curve, {at(-k, 1), at(-1, k), at(-1, 0)}});
    to.push_back({Kind::Curve, {at(-1, -k), at(-k, -1), at(0, -1)}});
    to.push_back({Kind::Curve, {at(k, -1), at(1, -k), at(1, 0)}});
    to.push_back({Kind::Close, {}});
}

void addRing(Outline& to, Point centre, double radiusX, double radiusY, double width) {
    addEllipse(to, centre, radiusX + width / 2, radiusY + width / 2);
    if (radiusX <= width / 2 || radiusY <= width / 2)
        return;
    Outline hole;
    addEllipse(hole, centre, radiusX - width / 2, radiusY - width / 2);
    add(to, reversed(hole));
}

void addLens(Outline& to, const CurveMark& curve) {
    const auto& [from, first, second, until] = curve.points;
    const double dx = until.x - from.x, dy = until.y - from.y;
    const double length = std::hypot(dx, dy);
    if (length == 0)
        return;
    const double ends = std::min(curve.width / 2, kLensEnd);
    const double middle = (curve.width / 2 - (1 - kHandleShare) * ends) / kHandleShare;
    const auto off = [&](Point of, double by) {
        return Point{of.x + dy / length * by, of.y - dx / length * by};
    };
    Outline lens{{Kind::Move, {off(from, ends)}},
                 {Kind::Curve, {off(first, middle), off(second, middle), off(until, ends)}},
                 {Kind::Line, {off(until, -ends)}},
                 {Kind::Curve, {off(second, -middle), off(first, -middle), off(from, -ends)}},
                 {Kind::Close, {}}};
    add(to, turnedRight(lens));
}

void add(Outline& to, const Outline& outline, const Placing& placing) {
    Outline placed = outline;
    for (PathStep& step : placed)
        for (Point& point : step.points)
            point = {point.x * placing.scaleX + placing.move.x, point.y * placing.scaleY + placing.move.y};
    if (placing.scaleX * placing.scaleY < 0)
        placed = reversed(placed);
    to.insert(to.end(), placed.begin(), placed.end());
}

Outline turnedRight(const Outline& outline) {
    return turnOf(outline) < 0 ? reversed(outline) : outline;
}

Outline reversed(const Outline& outline) {
    Outline back;
    back.reserve(outline.size());
    std::size_t start = 0;
    for (std::size_t i = 1; i <= outline.size(); ++i)
        if (i == outline.size() || outline[i].kind == Kind::Move) {
            addBackwards(back, std::span(outline).subspan(start, i - start));
            start = i;
        }
    return back;
}

Outline rotated(const Outline& outline, double degrees) {
    const double angle = degrees * std::numbers::pi / 180;
    const double cosine = std::cos(angle), sine = std::sin(angle);
    Outline turned = outline;
    for (PathStep& step : turned)
        for (Point& point : step.points)
            point = {point.x * cosine - point.y * sine, point.x * sine + point.y * cosine};
    return turned;
}

bool same(const Outline& one, const Outline& other) {
    return std::equal(
        one.begin(), one.end(), other.begin(), other.end(),
        [](const PathStep& a, const PathStep& b) { return a.kind == b.kind && a.points == b.points; });
}

Bounds boundsOf(const Outline& outline) {
    if (outline.empty())
        return {};
    const Point start = outline.front().points[0];
    Bounds box{start.x, start.y, start.x, start.y};
    Point pen = start;
    for (const PathStep& step : outline) {
        if (step.kind == Kind::Close)
            continue;
        const Point end = last(step);
        box.left = std::min(box.left, end.x);
        box.right = std::max(box.right, end.x);
        box.top = std::min(box.top, end.y);
        box.bottom = std::max(box.bottom, end.y);
        if (step.kind == Kind::Curve) {
            const auto& [one, two, three] = step.points;
            reach(pen.x, one.x, two.x, three.x, box.left, box.right);
            reach(pen.y, one.y, two.y, three.y, box.top, box.bottom);
        }
        pen = end;
    }
    return box;
}

} // namespace velmora::notation
