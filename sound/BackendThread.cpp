// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/BackendThread.h"

#include "base/SteadyClock.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace velmora {

namespace {
std::chrono::steady_clock::time_point at(double moment) {
    using Clock = std::chrono::steady_clock;
    return Clock::time_point(
        std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(moment)));
}
} // namespace

/// What both threads know. The thread holds it too, so it outlives its owner if the back end hangs.
struct BackendThread::Shared {
    explicit Shared(std::unique_ptr<MidiBackend> given) : backend(std::move(given)) {}

    /// Under the lock.
    [[nodiscard]] bool hangs() const { return busySince > 0 && steadySeconds() - busySince > kHungSeconds; }

    std::unique_ptr<MidiBackend> backend; ///< the thread's alone

    std::mutex mutex; ///< guards all below; held briefly, never around a call of the back end
    std::condition_variable changed;
    std::deque<std::function<void(MidiBackend&)>> jobs;
    double busySince = 0; ///< steadySeconds at which the job at work began; 0 when there is none
    bool refreshing = false;
    bool listed = false;
    std::vector<std::string> destinations;
    bool ending = false;
    bool ended = false;
};

BackendThread::BackendThread(std::unique_ptr<MidiBackend> backend)
    : shared_(std::make_shared<Shared>(std::move(backend))) {
    std::thread(run, shared_).detach();
    refresh();
}

BackendThread::~BackendThread() {
    std::unique_lock lock(shared_->mutex);
    shared_->ending = true;
    shared_->changed.notify_all();
    if (!shared_->hangs())
        shared_->changed.wait_until(lock, at(steadySeconds() + kEndSeconds), [&] { return shared_->ended; });
}

void BackendThread::run(const std::shared_ptr<Shared>& shared) {
    std::unique_lock lock(shared->mutex);
    for (;;) {
        shared->changed.wait(lock, [&] { return shared->ending || !shared->jobs.empty(); });
        if (shared->jobs.empty())
            break;
        auto job = std::move(shared->jobs.front());
        shared->jobs.pop_front();
        shared->busySince = steadySeconds();
        lock.unlock();
        try {
            job(*shared->backend);
        } catch (...) {
            // A back end that fails has listed and opened nothing.
        }
        job = nullptr;
        lock.lock();
        shared->busySince = 0;
    }
    lock.unlock();
    shared->backend.reset();
    lock.lock();
    shared->ended = true;
    shared->changed.notify_all();
}

void BackendThread::post(std::function<void(MidiBackend&)> job) {
    const std::lock_guard lock(shared_->mutex);
    shared_->jobs.push_back(std::move(job));
    shared_->changed.notify_all();
}

void BackendThread::refresh() {
    {
        const std::lock_guard lock(shared_->mutex);
        if (std::exchange(shared_->refreshing, true))
            return;
    }
    // The thread holds the record for as long as it runs a job.
    post([shared = shared_.get()](MidiBackend& backend) {
        std::vector<std::string> names;
        try {
            names = backend.destinations();
        } catch (...) {
            names.clear();
        }
        const std::lock_guard lock(shared->mutex);
        shared->destinations = std::move(names);
        shared->refreshing = false;
        shared->listed = true;
        shared->changed.notify_all();
    });
}

std::vector<std::string> BackendThread::destinations() {
    const std::lock_guard lock(shared_->mutex);
    return shared_->hangs() ? std::vector<std::string>() : shared_->destinations;
}

void BackendThread::waitForFirstList(double moment) {
    std::unique_lock lock(shared_->mutex);
    shared_->changed.wait_until(lock, at(moment), [&] { return shared_->listed; });
}

namespace {
/// An open that the interface thread waits for, or has given up.
struct Opening {
    std::mutex mutex;
    std::condition_variable changed;
    bool done = false;
    bool abandoned = false;
    std::unique_ptr<MidiOutlet> outlet;
};
} // namespace

BackendThread::Opened BackendThread::open(const std::string& destination) {
    {
        const std::lock_guard lock(shared_->mutex);
        if (shared_->busySince > 0 && steadySeconds() - shared_->busySince > kOpenSeconds)
            return {Result::TimedOut, nullptr};
    }
    auto opening = std::make_shared<Opening>();
    post([opening, destination](MidiBackend& backend) {
        {
            const std::lock_guard lock(opening->mutex);
            if (opening->abandoned)
                return;
        }
        std::unique_ptr<MidiOutlet> outlet;
        try {
            outlet = backend.open(destination);
        } catch (...) {
            outlet = nullptr;
        }
        const std::lock_guard lock(opening->mutex);
        opening->done = true;
        if (!opening->abandoned) // otherwise it is closed here, where it was opened
            opening->outlet = std::move(outlet);
        opening->changed.notify_all();
    });
    std::unique_lock lock(opening->mutex);
    opening->changed.wait_until(lock, at(steadySeconds() + kOpenSeconds), [&] { return opening->done; });
    opening->abandoned = !opening->done;
    if (opening->abandoned)
        return {Result::TimedOut, nullptr};
    const auto result = opening->outlet ? Result::Opened : Result::Refused;
    return {result, std::move(opening->outlet)};
}

void BackendThread::release(std::unique_ptr<MidiOutlet> outlet) {
    if (!outlet)
        return;
    // Jobs are copied by type, so the outlet goes in as a shared one; the job is its only owner.
    post([outlet = std::shared_ptr<MidiOutlet>(std::move(outlet))](MidiBackend&) mutable { outlet.reset(); });
}

} // namespace velmora
