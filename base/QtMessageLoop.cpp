// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/QtMessageLoop.h"

#include "base/Alarm.h"
#include "base/SteadyClock.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <utility>

namespace velmora {

namespace {
/// A wake-up repeats until the wait it is for has seen it: an event loop inside may have taken the first one.
constexpr double kRepeatSeconds = 0.005;

/// No event is served so shortly before a moment: painting under the mouse, once begun, would make it late.
/// Events wait for that time at most; a shorter wait serves what is there at its beginning.
constexpr double kQuietSeconds = 0.002;

/// A sleep ends this much early and the rest is polled: waking up is late by about half of it.
constexpr double kPolledSeconds = 0.0001;

void sleepUntil(double moment) {
    const timespec time = timespecOf(moment);
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr) == EINTR) {
    }
}
} // namespace

/// An alarm, and whose event loop it wakes.
struct QtMessageLoop::WakeUp {
    explicit WakeUp(QAbstractEventDispatcher* of) : dispatcher(of) {}

    QPointer<QAbstractEventDispatcher> dispatcher;
    Alarm alarm{{}, kRepeatSeconds};
};

QtMessageLoop::QtMessageLoop() = default;
QtMessageLoop::~QtMessageLoop() = default;

void QtMessageLoop::serveEventsUntil(double moment, double due) {
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    if (!dispatcher || moment <= now())
        return;
    if (!wakeUp_ || wakeUp_->dispatcher != dispatcher)
        wakeUp_ = std::make_unique<WakeUp>(dispatcher);
    // The wait around this one may be about to sleep when this one returns: its wake-up is put back.
    const double outerMoment = std::exchange(moment_, moment);
    const double outerDue = std::exchange(due_, due_ > 0 ? std::min(due_, due) : due);
    while (!left_ && now() < moment && wakeUp_->alarm.setTo(moment))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    moment_ = outerMoment;
    due_ = outerDue;
    if (outerMoment > 0)
        wakeUp_->alarm.setTo(left_ ? std::min(outerMoment, now()) : outerMoment);
    else
        wakeUp_->alarm.stop();
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
        wakeUp_->alarm.setTo(now());
}

void QtMessageLoop::block(double seconds) {
    sleepUntil(now() + seconds);
}

} // namespace velmora
