// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/MidiBackends.h"
#include "sound/SpscRing.h"

#include <atomic>
#include <functional>
#include <semaphore>
#include <thread>

namespace velmora {

/// How fast an outlet hands messages on.
struct Pace {
    int burst = 64;               ///< so many at once, after a rest
    double secondsEach = 0.00025; ///< and then one in this time
};

/// An outlet with a thread of its own, for receivers that lose messages when too many come at once.
class PacedOutlet : public MidiOutlet {
public:
    /// Takes the bytes of one message, on the outlet's thread.
    using Sink = std::function<void(std::span<const unsigned char>)>;

    explicit PacedOutlet(Sink sink, Pace pace = {});
    ~PacedOutlet() override;
    PacedOutlet(const PacedOutlet&) = delete;
    PacedOutlet& operator=(const PacedOutlet&) = delete;

    bool send(std::uint32_t word) noexcept override;
    [[nodiscard]] std::size_t room() const noexcept override { return kQueueLength - queue_.size(); }
    [[nodiscard]] bool alive() const noexcept override { return true; }

private:
    void run();
    void handOn(std::uint32_t word);

    const Sink sink_;
    const Pace pace_;
    SpscRing<std::uint32_t, kQueueLength> queue_;
    std::counting_semaphore<> pushed_{0};
    std::atomic<double> giveUpAt_; ///< steadySeconds after which a closing outlet drops what is left
    std::atomic<bool> closing_{false};
    std::thread thread_; ///< last: it runs on all of the above
};

} // namespace velmora
