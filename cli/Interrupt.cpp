// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/Interrupt.h"

#include <array>
#include <atomic>
#include <csignal>

namespace velmora::cli {

namespace {
std::atomic<bool> came{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void remember(int /*signal*/) {
    came = true;
}
} // namespace

void catchInterrupts() {
    struct sigaction action {};
    action.sa_handler = remember;
    action.sa_flags = SA_RESETHAND;
    sigemptyset(&action.sa_mask);
    for (const int signal : std::array{SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
}

bool interrupted() {
    return came;
}

} // namespace velmora::cli
