// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QObject>

#include <atomic>
#include <functional>
#include <stop_token>
#include <string>
#include <thread>

namespace velmora {

/// One piece of work on a file at a time, on a thread of its own. All calls come from the thread that made
/// it.
class TakeWork {
public:
    using Progress = std::function<void(double share)>;
    /// Returns what there is to say of it; blank for nothing.
    using Job = std::function<std::string(const Progress& progress, const std::stop_token& cancel)>;

    TakeWork() = default;
    /// Cancels what goes on, and waits for its end; nobody is told.
    ~TakeWork();
    TakeWork(const TakeWork&) = delete;
    TakeWork& operator=(const TakeWork&) = delete;

    /// False if something goes on.
    /// @param done called on this thread, with the job's words
    bool start(Job job, std::function<void(const std::string& words)> done);
    void cancel() { thread_.request_stop(); }
    [[nodiscard]] bool isRunning() const { return running_; }
    [[nodiscard]] double share() const { return share_; }

private:
    QObject context_; ///< what is still to be told dies with it
    bool running_ = false;
    std::atomic<double> share_ = 0;
    std::jthread thread_;
};

} // namespace velmora
