// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanChords.h"
#include "notation/CleanNotes.h"

#include <algorithm>
#include <cmath>

namespace velmora::notation {

namespace {

constexpr double kSlurWidth = 0.22;
constexpr double kFromHead = 0.85; ///< from a head's middle, upwards or downwards
constexpr double kFromStem = 0.35;
constexpr double kAir = 0.35; ///< to what stands below the arc
constexpr double kLineEnd = 0.3;
constexpr double kMostHeight = 5;
constexpr double kHigher = 0.15; ///< from one arc that is tried to the next

/// A place that the arc has to pass, in pixels.
struct Cleared {
    double x;
    double y;
};

/// The part of a slur that stands in one line.
class SlurPen {
public:
    SlurPen(CleanInk& ink, const CleanLine& line, const CleanMusic& music)
        : ink_(ink)
        , line_(line)
        , music_(music)
        , space_(ink.style().space) {}

    void draw(int from, int to) {
        signs_.clear();
        others_.clear();
        int least = to, most = from;
        for (std::size_t i = 0; i < line_.count(); ++i)
            for (const CleanSign& sign : line_.bar(i).signs)
                if (sign.sung >= from && sign.sung <= to) {
                    signs_.push_back({&sign, line_.xOf(i, sign.column)});
                    if (sign.struck) {
                        least = std::min(least, sign.sung);
                        most = std::max(most, sign.sung);
                    }
                }
        if (signs_.empty())
            return;
        const bool begins = least == from && signs_.front().sign->struck;
        const bool ends = line_.last || (signs_.back().sign->sung == to && isWhole(*signs_.back().sign));
        if (begins && ends && most == from)
            return;
        findOthers(begins, ends);
        up_ = goesUp();
        const Point left = begins ? endAt(signs_.front()) : Point{line_.notesFrom, levelOf(signs_.front())};
        const Point right =
            ends ? endAt(signs_.back()) : Point{line_.right - kLineEnd * space_, levelOf(signs_.back())};
        arc(left, right, begins, ends, signs_.front().sign->id);
    }

private:
    struct At {
        const CleanSign* sign;
        double x;
    };

    /// What the other voice has between the ends.
    void findOthers(bool begins, bool ends) {
        const double from = begins ? signs_.front().x : 0;
        const double to = ends ? signs_.back().x : line_.right;
        for (std::size_t i = 0; hasOtherVoice() && i < line_.count(); ++i)
            for (const CleanSign& sign : line_.bar(i).signs) {
                const double x = line_.xOf(i, sign.column);
                if (sign.from->staff == 0 && sign.from->voice > 0 && !sign.isRest() && x >= from && x <= to)
                    others_.push_back({&sign, x});
            }
    }

    /// Whether nothing of the note goes on in the next line.
    [[nodiscard]] static bool isWhole(const CleanSign& sign) {
        return std::ranges::none_of(sign.heads, &CleanHead::tieOut);
    }

    /// On the heads' side; above where stems point both ways or another voice is below.
    [[nodiscard]] bool goesUp() const {
        return std::ranges::any_of(signs_, [](const At& at) { return !at.sign->stemUp; }) || hasOtherVoice();
    }
    [[nodiscard]] bool hasOtherVoice() const { return music_.score().staves.front().secondChannel >= 0; }

    /// The outermost of a note on the slur's side, in spaces from the staff's top.
    [[nodiscard]] double edgeOf(const CleanSign& sign) const {
        const CleanHead& head = up_ ? sign.heads.back() : sign.heads.front();
        const double side = up_ ? -1 : 1;
        const double heads = heightOfPlace(head.place) + side * kFromHead;
        if (!sign.hasStem() || sign.stemUp != up_)
            return heads;
        const double stem = sign.stemEnd + side * kFromStem;
        return up_ ? std::min(heads, stem) : std::max(heads, stem);
    }
    [[nodiscard]] double levelOf(const At& at) const { return edgeOf(*at.sign) * space_; }

    [[nodiscard]] Point endAt(const At& at) const {
        const CleanSign& sign = *at.sign;
        const bool atStem = sign.hasStem() && sign.stemUp == up_;
        const double middle = music_.headWidth(sign.heads[0].shape) / 2;
        return {at.x + (atStem ? stemOf(sign, music_) : middle) * space_, levelOf(at)};
    }

