// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/Timetable.h"

#include <algorithm>

namespace velmora {

namespace {
constexpr double kShortestShare = 0.25; ///< of a step, between two that are late
constexpr double kMostMadeUpFor = 1;    ///< seconds lost in one step
} // namespace

double Timetable::next() const {
    return std::max(due(count_ + 1), last_ + kShortestShare * step_);
}

void Timetable::come(double now) {
    ++count_;
    const double late = std::max(now - due(count_), 0.0);
    if (late - late_ > kMostMadeUpFor) {
        start_ += late;
        late_ = 0;
    } else {
        late_ = late;
    }
    last_ = now;
}

Timetable Timetable::following(double step) const {
    Timetable other = *this;
    other.start_ = due(count_);
    other.step_ = step;
    other.count_ = 0;
    return other;
}

} // namespace velmora
