// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/Windows.h"

class QWidget;

namespace velmora {

/// Shows a window before all others, also one that is an icon.
void bringUp(QWidget& window, Windows::Focus focus);

} // namespace velmora
