// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/TakeLoop.h"

#include "cli/Interrupt.h"

#include <algorithm>

namespace velmora::cli {

namespace {
constexpr double kTickSeconds = 0.1;
/// Less than a frame of sound: a clock that counts frames may stand that far before a moment.
constexpr double kRounding = 1e-6;
} // namespace

void TakeLoop::serveUntil(double moment) {
    endIfDue();
    while (now() + kRounding < moment) {
        const double next = std::min(moment, now() + kTickSeconds);
        inner_.serveUntil(ended_ ? next : std::min(next, std::max(end_, now())));
        if (onTick)
            onTick();
        endIfDue();
    }
}

void TakeLoop::endIfDue() {
    if (ended_ || (!interrupted() && now() < end_))
        return;
    ended_ = true;
    if (onEnd)
        onEnd();
}

} // namespace velmora::cli
