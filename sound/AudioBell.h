// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <atomic>

namespace velmora {

/// Wakes a driver's thread that rests because nothing sounds. Who rests reads `rings`, looks whether there is
/// silence, and only then waits: whatever comes between has rung by then.
class AudioBell {
public:
    /// Ends every wait. Thread-safe: yes. Realtime-safe: no.
    void ring() noexcept {
        rings_.fetch_add(1);
        rings_.notify_all();
    }
    /// How often it has rung. Thread-safe: yes. Realtime-safe: yes.
    [[nodiscard]] unsigned rings() const noexcept { return rings_.load(); }
    /// Returns once it has rung more often than @p heard. Thread-safe: yes. Realtime-safe: no.
    void waitBeyond(unsigned heard) const noexcept { rings_.wait(heard); }

private:
    std::atomic<unsigned> rings_{0};
};

} // namespace velmora
