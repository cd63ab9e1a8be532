// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Meter.h"

#include <vector>

namespace velmora::notation {

/// What a run of ticks in a bar holds.
enum class Sounding : std::uint8_t { Note, Rest };

/// Writes a run of ticks from @p begin to @p end of a bar as values, behind those that @p into holds.
///
/// A note is one sign where it hides no place that is stronger than where it begins: whole parts of the bar,
/// one that begins with its part (dotted, double dotted), one that ends with a part of half a bar at most
/// (dotted), and the long one in the middle of short, long, short. Anything else is split at the strongest
/// place and tied. A rest is a whole part, without dots but for groups of three.
void splitRun(const Meter& meter, int begin, int end, Sounding sounding, std::vector<Value>& into);

} // namespace velmora::notation
