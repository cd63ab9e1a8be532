// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Meter.h"
#include "notation/WrittenScore.h"

#include <span>

namespace velmora::notation {

/// The place of the middle line.
inline constexpr int kMiddlePlace = 51;

/// Joins the values of one bar of one voice under beams, and has all notes of a group point one way.
///
/// A beam stays in its window of the meter; windows with nothing but eighths join within half a bar of 4/4
/// and the bar of 3/4. A rest, and a value that has no flag, ends a beam.
/// @param starts in ticks from the bar line, of each item
void groupBeams(const Meter& meter, std::span<Written> items, std::span<const int> starts);

/// By the pitch that is farthest from the middle line, down where two are equal.
[[nodiscard]] bool stemPointsUp(std::span<const Pitch> pitches);

} // namespace velmora::notation
