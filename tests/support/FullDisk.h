// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <sys/resource.h>

#include <csignal>
#include <cstdint>

namespace velmora {

/// Files of this process can't grow beyond so many bytes while this lives, as on a disk that is full.
class FullDisk {
public:
    /// The signal that comes with it, which ends the process unless somebody ignores it.
    enum class Signal : std::uint8_t {
        Ignored,
        LeftAlone ///< what is tested sees to it
    };

    explicit FullDisk(rlim_t bytes, Signal signal = Signal::Ignored) : signal_(signal) {
        getrlimit(RLIMIT_FSIZE, &before_);
        if (signal_ == Signal::Ignored)
            handler_ = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit full{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        if (signal_ == Signal::Ignored)
            std::signal(SIGXFSZ, handler_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    Signal signal_;
    rlimit before_{};
    void (*handler_)(int) = SIG_DFL;
};

} // namespace velmora