    /// What the arc has to pass, but for the heads that it begins and ends at.
    [[nodiscard]] std::vector<Cleared> cleared(bool begins, bool ends) const {
        std::vector<Cleared> all;
        const double side = up_ ? -1 : 1;
        for (std::size_t i = 0; i < signs_.size(); ++i) {
            const At& at = signs_[i];
            const CleanSign& sign = *at.sign;
            const double width = music_.headWidth(sign.heads[0].shape);
            const bool isEnd = (i == 0 && begins) || (i + 1 == signs_.size() && ends);
            for (const double x : {0.0, width / 2, width})
                if (!isEnd)
                    all.push_back({at.x + x * space_, edgeOf(sign) * space_});
            for (const CleanHead& head : sign.heads)
                if (head.sign != Sign::None) {
                    const Box& room = roomOf(accidentalGlyph(head.sign));
                    const double y = heightOfPlace(head.place) + (up_ ? room.top : room.bottom) + side * kAir;
                    for (const double x : {room.left, room.right})
                        all.push_back({at.x + (head.signMiddle + x) * space_, y * space_});
                }
        }
        for (const At& at : others_)
            for (const CleanHead& head : at.sign->heads)
                for (const double x : {head.left, head.left + music_.headWidth(head.shape)})
                    all.push_back(
                        {at.x + x * space_, (heightOfPlace(head.place) + side * kFromHead) * space_});
        return all;
    }

    [[nodiscard]] CurveMark curveOf(Point left, Point right, double height) const {
        const double length = right.x - left.x;
        const double inset = std::min(length * 0.3, 2.5 * space_);
        const double rise = (up_ ? -1 : 1) * height * space_;
        const double tilt = (right.y - left.y) * inset / length;
        return {{left, Point{left.x + inset, left.y + tilt + rise},
                 Point{right.x - inset, right.y - tilt + rise}, right},
                kSlurWidth * space_};
    }

    [[nodiscard]] bool isClear(const CurveMark& curve, const std::vector<Cleared>& all) const {
        constexpr int kSteps = 32;
        const double side = up_ ? -1 : 1;
        Point before = curve.points[0];
        for (int i = 1; i <= kSteps; ++i) {
            const Point at = pointOf(curve, static_cast<double>(i) / kSteps);
            for (const Cleared& one : all)
                if (one.x >= before.x && one.x <= at.x &&
                    (std::min(before.y * side, at.y * side) < one.y * side))
                    return false;
            before = at;
        }
        return true;
    }

    /// The flattest arc that is clear; where its ends lie too near, they go away from their heads.
    void arc(Point left, Point right, bool begins, bool ends, int id) {
        const double side = up_ ? -1 : 1;
        right.x = std::max(right.x, left.x + space_);
        const double least = std::min(0.5 + (right.x - left.x) / space_ * 0.07, 1.6);
        const std::vector<Cleared> all = cleared(begins, ends);
        CurveMark best = curveOf(left, right, least);
        double cost = 1e9;
        for (const double first : {0.0, 0.5, 1.0})
            for (const double last : {0.0, 0.5, 1.0, 1.5}) {
                const Point from{left.x, left.y + side * first * space_};
                const Point to{right.x, right.y + side * last * space_};
                for (int step = 0; least + step * kHigher < kMostHeight; ++step) {
                    const double height = least + step * kHigher;
                    const double own = height + 0.7 * (first + last);
                    if (own >= cost)
                        break;
                    const CurveMark curve = curveOf(from, to, height);
                    if (!isClear(curve, all))
                        continue;
                    cost = own;
                    best = curve;
                    break;
                }
            }
        ink_.add({best, Role::Slur, id, kBlack});
    }

    CleanInk& ink_;
    const CleanLine& line_;
    const CleanMusic& music_;
    double space_;
    bool up_ = true;
    std::vector<At> signs_;
    std::vector<At> others_;
};

} // namespace

void drawSlurs(CleanInk& ink, const CleanLine& line, const std::vector<std::pair<int, int>>& slurs,
               const CleanMusic& music) {
    if (slurs.empty())
        return;
    int first = -1, last = -1;
    for (std::size_t i = 0; i < line.count(); ++i)
        for (const CleanSign& sign : line.bar(i).signs)
            if (sign.sung >= 0) {
                first = first < 0 ? sign.sung : first;
                last = sign.sung;
            }
    SlurPen pen(ink, line, music);
    auto slur = std::ranges::lower_bound(slurs, first, {}, &std::pair<int, int>::second);
    for (; first >= 0 && slur != slurs.end() && slur->first <= last; ++slur)
        pen.draw(slur->first, slur->second);
}

} // namespace velmora::notation
