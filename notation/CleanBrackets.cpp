// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanNotes.h"

#include <algorithm>
#include <cmath>

namespace velmora::notation {

namespace {

constexpr double kThinLine = 0.12;
constexpr double kHook = 0.6;
constexpr double kFigureHalf = 0.55; ///< half a figure's height
constexpr double kDash = 0.7;
constexpr double kDashes = 1.4; ///< from one dash to the next

/// Whether the triplet is exactly one group under a beam, which shows its extent without a bracket.
bool isBeamed(const CleanBar& bar, const std::vector<int>& triplet) {
    const int beam = bar.signs[static_cast<std::size_t>(triplet[0])].beam;
    return beam >= 0 && bar.beams[static_cast<std::size_t>(beam)] == triplet;
}

class TripletPen {
public:
    TripletPen(CleanInk& ink, const CleanLine& line, std::size_t bar, const std::vector<int>& triplet,
               const CleanMusic& music)
        : ink_(ink)
        , bar_(line.bar(bar))
        , triplet_(triplet)
        , space_(ink.style().space) {
        const CleanSign& first = sign(0);
        const CleanSign& last = sign(triplet.size() - 1);
        left_ = line.xOf(bar, first.column);
        right_ = line.xOf(bar, last.column) + music.headWidth(MusicGlyph::HeadBlack) * space_;
        up_ = true;
        for (std::size_t i = 0; i < triplet.size(); ++i)
            if (!sign(i).isRest())
                up_ = sign(i).stemUp;
        id_ = first.id;
    }

    void draw() {
        const double side = up_ ? -1 : 1;
        const double edge = up_ ? std::min(0.0, ink_.sky.highest(left_, right_))
                                : std::max(4 * space_, ink_.sky.lowest(left_, right_));
        const bool beamed = isBeamed(bar_, triplet_);
        double y = edge + side * (kFigureHalf + (beamed ? 0.3 : 0.55)) * space_;
        if (beamed && !sign(0).isRest())
            y = beamedHeight(side);
        const double middle = (left_ + right_) / 2;
        const TextExtent extent = ink_.style().extent("3", ink_.style().tuplet);
        const double wide = std::max(extent.width, 0.8 * space_);
        ink_.text("3", ink_.style().tuplet, {middle - extent.width / 2, y + kFigureHalf * space_},
                  Role::Tuplet, id_);
        if (beamed)
            return;
        const double thin = kThinLine * space_;
        const double gap = wide / 2 + 0.4 * space_;
        for (const double x : {left_, right_})
            ink_.line({x, y}, {x, y - side * kHook * space_}, thin, Role::Tuplet, id_);
        if (middle - gap > left_) {
            ink_.line({left_, y}, {middle - gap, y}, thin, Role::Tuplet, id_);
            ink_.line({middle + gap, y}, {right_, y}, thin, Role::Tuplet, id_);
        }
    }

private:
    [[nodiscard]] const CleanSign& sign(std::size_t i) const {
        return bar_.signs[static_cast<std::size_t>(triplet_[i])];
    }
    /// Beside the beam where nothing else is there.
    [[nodiscard]] double beamedHeight(double side) const {
        const double middle = (left_ + right_) / 2;
        const double near = 0.7 * space_;
        const double edge = up_ ? ink_.sky.highest(middle - near, middle + near)
                                : ink_.sky.lowest(middle - near, middle + near);
        return edge + side * (kFigureHalf + 0.3) * space_;
    }

    CleanInk& ink_;
    const CleanBar& bar_;
    const std::vector<int>& triplet_;
    double space_;
    double left_, right_;
    bool up_;
    int id_;
};

const char* octaveText(int octaves) {
    return octaves == 1 ? "8va" : octaves == -1 ? "8vb" : octaves > 0 ? "15ma" : "15mb";
}

/// The columns of a line that a range covers.
struct Covered {
    double left = 1e9, right = -1e9;
    bool any = false;
};

Covered coveredBy(const OctaveRange& range, const CleanLine& line, int staff, int measure,
                  const CleanMusic& music, double space) {
    Covered covered;
    for (std::size_t i = 0; i < line.count(); ++i) {
        const CleanBar& bar = line.bar(i);
        const int start = (bar.number - 1) * measure;
        if (start >= range.to || start + measure <= range.from)
            continue;
        for (const CleanSign& sign : bar.signs) {
            if (sign.from->staff != staff || sign.octaves == 0)
                continue;
            const int position = start + sign.from->step;
            if (position < range.from || position >= range.to)
                continue;
            const double x = line.xOf(i, sign.column);
            covered.left = std::min(covered.left, x);
            covered.right = std::max(covered.right, x + music.headWidth(MusicGlyph::HeadBlack) * space);
            covered.any = true;
        }
    }
    return covered;
}

void drawOctave(CleanInk& ink, const OctaveRange& range, const Covered& covered, bool begins, bool ends) {
    const double space = ink.style().space;
    const bool above = range.octaves > 0;
    const std::string word = octaveText(range.octaves);
    const std::string text = begins ? word : "(" + word + ")";
    const double width = ink.style().extent(text, ink.style().octave).width;
    const double left = covered.left - 0.3 * space;
    const double right = std::max(covered.right, left + width);
    const double edge = above
                            ? std::min(-0.5 * space, ink.sky.highest(left, right) - 0.7 * space)
                            : std::max(4.5 * space, ink.sky.lowest(left, right) + 0.7 * space + 1.4 * space);
    ink.text(text, ink.style().octave, {left, edge}, Role::Text);
    const double y = edge - 0.5 * space;
    const double thin = kThinLine * space;
    const double first = left + width + 0.5 * space;
    const int dashes = static_cast<int>(std::ceil((right - first) / (kDashes * space)));
    for (int i = 0; i < dashes; ++i) {
        const double x = first + i * kDashes * space;
        ink.line({x, y}, {std::min(x + kDash * space, right), y}, thin, Role::Text);
    }
    if (ends && right > first)
        ink.line({right, y}, {right, y + (above ? 0.9 : -0.9) * space}, thin, Role::Text);
}

} // namespace

void drawTriplets(CleanInk& ink, const CleanLine& line, int staff, const CleanMusic& music) {
    for (std::size_t i = 0; i < line.count(); ++i)
        for (const std::vector<int>& triplet : line.bar(i).tuplets)
            if (line.bar(i).signs[static_cast<std::size_t>(triplet[0])].from->staff == staff)
                TripletPen(ink, line, i, triplet, music).draw();
}

void drawOctaves(CleanInk& ink, const CleanLine& line, int staff, const CleanMusic& music) {
    const int measure = music.score().NotesPerMeasure;
    const int from = (line.bar(0).number - 1) * measure;
    const int to = (line.bar(line.count() - 1).number) * measure;
    const auto& ranges = music.octaves(staff);
    auto range = std::ranges::upper_bound(ranges, from, {}, &OctaveRange::from);
    if (range != ranges.begin())
        --range;
    for (; range != ranges.end() && range->from < to; ++range) {
        const Covered covered = coveredBy(*range, line, staff, measure, music, ink.style().space);
        if (covered.any)
            drawOctave(ink, *range, covered, range->from >= from, range->to <= to);
    }
}

} // namespace velmora::notation
