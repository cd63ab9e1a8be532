// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/SteadyClock.h"

#include <chrono>
#include <thread>

namespace velmora {

/// Limits are stated for a quiet machine. One that is held up, or under a sanitizer, gets this many times as
/// long.
inline constexpr double kPatience = 4;

/// Waits until @p isDone answers true, and looks every few milliseconds; false after @p seconds * kPatience.
template<class Condition>
[[nodiscard]] bool within(double seconds, Condition&& isDone) {
    const double deadline = steadySeconds() + seconds * kPatience;
    while (!isDone()) {
        if (steadySeconds() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

} // namespace velmora
