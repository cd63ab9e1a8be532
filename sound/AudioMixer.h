// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/AudioBell.h"
#include "sound/AudioDriver.h"
#include "sound/AudioSlots.h"
#include "sound/AudioSource.h"
#include "sound/Limiter.h"
#include "sound/StreamClock.h"

#include <atomic>
#include <cstdint>

namespace velmora {

/// What every block of the stream goes through: its moment, the sources, the limiter, the taps.
class AudioMixer {
public:
    /// No block that a source or a tap sees is longer.
    static constexpr int kMaxBlockFrames = 1024;
    /// Seconds by which a block may begin before the end of the one before, where the clock was set anew.
    static constexpr double kOverlap = 0.003;

    AudioSlots<AudioSource, 32> sources;
    AudioSlots<AudioTap, 8> taps;
    AudioBell bell; ///< to be rung after a source or a tap is added, and when a source goes on after a rest

    /// Renders the request. Where it would reach further than `kOverlap` back into what has been rendered, as
    /// at a change of drivers, silence goes out and neither source nor tap is called: for them time goes on
    /// without a seam. Thread-safe: one caller at a time. Realtime-safe: yes.
    void render(const StreamRequest& request) noexcept;

    /// Fills one block of at most `kMaxBlockFrames`, at the moment that it names: sources, limiter, taps.
    /// Thread-safe: as `render`. Realtime-safe: yes.
    void mix(const AudioBlock& block) noexcept;

    /// True if every source rests and there is no tap. For the thread that renders, between two renderings.
    /// Realtime-safe: yes.
    [[nodiscard]] bool isSilent() noexcept;

    /// Steady seconds of the last callback; 0 before the first.
    /// Thread-safe: yes. Realtime-safe: yes.
    [[nodiscard]] double lastCalled() const noexcept { return lastCalled_.load(std::memory_order_relaxed); }
    /// Seconds from the moment of a message to its sound, as far as the server knows. Thread-safe: yes.
    [[nodiscard]] double latency() const noexcept { return latency_.load(std::memory_order_relaxed); }
    /// Frames that sources have rendered so far. Thread-safe: yes.
    [[nodiscard]] std::int64_t frames() const noexcept { return frames_.load(std::memory_order_relaxed); }
    [[nodiscard]] const StreamClock& clock() const noexcept { return clock_; }

private:
    [[nodiscard]] int framesToSkip(double moment, int frames) const noexcept;
    [[nodiscard]] bool isTapped() noexcept;

    StreamClock clock_{kAudioRate};
    Limiter limiter_;
    double renderedTo_ = 0; ///< the moment up to which sources have rendered
    std::atomic<double> lastCalled_{0};
    std::atomic<double> latency_{0};
    std::atomic<std::int64_t> frames_{0};
};

} // namespace velmora
