// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/MixPlayer.h"

#include "sound/AudioDriver.h"
#include "studio/Resampler.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace velmora {

namespace {
/// How long the way to silence is where sound is broken off: 6 ms. It comes after the frames that sounded, so
/// that none of them is changed.
constexpr int kDyingFrames = 256;
/// The ring lasts fifteen times as long.
constexpr std::chrono::milliseconds kLookAgain{100};
} // namespace

MixPlayer::MixPlayer(std::unique_ptr<FrameSource> source, Mix& mix)
    : mix_(mix)
    , isLive_(mix.isLive())
    , source_(std::move(source))
    , rate_(source_->rate())
    , chunk_(2 * kChunk)
    , length_(source_->length()) {
    if (isLive_)
        thread_ = std::thread([this] { read(); });
}

MixPlayer::~MixPlayer() {
    mix_.remove(*this);
    ending_.request_stop();
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = isNudged_ = true;
    }
    nudge_.notify_one();
    if (thread_.joinable())
        thread_.join();
}

std::int64_t MixPlayer::position() const {
    if (isThrough_.load(std::memory_order_acquire) && problem().empty())
        return std::min(to_, length());
    const std::int64_t taken = isStale_.load(std::memory_order_acquire) ? 0 : ring_.taken();
    if (taken == 0)
        return base_; // which need not be a frame of the mix
    const std::int64_t frame = framesAtRate(base_, rate_, kAudioRate) + taken;
    return std::min(framesAtRate(frame, kAudioRate, rate_), length());
}

/// What rings out after the end is no playing any more.
MediaMode MixPlayer::mode() const {
    const bool isOver =
        mode_ == MediaMode::Playing && (isThrough_.load(std::memory_order_acquire) || position() >= length());
    return isOver ? MediaMode::Stopped : mode_;
}

bool MixPlayer::isSounding() const {
    return mode_ == MediaMode::Playing && !isThrough_.load(std::memory_order_acquire);
}

std::string MixPlayer::problem() const {
    const std::lock_guard lock(mutex_);
    return problem_;
}

bool MixPlayer::play(std::int64_t from, std::int64_t to) {
    from = std::max<std::int64_t>(from, 0);
    if (to <= from || from >= length())
        return false;
    mix_.remove(*this);
    if (!problem().empty() || from != position())
        seek(from);
    const bool isToTheEnd = to >= length();
    to_ = isToTheEnd ? kNoLimit : to;
    limit_ =
        isToTheEnd ? kNoLimit : framesAtRate(to, rate_, kAudioRate) - framesAtRate(base_, rate_, kAudioRate);
    isThrough_.store(false, std::memory_order_release);
    start();
    return mode_ == MediaMode::Playing;
}

bool MixPlayer::pause() {
    if (mode() != MediaMode::Playing)
        return false;
    halt(MediaMode::Paused);
    return true;
}

bool MixPlayer::resume() {
    if (mode() != MediaMode::Paused)
        return false;
    mix_.remove(*this);
    start();
    return mode_ == MediaMode::Playing;
}

bool MixPlayer::stop() {
    if (mode() == MediaMode::Stopped)
        return false;
    halt(MediaMode::Stopped);
    return true;
}

/// Goes into the mix.
void MixPlayer::start() {
    sounds_ = true;
    dying_ = 0;
    mode_ = MediaMode::Playing;
    {
        const std::lock_guard lock(mutex_);
        isPlaying_ = isNudged_ = true;
    }
    nudge_.notify_one();
    if (mix_.add(*this)) {
        mix_.wake();
        return;
    }
    halt(MediaMode::Stopped);
    const std::lock_guard lock(mutex_);
    problem_ = "Too many sounds play already; nothing more can be played.";
}

/// Goes out of the mix; where somebody may hear it, not before a way to silence.
void MixPlayer::halt(MediaMode mode) {
    mix_.remove(*this);
    if (isThrough_.load(std::memory_order_acquire)) // in the meantime
        mode = MediaMode::Stopped;
    const bool breaksOff = sounds_ && !isThrough_.load(std::memory_order_acquire);
    sounds_ = false;
    mode_ = mode;
    {
        const std::lock_guard lock(mutex_);
        isPlaying_ = false;
    }
    if (isLive_ && breaksOff)
        dying_ = kDyingFrames;
    if (dying_ > 0)
        mix_.add(*this);
}

