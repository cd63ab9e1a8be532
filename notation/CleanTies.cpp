// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanChords.h"
#include "notation/CleanNotes.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace velmora::notation {

namespace {

constexpr double kTieWidth = 0.2;
constexpr double kTieGap = 0.15;      ///< from a head to its tie
constexpr double kTieFromHead = 0.62; ///< from the head's middle, upwards or downwards
constexpr double kLineEnd = 0.3;
// In places from a head, upwards or downwards: where its tie lies.
constexpr double kTieNear = 0.9;
constexpr double kTieFar = 3.2;
constexpr double kHeadHalf = 1.1;
constexpr double kDotHalf = 0.4;

/// One end of a tie.
struct TieEnd {
    const CleanSign* sign;
    std::size_t head;
    const CleanSign* other; ///< what the other voice has at that moment, or null
    double x;               ///< of its column

    [[nodiscard]] const CleanHead& own() const { return sign->heads[head]; }
};

/// Where a tie runs, in pixels.
struct Arc {
    double from, to, y;
    bool up;
};

/// What a tie should not cross.
struct Obstacle {
    Box box;
    double cost;
};
constexpr double kThroughHead = 100;
constexpr double kThroughSign = 2;

/// Ties of a chord go outwards, a single one away from its stem.
bool tieGoesUp(const CleanSign& sign, std::size_t head, bool twoVoices) {
    if (twoVoices)
        return sign.from->voice == 0;
    const std::size_t count = sign.heads.size();
    if (count == 1)
        return !sign.stemUp;
    if (count % 2 == 1 && head == count / 2)
        return sign.heads[head].place >= 0;
    return head >= (count + 1) / 2;
}

class TiePen {
public:
    /// @param obstacles what ties should not cross, if they can help it
    TiePen(CleanInk& ink, const CleanLine& line, const CleanMusic& music, std::span<const Obstacle> obstacles)
        : ink_(ink)
        , line_(line)
        , music_(music)
        , obstacles_(obstacles)
        , space_(ink.style().space) {}

    /// @param other what the other voice has at that moment, or null
    void sign(const CleanSign& sign, const CleanSign* other, double x, bool twoVoices) {
        for (std::size_t i = 0; i < sign.heads.size(); ++i) {
            const CleanHead& head = sign.heads[i];
            if (!head.tieIn)
                continue;
            const TieEnd end{&sign, i, other, x};
            const auto open =
                std::ranges::find(open_, head.row, [](const TieEnd& at) { return at.own().row; });
            if (open != open_.end())
                draw(*open, end, twoVoices);
            else if (isFirst_)
                drawFromLineStart(end, twoVoices);
        }
        open_.clear();
        isFirst_ = false;
        twoVoices_ = twoVoices;
        for (std::size_t i = 0; i < sign.heads.size(); ++i)
            if (sign.heads[i].tieOut)
                open_.push_back({&sign, i, other, x});
    }

    void finish() {
        for (const TieEnd& open : open_) {
            const auto arc = [&](bool up) {
                return Arc{beginOf(open, up), line_.right - kLineEnd * space_, middleOf(open), up};
            };
            drawBest(arc, tieGoesUp(*open.sign, open.head, twoVoices_), open.sign->id);
        }
    }

private:
    void draw(const TieEnd& from, const TieEnd& to, bool twoVoices) {
        const auto arc = [&](bool up) { return Arc{beginOf(from, up), endOf(to, up), middleOf(from), up}; };
        drawBest(arc, tieGoesUp(*from.sign, from.head, twoVoices), from.sign->id);
    }
    void drawFromLineStart(const TieEnd& to, bool twoVoices) {
        const auto arc = [&](bool up) {
            const double end = endOf(to, up);
            return Arc{std::min(line_.notesFrom, end - 1.5 * space_), end, middleOf(to), up};
        };
        drawBest(arc, tieGoesUp(*to.sign, to.head, twoVoices), to.sign->id);
    }

    [[nodiscard]] double middleOf(const TieEnd& at) const { return heightOfPlace(at.own().place) * space_; }

    /// Whether a tie at @p head would cross something at @p place that reaches @p half up and down.
    static bool isInWay(const CleanHead& head, int place, double half, bool up) {
        const double beyond = (place - head.place) * (up ? 1 : -1);
        return beyond + half > kTieNear && beyond - half < kTieFar;
    }

    /// Before the head, and before heads and signs on its left that the tie would cross.
    [[nodiscard]] double endOf(const TieEnd& at, bool up) const {
        const CleanHead& own = at.own();
        double end = own.left;
        for (const CleanSign* sign : {at.sign, at.other}) {
            if (sign == nullptr)
                continue;
            for (const CleanHead& head : sign->heads) {
                if (head.left < own.left && isInWay(own, head.place, kHeadHalf, up))
                    end = std::min(end, head.left);
                if (head.sign == Sign::None)
                    continue;
                const Box& room = roomOf(accidentalGlyph(head.sign));
                if (isInWay(own, head.place, room.bottom * 2, up))
                    end = std::min(end, head.signMiddle + room.left);
            }
        }
        return at.x + (end - kTieGap) * space_;
    }

