// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/WriteWatch.h"

#include <algorithm>

namespace velmora::burner {

void WriteWatch::look(const burn_progress& at) {
    const auto track = static_cast<std::size_t>(std::max(at.track, 0));
    if (isClosing_ || track >= tracks_.list().size() || (begun_ && track < track_))
        return;
    goTo(track);
    if (at.sectors <= 0) // near the end the library counts from 0 again
        return;
    show(std::clamp(static_cast<double>(at.sector) / at.sectors, 0.0, 1.0));
    // It has all of it: from now on it writes what lies behind the last track, which takes a while.
    if (at.sector >= at.sectors && track + 1 == tracks_.list().size())
        closeSession();
}

void WriteWatch::end() {
    if (isClosing_)
        return;
    goTo(tracks_.list().size() - 1);
    show(1);
    closeSession();
}

void WriteWatch::goTo(std::size_t track) {
    if (begun_ && track == track_)
        return;
    if (begun_)
        show(1);
    for (std::size_t next = begun_ ? track_ + 1 : 0; next <= track; ++next) {
        begun_ = true;
        track_ = next;
        shown_ = 0;
        events_.StartWriting(next);
        if (next < track)
            show(1);
    }
}

void WriteWatch::show(double share) {
    shown_ = std::max(shown_, share);
    double sectors = shown_ * static_cast<double>(tracks_.list()[track_].sectors);
    for (std::size_t i = 0; i < track_; ++i)
        sectors += static_cast<double>(tracks_.list()[i].sectors);
    total_ = std::max(total_, sectors / static_cast<double>(tracks_.sectors()));
    events_.WriteProgress(shown_, total_);
}

void WriteWatch::closeSession() {
    isClosing_ = true;
    events_.ClosingSession();
}

} // namespace velmora::burner
