// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velmora {

/// Stereo frames on their way from a thread that reads to the audio thread. Realtime-safe: yes, but for its
/// construction.
class PlayRing {
public:
    static constexpr std::size_t kFrames = 65'536; ///< a power of two: one and a half seconds

    /// How many frames find room. For the reading thread.
    [[nodiscard]] std::size_t room() const noexcept { return kFrames - size(); }
    /// Appends frames, of which there must be no more than `room`. For the reading thread.
    void push(std::span<const float> interleaved) noexcept {
        const std::int64_t end = end_.load(std::memory_order_relaxed);
        const std::span<const float> first = interleaved.first(std::min(interleaved.size(), upToSeam(end)));
        std::ranges::copy(first, &samples_[place(end)]);
        std::ranges::copy(interleaved.subspan(first.size()), samples_.data());
        end_.store(end + static_cast<std::int64_t>(interleaved.size() / 2), std::memory_order_release);
    }

    /// Adds the oldest frames to a block, of which there must be as many, and takes them out. For the audio
    /// thread.
    void addTo(std::span<float> interleaved) noexcept {
        const std::int64_t begin = begin_.load(std::memory_order_relaxed);
        const std::size_t first = std::min(interleaved.size(), upToSeam(begin));
        add(interleaved.first(first), &samples_[place(begin)]);
        add(interleaved.subspan(first), samples_.data());
        begin_.store(begin + static_cast<std::int64_t>(interleaved.size() / 2), std::memory_order_release);
    }

    /// Frames inside, as of some moment near the call. Thread-safe: yes.
    [[nodiscard]] std::size_t size() const noexcept {
        const std::int64_t begin = begin_.load(std::memory_order_acquire);
        return static_cast<std::size_t>(end_.load(std::memory_order_acquire) - begin);
    }
    /// Frames taken out since `clear`. Thread-safe: yes.
    [[nodiscard]] std::int64_t taken() const noexcept { return begin_.load(std::memory_order_acquire); }
    /// For the reading thread, while nobody takes anything out.
    void clear() noexcept {
        end_.store(0, std::memory_order_release);
        begin_.store(0, std::memory_order_release);
    }

private:
    [[nodiscard]] static std::size_t place(std::int64_t frame) noexcept {
        return 2 * (static_cast<std::size_t>(frame) % kFrames);
    }
    /// Values from there to where the ring begins again.
    [[nodiscard]] static std::size_t upToSeam(std::int64_t frame) noexcept {
        return 2 * kFrames - place(frame);
    }
    static void add(std::span<float> to, const float* from) noexcept {
        for (std::size_t i = 0; i < to.size(); ++i)
            to[i] += from[i];
    }

    // Both only grow, and their difference is what is inside; apart, as each has its own writer.
    alignas(64) std::atomic<std::int64_t> begin_{0};
    alignas(64) std::atomic<std::int64_t> end_{0};
    std::vector<float> samples_ = std::vector<float>(2 * kFrames);
};

} // namespace velmora
