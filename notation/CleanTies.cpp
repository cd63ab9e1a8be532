// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanNotes.h"

#include <algorithm>
#include <cmath>

namespace velmora::notation {

namespace {

constexpr double kTieWidth = 0.2;
constexpr double kTieGap = 0.15;      ///< from a head to its tie
constexpr double kTieFromHead = 0.62; ///< from the head's middle, upwards or downwards
constexpr double kLineEnd = 0.3;

/// A tie that waits for its second head.
struct OpenTie {
    int row;
    double x;
    double y; ///< in pixels, of the head's middle
    bool up;
    int id;
};

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
    TiePen(CleanInk& ink, const CleanLine& line, const CleanMusic& music)
        : ink_(ink)
        , line_(line)
        , music_(music)
        , space_(ink.style().space) {}

    void sign(const CleanSign& sign, double x, bool twoVoices) {
        for (std::size_t i = 0; i < sign.heads.size(); ++i) {
            const CleanHead& head = sign.heads[i];
            if (!head.tieIn)
                continue;
            const double to = x + (head.left - kTieGap) * space_;
            const auto open = std::ranges::find(open_, head.row, &OpenTie::row);
            if (open != open_.end())
                draw(open->x, to, open->y, open->up, open->id);
            else if (isFirst_)
                draw(std::min(line_.notesFrom, to - 1.5 * space_), to, middleOf(head),
                     tieGoesUp(sign, i, twoVoices), sign.id);
        }
        open_.clear();
        isFirst_ = false;
        for (std::size_t i = 0; i < sign.heads.size(); ++i) {
            const CleanHead& head = sign.heads[i];
            if (!head.tieOut)
                continue;
            const bool up = tieGoesUp(sign, i, twoVoices);
            open_.push_back({head.row, x + beginOf(sign, head, up) * space_, middleOf(head), up, sign.id});
        }
    }

    void finish() {
        for (const OpenTie& open : open_)
            draw(open.x, line_.right - kLineEnd * space_, open.y, open.up, open.id);
    }

private:
    [[nodiscard]] double middleOf(const CleanHead& head) const { return heightOfPlace(head.place) * space_; }

    /// Behind the head, and behind its dots and flag where the tie would cross them.
    [[nodiscard]] double beginOf(const CleanSign& sign, const CleanHead& head, bool up) const {
        double begin = head.left + music_.headWidth(head.shape) + kTieGap;
        for (const CleanHead& other : sign.heads) // a second's other head stands in the way
            if (std::abs(other.place - head.place) < 3 && other.left > head.left)
                begin = std::max(begin, other.left + music_.headWidth(other.shape) + kTieGap);
        if (sign.value.dots > 0)
            begin = std::max(begin, sign.dotsLeft + 0.55 + (sign.value.dots - 1) * kDotStep);
        if (sign.hasFlag() && sign.stemUp && up)
            begin = std::max(begin, sign.right + kTieGap);
        return begin;
    }

    void draw(double from, double to, double middle, bool up, int id) {
        const double side = up ? -1 : 1;
        const double length = std::max(to - from, space_ * 0.5);
        const double y = middle + side * kTieFromHead * space_;
        const double height = std::min(0.45 + length / space_ * 0.06, 1.1) * space_ * 4 / 3;
        const double inset = std::min(length * 0.28, 2 * space_);
        ink_.add({CurveMark{{Point{from, y}, Point{from + inset, y + side * height},
                             Point{from + length - inset, y + side * height}, Point{from + length, y}},
                            kTieWidth * space_},
                  Role::Tie, id, kBlack});
    }

    CleanInk& ink_;
    const CleanLine& line_;
    const CleanMusic& music_;
    double space_;
    bool isFirst_ = true;
    std::vector<OpenTie> open_;
};

} // namespace

void drawTies(CleanInk& ink, const CleanLine& line, int staff, const CleanMusic& music) {
    for (const int voice : {0, 1}) {
        TiePen pen(ink, line, music);
        for (std::size_t i = 0; i < line.count(); ++i) {
            const auto& signs = line.bar(i).signs;
            const bool twoVoices = std::ranges::any_of(signs, [&](const CleanSign& sign) {
                return sign.from->staff == staff && sign.from->voice > 0;
            });
            for (const CleanSign& sign : signs)
                if (sign.from->staff == staff && sign.from->voice == voice)
                    pen.sign(sign, line.xOf(i, sign.column), twoVoices);
        }
        pen.finish();
    }
}

} // namespace velmora::notation
