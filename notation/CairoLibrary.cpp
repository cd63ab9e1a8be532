// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CairoLibrary.h"

#include "LateNames.h"

namespace velmora::notation {

CairoLibrary::CairoLibrary() : LateLibrary(kCairoLibrary) {}
PangoLibrary::PangoLibrary() : LateLibrary(kPangoLibrary) {}
PangoCairoLibrary::PangoCairoLibrary() : LateLibrary(kPangoCairoLibrary) {}
GObjectLibrary::GObjectLibrary() : LateLibrary(kGObjectLibrary) {}

const CairoLibrary& cairo() {
    static const CairoLibrary only;
    return only;
}
const PangoLibrary& pango() {
    static const PangoLibrary only;
    return only;
}
const PangoCairoLibrary& pangoCairo() {
    static const PangoCairoLibrary only;
    return only;
}
const GObjectLibrary& gobject() {
    static const GObjectLibrary only;
    return only;
}

const std::string& textProblem() {
    if (!pangoCairo().complete())
        return pangoCairo().problem();
    if (!gobject().complete())
        return gobject().problem();
    return pango().problem();
}

} // namespace velmora::notation
