// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanNotes.h"

#include <algorithm>
#include <cmath>

namespace velmora::notation {

namespace {

constexpr double kMostRise = 1;     ///< of a beam from end to end
constexpr double kMostSlope = 0.22; ///< rise to width
constexpr double kLeastStem = 2.75; ///< under one beam
constexpr double kStub = 1.1;

/// A group under one beam; heights in spaces, x in pixels.
class BeamPen {
public:
    BeamPen(CleanInk& ink, const CleanLine& line, std::size_t bar, const std::vector<int>& group,
            const CleanMusic& music)
        : ink_(ink)
        , space_(ink.style().space) {
        CleanBar& own = line.bar(bar);
        for (const int i : group) {
            CleanSign& sign = own.signs[static_cast<std::size_t>(i)];
            signs_.push_back(&sign);
            stems_.push_back(line.xOf(bar, sign.column) + stemOf(sign, music) * space_);
        }
        up_ = signs_[0]->stemUp;
        lean();
        lift();
        for (std::size_t i = 0; i < signs_.size(); ++i)
            signs_[i]->stemEnd = heightAt(stems_[i]);
    }

    void draw() {
        beam(0, signs_.size() - 1, 0);
        int most = 0;
        for (const CleanSign* sign : signs_)
            most = std::max(most, sign->flags());
        for (int level = 1; level < most; ++level)
            for (std::size_t i = 0; i < signs_.size();) {
                std::size_t last = i;
                while (last < signs_.size() && signs_[last]->flags() > level)
                    ++last;
                if (last > i + 1)
                    beam(i, last - 1, level);
                else if (last == i + 1)
                    stub(i, level);
                i = std::max(last, i + 1);
            }
    }

private:
    [[nodiscard]] double headOf(std::size_t i) const { return heightOfPlace(signs_[i]->outer().place); }
    [[nodiscard]] double heightAt(double x) const { return start_ + slope_ * (x - stems_[0]) / space_; }

    /// The beam leans half as much as the music, and lies level where an inner note reaches as far as its
    /// ends.
    void lean() {
        const std::size_t last = signs_.size() - 1;
        const double width = (stems_[last] - stems_[0]) / space_;
        const double side = up_ ? 1 : -1;
        const double outermost = std::min(headOf(0) * side, headOf(last) * side);
        for (std::size_t i = 1; i < last; ++i)
            if (headOf(i) * side <= outermost)
                return;
        if (width <= 0)
            return;
        const double most = std::min(kMostRise, width * kMostSlope);
        slope_ = std::clamp((headOf(last) - headOf(0)) / 2, -most, most) / width;
    }

    /// Every stem is long enough for its beams, and those from far away reach the middle line.
    void lift() {
        const double side = up_ ? 1 : -1;
        double best = 1e6;
        double sum = 0;
        for (std::size_t i = 0; i < signs_.size(); ++i) {
            const double lean = slope_ * (stems_[i] - stems_[0]) / space_;
            const double least = kLeastStem + std::max(0, signs_[i]->flags() - 1) * kBeamStep * 0.8;
            best = std::min({best, (headOf(i) - lean) * side - least, (heightOfPlace(0) - lean) * side});
            if (i == 0 || i + 1 == signs_.size())
                sum += (headOf(i) - lean) * side - kStemLength;
        }
        start_ = std::min(best, sum / 2) * side;
    }

    void beam(double left, double right, int level) {
        const double down = (up_ ? 1 : -1) * (kBeamWidth / 2 + level * kBeamStep);
        ink_.line({left, (heightAt(left) + down) * space_}, {right, (heightAt(right) + down) * space_},
                  kBeamWidth * space_, Role::Beam, signs_[0]->id);
    }
    void beam(std::size_t from, std::size_t to, int level) {
        const double half = kStemWidth / 2 * space_;
        beam(stems_[from] - half, stems_[to] + half, level);
    }

    /// A short beam points to the note with which its own makes up a longer value.
    void stub(std::size_t i, int level) {
        const CleanSign& sign = *signs_[i];
        const bool right = i == 0 || (i + 1 < signs_.size() && sign.at / std::max(1, sign.length) % 2 == 0);
        const std::size_t other = right ? i + 1 : i - 1;
        const double length = std::min(kStub * space_, std::abs(stems_[other] - stems_[i]) / 2);
        const double half = kStemWidth / 2 * space_;
        if (right)
            beam(stems_[i] - half, stems_[i] + length, level);
        else
            beam(stems_[i] - length, stems_[i] + half, level);
    }

    CleanInk& ink_;
    double space_;
    std::vector<CleanSign*> signs_;
    std::vector<double> stems_;
    bool up_ = true;
    double start_ = 0;
    double slope_ = 0;
};

} // namespace

void drawBeams(CleanInk& ink, const CleanLine& line, int staff, const CleanMusic& music) {
    for (std::size_t i = 0; i < line.count(); ++i)
        for (const std::vector<int>& group : line.bar(i).beams)
            if (line.bar(i).signs[static_cast<std::size_t>(group[0])].from->staff == staff)
                BeamPen(ink, line, i, group, music).draw();
}

} // namespace velmora::notation
