// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <cstddef>

namespace velmora {

/// A queue of fixed capacity from one thread to one other. Neither side ever waits.
/// Realtime-safe: yes, on both sides.
template<typename Event, std::size_t kCapacity>
class EventQueue {
    static_assert((kCapacity & (kCapacity - 1)) == 0, "places are found by masking");

public:
    /// Sender: appends, if @p spare places stay free behind it. False if not: the event is not taken.
    [[nodiscard]] bool push(const Event& event, std::size_t spare = 0) {
        const std::size_t end = end_.load(std::memory_order_relaxed);
        if (end - begin_.load(std::memory_order_acquire) + spare >= kCapacity)
            return false;
        events_[end % kCapacity] = event;
        end_.store(end + 1, std::memory_order_release);
        return true;
    }

    /// Receiver: the oldest event, or null. It stays until `pop`.
    [[nodiscard]] const Event* front() const {
        const std::size_t begin = begin_.load(std::memory_order_relaxed);
        return begin == end_.load(std::memory_order_acquire) ? nullptr : &events_[begin % kCapacity];
    }
    /// Receiver: removes the oldest event; there must be one.
    void pop() { begin_.store(begin_.load(std::memory_order_relaxed) + 1, std::memory_order_release); }

private:
    std::array<Event, kCapacity> events_{};
    alignas(64) std::atomic<std::size_t> begin_{
        0}; // counts that only grow; apart, as each has its own writer
    alignas(64) std::atomic<std::size_t> end_{0};
};

} // namespace velmora
