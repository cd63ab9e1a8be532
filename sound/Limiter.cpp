// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/Limiter.h"

#include <algorithm>
#include <cmath>

namespace velmora {

// The gain that a frame wants is ceiling / peak. Three steps turn it into a gain without corners: the least
// wanted gain of the last 65 frames; from there upwards only by an exponential release; the mean of the last
// 64 values. When a frame leaves the delay line, each of those 64 values has had the frame in its window, so
// none of them is larger than the frame's own wanted gain, and neither is their mean.

namespace {
constexpr std::uint64_t kReleasePart = 4096;  ///< a 4096th of the way a frame: back to 63 % in 93 ms
constexpr std::uint32_t kReleaseLeast = 1024; ///< and a millionth of full gain at least, so that it arrives

bool isWithin(const float* samples, int count) noexcept {
    bool within = true;
    for (int i = 0; i < count; ++i)
        within &= std::fabs(samples[i]) <= Limiter::kCeiling; // no number is not
    return within;
}

float finiteOrSilent(float value) noexcept {
    return std::isfinite(value) ? value : 0.0F;
}
} // namespace

void Limiter::reset() noexcept {
    line_.fill(0);
    box_.fill(kUnity);
    sum_ = std::uint64_t{kUnity} * kDelay;
    frame_ = 0;
    head_ = count_ = 0;
    released_ = kUnity;
}

Limiter::Gain Limiter::heldMinimum(Gain wanted) noexcept {
    const auto at = [this](int index) -> Step& {
        return falling_[static_cast<std::size_t>((head_ + index) % kHold)];
    };
    if (count_ > 0 && at(0).frame <= frame_ - kHold) {
        head_ = (head_ + 1) % kHold;
        --count_;
    }
    while (count_ > 0 && at(count_ - 1).gain >= wanted) {
        --count_;
    }
    at(count_++) = {frame_, wanted};
    return at(0).gain;
}

Limiter::Gain Limiter::smoothed(Gain held) noexcept {
    const Gain rest = held > released_ ? held - released_ : 0;
    released_ = rest > 0
                    ? std::min<Gain>(held, released_ + static_cast<Gain>(rest / kReleasePart) + kReleaseLeast)
                    : held;
    Gain& oldest = box_[static_cast<std::size_t>(frame_ % kDelay)];
    sum_ += released_;
    sum_ -= oldest;
    oldest = released_;
    return static_cast<Gain>(sum_ / kDelay);
}

void Limiter::process(float* samples, int frames) noexcept {
    while (frames > 0) {
        const int place = static_cast<int>(frame_ % kDelay);
        const int piece = std::min(frames, kDelay - place); // up to the end of the delay line
        if (isAtUnity() && isWithin(samples, 2 * piece))
            pass(samples, place, piece);
        else
            limit(samples, piece);
        samples += std::ptrdiff_t{2} * piece;
        frames -= piece;
    }
}

/// True if no frame that is still to come out, nor one of those before, wanted another gain.
bool Limiter::isAtUnity() const noexcept {
    const bool isHeld = count_ > 0 && falling_[static_cast<std::size_t>(head_)].gain != kUnity;
    return !isHeld && released_ == kUnity && sum_ == std::uint64_t{kUnity} * kDelay;
}

/// What `limit` does for frames within the ceiling while the gain is one, and nearly all frames are.
void Limiter::pass(float* samples, int place, int frames) noexcept {
    std::swap_ranges(samples, samples + std::ptrdiff_t{2} * frames,
                     line_.begin() + std::ptrdiff_t{2} * place);
    frame_ += frames;
    falling_[static_cast<std::size_t>(head_)] = {frame_ - 1, kUnity};
    count_ = 1;
}

void Limiter::limit(float* samples, int frames) noexcept {
    for (int i = 0; i < frames; ++i, ++frame_, samples += 2) {
        const float left = finiteOrSilent(samples[0]);
        const float right = finiteOrSilent(samples[1]);
        const float peak = std::max(std::fabs(left), std::fabs(right));
        // Rounded down: a gain must never be too large.
        const Gain wanted =
            peak > kCeiling ? static_cast<Gain>(std::floor(double{kCeiling} / peak * kUnity)) : kUnity;
        const Gain gain = smoothed(heldMinimum(wanted));
        const float factor = static_cast<float>(gain) / static_cast<float>(kUnity);
        float* delayed = &line_[2 * static_cast<std::size_t>(frame_ % kDelay)];
        // The product may round up by one unit in the last place, hence the clamp.
        samples[0] = std::clamp(delayed[0] * factor, -kCeiling, kCeiling);
        samples[1] = std::clamp(delayed[1] * factor, -kCeiling, kCeiling);
        delayed[0] = left;
        delayed[1] = right;
    }
}

} // namespace velmora
