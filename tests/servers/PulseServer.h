// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace velmora {

/// A real sound server of the test's own, in a folder of its own, with one sink "out" that sounds nowhere.
/// While this object lives, the environment leads every client of this process there, whether or not the
/// server runs. Change it only while no stream is open in other threads: it writes the environment.
class PulseServer {
public:
    PulseServer();
    ~PulseServer();
    PulseServer(const PulseServer&) = delete;
    PulseServer& operator=(const PulseServer&) = delete;

    /// Returns once the server answers; throws std::runtime_error if it can't be started.
    void start();
    /// Ends the server without a farewell.
    void kill();
    void freeze();
    void thaw();
    /// Suspends the sink, or lets it go on; true on success.
    [[nodiscard]] bool suspendSink(bool isSuspended);
    /// Has `pactl` tell the server something, such as "set-sink-mute", "out", "1"; true on success.
    [[nodiscard]] bool tell(const std::vector<std::string>& words);
    /// True if anybody answers at the server's address.
    [[nodiscard]] bool answers() const;

private:
    std::filesystem::path folder_;
    std::string socket_;
    pid_t pid_ = 0;
};

} // namespace velmora
