// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace velmora {

/// The numbers of a WAV file of plain samples.
struct WaveFormat {
    int rate = 44100; ///< samplespersec
    int bits = 16;    ///< bitspersample
    int channels = 2;

    /// Bytes a frame.
    [[nodiscard]] constexpr int alignment() const { return bits * channels / 8; }
    [[nodiscard]] constexpr int bytesPerSecond() const { return rate * alignment(); }
    bool operator==(const WaveFormat&) const = default;
};

struct NamedWaveFormat {
    std::string_view text;
    WaveFormat format;
};
/// The texts that a recorder takes its numbers from.
inline constexpr std::array kWaveFormats{
    NamedWaveFormat{"22.050Hz, 8bit Mono, 21k/sec", {22050, 8, 1}},
    NamedWaveFormat{"22.050Hz, 8bit Stereo, 43k/sec", {22050, 8, 2}},
    NamedWaveFormat{"22.050Hz, 16bit Mono, 43k/sec", {22050, 16, 1}},
    NamedWaveFormat{"22.050Hz, 16bit Stereo, 86k/sec", {22050, 16, 2}},
    NamedWaveFormat{"44.100Hz, 8bit Mono, 43k/sec", {44100, 8, 1}},
    NamedWaveFormat{"44.100Hz, 8bit Stereo, 86k/sec", {44100, 8, 2}},
    NamedWaveFormat{"44.100Hz, 16bit Mono, 86k/sec", {44100, 16, 1}},
    NamedWaveFormat{"44.100Hz, 16bit Stereo, 172k/sec", {44100, 16, 2}},
    NamedWaveFormat{"48.000Hz, 16bit Stereo, 192k/sec", {48000, 16, 2}},
};
/// What `cbxFormat` offers: the last five.
inline constexpr std::size_t kOfferedFormats = 5;
inline constexpr std::size_t kDefaultOffer = 3; ///< "44.100Hz, 16bit Stereo, 172k/sec"
[[nodiscard]] constexpr const NamedWaveFormat& offeredFormat(std::size_t index) {
    return kWaveFormats[kWaveFormats.size() - kOfferedFormats + index];
}
[[nodiscard]] constexpr std::optional<WaveFormat> waveFormat(std::string_view text) {
    for (const NamedWaveFormat& one : kWaveFormats)
        if (one.text == text)
            return one.format;
    return std::nullopt;
}

} // namespace velmora
