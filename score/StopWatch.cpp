// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/StopWatch.h"

namespace velmora {

int mStopWatch::create() {
    starts_.emplace_back();
    return static_cast<int>(starts_.size());
}

bool mStopWatch::start(int watch) {
    if (watch < 1 || watch > static_cast<int>(starts_.size()))
        return false;
    const double at = loop_.now();
    starts_[static_cast<std::size_t>(watch - 1)] = Start{at, loop_.now() - at};
    return true;
}

double mStopWatch::elapsed(int watch) const {
    const Start* start = started(watch);
    return start ? loop_.now() - start->at - start->overhead : 0;
}

void mStopWatch::WaitSeconds(int watch, double seconds) {
    if (started(watch))
        loop_.serveUntil(loop_.now() + seconds);
}

const mStopWatch::Start* mStopWatch::started(int watch) const {
    if (watch < 1 || watch > static_cast<int>(starts_.size()))
        return nullptr;
    const auto& start = starts_[static_cast<std::size_t>(watch - 1)];
    return start ? &*start : nullptr;
}

} // namespace velmora
