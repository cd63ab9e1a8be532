// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstdint>

namespace velmora {

/// Keeps a stereo stream within full scale. What stays at or below `kCeiling` comes out bit for bit, `kDelay`
/// frames later; anything louder is turned down smoothly, both sides alike, before its peak arrives. Values
/// that are no numbers, or infinite, count as silence. The result does not depend on how the stream is cut
/// into calls.
class Limiter {
public:
    static constexpr int kDelay = 64; ///< frames of look-ahead
    /// The loudest value that a 16-bit file can hold on both sides of zero.
    static constexpr float kCeiling = 32767.0F / 32768.0F;

    Limiter() noexcept { reset(); }

    /// Forgets all sound: the next `kDelay` frames out are silence.
    /// Thread-safe: no. Realtime-safe: yes.
    void reset() noexcept;

    /// Replaces @p frames interleaved stereo frames by the limited ones of `kDelay` frames ago.
    /// Thread-safe: no. Realtime-safe: yes.
    void process(float* samples, int frames) noexcept;

private:
    // Gains are fixed point, so that the running sum is exact and a gain of one is exactly one.
    using Gain = std::uint32_t;
    static constexpr Gain kUnity = 1U << 30U;
    /// A peak must be in view of the gain from its arrival until it leaves the delay line.
    static constexpr int kHold = kDelay + 1;

    struct Step {
        std::int64_t frame;
        Gain gain;
    };

    [[nodiscard]] bool isAtUnity() const noexcept;
    void pass(float* samples, int place, int frames) noexcept;
    void limit(float* samples, int frames) noexcept;
    [[nodiscard]] Gain heldMinimum(Gain wanted) noexcept;
    [[nodiscard]] Gain smoothed(Gain held) noexcept;

    std::array<float, 2 * static_cast<std::size_t>(kDelay)> line_{};
    std::array<Gain, static_cast<std::size_t>(kDelay)> box_{};
    std::array<Step, static_cast<std::size_t>(kHold)>
        falling_{}; ///< ring of ever larger gains: its head is the least
    std::int64_t frame_ = 0;
    std::uint64_t sum_ = 0;
    int head_ = 0;
    int count_ = 0;
    Gain released_ = kUnity;
};

} // namespace velmora
