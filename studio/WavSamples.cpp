// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/WavSamples.h"

#include "studio/WavReader.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <span>

namespace velmora {

namespace {
std::uint64_t wordAt(const std::uint8_t* at, int bytes, bool isBigEndian) {
    std::uint64_t word = 0;
    for (int i = 0; i < bytes; ++i)
        word = word << 8 | at[isBigEndian ? i : bytes - 1 - i];
    return word;
}

void putWord(std::uint64_t word, std::uint8_t* at, int bytes, bool isBigEndian) {
    for (int i = 0; i < bytes; ++i, word >>= 8)
        at[isBigEndian ? bytes - 1 - i : i] = static_cast<std::uint8_t>(word & 0xFFU);
}

double sensible(double value) {
    if (std::isfinite(value))
        return value;
    return std::isnan(value) ? 0 : std::copysign(1.0, value);
}
} // namespace

double sampleAt(const WavHeader& header, const std::uint8_t* at) {
    const int bytes = header.sampleBytes();
    const std::uint64_t word = wordAt(at, bytes, header.isBigEndian);
    switch (header.encoding) {
    case WavEncoding::Plain:
        if (bytes == 1)
            return (static_cast<double>(word) - 128) / 128;
        return std::ldexp(static_cast<double>(static_cast<std::int64_t>(word << (64 - 8 * bytes))), -63);
    case WavEncoding::Float:
        return bytes == 4 ? sensible(double{std::bit_cast<float>(static_cast<std::uint32_t>(word))})
                          : sensible(std::bit_cast<double>(word));
    case WavEncoding::ALaw:
    case WavEncoding::MuLaw:
        break;
    }
    float value = 0;
    decodeSamples(header, std::span(at, 1), &value);
    return value;
}

void putSample(const WavHeader& header, double value, std::uint8_t* at) {
    const int bytes = header.sampleBytes();
    value = std::isnan(value) ? 0 : value;
    if (header.encoding == WavEncoding::Float) {
        putWord(bytes == 4 ? std::bit_cast<std::uint32_t>(static_cast<float>(value))
                           : std::bit_cast<std::uint64_t>(value),
                at, bytes, header.isBigEndian);
        return;
    }
    // Of a number of bits that fills no bytes, the highest count.
    const double most = std::ldexp(1.0, header.bits - 1);
    const auto steps = static_cast<std::int64_t>(std::clamp(std::nearbyint(value * most), -most, most - 1));
    const std::int64_t whole = steps * (std::int64_t{1} << (8 * bytes - header.bits));
    putWord(static_cast<std::uint64_t>(bytes == 1 ? whole + 128 : whole), at, bytes, header.isBigEndian);
}

} // namespace velmora
