// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>

namespace velmora {

/// What all programs play together: the monitor of the sound server's default sink, as 44,100 stereo frames a
/// second. It ends where that sink or the server goes; it never goes over to a microphone.
class MonitorSource {
public:
    /// @param heard takes what is heard, from a thread of the library's, until this object ends
    explicit MonitorSource(std::function<void(std::span<const float>)> heard);
    /// Once it returns nothing calls `heard` any more.
    ~MonitorSource();
    MonitorSource(const MonitorSource&) = delete;
    MonitorSource& operator=(const MonitorSource&) = delete;

    /// Waits until it listens. Blank, or why it doesn't, in a sentence.
    [[nodiscard]] std::string waitUntilItListens(double seconds);
    /// Why it has ended; blank while it goes on. Thread-safe: yes.
    [[nodiscard]] std::string problem() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace velmora
