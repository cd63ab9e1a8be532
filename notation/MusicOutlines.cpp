// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/MusicOutlines.h"

namespace velmora::notation {

const Outline& outlineOf(GlyphImage) {
    static const Outline none;
    return none;
}
const Outline& outlineOf(MusicGlyph) {
    static const Outline none;
    return none;
}
const Box& boxOf(MusicGlyph) {
    static const Box none;
    return none;
}
bool hasMusicFont() {
    return false;
}

} // namespace velmora::notation