/// While it is out of the mix.
void MixPlayer::seek(std::int64_t frame) {
    base_ = frame;
    last_ = {};
    if (!isLive_) {
        seekNow(frame);
        return;
    }
    {
        const std::lock_guard lock(mutex_);
        isStale_.store(true, std::memory_order_release);
        wanted_ = frame;
        isNudged_ = true;
        problem_.clear();
    }
    nudge_.notify_one();
}

void MixPlayer::seekNow(std::int64_t frame) {
    ring_.clear();
    isWhole_.store(false, std::memory_order_release);
    source_->seek(frame);
    const std::lock_guard lock(mutex_);
    problem_ = source_->problem();
}

/// Reads one chunk into the ring. False if there is no room or nothing left.
bool MixPlayer::fill() {
    if (isWhole_.load(std::memory_order_relaxed) || ring_.room() < kChunk)
        return false;
    const std::size_t frames = source_->read(chunk_, ending_.get_token());
    ring_.push(std::span(chunk_).first(2 * frames));
    if (std::string problem = source_->problem(); !problem.empty()) {
        const std::lock_guard lock(mutex_);
        problem_ = std::move(problem);
    }
    if (frames < kChunk) {
        length_.store(source_->length(), std::memory_order_release);
        isWhole_.store(true, std::memory_order_release);
    }
    return true;
}

/// The reading thread. Nobody tells it that the ring has room again: the audio thread wakes nobody.
void MixPlayer::read() {
    std::unique_lock lock(mutex_);
    while (!isEnding_) {
        if (const auto frame = std::exchange(wanted_, std::nullopt)) {
            lock.unlock();
            seekNow(*frame);
            lock.lock();
            if (!wanted_)
                isStale_.store(false, std::memory_order_release);
        }
        lock.unlock();
        const bool goesOn = fill();
        lock.lock();
        if (goesOn || wanted_)
            continue;
        const auto nudged = [this] { return isNudged_; };
        if (isThirsty())
            nudge_.wait_for(lock, kLookAgain, nudged);
        else
            nudge_.wait(lock, nudged);
        isNudged_ = false;
    }
}

/// True if the ring will have room soon.
bool MixPlayer::isThirsty() const {
    return isPlaying_ && !isWhole_.load(std::memory_order_relaxed) &&
           !isThrough_.load(std::memory_order_acquire);
}

void MixPlayer::render(const AudioBlock& block) noexcept {
    if (!sounds_) {
        dieAway(block);
        return;
    }
    if (isThrough_.load(std::memory_order_relaxed) || isStale_.load(std::memory_order_acquire))
        return;
    while (!isLive_ && ring_.size() < static_cast<std::size_t>(block.frames) && fill()) {
    }
    const bool isWhole = isWhole_.load(std::memory_order_acquire);
    const std::int64_t inside = static_cast<std::int64_t>(ring_.size());
    const std::int64_t left = limit_ - ring_.taken();
    ring(block, std::min({std::int64_t{block.frames}, inside, left}));
    const bool isAtEnd = left <= block.frames && inside >= left;
    if (isAtEnd || (isWhole && inside <= block.frames))
        isThrough_.store(true, std::memory_order_release);
}

void MixPlayer::ring(const AudioBlock& block, std::int64_t frames) noexcept {
    last_ = {};
    if (frames <= 0)
        return;
    const std::size_t values = 2 * static_cast<std::size_t>(frames);
    const std::span<float> samples(block.samples, values);
    const float left = samples[values - 2];
    const float right = samples[values - 1];
    ring_.addTo(samples);
    last_ = {samples[values - 2] - left, samples[values - 1] - right};
}

void MixPlayer::dieAway(const AudioBlock& block) noexcept {
    for (int i = 0; i < block.frames && dying_ > 0; ++i) {
        const float share = static_cast<float>(--dying_) / kDyingFrames;
        for (std::size_t side = 0; side < 2; ++side)
            block.samples[2 * static_cast<std::size_t>(i) + side] += last_[side] * share;
    }
}

bool MixPlayer::rests() noexcept {
    return sounds_ ? isThrough_.load(std::memory_order_relaxed) : dying_ == 0;
}

} // namespace velmora
