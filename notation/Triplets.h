// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/NoteSplit.h"

#include <span>
#include <vector>

namespace velmora::notation {

/// A stretch of a bar that is written in triplets.
struct TripletSpan {
    int start; ///< ticks
    int length;
    [[nodiscard]] int end() const { return start + length; }
    bool operator==(const TripletSpan&) const = default;
};

/// The stretches of a bar that a line has to write in triplets, so that it takes the fewest signs; of equal
/// ones the shorter.
/// @param places where notes and rests of the line begin, ascending, from 0 to the bar's length with both
[[nodiscard]] std::vector<TripletSpan> findTriplets(const Meter& meter, std::span<const int> places);

/// As `splitRun`, with the parts that lie in one of @p spans in triplets.
void splitRun(const Meter& meter, std::span<const TripletSpan> spans, int begin, int end, Sounding sounding,
              std::vector<Value>& into);

} // namespace velmora::notation
