// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/SvgPainter.h"

#include "notation/OutlineShapes.h"
#include "notation/PrintableText.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace velmora::notation {

namespace {
constexpr double kPixelsPerPoint = 96.0 / 72;

/// With three decimals at most.
std::string number(double value) {
    std::array<char, 64> text{};
    const double rounded = std::round(value * 1000) / 1000 + 0.0; // no minus before a zero
    const auto end = std::to_chars(text.data(), text.data() + text.size(), rounded).ptr;
    return {text.data(), end};
}

std::string escaped(std::string_view text) {
    std::string safe;
    for (const char c : printable(text)) {
        switch (c) {
        case '&':
            safe += "&amp;";
            break;
        case '<':
            safe += "&lt;";
            break;
        case '>':
            safe += "&gt;";
            break;
        case '"':
            safe += "&quot;";
            break;
        default:
            safe += c;
        }
    }
    return safe;
}

/// An attribute, unless it is what the document says of everything.
std::string colourOf(std::string_view attribute, Colour colour) {
    if (colour == kBlack && attribute == "fill")
        return {};
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text = " " + std::string(attribute) + "=\"#";
    for (int shift = 20; shift >= 0; shift -= 4)
        text += digits[(colour >> shift) & 0xF];
    return text + '"';
}

std::string stepsOf(const Outline& outline) {
    std::string steps;
    for (const auto& [kind, points] : outline) {
        constexpr std::string_view letters = "MLCZ";
        steps += letters[static_cast<std::size_t>(kind)];
        for (int i = 0; i < pointsOf(kind); ++i) {
            const Point& point = points[static_cast<std::size_t>(i)];
            steps += (i > 0 ? " " : "") + number(point.x) + ' ' + number(point.y);
        }
    }
    return steps;
}
} // namespace

SvgPainter::SvgPainter(double width, double height, std::string_view title, TextMeasure& measure)
    : measure_(measure) {
    const std::string w = number(width), h = number(height);
    head_ =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"" +
        w + "\" height=\"" + h + "\" viewBox=\"0 0 " + w + ' ' + h + "\">\n<title>" + escaped(title) +
        "</title>\n<rect width=\"" + w + "\" height=\"" + h + "\" fill=\"#ffffff\"/>\n";
}

std::size_t SvgPainter::numberOf(const Outline& outline) {
    const auto found = std::find_if(known_.begin(), known_.end(), [&](const Known& known) {
        return known.from == &outline && same(known.outline, outline);
    });
    const auto index = static_cast<std::size_t>(found - known_.begin());
    if (found == known_.end()) {
        known_.push_back({&outline, outline});
        definitions_ += "<path id=\"s" + std::to_string(index) + "\" d=\"" + stepsOf(outline) + "\"/>\n";
    }
    return index;
}

void SvgPainter::path(const Outline& outline, Colour colour) {
    if (!outline.empty())
        body_ += "<path d=\"" + stepsOf(outline) + '"' + colourOf("fill", colour) + "/>\n";
}

void SvgPainter::line(const LineMark& line, Colour colour) {
    if (line.from.x != line.to.x && line.from.y != line.to.y) {
        path(slopedLine(line), colour);
        return;
    }
    body_ += "<line x1=\"" + number(line.from.x) + "\" y1=\"" + number(line.from.y) + "\" x2=\"" +
             number(line.to.x) + "\" y2=\"" + number(line.to.y) + "\" stroke-width=\"" + number(line.width) +
             '"' + colourOf("stroke", colour) + "/>\n";
}

void SvgPainter::fill(const Outline& outline, Point at, double scale, Colour colour) {
    if (outline.empty())
        return;
    body_ += "<use xlink:href=\"#s" + std::to_string(numberOf(outline)) + "\" transform=\"translate(" +
             number(at.x) + ' ' + number(at.y) + ')' +
             (scale != 1 ? " scale(" + number(scale) + ')' : std::string()) + '"' + colourOf("fill", colour) +
             "/>\n";
}

void SvgPainter::ellipse(const EllipseMark& ellipse, Colour colour) {
    const Point radii = radiiOf(ellipse);
    body_ += "<ellipse cx=\"" + number(ellipse.centre.x) + "\" cy=\"" + number(ellipse.centre.y) +
             "\" rx=\"" + number(radii.x) + "\" ry=\"" + number(radii.y) + '"' +
             (ellipse.filled ? colourOf("fill", colour) : " fill=\"none\"" + colourOf("stroke", colour)) +
             "/>\n";
}

void SvgPainter::curve(const CurveMark& curve, Colour colour) {
    Outline lens;
    addLens(lens, curve);
    path(lens, colour);
}

void SvgPainter::text(Point at, std::string_view text, const TextStyle& style, Colour colour) {
    if (text.empty())
        return;
    const double baseline = at.y + measure_.extent(text, style).baseline;
    body_ += "<text x=\"" + number(at.x) + "\" y=\"" + number(baseline) + "\" font-family=\"" +
             escaped(style.family) + "\" font-size=\"" + number(style.points * kPixelsPerPoint) + '"' +
             (style.bold ? " font-weight=\"bold\"" : "") + (style.italic ? " font-style=\"italic\"" : "") +
             colourOf("fill", colour) + " xml:space=\"preserve\">" + escaped(text) + "</text>\n";
}

std::string SvgPainter::document() const {
    const std::string definitions = definitions_.empty() ? "" : "<defs>\n" + definitions_ + "</defs>\n";
    return head_ + definitions + body_ + "</svg>\n";
}

} // namespace velmora::notation
