// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanHeader.h"
#include "notation/CleanSystems.h"
#include "notation/Engraver.h"

#include <algorithm>
#include <cmath>
#include <deque>

namespace velmora::notation {

namespace {

constexpr double kUsualSpace = 8;
constexpr double kLeastSpace = 1;
constexpr double kLeastOfFullBars = 5; ///< a full bar makes all signs smaller, but never below this
constexpr double kLeastColumn = 1.7;   ///< spaces
constexpr std::size_t kBarsAhead = 96; ///< among which lines are broken: some three pages
constexpr double kNearlyFull = 0.67;
constexpr double kUsualBarWidth = 60;

/// The staff space: the usual one, or a smaller one where a page couldn't hold a system or a bar.
double spaceFor(const WrittenScore& score, const ScoreSetup& setup, const CleanMusic& music) {
    const double height = setup.pageHeight - topMargin(setup) - bottomMargin(setup);
    const double width = setup.pageWidth - 2 * sideMargin(setup);
    const double staves = static_cast<double>(std::max<std::size_t>(1, score.staves.size()));
    const double verses = static_cast<double>(std::min<std::size_t>(setup.verses.size(), 20));
    double space = std::min(kUsualSpace, height / (11 * staves + 2.5 * verses + 8));
    space = std::min(space, width / 34);
    const double fullest = music.mostSigns() * kLeastColumn + headerWidth(score, false);
    if (width / fullest < space)
        space = std::min(space, std::max(kLeastOfFullBars, width / fullest));
    return std::max(kLeastSpace, space);
}

/// No mark stands outside of its page, whatever was asked for.
void keepInside(EngravedPage& page, const EngravedScore& score, TextMeasure& measure) {
    const auto shift = [](double low, double high, double end) {
        return low < 0 ? -low : high > end ? std::max(-low, end - high) : 0.0;
    };
    for (Mark& mark : page.marks) {
        if (auto* line = std::get_if<LineMark>(&mark.shape)) {
            for (Point* point : {&line->from, &line->to})
                *point = {std::clamp(point->x, 0.0, score.width), std::clamp(point->y, 0.0, score.height)};
            continue;
        }
        const Box box = boxOf(mark, score.styles, measure);
        const double right = shift(box.left, box.right, score.width);
        const double down = shift(box.top, box.bottom, score.height);
        if (right != 0 || down != 0)
            moveMark(mark, right, down);
    }
}

/// Empty staves, the first line's with their time.
CleanSystem blankSystem(const CleanLine& line, const WrittenScore& score, const CleanStyle& style) {
    CleanSystem system;
    system.left = line.left;
    system.right = line.right;
    for (std::size_t staff = 0; staff < score.staves.size(); ++staff) {
        drawStaff(system.staves.emplace_back(style, style.setup.pageWidth), line, score,
                  static_cast<int>(staff));
        system.tops.push_back(static_cast<double>(staff) *
                              (4 * style.space + style.setup.SpacerHeight * 0.75));
    }
    return system;
}

/// Makes pages of a score, with only the bars of a few pages at hand.
class PageMaker {
public:
    PageMaker(const WrittenScore& score, const ScoreSetup& setup, TextMeasure& measure, EngravedScore& into)
        : score_(score)
        , setup_(setup)
        , measure_(measure)
        , into_(into)
        , music_(score, setup)
        , style_(setup, measure, into, spaceFor(score, setup, music_))
        , words_(style_)
        , stretch_(std::clamp(setup.BarWidth / kUsualBarWidth, 0.2, 5.0)) {}

    void make(const std::function<bool(int)>& goOn) {
        into_.pages.emplace_back();
        top_ = drawTitle(into_.pages.back(), style_, 1);
        int taken = 0;
        while (taken < music_.bars() || !bars_.empty()) {
            while (bars_.size() < kBarsAhead && taken < music_.bars())
                takeBar(taken++);
            if (!setLines(taken == music_.bars(), goOn))
                return;
        }
        if (music_.bars() == 0 && !score_.staves.empty())
            addBlank();
        finishPage(true, goOn);
    }

private:
    void takeBar(int index) {
        CleanBar bar = music_.bar(index);
        Chain chain;
        chain.add(bar, stretch_);
        words_.addRods(chain, {&bar, 1}, 1.5);
        chain.close();
        bar.natural = chain.width(1);
        bar.least = chain.width(0);
        bars_.push_back(std::move(bar));
    }

