// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/Levels.h"

#include <array>
#include <atomic>
#include <span>

namespace velmora {

/// The highest absolute value of each side.
[[nodiscard]] std::array<float, 2> peaksOf(std::span<const float> stereo) noexcept;

/// What a level meter shows: falls by 20 dB a second, holds the highest for a while. `hear` is for one thread
/// at a time; the rest is thread-safe. Realtime-safe: yes.
class LevelMeter {
public:
    static constexpr double kHold = 1.5; ///< seconds

    /// The next sound, of 44,100 frames a second.
    void hear(std::span<const float> stereo) noexcept;
    [[nodiscard]] Levels levels() const noexcept;
    /// Puts out the lamps that tell of full scale.
    void putOutLamps() noexcept;

private:
    struct Side {
        std::atomic<float> peak{0};
        std::atomic<float> held{0};
        std::atomic<bool> clipped{false};
        int heldFrames = 0;
    };
    std::array<Side, 2> sides_;
};

} // namespace velmora
