// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <limits>

namespace velmora {

/// Tells which moment of the steady clock each block of an audio stream renders.
///
/// Frame n of the stream renders the moment n / rate - lead. A callback at moment `called`, after which the
/// stream holds w frames, needs lead >= w / rate - called =: need, or else the block would render moments
/// still to come, and what is sent in them would be late. A server keeps its buffer filled to one level, so
/// `need` has a steady upper edge; callbacks that come late, or ask for the rest in a second call, stay below
/// it. Hence:
///
///  - lead = edge + margin, where edge is the largest need of the last 8 s. While lead stands still, moments
///  advance by
///    exactly frames / rate, and what was sent d apart is rendered d apart whatever the block sizes.
///  - A server clock that is fast or slow moves the edge by up to 0.2 ms a second. Lead follows it, by 300
///  millionths
///    of the time passed at the most, and only once they are `kStill` apart: 100 ms become 100.03 ms at
///    worst. The margin is what a rising edge gains on lead meanwhile.
///  - A need above lead sets lead anew at once. A need that stays `kJump` below for a quarter of a second
///  says that the
///    server stood still for a while (an underrun, a slow start), and lead is set anew as well. So it is when
///    the count of frames does not continue: a new stream.
class StreamClock {
public:
    static constexpr double kMargin = 0.0005;   ///< seconds between the edge and lead
    static constexpr double kJump = 0.005;      ///< seconds; less is made good by following slowly
    static constexpr double kSteepest = 300e-6; ///< seconds a second by which lead may follow

    /// @p rate frames a second.
    explicit StreamClock(double rate) noexcept : rate_(rate) { forget(); }

    /// The moment (steady seconds) that frame 0 of the block renders. @p called: when the callback began;
    /// @p written: frames of this stream before the block.
    /// Thread-safe: no, the audio thread's. Realtime-safe: yes.
    [[nodiscard]] double place(double called, std::int64_t written, int frames) noexcept;

    /// Seconds from the moment that the last block's first frame renders to its callback; 0 before the first.
    /// Thread-safe: yes. Realtime-safe: yes.
    [[nodiscard]] double distance() const noexcept { return distance_.load(std::memory_order_relaxed); }

    /// How often lead was set anew.
    /// Thread-safe: yes. Realtime-safe: yes.
    [[nodiscard]] int anchors() const noexcept { return anchors_.load(std::memory_order_relaxed); }

private:
    static constexpr double kStill = 0.0002;
    static constexpr double kFollowTime = 0.5;
    static constexpr double kSlot = 0.25; ///< seconds of one value of the edge's window
    static constexpr int kSlots = 32;
    static constexpr double kNone = -std::numeric_limits<double>::infinity();

    void forget() noexcept;
    void anchor(double called, double need) noexcept;
    void remember(double called, double need) noexcept;
    [[nodiscard]] double largestOf(int slots) const noexcept;
    [[nodiscard]] bool stoodStill() const noexcept;
    void follow(double seconds) noexcept;

    double rate_;
    double lead_ = 0;
    std::int64_t expected_ = -1;
    std::int64_t slot_ = 0;      ///< number of the newest slot
    std::int64_t firstSlot_ = 0; ///< that of the last anchor
    std::array<double, kSlots> needs_{};
    std::atomic<double> distance_{0};
    std::atomic<int> anchors_{0};
};

} // namespace velmora
