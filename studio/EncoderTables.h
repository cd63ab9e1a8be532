// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace velmora {

/// `nMode` of the encoder's record.
inline constexpr int kJointStereo = 1;
inline constexpr int kMono = 3;

/// Rate and mode of an MP3 file by the index of `cbxFormat`. The rows don't follow the list's texts, and only
/// the first five are in reach: both are meant.
struct EncoderFormat {
    int rate; ///< `dwSampleRate`
    int mode; ///< `nMode`
};
inline constexpr std::array<EncoderFormat, 10> kEncoderFormats{{{22050, kJointStereo},
                                                                {22050, kMono},
                                                                {22050, kJointStereo},
                                                                {44100, kMono},
                                                                {44100, kJointStereo},
                                                                {44100, kMono},
                                                                {44100, kJointStereo},
                                                                {44100, kMono},
                                                                {44100, kJointStereo},
                                                                {48000, kJointStereo}}};

/// `Combo3`, "MP3 Quality".
struct EncoderQuality {
    std::string_view text;
    int preset; ///< `nPreset`
    int effort; ///< how hard LAME searches: 0 (slow) to 9 (quick), as the lame command's -q
};
inline constexpr std::array<EncoderQuality, 10> kEncoderQualities{{{"Low", 1, 7},
                                                                   {"Normal", 0, 5},
                                                                   {"High", 2, 2},
                                                                   {"Voice", 3, 5},
                                                                   {"Phone", 1000, 7},
                                                                   {"Radio", 6000, 5},
                                                                   {"Tape", 7000, 4},
                                                                   {"Hifi", 8000, 3},
                                                                   {"CD", 9000, 3},
                                                                   {"Studio", 10000, 2}}};
inline constexpr std::size_t kDefaultQuality = 9; ///< "Studio"
/// The effort for a preset of the table; none for any other.
[[nodiscard]] constexpr std::optional<int> effortOf(int preset) {
    for (const EncoderQuality& one : kEncoderQualities)
        if (one.preset == preset)
            return one.effort;
    return std::nullopt;
}

/// `Combo4`, "MP3 Bitrate": constant bitrates of MPEG 1 Layer III, kilobits per second.
inline constexpr std::array<int, 14> kMp3Bitrates{32,  40,  48,  56,  64,  80,  96,
                                                  112, 128, 160, 192, 224, 256, 320};
inline constexpr std::size_t kDefaultBitrate = 11; ///< 224

/// Rates that an MP3 file is given, in frames a second.
inline constexpr std::array<int, 6> kMp3Rates{16000, 22050, 24000, 32000, 44100, 48000};
/// The bitrate that a file of that rate can have: below 32,000 frames a second no more than 160.
[[nodiscard]] constexpr int bitrateAt(int rate, int bitrate) {
    constexpr int kFullRate = 32000;
    constexpr int kMostBelow = 160;
    return rate < kFullRate && bitrate > kMostBelow ? kMostBelow : bitrate;
}

} // namespace velmora
