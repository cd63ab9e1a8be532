// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Alarm.h"

#include "base/SteadyClock.h"

#include <algorithm>
#include <cstdint>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

namespace velmora {

namespace {
constexpr double kLeast = 1e-9; ///< zero would stop the timer
} // namespace

Alarm::Alarm(std::function<void()> onDue, double repeatSeconds)
    : repeatSeconds_(repeatSeconds)
    , descriptor_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))
    , notifier_(descriptor_, QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this, due = std::move(onDue)] {
        std::uint64_t expirations = 0;
        // Set anew between the wake-up and this call it has not come yet, and there is nothing to read.
        if (::read(descriptor_, &expirations, sizeof expirations) > 0 && due)
            due();
    });
}

Alarm::~Alarm() {
    notifier_.setEnabled(false);
    if (descriptor_ >= 0)
        close(descriptor_);
}

bool Alarm::setTo(double moment) {
    return arm(std::max(moment, kLeast), repeatSeconds_);
}

void Alarm::stop() {
    arm(0, 0);
}

bool Alarm::arm(double moment, double repeatSeconds) {
    const itimerspec time{.it_interval = timespecOf(repeatSeconds), .it_value = timespecOf(moment)};
    return timerfd_settime(descriptor_, TFD_TIMER_ABSTIME, &time, nullptr) == 0;
}

} // namespace velmora
