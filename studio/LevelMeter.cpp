// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/LevelMeter.h"

#include "sound/AudioDriver.h"

#include <cmath>

namespace velmora {

namespace {
constexpr float kFull = 32766.5F / 32768; ///< rounds to the last 16-bit value
constexpr float kNothing = 1e-6F;         ///< -120 dB
constexpr double kFall = 2.302585;        ///< 20 dB a second, as an exponent
} // namespace

std::array<float, 2> peaksOf(std::span<const float> stereo) noexcept {
    float left = 0;
    float right = 0;
    for (std::size_t i = 0; i + 1 < stereo.size(); i += 2) {
        const float a = std::fabs(stereo[i]);
        const float b = std::fabs(stereo[i + 1]);
        left = a > left ? a : left; // what is no number is never larger
        right = b > right ? b : right;
    }
    return {left, right};
}

void LevelMeter::hear(std::span<const float> stereo) noexcept {
    constexpr auto kRelaxed = std::memory_order_relaxed;
    constexpr auto kHoldFrames = static_cast<int>(kHold * kAudioRate);
    const auto highest = peaksOf(stereo);
    const int frames = static_cast<int>(stereo.size() / 2);
    const auto fall = static_cast<float>(std::exp(-kFall * frames / kAudioRate));
    for (std::size_t i = 0; i < sides_.size(); ++i) {
        Side& side = sides_[i];
        const float fallen = side.peak.load(kRelaxed) * fall;
        const float peak = std::fmax(highest[i], fallen > kNothing ? fallen : 0.0F);
        side.peak.store(peak, kRelaxed);
        side.heldFrames += frames;
        if (peak >= side.held.load(kRelaxed))
            side.heldFrames = 0;
        if (side.heldFrames == 0 || side.heldFrames > kHoldFrames)
            side.held.store(peak, kRelaxed);
        if (highest[i] >= kFull)
            side.clipped.store(true, kRelaxed);
    }
}

Levels LevelMeter::levels() const noexcept {
    Levels now;
    for (std::size_t i = 0; i < sides_.size(); ++i) {
        now.peak[i] = sides_[i].peak.load(std::memory_order_relaxed);
        now.held[i] = sides_[i].held.load(std::memory_order_relaxed);
        now.clipped[i] = sides_[i].clipped.load(std::memory_order_relaxed);
    }
    return now;
}

void LevelMeter::putOutLamps() noexcept {
    for (Side& side : sides_)
        side.clipped.store(false, std::memory_order_relaxed);
}

} // namespace velmora
