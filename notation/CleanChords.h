// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/CleanMusic.h"

namespace velmora::notation {

[[nodiscard]] MusicGlyph restGlyph(const Value& value);
/// Where a rest of one of two voices stands, as long as nothing is in its way.
[[nodiscard]] int restPlaceOf(const Value& value, int voice);
[[nodiscard]] MusicGlyph accidentalGlyph(Sign sign);

/// Arranges what stands at one moment of a staff: seconds on the other side of the stem, two voices beside
/// each other, accidentals in columns, dots in spaces; and says how much room each sign takes.
void arrangeColumns(CleanBar& bar, const CleanMusic& music);

} // namespace velmora::notation
