// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/QtMessageLoop.h"

#include "shell/SteadyClock.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <sys/timerfd.h>
#include <unistd.h>

namespace velmora {

namespace {
/// A sleep ends this much early and the rest is polled: waking up is late by about half of it.
constexpr double kPolledSeconds = 0.0001;

timespec monotonicTime(double moment) {
    double whole = 0;
    const double part = std::modf(std::clamp(moment, 0.0, 1e9), &whole);
    return {.tv_sec = static_cast<time_t>(whole), .tv_nsec = static_cast<long>(part * 1e9)};
}

void sleepUntil(double moment) {
    const timespec time = monotonicTime(moment);
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr) == EINTR) {
    }
}

/// Wakes Qt's event loop once, at a moment on the steady clock. Qt's own timers count whole milliseconds.
class WakeUp {
public:
    explicit WakeUp(double moment)
        : descriptor_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))
        , notifier_(descriptor_, QSocketNotifier::Read) {
        // A time of zero would disarm the timer.
        const itimerspec time{.it_interval = {}, .it_value = monotonicTime(std::max(moment, 1e-6))};
        failed_ = timerfd_settime(descriptor_, TFD_TIMER_ABSTIME, &time, nullptr) != 0;
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { come(); });
    }
    ~WakeUp() {
        notifier_.setEnabled(false);
        if (descriptor_ >= 0)
            close(descriptor_);
    }
    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;

    /// No descriptor was to be had: it will never come.
    [[nodiscard]] bool failed() const { return failed_; }
    [[nodiscard]] bool hasCome() const { return hasCome_; }

private:
    void come() {
        std::uint64_t expirations = 0;
        hasCome_ = read(descriptor_, &expirations, sizeof expirations) > 0 || hasCome_;
    }

    int descriptor_;
    QSocketNotifier notifier_;
    bool failed_ = false;
    bool hasCome_ = false;
};

/// Every wait owns its wake-up, so a nested wait disturbs none outside it.
void serveEventsUntil(double moment) {
    const WakeUp wakeUp(moment);
    if (wakeUp.failed())
        return;
    while (!wakeUp.hasCome() && steadySeconds() < moment)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}
} // namespace

double QtMessageLoop::now() const {
    return steadySeconds();
}

void QtMessageLoop::yieldIfInput() {
    QCoreApplication::processEvents();
}

void QtMessageLoop::serveUntil(double moment) {
    const double wake = moment - kPolledSeconds;
    if (wake > now() && QAbstractEventDispatcher::instance())
        serveEventsUntil(wake);
    if (wake > now())
        sleepUntil(wake);
    while (now() < moment) {
    }
}

void QtMessageLoop::block(double seconds) {
    sleepUntil(now() + seconds);
}

} // namespace velmora
