// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/StreamClock.h"

#include <algorithm>
#include <cmath>

namespace velmora {

double StreamClock::place(double called, std::int64_t written, int frames) noexcept {
    const double need = static_cast<double>(written + frames) / rate_ - called;
    const bool continues = written == expected_;
    expected_ = written + frames;
    if (!continues) {
        anchor(called, need);
    } else {
        remember(called, need);
        if (need > lead_) {
            anchor(called, need);
        } else if (stoodStill()) {
            anchor(called, largestOf(2));
        } else {
            follow(frames / rate_);
        }
    }
    const double moment = static_cast<double>(written) / rate_ - lead_;
    distance_.store(called - moment, std::memory_order_relaxed);
    return moment;
}

void StreamClock::forget() noexcept {
    needs_.fill(kNone);
}

void StreamClock::anchor(double called, double need) noexcept {
    forget();
    remember(called, need);
    firstSlot_ = slot_;
    lead_ = need + kMargin;
    anchors_.fetch_add(1, std::memory_order_relaxed);
}

void StreamClock::remember(double called, double need) noexcept {
    const auto now = static_cast<std::int64_t>(std::floor(called / kSlot));
    if (now < slot_ || now - slot_ >= kSlots) {
        forget();
    } else {
        for (auto old = slot_ + 1; old <= now; ++old) {
            needs_[static_cast<std::size_t>(old % kSlots)] = kNone;
        }
    }
    slot_ = now;
    double& largest = needs_[static_cast<std::size_t>(now % kSlots)];
    largest = std::max(largest, need);
}

/// Over the newest @p slots slots.
double StreamClock::largestOf(int slots) const noexcept {
    double largest = kNone;
    for (int back = 0; back < slots; ++back) {
        largest = std::max(largest, needs_[static_cast<std::size_t>((slot_ + kSlots - back) % kSlots)]);
    }
    return largest;
}

/// One whole slot must have passed: a single low need is only a callback that will be followed by another.
bool StreamClock::stoodStill() const noexcept {
    const bool previousIsWhole =
        slot_ - 1 > firstSlot_ && needs_[static_cast<std::size_t>((slot_ + kSlots - 1) % kSlots)] > kNone;
    return previousIsWhole && largestOf(2) + kMargin < lead_ - kJump;
}

void StreamClock::follow(double seconds) noexcept {
    const double away = largestOf(kSlots) + kMargin - lead_;
    const double beyond = std::fabs(away) - kStill;
    if (beyond > 0) {
        lead_ += std::copysign(std::min(beyond / kFollowTime, kSteepest) * seconds, away);
    }
}

} // namespace velmora
