// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/TakeRecorder.h"

namespace velmora {

void TakeRecorder::start() {
    take_.clear();
    down_ = kNoKey;
    state_ = State::WaitsForKey;
}

void TakeRecorder::struck(int row, double now, double tick) {
    Text7 = row;
    if (state_ != State::WaitsForKey)
        return;
    state_ = State::On;
    first_ = down_;
    count_ = 0;
    since_ = now;
    tick_ = tick;
    ticks_ = 0;
}

std::optional<double> TakeRecorder::nextDue() const {
    if (state_ != State::On)
        return std::nullopt;
    return since_ + static_cast<double>(ticks_) * tick_;
}

void TakeRecorder::sample(double tick) {
    count_ = down_ == first_ ? count_ + 1 : 0;
    take_.List1.push_back(count_);
    take_.List3.push_back(Text7);
    if (tick != tick_) {
        since_ += static_cast<double>(ticks_) * tick_;
        tick_ = tick;
        ticks_ = 0;
    }
    ++ticks_;
}

} // namespace velmora
