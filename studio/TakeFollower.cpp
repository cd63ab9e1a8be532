// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/TakeFollower.h"

#include "studio/GrowingWav.h"
#include "studio/TakeConverter.h"

#include <vector>

namespace velmora {

namespace {
constexpr std::int64_t kPiece = 4608; ///< frames; a few of an encoder's own
} // namespace

TakeFollower::TakeFollower(std::unique_ptr<SampleSink> sink, const GrowingWav& file)
    : sink_(std::move(sink))
    , file_(file)
    , thread_([this] { run(); }) {}

TakeFollower::~TakeFollower() {
    stop(Phase::Dropping);
}

void TakeFollower::stop(Phase phase) {
    {
        const std::lock_guard lock(mutex_);
        phase_ = phase;
    }
    news_.notify_one();
    if (thread_.joinable())
        thread_.join();
}

void TakeFollower::grown() {
    { const std::lock_guard lock(mutex_); } // not between the look at the file and the wait
    news_.notify_one();
}

std::unique_ptr<SampleSink> TakeFollower::takeSink() {
    stop(Phase::Ending);
    return failed_ ? nullptr : std::move(sink_);
}

void TakeFollower::run() {
    failed_ = !sink_->open().empty();
    while (!failed_) {
        {
            std::unique_lock lock(mutex_);
            news_.wait(lock, [this] { return phase_ != Phase::Following || file_.frames() > done_; });
            if (phase_ == Phase::Dropping || (phase_ == Phase::Ending && file_.frames() <= done_))
                return;
        }
        failed_ = !handOn();
    }
}

bool TakeFollower::handOn() {
    const WaveFormat& format = file_.format();
    const auto alignment = static_cast<std::size_t>(format.alignment());
    std::vector<std::byte> bytes(kPiece * alignment);
    std::vector<float> samples(kPiece * static_cast<std::size_t>(format.channels));
    for (std::int64_t end = file_.frames(); done_ < end && !isDropping();) {
        const auto wanted = static_cast<std::size_t>(std::min(kPiece, end - done_));
        if (file_.read(done_, std::span(bytes).first(wanted * alignment)) != wanted * alignment)
            return false;
        const auto piece = std::span(samples).first(wanted * static_cast<std::size_t>(format.channels));
        floatsOf(format, std::span(bytes).first(wanted * alignment), piece);
        if (!sink_->write(piece).empty())
            return false;
        done_ += static_cast<std::int64_t>(wanted);
    }
    return true;
}

bool TakeFollower::isDropping() {
    const std::lock_guard lock(mutex_);
    return phase_ == Phase::Dropping;
}

} // namespace velmora
