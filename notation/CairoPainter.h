// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/CairoLibrary.h"
#include "notation/PagePainter.h"
#include "notation/PageText.h"

#include <memory>
#include <optional>
#include <vector>

namespace velmora::notation {

/// Paints on a surface of cairo.
///
/// Marks of one colour are gathered and painted in few calls, which is several times as fast.
class CairoPainter : public PagePainter {
public:
    enum class Surface : std::uint8_t {
        Pixels, ///< level and upright lines fall on whole pixels: they are sharp at any scale
        Vectors ///< lines stay lines, and an outline stands in the file once
    };
    /// @param on its origin on whole pixels
    /// @param scale device units a pixel of the page
    CairoPainter(cairo_t* on, Surface surface, double scale);
    CairoPainter(const CairoPainter&) = delete;
    CairoPainter& operator=(const CairoPainter&) = delete;
    ~CairoPainter() override;

    void line(const LineMark& line, Colour colour) override;
    void fill(const Outline& outline, Point at, double scale, Colour colour) override;
    void ellipse(const EllipseMark& ellipse, Colour colour) override;
    void curve(const CurveMark& curve, Colour colour) override;
    void text(Point at, std::string_view text, const TextStyle& style, Colour colour) override;

    /// Paints what is still gathered.
    void flush();

private:
    /// An outline in one size and colour, drawn once and put wherever it is met again.
    struct Stamp {
        const Outline* from;
        Outline outline;
        double scale;
        Colour colour;
        cairo_surface_t* surface;
    };
    [[nodiscard]] cairo_surface_t* stampOf(const Outline& outline, double scale);

    void use(Colour colour);
    void addPath(cairo_t* to, const Outline& outline, Point at, double scale);
    void addFilled(const Outline& outline);
    void addPixels(const LineMark& line);
    void strokeLines();

    cairo_t* on_;
    Surface surface_;
    double scale_;
    Colour colour_ = kBlack;
    bool filling_ = false;        ///< cairo's path has outlines
    std::vector<LineMark> lines_; ///< in device units if they are pixels: the box's corners
    std::vector<Stamp> stamps_;
    std::optional<PageText> text_;
};

} // namespace velmora::notation