    [[nodiscard]] CleanLine lineOf(std::size_t begin, std::size_t end, bool last) {
        const double margin = sideMargin(setup_);
        CleanLine line;
        line.bars = &bars_;
        line.begin = begin;
        line.end = end;
        line.left = margin;
        line.right = setup_.pageWidth - margin;
        line.first = isFirst_;
        line.last = last;
        isFirst_ = false;
        return line;
    }

    /// Breaks the bars at hand into lines. Only the first half of them stand for good where more bars follow.
    bool setLines(bool toEnd, const std::function<bool(int)>& goOn) {
        const double room = (setup_.pageWidth - 2 * sideMargin(setup_)) / style_.space;
        const double other = std::max(1.0, room - headerWidth(score_, false));
        const double first = isFirst_ ? std::max(1.0, room - headerWidth(score_, true)) : other;
        const std::vector<CleanBreak> breaks = breakLines(bars_, first, other, toEnd);
        std::size_t begin = 0;
        for (const CleanBreak& next : breaks) {
            if (!toEnd && next.end > bars_.size() / 2 && begin > 0)
                break;
            CleanLine line = lineOf(begin, next.end, toEnd && next.end == bars_.size());
            if (!add(setSystem(line, next.ragged, music_, style_, words_, stretch_), goOn))
                return false;
            begin = next.end;
        }
        bars_.erase(bars_.begin(), bars_.begin() + static_cast<std::ptrdiff_t>(begin));
        return true;
    }

    bool add(CleanSystem system, const std::function<bool(int)>& goOn) {
        systems_.push_back(std::move(system));
        if (systems_.size() < 2 || top_ + heightOf(systems_, style_) <= bottom())
            return true;
        CleanSystem next = std::move(systems_.back());
        systems_.pop_back();
        if (!finishPage(false, goOn))
            return false;
        into_.pages.emplace_back();
        top_ = drawTitle(into_.pages.back(), style_, static_cast<int>(into_.pages.size()));
        systems_.push_back(std::move(next));
        return true;
    }

    /// Empty staves of a score without a bar.
    void addBlank() { systems_.push_back(blankSystem(lineOf(0, 0, true), score_, style_)); }

    bool finishPage(bool isLast, const std::function<bool(int)>& goOn) {
        EngravedPage& page = into_.pages.back();
        const bool full = heightOf(systems_, style_) >= kNearlyFull * (bottom() - top_);
        placeSystems(page, systems_, score_, style_, top_, bottom(), !isLast || full);
        systems_.clear();
        keepInside(page, into_, measure_);
        return !goOn || goOn(static_cast<int>(into_.pages.size()));
    }

    [[nodiscard]] double bottom() const { return setup_.pageHeight - bottomMargin(setup_); }

    const WrittenScore& score_;
    const ScoreSetup& setup_;
    TextMeasure& measure_;
    EngravedScore& into_;
    CleanMusic music_;
    CleanStyle style_;
    CleanWords words_;
    double stretch_;
    bool isFirst_ = true;
    double top_ = 0;
    std::vector<CleanBar> bars_;
    std::vector<CleanSystem> systems_;
};

} // namespace

EngravedScore engraveClean(const WrittenScore& score, const ScoreSetup& setup, TextMeasure& measure,
                           const std::function<bool(int)>& goOn) {
    EngravedScore engraved;
    engraved.width = setup.pageWidth;
    engraved.height = setup.pageHeight;
    PageMaker(score, setup, measure, engraved).make(goOn);
    return engraved;
}

EngravedPage blankClean(EngravedScore& into, const WrittenScore& score, const ScoreSetup& setup,
                        TextMeasure& measure, int number) {
    WrittenScore paper = score;
    paper.items.clear();
    paper.first = paper.LastStep = 0;
    if (paper.staves.empty()) // a page to write on by hand has a staff
        paper.staves = {{.channel = 0, .clef = StaffClef::Treble}};
    const CleanStyle style(setup, measure, into, spaceFor(paper, setup, CleanMusic(paper, setup)));
    EngravedPage page;
    const double top = drawTitle(page, style, number);
    const double bottom = setup.pageHeight - bottomMargin(setup);
    std::vector<CleanSystem> systems;
    CleanLine line;
    line.left = sideMargin(setup);
    line.right = setup.pageWidth - line.left;
    line.first = true;
    do {
        systems.push_back(blankSystem(line, paper, style));
        line.first = false;
    } while (top + heightOf(systems, style) <= bottom);
    if (systems.size() > 1)
        systems.pop_back();
    placeSystems(page, systems, paper, style, top, bottom, true);
    keepInside(page, into, measure);
    return page;
}

} // namespace velmora::notation
