// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/CleanMusic.h"

namespace velmora::notation {

/// Puts the signs under beams as the reading's groups say; a group of one keeps its flag. The stems of a
/// group go where its head farthest from the middle line has them.
void groupBeams(CleanBar& bar);

/// Gathers triplets until they fill a plain value.
/// @param whole ticks of a whole note
void groupTriplets(CleanBar& bar, double whole);

} // namespace velmora::notation
