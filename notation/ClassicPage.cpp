// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ClassicInk.h"
#include "notation/ClassicNotes.h"
#include "notation/ClassicSpacing.h"
#include "notation/ClassicStaff.h"
#include "notation/Engraver.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velmora::notation {

namespace {

constexpr double kFirstStaffTop = 40; ///< below the header
constexpr double kBesidePen = 10;     ///< of a bar line right of the furthest pen
constexpr int kBehindBar = 20;        ///< of the pen behind a bar line
constexpr double kNumberPoints = 8;

/// The lines that close a measure, right of its furthest pen.
std::vector<double> closingLines(const WrittenScore& score, const ScoreSetup& setup, bool isLast) {
    // With repeat signs the end has no lines of its own: meant.
    if (!isLast || setup.repeatSigns)
        return {kBesidePen};
    if (score.lastNoteEnd > score.LastStep - 2)
        return {35, 38};
    return {35, 38, 39, 40};
}

/// A line of the page: measures that stand one behind the other.
struct SetSystem {
    int firstBar = 0; ///< from 0
    std::vector<SetMeasure> measures;
};

/// The pass "break": takes as many measures as a line holds.
class ClassicBreaks {
public:
    ClassicBreaks(const WrittenScore& score, const ScoreSetup& setup)
        : score_(score)
        , setup_(setup)
        , spacing_(score, setup)
        , rest_(score.items) {}

    [[nodiscard]] bool isDone() const { return bar_ >= score_.bars(); }

    [[nodiscard]] SetSystem nextSystem() {
        SetSystem system;
        system.firstBar = bar_;
        int pen = spacing_.lineStart();
        do {
            int prev = prev_;
            const auto items = itemsOfBar();
            SetMeasure measure = spacing_.set(items, pen, prev);
            if (!system.measures.empty() && closesBeyond(measure))
                break;
            prev_ = prev;
            pen = measure.MaxPenX + kBehindBar;
            system.measures.push_back(std::move(measure));
            rest_ = rest_.subspan(items.size());
            ++bar_;
        } while (!isDone() && !isFull(pen));
        return system;
    }

private:
    [[nodiscard]] std::span<const Written> itemsOfBar() const {
        const int bar = score_.first / score_.NotesPerMeasure + bar_ + 1;
        const auto end = std::ranges::find_if(rest_, [bar](const Written& one) { return one.bar != bar; });
        return {rest_.begin(), end};
    }
    /// `LineFull`.
    [[nodiscard]] bool isFull(int cx3) const {
        const double right = cx3 + setup_.BarWidth;
        return right > setup_.pageWidth * 0.9 || right > setup_.pageWidth - setup_.BarWidth;
    }
    /// Right of the staff lines' end.
    [[nodiscard]] bool closesBeyond(const SetMeasure& measure) const {
        const bool isLast = bar_ + 1 == score_.bars();
        return measure.MaxPenX + closingLines(score_, setup_, isLast).back() > setup_.pageWidth - 6;
    }

    const WrittenScore& score_;
    const ScoreSetup& setup_;
    ClassicSpacing spacing_;
    std::span<const Written> rest_;
    int bar_ = 0;
    int prev_ = 0;
};

/// The pass "mark", and the pages that it fills.
class ClassicPages {
public:
    ClassicPages(const WrittenScore& score, const ScoreSetup& setup)
        : score_(score)
        , setup_(setup)
        , shape_(score.staves, setup.SpacerHeight) {
        engraved_.width = setup.pageWidth;
        engraved_.height = setup.pageHeight;
        beginPage();
    }

    /// Whether the next system begins another page.
    [[nodiscard]] bool isPageFull() const {
        return systems_ > 0 && (systems_ == kMostSystems || shape_.passes(BarTop_, setup_.pageHeight));
    }

    void beginPage() {
        EngravedPage& page = engraved_.pages.emplace_back();
        ruleHead(engraved_, page, score_, setup_, static_cast<int>(engraved_.pages.size()));
        systems_ = 0;
        BarTop_ = setup_.HeaderHeight + kFirstStaffTop;
    }

