// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <cstddef>

namespace velmora {

/// A queue of fixed length between exactly one thread that pushes and one that pops. `kLength` is a power of
/// two. Realtime-safe: yes.
template<typename Item, std::size_t kLength>
class SpscRing {
    static_assert(kLength > 0 && (kLength & (kLength - 1)) == 0);

public:
    static constexpr std::size_t kCapacity = kLength;

    /// Appends, if @p spare places stay free behind the item. False if not: it is not taken. For the pushing
    /// thread.
    bool push(const Item& item, std::size_t spare = 0) noexcept {
        const auto end = end_.load(std::memory_order_relaxed);
        if (end - begin_.load(std::memory_order_acquire) + spare >= kLength)
            return false;
        items_[end % kLength] = item;
        end_.store(end + 1, std::memory_order_release);
        return true;
    }
    /// The oldest item, or null when empty. For the popping thread.
    [[nodiscard]] const Item* front() const noexcept {
        const auto begin = begin_.load(std::memory_order_relaxed);
        return begin == end_.load(std::memory_order_acquire) ? nullptr : &items_[begin % kLength];
    }
    /// Removes what `front` gave. For the popping thread, and only after `front` gave something.
    void pop() noexcept {
        begin_.store(begin_.load(std::memory_order_relaxed) + 1, std::memory_order_release);
    }

    /// Items inside, as of some moment near the call. Thread-safe: yes.
    [[nodiscard]] std::size_t size() const noexcept {
        const auto begin = begin_.load(std::memory_order_acquire);
        return end_.load(std::memory_order_acquire) - begin;
    }

private:
    std::array<Item, kLength> items_{};
    // Both only grow, and their difference is the number of items; apart, as each has its own writer.
    alignas(64) std::atomic<std::size_t> begin_{0};
    alignas(64) std::atomic<std::size_t> end_{0};
};

} // namespace velmora
