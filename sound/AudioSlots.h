// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <thread>

namespace velmora {

/// A few objects that the audio thread visits and other threads put in and take out. Nothing is owned.
///
/// The visitor makes `round_` odd on entry and even on leaving. Whoever takes an object out empties its slot
/// first and then waits for the end of a round that is under way; a later round finds the slot empty (both
/// sides use sequentially consistent operations, so either the visitor sees the empty slot or the remover
/// sees the odd round).
template<class T, std::size_t N>
class AudioSlots {
public:
    /// False if all slots are taken. Adding what is there already changes nothing.
    /// Thread-safe: yes, but not from within a visit. Realtime-safe: no.
    bool add(T& item) {
        const std::scoped_lock lock(mutex_);
        std::atomic<T*>* empty = nullptr;
        for (auto& slot : slots_) {
            T* const held = slot.load();
            if (held == &item) {
                return true;
            }
            if (held == nullptr && empty == nullptr) {
                empty = &slot;
            }
        }
        if (empty != nullptr) {
            empty->store(&item);
        }
        return empty != nullptr;
    }

    /// Once it returns no visit is, or will be, in @p item. Harmless for what was never added.
    /// Thread-safe: yes, but not from within a visit. Realtime-safe: no, it may wait for the end of a block.
    void remove(T& item) {
        const std::scoped_lock lock(mutex_);
        for (auto& slot : slots_) {
            if (slot.load() == &item) {
                slot.store(nullptr);
                waitForVisitor();
            }
        }
    }

    /// Calls @p act for each object, in the order of the slots.
    /// Thread-safe: one visitor at a time. Realtime-safe: if @p act is.
    template<class Act>
    void visit(Act&& act) noexcept {
        round_.fetch_add(1);
        for (auto& slot : slots_) {
            if (T* const item = slot.load()) {
                act(*item);
            }
        }
        round_.fetch_add(1);
    }

private:
    void waitForVisitor() const {
        const std::uint64_t round = round_.load();
        while (round % 2 != 0 && round_.load() == round) {
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
    }

    std::mutex mutex_; ///< among those who add and remove; the visitor never takes it
    std::array<std::atomic<T*>, N> slots_{};
    std::atomic<std::uint64_t> round_{0};
};

} // namespace velmora
