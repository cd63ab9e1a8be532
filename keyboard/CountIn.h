// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <algorithm>
#include <optional>

namespace velmora {

/// A bar of beats before a take: as many as the metronome has in a measure, from the next one on. The take
/// begins half a beat after the last of them, so that a first note that comes a little early is taken, too.
class CountIn {
public:
    void start(int beatsPerMeasure) {
        left_ = total_ = std::max(beatsPerMeasure, 1);
        due_.reset();
    }
    /// The metronome stopped, or the user thought better of it.
    void cancel() {
        left_ = total_ = 0;
        due_.reset();
    }
    /// Until it is over or cancelled.
    [[nodiscard]] bool isRunning() const { return total_ > 0; }

    /// A beat of the metronome. @param interval seconds between beats
    /// @return which of the bar it is, from 1; 0 for none of it
    int beat(double moment, double interval) {
        if (left_ == 0)
            return 0;
        if (--left_ == 0)
            due_ = moment + interval / 2;
        return total_ - left_;
    }
    /// When the take begins; nothing before the last beat.
    [[nodiscard]] std::optional<double> nextDue() const { return due_; }
    /// Whether the take begins at @p now: once, and the count-in is over by that.
    [[nodiscard]] bool isOver(double now) {
        if (!due_ || now < *due_)
            return false;
        cancel();
        return true;
    }

private:
    int total_ = 0;
    int left_ = 0;              ///< beats still to come
    std::optional<double> due_; ///< after the last beat
};

} // namespace velmora
