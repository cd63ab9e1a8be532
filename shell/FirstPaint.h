// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <functional>

class QWidget;

namespace velmora {

/// Calls @p next once, when the window, which has been shown, stands painted on the screen: what its first
/// picture does not need waits for that.
void afterFirstPaint(QWidget& window, std::function<void()> next);

} // namespace velmora
