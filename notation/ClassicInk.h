// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"

#include <string>
#include <utility>

namespace velmora::notation {

/// Puts the marks of a classic page down, one after the other.
class ClassicInk {
public:
    explicit ClassicInk(EngravedPage& page) : page_(page) {}

    int note = -1; ///< what the following marks belong to

    void line(Point from, Point to, double DrawWidth, Role role) { add(LineMark{from, to, DrawWidth}, role); }
    void image(GlyphImage image, Point at, Role role) { add(ImageMark{image, at}, role); }
    void ellipse(Point centre, double radius, double aspect, bool filled, Role role) {
        add(EllipseMark{centre, radius, aspect, filled}, role);
    }
    void text(Point at, int style, std::string text, Role role) {
        add(TextMark{at, style, std::move(text)}, role);
    }

private:
    template<class Shape>
    void add(Shape shape, Role role) {
        Mark& mark = page_.marks.emplace_back();
        mark.shape.template emplace<Shape>(std::move(shape));
        mark.role = role;
        mark.note = note;
    }

    EngravedPage& page_;
};

} // namespace velmora::notation
