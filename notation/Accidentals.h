// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/WrittenScore.h"

#include <array>

namespace velmora::notation {

/// What the signs of a staff so far say of each line, with the notes of all its voices in the order of time.
///
/// A sign holds for its line and octave until the bar line. A held note needs none, and says nothing of those
/// that are struck behind it. Where the line had another sign in the bar before, or in a held note of this
/// bar, the first struck note has its sign as a courtesy.
class Accidentals {
public:
    explicit Accidentals(int key) : key_(key) {} ///< sharps, or flats with a minus

    struct Drawn {
        Sign sign = Sign::None;
        bool courtesy = false;
    };
    Drawn strike(int bar, int line, int alter);
    void hold(int bar, int line, int alter);

private:
    struct Line {
        int signBar = -1; ///< of the last struck note
        int signAlter = 0;
        int heardBar = -1; ///< of the last note, held or struck
        int heardAlter = 0;
    };
    Line& at(int line);

    int key_;
    std::array<Line, 80> lines_{};
};

} // namespace velmora::notation
