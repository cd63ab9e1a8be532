// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QSocketNotifier>

#include <functional>

namespace velmora {

/// Wakes the event loop of the thread that made it at a moment on the steady clock, `steadySeconds`. Qt's own
/// timers count whole milliseconds. One that is not set costs nothing.
class Alarm {
public:
    /// @param onDue is called by the event loop; null if waking is all
    /// @param repeatSeconds after the moment it comes again so often, until it is set anew; 0 for once
    explicit Alarm(std::function<void()> onDue, double repeatSeconds = 0);
    ~Alarm();
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;

    /// A moment that has passed is now. False if it will not come, for want of a descriptor.
    bool setTo(double moment);
    void stop();

private:
    bool arm(double moment, double repeatSeconds);

    double repeatSeconds_;
    int descriptor_;
    QSocketNotifier notifier_;
};

} // namespace velmora
