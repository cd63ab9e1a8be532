// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/ClassicInk.h"
#include "notation/ScoreSetup.h"
#include "notation/WrittenScore.h"

#include <span>
#include <vector>

namespace velmora::notation {

inline constexpr int kMostSystems = 100; ///< on a page
inline constexpr double kStaffHeight = 32;

/// Where the staves of a system stand.
class SystemShape {
public:
    SystemShape(std::span<const Staff> staves, double SpacerHeight);

    double SystemHeight = 0;  ///< from the first staff's top line to the last one's bottom line
    std::vector<double> tops; ///< of the staves, below the system's

    /// Whether a system at that place has to wait for the next page.
    [[nodiscard]] bool passes(double StaffTop, double ScaleHeight) const {
        return StaffTop > ScaleHeight - SystemHeight;
    }
};

/// Clefs, lines, key signatures and the line before them.
void ruleSystem(ClassicInk& ink, const WrittenScore& score, const ScoreSetup& setup, const SystemShape& shape,
                double BarTop);

/// Sharps or flats at the staff whose top line is @p top.
void DrawKeySignature(ClassicInk& ink, int fifths, double top);

/// Title and time signature, and the number with `Check6`; names the sheet.
void ruleHead(EngravedScore& into, EngravedPage& page, const WrittenScore& score, const ScoreSetup& setup,
              int number);

} // namespace velmora::notation
