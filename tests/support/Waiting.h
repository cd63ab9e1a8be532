// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/SteadyClock.h"

#include <chrono>
#include <thread>

namespace velmora {

/// Waits until @p isDone answers true, and looks every few milliseconds; false after @p seconds.
template<class Condition>
[[nodiscard]] bool within(double seconds, Condition&& isDone) {
    const double deadline = steadySeconds() + seconds;
    while (!isDone()) {
        if (steadySeconds() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

} // namespace velmora
