// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/AudioDriver.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <string_view>
#include <thread>

namespace velmora {

class AudioMixer;

/// All in seconds.
struct SupervisorTimes {
    double retry = 1.0;      ///< between two tries of the better rows
    double answer = 2.0;     ///< until a row that doesn't answer is given up
    double grace = 0.15;     ///< at the beginning, until the last row fills in for one that may still answer
    double standstill = 1.0; ///< without a callback, until a running stream is given up
};

/// Keeps the best driver that runs connected to the mixer. A thread of its own opens and closes streams, so
/// nobody waits for a server: it tries the rows above the running one about every second, goes over to one
/// once its device takes sound, and falls back to the last row as soon as the running stream fails or stands
/// still.
class StreamSupervisor {
public:
    /// @p rows in order of preference, at least one; they and the mixer must outlive the supervisor.
    StreamSupervisor(AudioMixer& mixer, std::span<const AudioDriverRow> rows, const StreamSettings& settings,
                     const SupervisorTimes& times = {});
    /// Ends whatever stream there is; takes a few milliseconds.
    ~StreamSupervisor();
    StreamSupervisor(const StreamSupervisor&) = delete;
    StreamSupervisor& operator=(const StreamSupervisor&) = delete;

    /// The name of the running row; blank before the first.
    /// Thread-safe: yes. Realtime-safe: yes.
    [[nodiscard]] std::string_view driver() const noexcept;
    /// How often a stream was put in place.
    /// Thread-safe: yes. Realtime-safe: yes.
    [[nodiscard]] int openings() const noexcept { return openings_.load(); }
    /// How often the server ran dry under the running stream.
    /// Thread-safe: yes. Realtime-safe: yes.
    [[nodiscard]] int underruns() const noexcept { return underruns_.load(); }

private:
    class Link;

    void run();
    void watchLive();
    void watchCandidate(double now);
    void tryFrom(std::size_t row, double now);
    void fallBack();
    void goLive(std::unique_ptr<Link> link);
    [[nodiscard]] std::unique_ptr<Link> open(std::size_t row);
    [[nodiscard]] std::size_t lastRow() const noexcept { return rows_.size() - 1; }
    [[nodiscard]] bool endedAfterWaiting();
    void wake() noexcept;

    AudioMixer& mixer_;
    std::span<const AudioDriverRow> rows_;
    StreamSettings settings_;
    SupervisorTimes times_;

    // The supervisor's thread alone.
    std::unique_ptr<Link> live_;
    std::unique_ptr<Link> candidate_;
    double lastTry_ = 0;   ///< steady seconds
    double graceEnds_ = 0; ///< until then the first candidate may answer before the last row runs

    std::atomic<int> liveRow_{-1};
    std::atomic<int> openings_{0};
    std::atomic<int> underruns_{0};

    std::mutex mutex_;
    std::condition_variable news_;
    bool hasNews_ = false;
    bool ending_ = false;
    std::thread thread_; ///< last: it uses all of the above
};

} // namespace velmora
