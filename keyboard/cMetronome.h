// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <optional>

namespace velmora {

/// Raises a beat at a steady rate: the nth falls n intervals after the start, so that none shifts those that
/// follow. It is looked at in ticks of 25 ms from the start, and a beat comes with the first tick at or after
/// its moment. It makes no sound.
///
/// After a stall longer than a beat it goes on with the next beat that is still to come; those between are
/// lost.
class cMetronome {
public:
    static constexpr double kTickSeconds = 0.025;

    std::int32_t BeatsPerMeasure = 4;
    std::int32_t BeatsPerMinute = 120; ///< a new rate takes effect at the next start

    /// The first beat comes one interval later. The count goes on where it was.
    void StartMetronome(double now);
    void StopMetronome();
    [[nodiscard]] bool isRunning() const { return running_; }
    /// Seconds between beats of the rate it runs at.
    [[nodiscard]] double beatInterval() const { return BeatInterval; }
    /// When it was started.
    [[nodiscard]] double start() const { return start_; }

    /// The tick that brings the next beat; nothing while it is stopped.
    [[nodiscard]] std::optional<double> nextDue() const;
    /// The number of the beat that is due at @p now, from 1; nothing if none is.
    [[nodiscard]] std::optional<int> beat(double now);

private:
    double BeatInterval = 0.5;
    double start_ = 0;
    std::int64_t next_ = 1;      ///< the beat that is waited for, counted from the start
    std::int32_t BeatNumber = 0; ///< the last that was raised; 0 before the first
    bool running_ = false;
};

} // namespace velmora
