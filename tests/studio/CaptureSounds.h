// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/AudioSource.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace velmora::testsounds {

/// Plays the samples that it has, once, from the block on in which it is started.
class SamplePlayer : public AudioSource {
public:
    explicit SamplePlayer(std::vector<float> stereo) : samples(std::move(stereo)) {}
    void render(const AudioBlock& block) noexcept override {
        const auto values = std::min(static_cast<std::size_t>(2 * block.frames), samples.size() - played);
        for (std::size_t i = 0; i < values; ++i)
            block.samples[i] += samples[played + i];
        played += values;
        if (played == samples.size())
            isThrough = true;
    }
    std::vector<float> samples;
    std::size_t played = 0;
    std::atomic<bool> isThrough{false};
};

/// 16-bit values as floats: every value within 32767 on both sides, in an order of its own, then as noise.
inline std::vector<std::int16_t> sixteenBitNoise(std::size_t values) {
    std::vector<std::int16_t> noise(values);
    std::uint32_t state = 7;
    for (std::int16_t& value : noise) {
        state = state * 1664525U + 1013904223U;
        value = static_cast<std::int16_t>(std::max(static_cast<int>(state >> 16U) - 32768, -32767));
    }
    return noise;
}
inline std::vector<float> floatsOf(const std::vector<std::int16_t>& values) {
    std::vector<float> floats;
    for (const std::int16_t value : values)
        floats.push_back(static_cast<float>(value) / 32768);
    return floats;
}

inline std::string bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}
inline std::uint64_t numberAt(const std::string& bytes, std::size_t offset, std::size_t size = 4) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < size; ++i)
        number |= std::uint64_t{static_cast<unsigned char>(bytes.at(offset + i))} << (8 * i);
    return number;
}
/// The 16-bit values behind so many bytes.
inline std::vector<std::int16_t> sixteenBitsOf(const std::string& bytes, std::size_t header = 44) {
    std::vector<std::int16_t> values((bytes.size() - header) / 2);
    std::memcpy(values.data(), bytes.data() + header, 2 * values.size());
    return values;
}

} // namespace velmora::testsounds
