// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/Skin.h"

namespace velmora {

/// Behind the keys, and of the panic bar at rest: the panel, a little towards the grooves in it.
[[nodiscard]] inline Rgb keyGround(const Skin& skin) {
    return mix(skin.panel.from, skin.groove, 0.2);
}

} // namespace velmora
