// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/MusicFont.h"

namespace velmora::notation {

/// A sign in staff spaces about its own origin, as `GlyphMark` tells it: the font's shape, or a plain one of
/// ours.
[[nodiscard]] Outline signOf(const MusicFont& font, MusicGlyph glyph);
[[nodiscard]] Outline plainSign(MusicGlyph glyph);

/// Of a stem that points up, from its end; so many as one shape.
[[nodiscard]] Outline flagsOf(const MusicFont& font, int count);

} // namespace velmora::notation
