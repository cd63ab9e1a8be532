// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/cMetronome.h"

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {
constexpr double kSecondsOfMinute = 60;
/// Moments that are closer than this are the same: what adding and multiplying seconds costs.
constexpr double kSame = 1e-9;
} // namespace

void cMetronome::StartMetronome(double now) {
    BeatInterval = kSecondsOfMinute / std::max(BeatsPerMinute, 1);
    start_ = now;
    next_ = 1;
    running_ = true;
}

void cMetronome::StopMetronome() {
    running_ = false;
}

std::optional<double> cMetronome::nextDue() const {
    if (!running_)
        return std::nullopt;
    const double sinceStart = static_cast<double>(next_) * BeatInterval;
    return start_ + std::ceil((sinceStart - kSame) / kTickSeconds) * kTickSeconds;
}

std::optional<int> cMetronome::beat(double now) {
    const auto due = nextDue();
    if (!due || now + kSame < *due)
        return std::nullopt;
    // The beats that fell before now, but for the one that is raised, are lost.
    const auto passed = static_cast<std::int64_t>(std::floor((now + kSame - start_) / BeatInterval));
    next_ = std::max(next_, passed) + 1;
    BeatNumber = BeatNumber >= BeatsPerMeasure ? 1 : BeatNumber + 1;
    return BeatNumber;
}

} // namespace velmora
