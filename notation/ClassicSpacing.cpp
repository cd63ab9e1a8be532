// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ClassicSpacing.h"

#include "notation/ClassicValues.h"
#include "notation/Keys.h"

#include <algorithm>

namespace velmora::notation {

namespace {
constexpr int kImageToPen = 14; ///< an image stands so far left of the pen
constexpr int kBeforeNote = 5;
constexpr int kAfterRest = 10;
constexpr int kPercussionPush = 4;
constexpr int kPushOfStep = 4;
} // namespace

/// The pen of one staff.
class ClassicSpacing::Pen {
public:
    Pen(const ClassicSpacing& spacing, int cx3, int& prev)
        : spacing_(spacing)
        , M_(spacing.score_.NotesPerMeasure)
        , B_(spacing.setup_.BarWidth)
        , cx3_(cx3)
        , prev_(prev) {}

    [[nodiscard]] int cx3() const { return cx3_; }

    void write(const Written& item, bool isPercussion, std::vector<PlacedPiece>& into) {
        if (item.isRest)
            rest(item, isPercussion, into);
        else
            note(item, isPercussion, into);
    }

private:
    void move(double by) { cx3_ = toWhole(cx3_ + by); }

    /// What the spacing mode gives so many steps.
    [[nodiscard]] double stepOf(int steps) const {
        if (spacing_.setup_.spacing == NoteSpacing::Proportional)
            return B_ / M_ * steps;
        return B_ * 0.1 + B_ * 0.5 * (steps * 12) / 48;
    }

    /// Further symbols of a measure are pushed apart by what separates their ends.
    void push(int NB) {
        int before = prev_;
        if (prev_ < 1)
            before = 1;
        else if (prev_ == spacing_.score_.NotesPerMeasure)
            before = 0;
        else if (prev_ > NB)
            before = NB - 1;
        move((NB - before) * kPushOfStep);
        prev_ = NB;
    }

    void rest(const Written& item, bool isPercussion, std::vector<PlacedPiece>& into) {
        into.push_back({.item = &item, .value = item.values.front(), .cx3 = cx3_});
        if (item.values.front().value == NoteValue::Half)
            move(B_ * 0.25);
        move(stepOf(item.steps));
        move(kAfterRest + (isPercussion ? kPercussionPush : 0));
        prev_ = item.step + item.steps;
    }

    void note(const Written& item, bool isPercussion, std::vector<PlacedPiece>& into) {
        const bool wasPending = spacing_.setup_.joinNotes > 0 && !isPercussion && canJoin(item.values);
        int NB = item.step;
        const auto pieces = splitNote(item.steps, spacing_.score_.NotesPerMeasure);
        for (const ClassicPiece& piece : pieces) {
            move(kBeforeNote + (isPercussion ? kPercussionPush : 0));
            if (wasPending)
                takePlaceInGroup(item);
            into.push_back({&item, piece.value, cx3_, wasPending});
            if (piece.value.value == NoteValue::Half)
                move(B_ * 0.125);
            move(stepOf(piece.steps));
            NB = &piece == &pieces.back() ? item.step + item.steps : NBBehind(NB, piece.value);
            push(NB);
            if (isPercussion)
                move(kPercussionPush);
        }
        if (wasPending && item.beamIndex == item.beamCount)
            move(B_ * 0.2);
    }

    /// The value's own steps, and those of its dot, are taken on one after the other.
    [[nodiscard]] int NBBehind(int NB, Value value) const {
        const double steps = M_ / (1 << static_cast<int>(value.value));
        NB = toWhole(NB + steps);
        return value.dots > 0 ? toWhole(NB + steps / 2) : NB;
    }

    void takePlaceInGroup(const Written& item) {
        if (item.beamIndex > 1)
            cx3_ = spacing_.nextBeamX(BeamX_, item.beamIndex, item.values.front().value) + kImageToPen;
        BeamX_ = cx3_ - kImageToPen;
    }

    const ClassicSpacing& spacing_;
    double M_;
    double B_;
    int cx3_;
    int& prev_;
    int BeamX_ = 0;
};

int ClassicSpacing::lineStart() const {
    return toWhole(kKeys.at(static_cast<std::size_t>(score_.key)).FirstNoteX + setup_.BarWidth * 0.2);
}

SetMeasure ClassicSpacing::set(std::span<const Written> items, int pen, int& prev) const {
    SetMeasure measure;
    measure.MaxPenX = pen;
    while (!items.empty()) {
        const int staff = items.front().staff;
        const bool isPercussion =
            score_.staves[static_cast<std::size_t>(staff)].clef == StaffClef::Percussion;
        Pen walk(*this, pen, prev);
        while (!items.empty() && items.front().staff == staff) {
            walk.write(items.front(), isPercussion, measure.pieces);
            items = items.subspan(1);
        }
        measure.MaxPenX = std::max(measure.MaxPenX, walk.cx3());
    }
    return measure;
}

int ClassicSpacing::nextBeamX(int BeamX, int index, NoteValue value) const {
    if (value == NoteValue::Sixteenth)
        return toWhole(BeamX + setup_.BarWidth * 0.15);
    return toWhole(BeamX + setup_.BarWidth * (index == 2 ? 0.25 : 0.2));
}

} // namespace velmora::notation
