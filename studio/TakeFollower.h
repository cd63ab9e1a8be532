// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/SampleSink.h"

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace velmora {

class GrowingWav;

/// Hands what is in a growing file to a sink, on a thread of its own: an encoder beside a recording. It reads
/// the file, so a slow sink holds up nobody, takes no memory and loses nothing.
class TakeFollower {
public:
    /// @param sink not opened yet
    /// @param file outlives this
    TakeFollower(std::unique_ptr<SampleSink> sink, const GrowingWav& file);
    /// Lets the sink go unfinished.
    ~TakeFollower();
    TakeFollower(const TakeFollower&) = delete;
    TakeFollower& operator=(const TakeFollower&) = delete;

    /// There is more in the file. Thread-safe: yes.
    void grown();
    /// Waits until the sink has all that is in the file, and gives it; none if it has failed.
    [[nodiscard]] std::unique_ptr<SampleSink> takeSink();

private:
    enum class Phase : std::uint8_t { Following, Ending, Dropping };
    void run();
    [[nodiscard]] bool handOn();
    [[nodiscard]] bool isDropping();
    void stop(Phase phase);

    std::unique_ptr<SampleSink> sink_;
    const GrowingWav& file_;
    std::int64_t done_ = 0; ///< frames
    std::mutex mutex_;
    std::condition_variable news_;
    Phase phase_ = Phase::Following;
    bool failed_ = false;
    std::thread thread_; ///< last: it uses all of the above
};

} // namespace velmora
