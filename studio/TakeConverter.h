// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/Resampler.h"
#include "studio/WaveFormat.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velmora {

/// Turns what the mix gives, 44,100 stereo frames a second, into the bytes of a WAV file: the nearest value
/// of each sample; mono is the mean of both sides. Thread-safe: no. Realtime-safe: no.
class TakeConverter {
public:
    explicit TakeConverter(const WaveFormat& format);

    /// Why it can't work, as the end of a sentence; blank if it can.
    [[nodiscard]] std::string problem() const { return resampler_ ? resampler_->problem() : std::string(); }
    /// What is ready after this; it stands until the next call. At 44,100 Hz that is all.
    [[nodiscard]] std::span<const std::byte> convert(std::span<const float> stereo);
    /// The rest.
    [[nodiscard]] std::span<const std::byte> finish();

private:
    [[nodiscard]] std::span<const std::byte> bytesOf(std::span<const float> samples);

    WaveFormat format_;
    std::optional<Resampler> resampler_;
    std::vector<float> mono_;
    std::vector<float> resampled_;
    std::vector<std::byte> bytes_;
};

/// The other way: samples of the format as floats; a 16-bit value v is v / 32768.
/// @param to as many values as there are samples in @p bytes
void floatsOf(const WaveFormat& format, std::span<const std::byte> bytes, std::span<float> to);

} // namespace velmora
