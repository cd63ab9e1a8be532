// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/AudioMixer.h"

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {
constexpr double kLimiterDelay = double{Limiter::kDelay} / kAudioRate;
/// More than any buffer: then the clock itself was set, and waiting for it would be a long silence.
constexpr double kLongestSkip = 1.0;
} // namespace

void AudioMixer::render(const StreamRequest& request) noexcept {
    const double start = clock_.place(request.called, request.written, request.frames);
    int done = framesToSkip(start, request.frames);
    std::fill_n(request.samples, kAudioChannels * done, 0.0F);
    while (done < request.frames) {
        const int frames = std::min(request.frames - done, kMaxBlockFrames);
        mix({request.samples + static_cast<std::ptrdiff_t>(kAudioChannels) * done, frames,
             start + double(done) / kAudioRate});
        done += frames;
    }
    latency_.store(request.called - start + request.ahead + kLimiterDelay, std::memory_order_relaxed);
    lastCalled_.store(request.called, std::memory_order_relaxed);
}

int AudioMixer::framesToSkip(double moment, int frames) const noexcept {
    const double behind = renderedTo_ - moment;
    if (behind <= kOverlap || behind > kLongestSkip) {
        return 0;
    }
    return static_cast<int>(std::min<double>(frames, std::round(behind * kAudioRate)));
}

void AudioMixer::mix(const AudioBlock& block) noexcept {
    std::fill_n(block.samples, kAudioChannels * block.frames, 0.0F);
    const bool tapped = isTapped();
    sources.visit([&](AudioSource& source) {
        if (tapped || !source.rests())
            source.render(block);
    });
    limiter_.process(block.samples, block.frames);
    // The limiter holds sound back: its first frame out was rendered that much earlier.
    const AudioBlock mixed{block.samples, block.frames, block.moment - kLimiterDelay};
    taps.visit([&](AudioTap& tap) { tap.tapped(mixed); });
    renderedTo_ = block.moment + double(block.frames) / kAudioRate;
    frames_.fetch_add(block.frames, std::memory_order_relaxed);
}

bool AudioMixer::isTapped() noexcept {
    bool tapped = false;
    taps.visit([&](AudioTap&) { tapped = true; });
    return tapped;
}

bool AudioMixer::isSilent() noexcept {
    bool silent = !isTapped();
    sources.visit([&](AudioSource& source) { silent = silent && source.rests(); });
    return silent;
}

} // namespace velmora
