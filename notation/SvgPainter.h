// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/PagePainter.h"
#include "notation/TextMeasure.h"

#include <string>
#include <vector>

namespace velmora::notation {

/// Writes what is painted as an SVG document: lines, paths, and text that stays text.
class SvgPainter : public PagePainter {
public:
    /// @param measure tells where a line's baseline is
    SvgPainter(double width, double height, std::string_view title, TextMeasure& measure);

    void line(const LineMark& line, Colour colour) override;
    void fill(const Outline& outline, Point at, double scale, Colour colour) override;
    void ellipse(const EllipseMark& ellipse, Colour colour) override;
    void curve(const CurveMark& curve, Colour colour) override;
    void text(Point at, std::string_view text, const TextStyle& style, Colour colour) override;

    /// The whole document.
    [[nodiscard]] std::string document() const;

private:
    /// The number of an outline among the definitions, where it is put if it isn't there.
    std::size_t numberOf(const Outline& outline);
    void path(const Outline& outline, Colour colour);

    struct Known {
        const Outline* from;
        Outline outline;
    };
    std::string head_;
    std::vector<Known> known_;
    std::string definitions_;
    std::string body_;
    TextMeasure& measure_;
};

} // namespace velmora::notation
