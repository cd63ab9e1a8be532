// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/RecoveryWatch.h"

#include "base/MessageLoop.h"
#include "composition/RecoveryFile.h"
#include "composition/Workspace.h"

#include <algorithm>
#include <cstdlib>

namespace velmora {

namespace {
constexpr double kAfterStep = 0.002; ///< for the work of the step
constexpr double kWhileWriting = 1;
constexpr double kLeastPeriod = 0.1;
constexpr double kReserve = 4;   ///< times what a look has cost
constexpr double kHeldUp = -0.1; ///< a step that is so late waits for a menu or a message, not for a look
} // namespace

double RecoveryWatch::periodOfUser() {
    const char* seconds = std::getenv("VELMORA_RECOVERY_PERIOD");
    const double wanted = seconds ? std::strtod(seconds, nullptr) : 0;
    return wanted > 0 ? std::clamp(wanted, kLeastPeriod, kPeriod) : kPeriod;
}

double RecoveryWatch::look() {
    if (const double wait = waitForTime(); wait > 0)
        return wait;
    const double begin = loop_.now();
    const auto kept = file_.keep(workspace_.score, workspace_.setup);
    cost_ = std::max(cost_, loop_.now() - begin);
    return kept == RecoveryFile::Kept::Busy ? std::min(kWhileWriting, period_) : period_;
}

/// 0 if a look can delay nothing.
double RecoveryWatch::waitForTime() const {
    const auto due = loop_.nextDue();
    if (!due) // playing, but between two waits: in the work of a step
        return workspace_.play.Playing ? kAfterStep : 0;
    const double left = *due - loop_.now();
    if (left < kHeldUp || left >= std::max(kLeastTime, kReserve * cost_))
        return 0;
    return std::max(left, 0.0) + kAfterStep;
}

} // namespace velmora
