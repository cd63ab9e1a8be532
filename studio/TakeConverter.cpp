// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/TakeConverter.h"

#include "sound/AudioDriver.h"
#include "studio/WavFile.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace velmora {

namespace {
constexpr float kEightBits = 128; ///< steps on either side of silence, which is 128 itself

std::byte eightBits(float sample) {
    const float scaled = sample == sample ? sample * kEightBits : 0.0F;
    return static_cast<std::byte>(std::lrint(std::clamp(scaled, -kEightBits, kEightBits - 1) + kEightBits));
}

/// Files have the lower byte first.
std::int16_t asInFile(std::int16_t value) {
    if constexpr (std::endian::native == std::endian::big) {
        const auto bits = static_cast<std::uint16_t>(value);
        return static_cast<std::int16_t>(bits << 8U | bits >> 8U);
    }
    return value;
}
} // namespace

TakeConverter::TakeConverter(const WaveFormat& format) : format_(format) {
    if (format.rate != kAudioRate)
        resampler_.emplace(kAudioRate, format.rate, format.channels);
}

std::span<const std::byte> TakeConverter::convert(std::span<const float> stereo) {
    std::span<const float> samples = stereo;
    if (format_.channels == 1) {
        mono_.resize(stereo.size() / 2);
        for (std::size_t i = 0; i < mono_.size(); ++i)
            mono_[i] = (stereo[2 * i] + stereo[2 * i + 1]) / 2;
        samples = mono_;
    }
    if (resampler_) {
        resampled_.clear();
        resampler_->process(samples, resampled_);
        samples = resampled_;
    }
    return bytesOf(samples);
}

std::span<const std::byte> TakeConverter::finish() {
    resampled_.clear();
    if (resampler_)
        resampler_->finish(resampled_);
    return bytesOf(resampled_);
}

std::span<const std::byte> TakeConverter::bytesOf(std::span<const float> samples) {
    const std::size_t size = samples.size() * static_cast<std::size_t>(format_.bits) / 8;
    if (bytes_.size() < size)
        bytes_.resize(size);
    if (format_.bits == 16) {
        auto* const to = reinterpret_cast<std::int16_t*>(bytes_.data());
        toSixteenBits(samples, to);
        if constexpr (std::endian::native == std::endian::big)
            std::transform(to, to + samples.size(), to, asInFile);
    } else {
        std::ranges::transform(samples, bytes_.begin(), eightBits);
    }
    return std::span(bytes_).first(size);
}

void floatsOf(const WaveFormat& format, std::span<const std::byte> bytes, std::span<float> to) {
    if (format.bits == 16) {
        for (std::size_t i = 0; i < to.size(); ++i) {
            std::int16_t value = 0;
            std::memcpy(&value, &bytes[2 * i], sizeof value);
            to[i] = static_cast<float>(asInFile(value)) / 32768;
        }
    } else {
        std::ranges::transform(bytes.first(to.size()), to.begin(), [](std::byte value) {
            return (static_cast<float>(std::to_integer<int>(value)) - kEightBits) / kEightBits;
        });
    }
}

} // namespace velmora
