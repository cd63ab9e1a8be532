// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/OfflineRender.h"

#include "sound/Limiter.h"
#include "sound/SynthEngine.h"
#include "studio/SinkThread.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <thread>
#include <vector>

namespace velmora {

namespace {
constexpr int kGrid = SynthEngine::kGridFrames;
/// FluidSynth's threads are worth their waking from about this many frames on.
constexpr int kBlockFrames = 4096;
constexpr int kTailFrames = 1024;
constexpr float kSilence = 0.5F / 32768.0F; ///< the most that a 16-bit file holds as zero
constexpr double kQuietSeconds = 0.25;
constexpr double kLastFrame = 1e15;
constexpr double kUsualTail = 2; ///< seconds, as far as the progress is concerned

float peak(std::span<const float> samples) {
    float highest = 0;
    for (const float sample : samples)
        highest = std::max(highest, std::fabs(sample));
    return highest;
}

class Renderer {
public:
    Renderer(SynthEngine& engine, SinkThread& sink, const RenderOptions& options, double seconds)
        : engine_(engine)
        , sink_(sink)
        , options_(options)
        , expected_((seconds + kUsualTail) * options.sampleRate)
        , block_(std::size_t{2} * 2 * kBlockFrames) {}

    /// False if it was cancelled or the sink failed.
    bool play(std::span<const TimedMessage> messages) {
        for (const TimedMessage& message : messages) {
            if (!renderUntil(gridFrame(message.seconds)))
                return false;
            if (message.reset)
                engine_.reset();
            else
                engine_.apply(message.word);
        }
        return true;
    }

    /// Renders until every voice has ended, for a voice may be silent now and loud later, but leaves out all
    /// silence after the last sound beyond kQuietSeconds.
    bool ringOut() {
        const std::int64_t last = frame_ + std::int64_t{options_.sampleRate} * static_cast<int>(kLongestTail);
        const int enough = static_cast<int>(kQuietSeconds * options_.sampleRate);
        int heard = filled_; // frames of the block up to the last sound
        while (frame_ < last && (engine_.voicesSounding() > 0 || filled_ - heard < enough)) {
            if (options_.cancel.stop_requested())
                return false;
            if (peak(render(kTailFrames)) <= kSilence)
                continue;
            if (filled_ >= kBlockFrames && !hand())
                return false;
            heard = filled_;
        }
        render(Limiter::kDelay); // what the limiter still holds
        filled_ = std::min(filled_, heard + enough + Limiter::kDelay);
        return hand();
    }

    [[nodiscard]] double seconds() const { return static_cast<double>(given_) / options_.sampleRate; }

private:
    /// The first frame of the grid block that a moment falls into; the present one if that is past.
    [[nodiscard]] std::int64_t gridFrame(double seconds) const {
        const double frame = std::floor(seconds * options_.sampleRate + 0.5);
        if (!(frame > static_cast<double>(frame_)))
            return frame_;
        return static_cast<std::int64_t>(std::min(frame, kLastFrame)) / kGrid * kGrid;
    }

    bool renderUntil(std::int64_t frame) {
        while (frame_ < frame) {
            render(static_cast<int>(std::min<std::int64_t>(frame - frame_, kBlockFrames)));
            if (filled_ >= kBlockFrames && !hand())
                return false;
        }
        return true;
    }

    /// Appends to the block, which seldom grows: only by silence at the end that sound may follow.
    std::span<const float> render(int frames) {
        const std::size_t needed = std::size_t{2} * static_cast<std::size_t>(filled_ + frames);
        if (block_.size() < needed)
            block_.resize(needed);
        float* samples = block_.data() + std::ptrdiff_t{2} * filled_;
        engine_.render(samples, frames);
        filled_ += frames;
        frame_ += frames;
        return {samples, std::size_t{2} * static_cast<std::size_t>(frames)};
    }

    /// Hands the block on, without the limiter's delay at the very beginning.
    bool hand() {
        limiter_.process(block_.data(), filled_);
        const int skipped = std::min(filled_, Limiter::kDelay - dropped_);
        const std::span<const float> sound(block_.data(), std::size_t{2} * static_cast<std::size_t>(filled_));
        dropped_ += skipped;
        given_ += filled_ - skipped;
        filled_ = 0;
        if (options_.cancel.stop_requested() || !sink_.give(sound.subspan(std::size_t{2} * skipped)))
            return false;
        if (options_.progress)
            options_.progress(std::min(0.99, static_cast<double>(frame_) / expected_));
        return true;
    }

    SynthEngine& engine_;
    SinkThread& sink_;
    const RenderOptions& options_;
    double expected_; ///< frames
    std::vector<float> block_;
    int filled_ = 0;         ///< frames of the block
    std::int64_t frame_ = 0; ///< rendered
    std::int64_t given_ = 0; ///< frames for the sink
    int dropped_ = 0;
    Limiter limiter_;
};

RenderResult failed(std::string error) {
    return {RenderResult::End::Failed, std::move(error), 0};
}
} // namespace

int coresHere() {
    constexpr unsigned kMost = 16; // beyond, the effects hold them up, which one thread calculates
    return static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, kMost));
}

RenderResult renderOffline(std::span<const TimedMessage> messages, SampleSink& sink,
                           const RenderOptions& options) {
    if (std::string error = sink.open(); !error.empty())
        return failed(std::move(error));
    const SynthEngine::Created created = SynthEngine::create(
        {.soundFont = options.soundFont, .sampleRate = options.sampleRate, .cores = options.cores});
    if (!created.engine)
        return failed(created.error);

    SinkThread writer(sink);
    Renderer renderer(*created.engine, writer, options, messages.empty() ? 0 : messages.back().seconds);
    const bool whole = renderer.play(messages) && renderer.ringOut();
    if (!whole && options.cancel.stop_requested())
        return {RenderResult::End::Cancelled, {}, renderer.seconds()};
    // If the sink failed, finishing tells why.
    if (std::string error = writer.finish(); !error.empty())
        return failed(std::move(error));
    if (options.progress)
        options.progress(1);
    return {RenderResult::End::Done, {}, renderer.seconds()};
}

} // namespace velmora
