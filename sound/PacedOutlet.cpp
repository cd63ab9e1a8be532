// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/PacedOutlet.h"

#include "base/SteadyClock.h"
#include "sound/MessageBytes.h"

#include <algorithm>
#include <limits>

namespace velmora {

namespace {
constexpr double kCloseSeconds = 1.0;
} // namespace

PacedOutlet::PacedOutlet(Sink sink, Pace pace)
    : sink_(std::move(sink))
    , pace_(pace)
    , giveUpAt_(std::numeric_limits<double>::infinity())
    , thread_(&PacedOutlet::run, this) {}

PacedOutlet::~PacedOutlet() {
    giveUpAt_ = steadySeconds() + kCloseSeconds;
    closing_ = true;
    pushed_.release();
    thread_.join();
}

bool PacedOutlet::send(std::uint32_t word) noexcept {
    if (!queue_.push(word))
        return false;
    pushed_.release();
    return true;
}

void PacedOutlet::run() {
    // The moment up to which messages have been paid for; at most a burst behind the clock.
    double paidUntil = 0;
    for (;;) {
        pushed_.acquire();
        const std::uint32_t* word = queue_.front();
        if (word == nullptr) {
            if (closing_)
                return;
            continue;
        }
        paidUntil =
            std::max(paidUntil, steadySeconds() - pace_.burst * pace_.secondsEach) + pace_.secondsEach;
        if (const double early = paidUntil - steadySeconds(); early > 0)
            std::this_thread::sleep_for(std::chrono::duration<double>(early));
        if (steadySeconds() > giveUpAt_)
            return;
        handOn(*word);
        queue_.pop();
    }
}

void PacedOutlet::handOn(std::uint32_t word) {
    const auto message = messageBytes(word);
    try {
        sink_(std::span(message.bytes).first(message.length));
    } catch (...) {
        // A message that the system refuses is lost, as on a cable that was pulled out.
    }
}

} // namespace velmora
