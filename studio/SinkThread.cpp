// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/SinkThread.h"

namespace velmora {

SinkThread::SinkThread(SampleSink& sink) : sink_(sink), thread_([this] { run(); }) {}

SinkThread::~SinkThread() {
    stop(Phase::Dropping);
}

void SinkThread::stop(Phase phase) {
    {
        const std::lock_guard lock(mutex_);
        phase_ = phase;
    }
    given_.notify_one();
    if (thread_.joinable())
        thread_.join();
}

bool SinkThread::give(std::span<const float> interleaved) {
    std::unique_lock lock(mutex_);
    taken_.wait(lock, [this] { return waiting_ < kPlaces || failed_; });
    if (failed_)
        return false;
    std::vector<float>& block = blocks_[(first_ + waiting_) % kPlaces];
    lock.unlock(); // only the giver touches a free place
    block.assign(interleaved.begin(), interleaved.end());
    lock.lock();
    ++waiting_;
    lock.unlock();
    given_.notify_one();
    return true;
}

void SinkThread::run() {
    std::unique_lock lock(mutex_);
    for (;;) {
        given_.wait(lock, [this] { return waiting_ > 0 || phase_ != Phase::Taking; });
        if (waiting_ == 0 || phase_ == Phase::Dropping)
            return;
        const std::vector<float>& block = blocks_[first_];
        lock.unlock(); // only this thread touches the first of those that wait
        std::string error = sink_.write(block);
        lock.lock();
        first_ = (first_ + 1) % kPlaces;
        --waiting_;
        failed_ = !error.empty();
        error_ = std::move(error);
        taken_.notify_one();
        if (failed_)
            return;
    }
}

std::string SinkThread::finish() {
    stop(Phase::Ending);
    return failed_ ? error_ : sink_.finish();
}

} // namespace velmora
