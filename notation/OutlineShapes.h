// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/PagePainter.h"

namespace velmora::notation {

// What outlines are made of. Areas run clockwise on the page and their holes the other way, so that outlines
// which overlap may be filled in one go.

/// Where a point of an outline comes to stand.
struct Placing {
    double scaleX = 1, scaleY = 1; ///< below 0: mirrored
    Point move = {};               ///< after scaling
};

void addBox(Outline& to, double left, double top, double right, double bottom);
void addPolygon(Outline& to, std::initializer_list<Point> corners);
void addEllipse(Outline& to, Point centre, double radiusX, double radiusY);
/// The line of an ellipse.
void addRing(Outline& to, Point centre, double radiusX, double radiusY, double width);
/// A curve's ink: thickest in the middle.
void addLens(Outline& to, const CurveMark& curve);
void add(Outline& to, const Outline& outline, const Placing& placing = {});

/// Turned so that areas run clockwise on the page.
[[nodiscard]] Outline turnedRight(const Outline& outline);
/// As it would be drawn from its end to its beginning.
[[nodiscard]] Outline reversed(const Outline& outline);
/// Turned by an angle in degrees, clockwise on the page, about the origin.
[[nodiscard]] Outline rotated(const Outline& outline, double degrees);

/// Whether both are drawn step by step alike.
[[nodiscard]] bool same(const Outline& one, const Outline& other);

/// The least box around an outline, curves as they run.
struct Bounds {
    double left = 0, top = 0, right = 0, bottom = 0;
};
[[nodiscard]] Bounds boundsOf(const Outline& outline);

/// How many points a step of that kind has.
[[nodiscard]] constexpr int pointsOf(PathStep::Kind kind) {
    switch (kind) {
    case PathStep::Kind::Move:
    case PathStep::Kind::Line:
        return 1;
    case PathStep::Kind::Curve:
        return 3;
    case PathStep::Kind::Close:
        break;
    }
    return 0;
}

} // namespace velmora::notation
