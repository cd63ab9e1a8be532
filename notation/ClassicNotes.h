// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/ClassicInk.h"
#include "notation/ClassicSpacing.h"
#include "notation/ScoreSetup.h"

#include <array>

namespace velmora::notation {

/// Where the staff being written stands.
struct ClassicPlace {
    double TT = 0;          ///< added to each `cy` of a melody staff
    double percussionY = 0; ///< the line of a percussion staff
    bool isPercussion = false;
};

/// `DrawLedgerLines`: those of a note at @p cy.
void DrawLedgerLines(ClassicInk& ink, double x, int cy, double TT, int HeaderHeight);

/// `DrawRest`.
void DrawRest(ClassicInk& ink, const PlacedPiece& rest, const ClassicPlace& place, const ScoreSetup& setup);

/// Draws notes as they come and keeps the pending ones of a group.
class ClassicNotes {
public:
    ClassicNotes(ClassicInk& ink, const ScoreSetup& setup) : ink_(ink), setup_(setup) {}

    void draw(const PlacedPiece& piece, const ClassicPlace& place);

private:
    struct Pending {
        double BeamX, BeamStemY, BeamHeadY;
    };

    void drawSign(const PlacedPiece& piece, const ClassicPlace& place, int cy, double x);
    void drawWhole(const PlacedPiece& piece, const ClassicPlace& place, int cy);
    void drawDots(const PlacedPiece& piece, double y);
    void join(const PlacedPiece& piece, const ClassicPlace& place, int cy);
    void DrawBeamGroup(const Written& last);
    void FlushGroupSingly(const Written& note);

    ClassicInk& ink_;
    const ScoreSetup& setup_;
    std::array<Pending, 4> pending_{};
    std::size_t PN_ = 0;
    bool BeamDirection_ = false;
};

} // namespace velmora::notation
