// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/PerformanceSound.h"

#include "base/PerChannel.h"
#include "sound/ShortMessage.h"
#include "sound/SynthEngine.h"

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {
constexpr int kGrid = SynthEngine::kGridFrames;
/// FluidSynth's threads are worth their waking from about this many frames on.
constexpr int kBlockFrames = 4096;
constexpr int kTailFrames = 1024;
constexpr float kSilence = 0.5F / 32768.0F; ///< the most that a 16-bit file holds as zero
constexpr double kQuietSeconds = 0.25;
constexpr double kLastFrame = 1e15;

float peak(std::span<const float> samples) {
    float highest = 0;
    for (const float sample : samples)
        highest = std::max(highest, std::fabs(sample));
    return highest;
}

/// The first frame of the grid block that a moment falls into.
std::int64_t gridFrameOf(double seconds, int rate) {
    const double frame = std::floor(seconds * rate + 0.5);
    return frame > 0 ? static_cast<std::int64_t>(std::min(frame, kLastFrame)) / kGrid * kGrid : 0;
}

/// Notes, and how hard their keys are held.
bool isOfANote(std::uint32_t word) {
    return shortmessage::status(word) <= 0xA0;
}

bool isProgram(std::uint32_t word) {
    return shortmessage::status(word) == 0xC0;
}
} // namespace

PerformanceSound::PerformanceSound(SynthEngine& engine, std::span<const TimedMessage> messages, int rate,
                                   std::int64_t from)
    : engine_(engine)
    , messages_(messages)
    , rate_(rate)
    , frame_(from / kGrid * kGrid)
    , given_(from)
    , block_(std::size_t{2} * 2 * kBlockFrames) {
    chase();
}

/// Everything but notes, in its order, since controllers build on each other; of the instruments only those
/// that are chosen at last, which have to be read from the disk.
void PerformanceSound::chase() {
    const std::size_t first = next_;
    PerChannel<std::size_t> program;
    for (; next_ < messages_.size() && gridFrameOf(messages_[next_].seconds, rate_) < frame_; ++next_)
        if (!messages_[next_].reset && isProgram(messages_[next_].word))
            program[shortmessage::channel(messages_[next_].word)] = next_;
    for (std::size_t i = first; i < next_; ++i) {
        const TimedMessage& message = messages_[i];
        const bool isPassed = isProgram(message.word) && program[shortmessage::channel(message.word)] != i;
        if (message.reset || (!isOfANote(message.word) && !isPassed))
            apply(message);
    }
}

void PerformanceSound::apply(const TimedMessage& message) {
    if (message.reset)
        engine_.reset();
    else
        engine_.apply(message.word);
}

std::span<float> PerformanceSound::next(const std::stop_token& cancel) {
    filled_ = heard_ = 0;
    const auto before = static_cast<int>(given_ - frame_); // rendered for the grid's sake alone
    play(cancel);
    if (!ended_ && next_ == messages_.size() && filled_ < kBlockFrames)
        ringOut(cancel);
    if (cancel.stop_requested())
        return {};
    const int first = std::min(std::max(before, 0), filled_);
    given_ += filled_ - first;
    return std::span(block_).subspan(std::size_t{2} * static_cast<std::size_t>(first),
                                     std::size_t{2} * static_cast<std::size_t>(filled_ - first));
}

void PerformanceSound::play(const std::stop_token& cancel) {
    while (next_ < messages_.size() && filled_ < kBlockFrames && !cancel.stop_requested()) {
        const std::int64_t due = gridFrame(messages_[next_].seconds);
        if (frame_ < due)
            render(static_cast<int>(std::min<std::int64_t>(due - frame_, kBlockFrames)));
        else
            apply(messages_[next_++]);
    }
}

/// Renders until every voice has ended, for a voice may be silent now and loud later, but leaves out all
/// silence after the last sound beyond kQuietSeconds. Returns at the end, or with a block that ends in sound.
void PerformanceSound::ringOut(const std::stop_token& cancel) {
    const int enough = static_cast<int>(kQuietSeconds * rate_);
    if (last_ < 0) {
        last_ = frame_ + std::int64_t{rate_} * static_cast<int>(kLongestTail);
        heard_ = filled_;
    }
    while (frame_ < last_ && (engine_.voicesSounding() > 0 || filled_ - heard_ < enough)) {
        if (cancel.stop_requested())
            return;
        if (peak(render(kTailFrames)) <= kSilence)
            continue;
        heard_ = filled_;
        if (filled_ >= kBlockFrames)
            return;
    }
    filled_ = std::min(filled_, heard_ + enough);
    ended_ = true;
}

/// The present frame for a moment that is past.
std::int64_t PerformanceSound::gridFrame(double seconds) const {
    return std::max(frame_, gridFrameOf(seconds, rate_));
}

/// Appends to the block, which seldom grows: only by silence at the end that sound may follow.
std::span<const float> PerformanceSound::render(int frames) {
    const std::size_t needed = std::size_t{2} * static_cast<std::size_t>(filled_ + frames);
    if (block_.size() < needed)
        block_.resize(needed);
    float* samples = block_.data() + std::ptrdiff_t{2} * filled_;
    engine_.render(samples, frames);
    filled_ += frames;
    frame_ += frames;
    return {samples, std::size_t{2} * static_cast<std::size_t>(frames)};
}

} // namespace velmora
