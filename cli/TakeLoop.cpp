// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/TakeLoop.h"

#include "cli/Interrupt.h"

#include <algorithm>

namespace velmora::cli {

namespace {
constexpr double kTickSeconds = 0.1;
}

void TakeLoop::serveUntil(double moment) {
    endIfDue();
    while (now() < moment) {
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
