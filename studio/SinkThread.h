// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/SampleSink.h"

#include <array>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace velmora {

/// Hands blocks of sound to a sink on a thread of its own, so that encoding and rendering go side by side. A
/// few blocks may wait; then the giver waits. Thread-safe: one giver.
class SinkThread {
public:
    /// @p sink is open, outlives this and is used by no one else meanwhile.
    explicit SinkThread(SampleSink& sink);
    /// Drops the blocks that wait.
    ~SinkThread();
    SinkThread(const SinkThread&) = delete;
    SinkThread& operator=(const SinkThread&) = delete;

    /// Gives a block; it is copied. False once the sink has failed: there is no use in going on.
    [[nodiscard]] bool give(std::span<const float> interleaved);
    /// Waits until everything is written and finishes the sink. Blank, or why it failed.
    [[nodiscard]] std::string finish();

private:
    static constexpr std::size_t kPlaces = 8;
    enum class Phase { Taking, Ending, Dropping };

    void run();
    void stop(Phase phase);

    SampleSink& sink_;
    std::mutex mutex_;
    std::condition_variable given_;
    std::condition_variable taken_;
    std::array<std::vector<float>, kPlaces> blocks_;
    std::size_t first_ = 0;
    std::size_t waiting_ = 0;
    Phase phase_ = Phase::Taking;
    bool failed_ = false;
    std::string error_;
    std::thread thread_; // last: it uses everything above
};

} // namespace velmora
