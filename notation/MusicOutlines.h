// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/PagePainter.h"

namespace velmora::notation {

/// The shapes of written music as outlines, from the installed music font; plain ones of our own without it.
///
/// Looked up once for the process. Thread-safe: yes.
[[nodiscard]] const Outline&
outlineOf(GlyphImage image); ///< in pixels, the picture's top left corner at the origin
[[nodiscard]] const Outline&
outlineOf(MusicGlyph glyph); ///< in staff spaces, the sign's own origin at the origin

/// What a glyph covers, in staff spaces about its origin.
struct Box {
    double left = 0, top = 0, right = 0, bottom = 0;
};
[[nodiscard]] const Box& boxOf(MusicGlyph glyph);

/// Whether the shapes are the font's.
[[nodiscard]] bool hasMusicFont();

} // namespace velmora::notation
