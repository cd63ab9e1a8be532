// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/TakeRun.h"

#include "sound/AudioDriver.h"
#include "studio/GrowingWav.h"
#include "studio/LevelMeter.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace velmora {

namespace {
constexpr std::chrono::milliseconds kRound{100}; ///< between two looks at what waits
constexpr std::size_t kPiece = 8192;             ///< values that are converted at once
constexpr float kHeard = 0.5F / 32768;
} // namespace

TakeRun::TakeRun(GrowingWav& file, Pace pace, std::function<void()> grown, std::size_t room)
    : file_(file)
    , grown_(std::move(grown))
    , converter_(file.format())
    , ring_(pace == Pace::Live ? std::make_unique<FrameRing>(room) : nullptr) {
    if (ring_)
        thread_ = std::thread([this] { run(); });
}

TakeRun::~TakeRun() {
    end();
}

void TakeRun::tapped(const AudioBlock& block) noexcept {
    hear({block.samples, static_cast<std::size_t>(kAudioChannels * block.frames)});
}

void TakeRun::hear(std::span<const float> stereo) noexcept {
    if (failed_.load(std::memory_order_relaxed))
        return;
    if (ring_) {
        ring_->push(stereo);
    } else {
        write(converter_.convert(stereo));
        tell();
    }
    const auto peaks = peaksOf(stereo);
    const auto heard = heard_.load(std::memory_order_relaxed) + static_cast<std::int64_t>(stereo.size() / 2);
    heard_.store(heard);
    if (std::max(peaks[0], peaks[1]) > kHeard)
        soundEnd_.store(heard);
}

void TakeRun::run() {
    std::unique_lock lock(mutex_);
    while (!ending_.wait_for(lock, kRound, [this] { return isEnding_; })) {
        lock.unlock();
        drain();
        tell();
        lock.lock();
    }
}

void TakeRun::drain() {
    std::array<float, kPiece> piece{};
    while (const std::size_t values = ring_->pop(piece))
        write(converter_.convert(std::span(piece).first(values)));
}

void TakeRun::write(std::span<const std::byte> bytes) {
    if (bytes.empty() || hasFailed())
        return;
    isTold_ = false;
    check(file_.append(bytes));
}

void TakeRun::tell() {
    if (isTold_)
        return;
    isTold_ = true;
    if (!hasFailed())
        check(file_.tell());
    grown_();
}

void TakeRun::end() {
    if (hasEnded_)
        return;
    hasEnded_ = true;
    if (thread_.joinable()) {
        {
            const std::lock_guard lock(mutex_);
            isEnding_ = true;
        }
        ending_.notify_one();
        thread_.join();
    }
    if (ring_) {
        ring_->settle();
        drain();
    }
    if (!hasFailed())
        write(converter_.finish());
    if (!hasFailed())
        check(file_.finish());
    grown_();
}

void TakeRun::check(std::string problem) {
    if (problem.empty())
        return;
    const std::lock_guard lock(mutex_);
    problem_ = std::move(problem);
    failed_ = true;
}

std::string TakeRun::problem() const {
    const std::lock_guard lock(mutex_);
    return problem_;
}

} // namespace velmora
