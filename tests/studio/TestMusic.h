// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <filesystem>
#include <numbers>
#include <random>
#include <span>
#include <string>
#include <vector>

/// Sounds to write into files, and how near what is read comes to them.
namespace velmora::testmusic {

/// Notes and noise, other on each side; in 16 bits.
inline std::vector<float> music(int rate, int channels, int frames) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> noise(-0.02, 0.02);
    std::vector<float> samples;
    for (int i = 0; i < frames; ++i) {
        for (int side = 0; side < channels; ++side) {
            const double phase = 2 * std::numbers::pi * (side == 0 ? 440.0 : 554.4) * i / rate;
            samples.push_back(
                static_cast<float>(std::lround((0.4 * std::sin(phase) + noise(random)) * 32768)) / 32768.0F);
        }
    }
    return samples;
}

inline void writeWav(const std::filesystem::path& path, std::span<const float> samples, int rate,
                     int channels, int width = SF_FORMAT_PCM_16) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = channels;
    info.format = SF_FORMAT_WAV | width;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    ASSERT_NE(file, nullptr);
    sf_write_float(file, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(file);
}

struct Decoded {
    std::vector<float> samples;
    int rate = 0;
    int channels = 0;
    int format = 0;
    std::int64_t frames = 0;
    std::string title;
    std::string artist;
};

/// All of a file that libsndfile reads.
inline Decoded readSound(const std::filesystem::path& file) {
    SF_INFO info{};
    SNDFILE* sound = sf_open(file.c_str(), SFM_READ, &info);
    Decoded result;
    if (!sound)
        return result;
    result.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
    result.frames = sf_readf_float(sound, result.samples.data(), info.frames);
    if (const char* title = sf_get_string(sound, SF_STR_TITLE))
        result.title = title;
    if (const char* artist = sf_get_string(sound, SF_STR_ARTIST))
        result.artist = artist;
    sf_close(sound);
    result.rate = info.samplerate;
    result.channels = info.channels;
    result.format = info.format;
    return result;
}

/// In decibels, how far the difference lies below the sound.
inline double belowSound(std::span<const float> sound, std::span<const float> other) {
    double wanted = 0;
    double difference = 0;
    for (std::size_t i = 0; i < std::min(sound.size(), other.size()); ++i) {
        wanted += double{sound[i]} * sound[i];
        difference += (double{sound[i]} - other[i]) * (double{sound[i]} - other[i]);
    }
    return 10 * std::log10(wanted / difference);
}

} // namespace velmora::testmusic
