// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

/// Sound files of the tests, byte by byte.
namespace velmora::testwaves {

inline std::string little(std::size_t value, int bytes) {
    std::string text;
    for (int shift = 0; shift < 8 * bytes; shift += 8)
        text += static_cast<char>(value >> shift);
    return text;
}

/// A file as a recorder writes it.
inline std::string wavOf(const std::vector<std::int16_t>& values, int rate = 44'100, int channels = 2) {
    const auto c = static_cast<std::size_t>(channels);
    const auto r = static_cast<std::size_t>(rate);
    std::string data;
    for (const std::int16_t value : values)
        data += little(static_cast<std::uint16_t>(value), 2);
    return "RIFF" + little(36 + data.size(), 4) + "WAVEfmt " + little(16, 4) + little(1, 2) + little(c, 2) +
           little(r, 4) + little(r * c * 2, 4) + little(c * 2, 2) + little(16, 2) + "data" +
           little(data.size(), 4) + data;
}

/// Every value that the limiter lets through.
inline std::vector<std::int16_t> noise(std::size_t frames, unsigned seed, std::size_t channels = 2) {
    std::minstd_rand random(seed);
    std::vector<std::int16_t> values(frames * channels);
    for (std::int16_t& value : values)
        value = static_cast<std::int16_t>(static_cast<int>(random() % 65'535) - 32'767);
    values[0] = 32'767;
    values[1] = -32'767;
    return values;
}

inline std::vector<float> exact(const std::vector<std::int16_t>& values) {
    std::vector<float> samples;
    for (const std::int16_t value : values)
        samples.push_back(static_cast<float>(value) / 32768);
    return samples;
}

} // namespace velmora::testwaves
