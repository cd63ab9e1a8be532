// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/CdTracks.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace velmora {

/// What audio CDs are made of, in tests.

/// Noise, so that no two places are alike: interleaved stereo.
inline std::vector<std::int16_t> noise(std::size_t frames, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<std::int16_t> samples(frames * 2);
    for (std::int16_t& sample : samples)
        sample = static_cast<std::int16_t>(random());
    return samples;
}

inline std::string bytesOf(const std::vector<std::int16_t>& samples) {
    std::string bytes(samples.size() * sizeof(std::int16_t), '\0');
    std::memcpy(bytes.data(), samples.data(), bytes.size());
    return bytes;
}

inline void writeFile(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}
inline std::string readFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// A WAV file of 16 bits, with a chunk before its sound and one behind.
inline std::filesystem::path writeWav(const std::filesystem::path& file,
                                      const std::vector<std::int16_t>& samples, int rate = 44100,
                                      int channels = 2) {
    const auto number = [](std::uint32_t value, std::size_t bytes) {
        std::string text(bytes, '\0');
        std::memcpy(text.data(), &value, bytes);
        return text;
    };
    const auto chunk = [&](const char* name, const std::string& bytes) {
        return name + number(static_cast<std::uint32_t>(bytes.size()), 4) + bytes +
               std::string(bytes.size() % 2, '\0');
    };
    const auto frame = static_cast<std::uint32_t>(channels) * 2;
    const auto perSecond = static_cast<std::uint32_t>(rate);
    const std::string format = number(1, 2) + number(static_cast<std::uint32_t>(channels), 2) +
                               number(perSecond, 4) + number(perSecond * frame, 4) + number(frame, 2) +
                               number(16, 2);
    const std::string body = "WAVE" + chunk("junk", "odd") + chunk("fmt ", format) +
                             chunk("data", bytesOf(samples)) + chunk("tail", "end!");
    writeFile(file, chunk("RIFF", body));
    return file;
}

/// Tracks of files that are tracks.
inline CdTracks tracksOf(const std::vector<std::filesystem::path>& files) {
    CdTracks tracks;
    for (const auto& file : files)
        EXPECT_EQ(tracks.add(file), "");
    return tracks;
}

/// The bytes of a track on the disc.
inline std::string filledUp(const std::vector<std::int16_t>& samples, std::int64_t sectors) {
    std::string bytes = bytesOf(samples);
    bytes.resize(static_cast<std::size_t>(sectors) * kSectorBytes, '\0');
    return bytes;
}

} // namespace velmora