    void write(const SetSystem& system) {
        ClassicInk ink(engraved_.pages.back());
        ruleSystem(ink, score_, setup_, shape_, BarTop_);
        int bar = system.firstBar;
        for (const SetMeasure& measure : system.measures) {
            drawSigns(ink, measure);
            DrawBarLine(ink, measure, ++bar);
        }
        BarTop_ += shape_.SystemHeight + setup_.SpacerHeight;
        ++systems_;
    }

    [[nodiscard]] EngravedScore take() { return std::move(engraved_); }
    [[nodiscard]] int count() const { return static_cast<int>(engraved_.pages.size()); }

private:
    [[nodiscard]] ClassicPlace placeOf(int staff) const {
        const auto index = static_cast<std::size_t>(staff);
        const double top = BarTop_ + shape_.tops[index];
        return {.TT = top - setup_.HeaderHeight - kFirstStaffTop,
                .percussionY = top,
                .isPercussion = score_.staves[index].clef == StaffClef::Percussion};
    }

    void drawSigns(ClassicInk& ink, const SetMeasure& measure) {
        ClassicNotes notes(ink, setup_);
        for (const PlacedPiece& piece : measure.pieces) {
            if (piece.item->beamIndex < 2)
                ink.note = note_++;
            if (piece.item->isRest)
                DrawRest(ink, piece, placeOf(piece.item->staff), setup_);
            else
                notes.draw(piece, placeOf(piece.item->staff));
        }
        ink.note = -1;
    }

    /// @param bar from 1, of those written
    void DrawBarLine(ClassicInk& ink, const SetMeasure& measure, int bar) {
        const double BarBottom = BarTop_ + shape_.SystemHeight;
        double x = 0;
        for (const double right : closingLines(score_, setup_, bar == score_.bars())) {
            x = measure.MaxPenX + right;
            ink.line({x, BarTop_}, {x, BarBottom}, 1, Role::BarLine);
        }
        if (!setup_.numbers)
            return;
        TextStyle style = setup_.titleStyle;
        style.points = kNumberPoints;
        style.bold = false;
        const int reached = score_.first / score_.NotesPerMeasure + bar;
        ink.text({x, BarBottom}, engraved_.styleOf(style), std::to_string(reached), Role::Text);
    }

    const WrittenScore& score_;
    const ScoreSetup& setup_;
    SystemShape shape_;
    EngravedScore engraved_;
    int systems_ = 0;   ///< on this page
    double BarTop_ = 0; ///< of the next system
    int note_ = 0;
};

} // namespace

EngravedScore engraveClassic(const WrittenScore& score, const ScoreSetup& setup,
                             const std::function<bool(int pages)>& goOn) {
    ClassicPages pages(score, setup);
    ClassicBreaks breaks(score, setup);
    while (!score.staves.empty() && !breaks.isDone()) {
        const SetSystem system = breaks.nextSystem();
        if (pages.isPageFull()) {
            if (goOn && !goOn(pages.count()))
                break;
            pages.beginPage();
        }
        pages.write(system);
    }
    return pages.take();
}

EngravedPage blankClassic(EngravedScore& into, const WrittenScore& score, const ScoreSetup& setup,
                          int number) {
    EngravedPage page;
    ruleHead(into, page, score, setup, number);
    WrittenScore blank;
    blank.key = score.key;
    blank.staves = score.staves;
    if (blank.staves.empty()) // a page to write on by hand has a staff
        blank.staves = {{.channel = 0, .clef = StaffClef::Treble}};
    const SystemShape shape(blank.staves, setup.SpacerHeight);
    ClassicInk ink(page);
    double BarTop = setup.HeaderHeight + kFirstStaffTop;
    for (int systems = 0; systems < kMostSystems && !shape.passes(BarTop, setup.pageHeight); ++systems) {
        ruleSystem(ink, blank, setup, shape, BarTop);
        BarTop += shape.SystemHeight + setup.SpacerHeight;
    }
    return page;
}

} // namespace velmora::notation