    /// Behind the head, and behind heads, dots and a flag on its right that the tie would cross.
    [[nodiscard]] double beginOf(const TieEnd& at, bool up) const {
        const CleanHead& own = at.own();
        const CleanSign& sign = *at.sign;
        double begin = own.left + music_.headWidth(own.shape);
        for (const CleanHead& head : sign.heads) // a second's other head stands in the way
            if (std::abs(head.place - own.place) < 3 && head.left > own.left)
                begin = std::max(begin, head.left + music_.headWidth(head.shape));
        if (sign.value.dots > 0)
            begin = std::max(begin, dotsEnd(sign));
        if (sign.hasFlag() && sign.stemUp && up)
            begin = std::max(begin, sign.right);
        if (at.other != nullptr)
            for (const CleanHead& head : at.other->heads) {
                if (head.left > own.left && isInWay(own, head.place, kHeadHalf, up))
                    begin = std::max(begin, head.left + music_.headWidth(head.shape));
                if (at.other->value.dots > 0 && isInWay(own, head.dotPlace, kDotHalf, up))
                    begin = std::max(begin, dotsEnd(*at.other));
            }
        return at.x + (begin + kTieGap) * space_;
    }
    static double dotsEnd(const CleanSign& sign) {
        return sign.dotsLeft + 0.4 + (sign.value.dots - 1) * kDotStep;
    }

    /// @param stretch of its height
    /// @param away from its heads, in spaces
    [[nodiscard]] CurveMark curveOf(const Arc& arc, double stretch, double away) const {
        const double side = arc.up ? -1 : 1;
        const double length = std::max(arc.to - arc.from, space_ * 0.5);
        const double y = arc.y + side * (kTieFromHead + away) * space_;
        const double height = std::min(0.45 + length / space_ * 0.06, 1.1) * space_ * 4 / 3 * stretch;
        const double inset = std::min(length * 0.28, 2 * space_);
        return {{Point{arc.from, y}, Point{arc.from + inset, y + side * height},
                 Point{arc.from + length - inset, y + side * height}, Point{arc.from + length, y}},
                kTieWidth * space_};
    }

    /// What it costs that a tie crosses heads, or only signs.
    [[nodiscard]] double crossingCost(const CurveMark& curve) const {
        constexpr int kSteps = 24;
        double cost = 0;
        for (const Obstacle& obstacle : obstacles_) {
            const Box& box = obstacle.box;
            if (obstacle.cost <= cost || box.right < curve.points[0].x || box.left > curve.points[3].x)
                continue;
            for (int i = 0; i <= kSteps; ++i) {
                const Point at = pointOf(curve, static_cast<double>(i) / kSteps);
                if (at.x > box.left && at.x < box.right && at.y > box.top && at.y < box.bottom)
                    cost = obstacle.cost;
            }
        }
        return cost;
    }

    /// As it is usual, but flatter, rounder, farther from its heads or on their other side where it would
    /// cross the other voice.
    template<class ArcOf>
    void drawBest(ArcOf arcOf, bool up, int id) {
        CurveMark best = curveOf(arcOf(up), 1, 0);
        double least = obstacles_.empty() ? 0 : crossingCost(best);
        for (const bool side : {up, !up})
            for (const double away : {0.0, 0.3, 0.6, 0.9})
                for (const double stretch : {1.0, 0.6, 1.6, 0.25, 2.4}) {
                    const double own = (side == up ? 0 : 1) + away + std::abs(stretch - 1) * 0.5;
                    if (own >= least)
                        continue;
                    const CurveMark curve = curveOf(arcOf(side), stretch, away);
                    const double cost = own + crossingCost(curve);
                    if (cost >= least)
                        continue;
                    least = cost;
                    best = curve;
                }
        ink_.add({best, Role::Tie, id, kBlack});
    }

    CleanInk& ink_;
    const CleanLine& line_;
    const CleanMusic& music_;
    std::span<const Obstacle> obstacles_;
    double space_;
    bool isFirst_ = true;
    bool twoVoices_ = false;
    std::vector<TieEnd> open_;
};

/// What the other voice of its staff has at the moment of a sign; null for nothing or a rest.
const CleanSign* otherAt(const std::vector<CleanSign>& signs, const CleanSign& own) {
    const auto other = std::ranges::find_if(signs, [&](const CleanSign& sign) {
        return sign.from->staff == own.from->staff && sign.from->voice != own.from->voice &&
               sign.column == own.column && !sign.isRest();
    });
    return other == signs.end() ? nullptr : &*other;
}

/// Heads, accidentals and dots of a staff that holds two voices.
std::vector<Obstacle> obstaclesOf(const CleanInk& ink, const WrittenScore& score, int staff) {
    std::vector<Obstacle> found;
    if (score.staves[static_cast<std::size_t>(staff)].secondChannel < 0)
        return found;
    for (const Mark& mark : ink.marks) {
        const bool isHead = mark.role == Role::Head || mark.role == Role::Dot;
        if (isHead || mark.role == Role::Accidental)
            found.push_back({boxOf(mark, ink.style().into.styles, ink.style().measure),
                             isHead ? kThroughHead : kThroughSign});
    }
    return found;
}

} // namespace

void drawTies(CleanInk& ink, const CleanLine& line, int staff, const CleanMusic& music) {
    const std::vector<Obstacle> obstacles = obstaclesOf(ink, music.score(), staff);
    for (const int voice : {0, 1}) {
        TiePen pen(ink, line, music, obstacles);
        for (std::size_t i = 0; i < line.count(); ++i) {
            const auto& signs = line.bar(i).signs;
            const bool twoVoices = std::ranges::any_of(signs, [&](const CleanSign& sign) {
                return sign.from->staff == staff && sign.from->voice > 0;
            });
            for (const CleanSign& sign : signs)
                if (sign.from->staff == staff && sign.from->voice == voice)
                    pen.sign(sign, twoVoices ? otherAt(signs, sign) : nullptr, line.xOf(i, sign.column),
                             twoVoices);
        }
        pen.finish();
    }
}

} // namespace velmora::notation
