// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanInk.h"

#include <algorithm>
#include <cmath>

namespace velmora::notation {

namespace {
constexpr double kBin = 4; ///< pixels
constexpr float kEmpty = 1e6F;
constexpr double kLargerTitle = 1.5;
/// What the painter's pen adds at ends of lines and round ellipses.
constexpr double kPen = 0.5;
} // namespace

Skyline::Skyline(double width)
    : top_(static_cast<std::size_t>(std::max(1.0, width / kBin)) + 1, kEmpty)
    , bottom_(top_.size(), -kEmpty) {}

std::size_t Skyline::bin(double x) const {
    return std::min(top_.size() - 1, static_cast<std::size_t>(std::max(0.0, x / kBin)));
}

void Skyline::add(const Box& box) {
    for (std::size_t i = bin(box.left); i <= bin(box.right); ++i) {
        top_[i] = std::min(top_[i], static_cast<float>(box.top));
        bottom_[i] = std::max(bottom_[i], static_cast<float>(box.bottom));
    }
}

double Skyline::highest(double left, double right) const {
    float highest = kEmpty;
    for (std::size_t i = bin(left); i <= bin(right); ++i)
        highest = std::min(highest, top_[i]);
    return highest;
}

double Skyline::lowest(double left, double right) const {
    float lowest = -kEmpty;
    for (std::size_t i = bin(left); i <= bin(right); ++i)
        lowest = std::max(lowest, bottom_[i]);
    return lowest;
}

double Skyline::distanceTo(const Skyline& below) const {
    float distance = 0;
    const std::size_t count = std::min(top_.size(), below.top_.size());
    for (std::size_t i = 0; i < count; ++i)
        distance = std::max(distance, bottom_[i] - below.top_[i]);
    return distance;
}

CleanStyle::CleanStyle(const ScoreSetup& from, TextMeasure& texts, EngravedScore& score, double staffSpace)
    : setup(from)
    , measure(texts)
    , into(score)
    , space(staffSpace) {
    const std::string serif = "Times New Roman";
    const double scale = std::min(1.0, staffSpace / 8);
    TextStyle top = setup.titleStyle;
    top.points *= kLargerTitle * scale;
    title = into.styleOf(top);
    composer = into.styleOf({serif, 11 * scale, false, true});
    words = into.styleOf({serif, 1.5 * space, false, false});
    tempo = into.styleOf({serif, 1.45 * space, true, false});
    metronome = into.styleOf({serif, 1.4 * space, false, false});
    number = into.styleOf({serif, 1.05 * space, false, false});
    tuplet = into.styleOf({serif, 1.15 * space, false, true});
    octave = into.styleOf({serif, 1.25 * space, true, true});
    digits = into.styleOf({serif, 2.15 * space, true, false});
    letters = into.styleOf({"Liberation Sans", 0.76 * space, true, false});
    drum = into.styleOf({serif, 1.05 * space, false, true});
    page = into.styleOf({serif, 10 * scale, false, false});
}

TextExtent CleanStyle::extent(const std::string& text, int style) const {
    const auto [entry, isNew] = known_.try_emplace({style, text});
    if (isNew)
        entry->second = measure.extent(text, into.styles[static_cast<std::size_t>(style)]);
    return entry->second;
}

void CleanInk::add(Mark mark) {
    sky.add(boxOf(mark, style_.into.styles, style_.measure));
    marks.push_back(std::move(mark));
}

void CleanInk::line(Point from, Point to, double width, Role role, int note) {
    // Stems and beams meet at their edges; staves, bars and brackets at their pixels.
    if (role == Role::Stem || role == Role::Beam || role == Role::Ledger) {
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        const double share = length > 0 ? std::min(kPen / length, 0.5) : 0;
        const Point off{(to.x - from.x) * share, (to.y - from.y) * share};
        from = {from.x + off.x, from.y + off.y};
        to = {to.x - off.x, to.y - off.y};
    }
    add({LineMark{from, to, width}, role, note, kBlack});
}

void CleanInk::oval(Point middle, double halfWidth, double halfHeight, Role role, int note, Colour colour) {
    const double x = std::max(halfWidth - kPen, kPen), y = std::max(halfHeight - kPen, kPen);
    add({EllipseMark{middle, std::max(x, y), y / x, true}, role, note, colour});
}

void CleanInk::glyph(MusicGlyph glyph, Point at, Role role, int note, double scale) {
    add({GlyphMark{glyph, at, style_.space * scale}, role, note, kBlack});
}

void CleanInk::text(const std::string& text, int style, Point at, Role role, int note, Colour colour) {
    at.y -= style_.extent(text, style).baseline;
    add({TextMark{at, style, text}, role, note, colour});
}

} // namespace velmora::notation
