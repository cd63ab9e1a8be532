// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/TakeText.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace velmora {

/// The last takes, each in a file of its own. While one goes on it is written twice a second, so that a crash
/// costs no more than that; what is cleared, saved or recorded over is in the stack already.
///
/// A thread of its own writes; what it could not write it keeps and tries again with the next. The calling
/// thread turns into text what the take has grown by. Files that make no sense are left alone and told of.
/// Thread-safe: no. Realtime-safe: no.
class TakeStack {
public:
    static constexpr std::size_t kMost = 20;
    static constexpr double kPeriod = 0.5; ///< seconds from one look at a take that goes on to the next

    /// Reads nothing yet. @param wall seconds since 1970
    explicit TakeStack(std::filesystem::path folder, std::function<double()> wall);
    /// What was looked at is on the disk.
    ~TakeStack();
    TakeStack(const TakeStack&) = delete;
    TakeStack& operator=(const TakeStack&) = delete;

    /// Called at the first failure, and for no later one, by the thread that writes; with the reason in
    /// words. To be set before the first look.
    std::function<void(const std::string&)> onTrouble;

    /// A take that can be chosen.
    struct Entry {
        std::filesystem::path file;
        std::int64_t when = 0;   ///< it began, in milliseconds since 1970
        std::int64_t length = 0; ///< milliseconds
        int ticks = 0;
    };
    /// The newest first; the one that goes on is among them.
    [[nodiscard]] const std::vector<Entry>& takes();
    /// A sentence for each file of the folder that is no whole take.
    [[nodiscard]] const std::vector<std::string>& unreadable();
    /// Puts a take of `takes` in the place of another. @return why it can't, the other being as it was; blank
    /// otherwise
    [[nodiscard]] std::string choose(std::size_t index, Take& take);

    /// Looks at the recorder's take: whenever it begins or stops, and until then as often as this asks for.
    /// @param tick seconds of its ticks
    /// @return seconds until the next look; nothing if none is needed before another take begins
    std::optional<double> look(const Take& take, bool isRecording, double tick);

    /// Waits until what was looked at has been written, or could not be.
    void finish();

private:
    struct Job {
        std::filesystem::path file;
        std::string text;
        std::vector<std::filesystem::path> displaced; ///< removed once it is written
    };

    void read();
    void keep();
    void submit(Job job);
    void work();
    void write(Job job);

    std::filesystem::path folder_;
    std::function<double()> wall_;
    bool isRead_ = false;
    std::vector<Entry> entries_;
    std::vector<std::string> unreadable_;

    // The take that goes on.
    bool goesOn_ = false;
    TakeRuns runs_;
    double seconds_ = 0;
    std::optional<std::size_t> kept_; ///< ticks that its entry has; nothing before there is one

    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable done_;
    std::deque<Job> jobs_; ///< under the mutex, as the next two
    bool writing_ = false;
    bool ending_ = false;
    std::map<std::filesystem::path, Job> unwritten_; ///< the thread's own, as the next, while it has work
    bool told_ = false;

    std::thread thread_; ///< last: it uses all of the above
};

} // namespace velmora
