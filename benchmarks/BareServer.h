// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace velmora {

/// An X server of the benchmark's own, as long as it lives. It doesn't begin anew when its last client goes:
/// on a desktop there is always another one.
class BareServer {
public:
    BareServer() {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0)
            return;
        process_ = fork();
        if (process_ == 0) {
            const std::string end = std::to_string(ends[1]);
            if (!std::freopen("/dev/null", "w", stderr))
                _exit(126);
            execlp("Xvfb", "Xvfb", "-displayfd", end.c_str(), "-screen", "0", "1366x768x24", "-noreset",
                   "-nolisten", "tcp", static_cast<char*>(nullptr));
            _exit(127);
        }
        close(ends[1]);
        std::array<char, 16> text{};
        if (read(ends[0], text.data(), text.size() - 1) > 0)
            display_ = ":" + std::to_string(std::atoi(text.data()));
        close(ends[0]);
    }
    ~BareServer() {
        if (process_ > 0)
            kill(process_, SIGTERM);
    }
    BareServer(const BareServer&) = delete;
    BareServer& operator=(const BareServer&) = delete;

    [[nodiscard]] const std::string& display() const { return display_; }

private:
    pid_t process_ = -1;
    std::string display_;
};

} // namespace velmora
