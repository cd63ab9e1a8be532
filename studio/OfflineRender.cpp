// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/OfflineRender.h"

#include "sound/Limiter.h"
#include "sound/SynthEngine.h"
#include "studio/SinkThread.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <thread>

namespace velmora {

namespace {
constexpr double kUsualTail = 2; ///< seconds, as far as the progress is concerned

/// What comes out of the limiter for all of it, without the delay at the very beginning.
class LimitedSound {
public:
    LimitedSound(SinkThread& sink, const RenderOptions& options, double seconds)
        : sink_(sink)
        , options_(options)
        , expected_((seconds + kUsualTail) * options.sampleRate) {}

    /// False if it was cancelled or the sink failed.
    bool play(PerformanceSound& sound) {
        for (;;) {
            const std::span<float> stretch = sound.next(options_.cancel);
            if (options_.cancel.stop_requested())
                return false;
            if (stretch.empty())
                return letGo();
            if (!hand(stretch))
                return false;
            if (options_.progress)
                options_.progress(std::min(0.99, static_cast<double>(sound.frame()) / expected_));
        }
    }
    [[nodiscard]] double seconds() const { return static_cast<double>(given_) / options_.sampleRate; }

private:
    /// Replaces what it is given by what comes out.
    bool hand(std::span<float> stretch) {
        const int frames = static_cast<int>(stretch.size() / 2);
        limiter_.process(stretch.data(), frames);
        const int skipped = std::min(frames, Limiter::kDelay - dropped_);
        dropped_ += skipped;
        given_ += frames - skipped;
        return sink_.give(stretch.subspan(std::size_t{2} * static_cast<std::size_t>(skipped)));
    }

    /// What the limiter still holds.
    bool letGo() {
        std::array<float, std::size_t{2} * Limiter::kDelay> silence{};
        return hand(silence);
    }

    SinkThread& sink_;
    const RenderOptions& options_;
    double expected_;        ///< frames
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
    PerformanceSound sound(*created.engine, messages, options.sampleRate);
    LimitedSound limited(writer, options, messages.empty() ? 0 : messages.back().seconds);
    const bool whole = limited.play(sound);
    if (!whole && options.cancel.stop_requested())
        return {RenderResult::End::Cancelled, {}, limited.seconds()};
    // If the sink failed, finishing tells why.
    if (std::string error = writer.finish(); !error.empty())
        return failed(std::move(error));
    if (options.progress)
        options.progress(1);
    return {RenderResult::End::Done, {}, limited.seconds()};
}

} // namespace velmora
