// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/QtMessageLoop.h"

#include "base/SteadyClock.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QPointer>
#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

namespace velmora {

namespace {
/// A wake-up repeats until the wait it is for has seen it: an event loop inside may have taken the first one.
constexpr timespec kRepeat{.tv_sec = 0, .tv_nsec = 5'000'000};

/// No event is served so shortly before a moment: painting under the mouse, once begun, would make it late.
/// Events wait for that time at most; a shorter wait serves what is there at its beginning.
constexpr double kQuietSeconds = 0.002;

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
} // namespace

/// Wakes Qt's event loop at a moment on the steady clock. Qt's own timers count whole milliseconds.
class QtMessageLoop::WakeUp {
public:
    explicit WakeUp(QAbstractEventDispatcher* dispatcher)
        : dispatcher_(dispatcher)
        , descriptor_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))
        , notifier_(descriptor_, QSocketNotifier::Read) {
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] {
            std::uint64_t expirations = 0;
            [[maybe_unused]] const auto taken = ::read(descriptor_, &expirations, sizeof expirations);
        });
    }
    ~WakeUp() {
        notifier_.setEnabled(false);
        if (descriptor_ >= 0)
            close(descriptor_);
    }
    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;

    [[nodiscard]] bool belongsTo(const QAbstractEventDispatcher* dispatcher) const {
        return dispatcher_ == dispatcher;
    }
    /// Zero for never. False if it will not come, for want of a descriptor.
    bool setTo(double moment) {
        const itimerspec time{.it_interval = kRepeat, .it_value = monotonicTime(moment)};
        return timerfd_settime(descriptor_, TFD_TIMER_ABSTIME, &time, nullptr) == 0;
    }

private:
    QPointer<QAbstractEventDispatcher> dispatcher_;
    int descriptor_;
    QSocketNotifier notifier_;
};

QtMessageLoop::QtMessageLoop() = default;
QtMessageLoop::~QtMessageLoop() = default;

void QtMessageLoop::serveEventsUntil(double moment, double due) {
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    if (!dispatcher || moment <= now())
        return;
    if (!wakeUp_ || !wakeUp_->belongsTo(dispatcher))
        wakeUp_ = std::make_unique<WakeUp>(dispatcher);
    // The wait around this one may be about to sleep when this one returns: its wake-up is put back.
    const double outerMoment = std::exchange(moment_, moment);
    const double outerDue = std::exchange(due_, due_ > 0 ? std::min(due_, due) : due);
    while (!left_ && now() < moment && wakeUp_->setTo(moment))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    moment_ = outerMoment;
    due_ = outerDue;
    wakeUp_->setTo(left_ ? std::min(outerMoment, now()) : outerMoment);
}

double QtMessageLoop::now() const {
    return steadySeconds();
}

void QtMessageLoop::YieldIfInput() {
    QCoreApplication::processEvents();
}

void QtMessageLoop::serveUntil(double moment) {
    const double wake = moment - kPolledSeconds;
    if (const double quiet = moment - kQuietSeconds; quiet > now())
        serveEventsUntil(quiet, moment);
    else if (wake > now())
        YieldIfInput();
    if (left_)
        return;
    if (wake > now())
        sleepUntil(wake);
    while (now() < moment) {
    }
}

std::optional<double> QtMessageLoop::nextDue() const {
    return due_ > 0 ? std::optional(due_) : std::nullopt;
}

void QtMessageLoop::leave() {
    left_ = true;
    if (moment_ > 0) // the innermost wait may be about to sleep, too
        wakeUp_->setTo(now());
}

void QtMessageLoop::block(double seconds) {
    sleepUntil(now() + seconds);
}

} // namespace velmora
