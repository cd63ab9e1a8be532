// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/SpscRing.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

/// A descriptor that can be waited for and that any thread can make readable.
class WakeDescriptor {
public:
    WakeDescriptor();
    ~WakeDescriptor();
    WakeDescriptor(const WakeDescriptor&) = delete;
    WakeDescriptor& operator=(const WakeDescriptor&) = delete;

    /// Readable from now until `take`. Thread-safe: yes. Realtime-safe: yes, one system call that never
    /// waits, and none while it is readable already.
    void wake() noexcept;
    /// What was woken for is looked at after this call. For the thread that waits.
    void take() noexcept;
    /// -1 if the system had none left.
    [[nodiscard]] int descriptor() const { return descriptor_; }

private:
    int descriptor_;
    std::atomic<bool> awake_{false};
};

/// The message as the inputs hand it on: a note-on of velocity 0 becomes the note-off that it stands for.
/// Nothing for what isn't handed on: all but notes, controllers, channel pressure and pitch bend.
[[nodiscard]] std::optional<std::uint32_t> inputWord(std::uint32_t word) noexcept;

/// What one back end of MIDI inputs has heard and found, on its way to the interface thread.
class MidiInputQueue {
public:
    static constexpr std::size_t kLength = 4096;
    /// Places that note-ons and the rest leave for note-offs.
    static constexpr std::size_t kReserved = kLength / 4;

    struct Message {
        int source;
        std::uint32_t word;
        double moment; ///< steadySeconds at which it was played
    };
    struct Source {
        int id;
        std::string name; ///< in full
    };

    /// @param bell wakes the interface thread
    /// @param firstId of the sources' numbers, which go on in steps of @p step
    MidiInputQueue(std::shared_ptr<WakeDescriptor> bell, int firstId, int step);

    // For the thread of the back end.

    /// A source that is there from now on. Its messages come after this.
    int add(std::string name);
    /// It is gone. A number is never given twice.
    void remove(int source);
    void removeAll();
    /// True once the back end is to end.
    [[nodiscard]] bool ending() const noexcept { return ending_; }
    /// Waits until someone calls `wakeBackend`, for so many seconds at most.
    void rest(double seconds);
    /// Readable when `rest` would end; `rest(0)` takes that.
    [[nodiscard]] int descriptor() const { return backendBell_.descriptor(); }
    /// Thread-safe: yes.
    void wakeBackend() noexcept { backendBell_.wake(); }

    // For the one thread that hears.

    /// Hands a message on, unless it is of a kind that isn't. What finds no room is lost, and its source is
    /// to be silenced. Realtime-safe: yes.
    void push(int source, std::uint32_t word, double moment) noexcept;
    /// Messages were lost before they came here. Realtime-safe: yes.
    void lost() noexcept;

    // For the interface thread.

    [[nodiscard]] const Message* front() const noexcept { return ring_.front(); }
    void pop() noexcept { ring_.pop(); }
    /// The list, if it has changed since the last call.
    [[nodiscard]] std::optional<std::vector<Source>> takeSources();
    /// Whether messages were lost since the last call.
    [[nodiscard]] bool takeLost() noexcept { return lost_.exchange(false); }
    void end() noexcept;

private:
    SpscRing<Message, kLength> ring_;
    std::shared_ptr<WakeDescriptor> bell_;

    // Under the mutex.
    std::vector<Source> sources_;
    std::mutex mutex_;
    int nextId_;
    int step_;
    bool changed_ = false;

    WakeDescriptor backendBell_;
    std::atomic<bool> lost_{false};
    std::atomic<bool> ending_{false};
};

} // namespace velmora
