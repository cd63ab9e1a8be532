// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"

#include <string_view>

namespace velmora::notation {

/// The form of a drum's heads.
enum class DrumHead : std::uint8_t {
    Usual,     ///< skins and wood
    Cross,     ///< cymbals and hi-hats, what is shaken, clapped or struck at its rim
    Circled,   ///< a cross in a ring: the open hi-hat
    Diamond,   ///< bells and jingles
    Triangular ///< the triangle and other struck metal
};

/// How a percussion key of General MIDI is written.
struct DrumSign {
    int key;
    DrumHead head;
    std::string_view shortName; ///< beside the staff once the drum's whole name has been told
};
/// Those of a usual head, without a name, for a key that is none.
[[nodiscard]] const DrumSign& drumSign(int key);

/// The glyph of a head: filled, or hollow for a half and more.
[[nodiscard]] MusicGlyph drumGlyph(DrumHead head, MusicGlyph usual);

} // namespace velmora::notation
