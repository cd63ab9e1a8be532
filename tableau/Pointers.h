// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/TableauScreen.h"

#include <QCursor>

namespace velmora {

/// The mouse pointer over a Tableau: an arrow at rest, a pencil while drawing, four arrows where a place is
/// asked for, and a bracketed cross for selecting.
[[nodiscard]] QCursor cursorOf(Pointer pointer);

} // namespace velmora
