// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/SpscRing.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velmora {

/// Stereo sound on its way from a thread that may not wait to one that may be held up for seconds. What finds
/// no room is lost, counted, and comes out as silence of its length, so that what follows keeps its time.
class FrameRing {
public:
    /// @param frames room; a power of two
    explicit FrameRing(std::size_t frames);

    /// For the pushing thread. Realtime-safe: yes.
    void push(std::span<const float> stereo) noexcept;
    /// Once nothing is pushed any more: makes silence of what was lost last. For the thread that knows so.
    void settle() noexcept;

    /// Takes out what is there, up to the room of @p to; returns how many values it was. For the popping
    /// thread.
    std::size_t pop(std::span<float> to) noexcept;
    /// Frames that found no room so far. Thread-safe: yes.
    [[nodiscard]] std::int64_t lost() const noexcept { return lost_.load(std::memory_order_relaxed); }

private:
    struct Gap {
        std::uint64_t before = 0; ///< the value that it comes before
        std::uint64_t values = 0;
    };
    static constexpr std::size_t kGaps = 64;

    SpscRing<Gap, kGaps> gaps_;
    alignas(64) std::atomic<std::uint64_t> begin_{0};
    alignas(64) std::atomic<std::uint64_t> end_{0};
    std::vector<float> values_;
    std::uint64_t gap_ = 0;    ///< values lost since the last that was taken; of the pushing thread
    std::uint64_t silent_ = 0; ///< values of the first gap that are out already; of the popping thread
    std::atomic<std::int64_t> lost_{0};
};

} // namespace velmora
