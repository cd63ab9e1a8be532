// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <chrono>

namespace velmora {

/// Seconds on the machine's steady clock: what `MessageLoop::now` of the real loop and all sound measure by.
/// Thread-safe: yes. Realtime-safe: yes.
[[nodiscard]] inline double steadySeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace velmora
