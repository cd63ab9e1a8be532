// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/ScoreExport.h"

#include <atomic>
#include <stop_token>
#include <thread>

namespace velmora {

/// A file of sound that is made on a thread of its own, behind whatever plays meanwhile. All calls come from
/// the thread that made it.
class ExportThread {
public:
    explicit ExportThread(SoundJob job);
    /// Cancels what still goes on, and waits for its end.
    ~ExportThread();
    ExportThread(const ExportThread&) = delete;
    ExportThread& operator=(const ExportThread&) = delete;

    [[nodiscard]] const std::filesystem::path& file() const { return job_.file; }
    /// From 0 to 1.
    [[nodiscard]] double share() const { return share_; }
    [[nodiscard]] bool hasEnded() const { return ended_; }
    /// Once it has ended.
    [[nodiscard]] const ExportOutcome& outcome() const { return outcome_; }
    /// Returns at once; the outcome comes soon.
    void cancel() { cancel_.request_stop(); }

private:
    SoundJob job_;
    std::stop_source cancel_;
    std::atomic<double> share_ = 0;
    std::atomic<bool> ended_ = false;
    ExportOutcome outcome_;
    std::thread thread_; ///< the last member: it uses all others
};

} // namespace velmora
