// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/WrittenScore.h"

#include <vector>

namespace velmora::notation {

/// What a name of the classic pass that is a whole number takes: the nearest, of a half the even one.
[[nodiscard]] int toWhole(double value);

/// A value with the steps that it takes of its note.
struct ClassicPiece {
    Value value;
    int steps; ///< the last of a note takes what is left
};
/// What a part of a note within a bar is written as: @p steps from 1 to @p M, which is the whole note. Values
/// are fractions of the measure, whatever the meter says: meant.
[[nodiscard]] std::vector<ClassicPiece> splitNote(int steps, int M);

/// The sixteenths of a measure that a run of rest counts as, 1 to 16: the smallest class that holds it.
[[nodiscard]] int restClass(int RestRun, int M);
/// How it is written, the largest value first.
[[nodiscard]] std::vector<Value> restValues(int restClass);

/// Whether notes written so may stand under a beam: a single eighth or sixteenth.
[[nodiscard]] bool canJoin(const std::vector<Value>& values);

} // namespace velmora::notation
