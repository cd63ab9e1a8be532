// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/ScoreSetup.h"
#include "notation/WrittenScore.h"

#include <span>
#include <vector>

namespace velmora::notation {

/// One sign, a piece of a note or a rest, with the pen where it is drawn.
struct PlacedPiece {
    const Written* item;
    Value value; ///< of a note
    int cx3;
    bool wasPending = false; ///< a flagged note that is drawn when its group is closed
};

/// A measure of all staves, set from one pen.
struct SetMeasure {
    std::vector<PlacedPiece> pieces; ///< staff by staff
    int MaxPenX = 0;
};

/// The pass "space" of the classic page: the pen's way through a measure.
class ClassicSpacing {
public:
    ClassicSpacing(const WrittenScore& score, const ScoreSetup& setup) : score_(score), setup_(setup) {}

    /// Where a line's first note stands, before the 5 that each note has.
    [[nodiscard]] int lineStart() const;
    /// @param items of one bar
    /// @param prev `NB` of the symbol before, one number for the whole pass; moved on
    [[nodiscard]] SetMeasure set(std::span<const Written> items, int pen, int& prev) const;

    /// Where the second and later notes of a group stand, by the `BeamX` before.
    /// @param index of the note in its group, from 2
    [[nodiscard]] int nextBeamX(int BeamX, int index, NoteValue value) const;

private:
    class Pen;
    const WrittenScore& score_;
    const ScoreSetup& setup_;
};

} // namespace velmora::notation
