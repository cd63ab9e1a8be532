// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/TipTimer.h"

namespace velmora {

void TipTimer::moved(Mouse where) {
    if (where == Mouse::Outside) {
        tracking_ = false;
        return;
    }
    if (!tracking_) {
        tracking_ = true;
        running_ = true;
        last_.reset();
    }
}

bool TipTimer::hasRested(Point mouse) {
    if (mouse != last_) {
        count_ = 0;
        return false;
    }
    if (++count_ <= delayTime_)
        return false;
    count_ = 0;
    return alive_;
}

TipTimer::Act TipTimer::tick(Point mouse, Mouse where) {
    if (!running_)
        return Act::None;
    const bool due = tracking_ && !shown_ && hasRested(mouse);
    shown_ = shown_ || due;
    last_ = mouse;
    if (where == Mouse::Inside && count_ < killTime_) {
        count_ += shown_ ? 1 : 0;
        return due ? Act::Show : Act::None;
    }
    if (where == Mouse::Outside)
        stop();
    dismiss();
    return Act::Destroy;
}

void TipTimer::arm() {
    dismiss();
    alive_ = true;
}

void TipTimer::dismiss() {
    shown_ = false;
    count_ = 0;
}

void TipTimer::activated() {
    stop();
    dismiss();
    alive_ = true;
}

void TipTimer::windowDestroyed() {
    stop();
    dismiss();
    alive_ = false;
}

void TipTimer::stop() {
    running_ = false;
    tracking_ = false;
}

} // namespace velmora
