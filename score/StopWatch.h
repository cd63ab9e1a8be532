// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/MessageLoop.h"

#include <optional>
#include <vector>

namespace velmora {

/// Numbered stopwatches on the clock of one message loop. The first number is 1.
class mStopWatch {
public:
    explicit mStopWatch(MessageLoop& loop) : loop_(loop) {}

    /// Adds a watch, not yet started, and returns its number.
    int create();
    /// Starts a watch from zero, again if it runs already. False for a bad number.
    bool start(int watch);
    /// Seconds since the start; 0 for a bad number or a watch not started.
    [[nodiscard]] double elapsed(int watch) const;
    /// Serves the message loop for @p seconds from now; work done between two waits is not made up for.
    /// Returns at once for a bad number or a watch not started, whose elapsed time would never come.
    void WaitSeconds(int watch, double seconds);

private:
    struct Start {
        double at;
        double overhead; // what reading the clock costs
    };
    [[nodiscard]] const Start* started(int watch) const;

    MessageLoop& loop_;
    std::vector<std::optional<Start>> starts_;
};

} // namespace velmora
