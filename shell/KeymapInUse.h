// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/Keymap.h"

#include <optional>

struct xcb_connection_t;

namespace velmora {

/// The keyboard layout that the user types with now: the X server's, where the windows stand on one, and
/// otherwise the one that the system is set up with. Nothing where none can be read.
[[nodiscard]] std::optional<Keymap> keymapInUse();

/// The layout of a server, in the group that is in use; nothing where it tells none.
[[nodiscard]] std::optional<Keymap> keymapOfServer(xcb_connection_t* connection);

} // namespace velmora
