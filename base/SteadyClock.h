// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

namespace velmora {

/// Seconds on the machine's steady clock: what `MessageLoop::now` of the real loop and all sound measure by.
/// Thread-safe: yes. Realtime-safe: yes.
[[nodiscard]] inline double steadySeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Seconds as the system's calls take them; none below 0.
[[nodiscard]] inline timespec timespecOf(double seconds) {
    constexpr double kFarthest = 1e9;
    double whole = 0;
    const double part = std::modf(std::clamp(seconds, 0.0, kFarthest), &whole);
    return {.tv_sec = static_cast<time_t>(whole), .tv_nsec = static_cast<long>(part * 1e9)};
}

} // namespace velmora
