// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/WavSamples.h"

#include <gmock/gmock.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

using namespace velmora;

namespace {
WavHeader headerOf(WavEncoding encoding, int bits, bool isBigEndian) {
    WavHeader header;
    header.encoding = encoding;
    header.bits = bits;
    header.isBigEndian = isBigEndian;
    header.channels = 1;
    return header;
}

std::array<std::uint8_t, 8> written(const WavHeader& header, double value) {
    std::array<std::uint8_t, 8> bytes{};
    putSample(header, value, bytes.data());
    return bytes;
}
} // namespace

TEST(WavSamplesTest, WhatIsReadIsWrittenBitForBit) {
    std::minstd_rand random(3);
    for (const bool isBigEndian : {false, true}) {
        for (const auto& [encoding, bits] :
             {std::pair(WavEncoding::Plain, 8), std::pair(WavEncoding::Plain, 16),
              std::pair(WavEncoding::Plain, 24), std::pair(WavEncoding::Plain, 32),
              std::pair(WavEncoding::Float, 32), std::pair(WavEncoding::Float, 64)}) {
            const WavHeader header = headerOf(encoding, bits, isBigEndian);
            for (int i = 0; i < 10'000; ++i) {
                std::array<std::uint8_t, 8> bytes{};
                for (int k = 0; k < header.sampleBytes(); ++k)
                    bytes[static_cast<std::size_t>(k)] = static_cast<std::uint8_t>(random() >> 8U);
                // The highest bits of an exponent aren't all ones: that would be no number.
                if (encoding == WavEncoding::Float)
                    bytes[isBigEndian ? 0 : static_cast<std::size_t>(header.sampleBytes() - 1)] &= 0xBF;
                ASSERT_EQ(written(header, sampleAt(header, bytes.data())), bytes) << bits;
            }
        }
    }
}

TEST(WavSamplesTest, ValuesAreSharesOfFullScale) {
    const std::array<std::uint8_t, 3> half{0, 0, 0x40};
    EXPECT_EQ(sampleAt(headerOf(WavEncoding::Plain, 24, false), half.data()), 0.5);
    const std::array<std::uint8_t, 3> least{0x80, 0, 0};
    EXPECT_EQ(sampleAt(headerOf(WavEncoding::Plain, 24, true), least.data()), -1);
    const std::uint8_t silent = 0x80;
    EXPECT_EQ(sampleAt(headerOf(WavEncoding::Plain, 8, false), &silent), 0);
    const std::uint8_t muLawMost = 0x80;
    EXPECT_EQ(sampleAt(headerOf(WavEncoding::MuLaw, 8, false), &muLawMost), 32124.0 / 32768);
}

TEST(WavSamplesTest, WholeNumbersEndAtFullScaleAndFloatsDoNot) {
    const WavHeader sixteen = headerOf(WavEncoding::Plain, 16, false);
    EXPECT_EQ(written(sixteen, 1.5), (std::array<std::uint8_t, 8>{0xFF, 0x7F}));
    EXPECT_EQ(written(sixteen, -1.5), (std::array<std::uint8_t, 8>{0, 0x80}));
    EXPECT_EQ(written(sixteen, std::nan("")), (std::array<std::uint8_t, 8>{}));
    const WavHeader single = headerOf(WavEncoding::Float, 32, false);
    EXPECT_EQ(sampleAt(single, written(single, 1.5).data()), 1.5);
}

TEST(WavSamplesTest, OfFloatsWhatIsNoNumberIsSilentAndInfinityIsFullScale) {
    const WavHeader single = headerOf(WavEncoding::Float, 32, false);
    std::array<std::uint8_t, 4> bytes{};
    const auto of = [&](float value) {
        std::memcpy(bytes.data(), &value, sizeof value);
        return sampleAt(single, bytes.data());
    };
    EXPECT_EQ(of(std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_EQ(of(-std::numeric_limits<float>::infinity()), -1);
}

TEST(WavSamplesTest, BitsThatFillNoBytesAreTheHighestOnes) {
    const WavHeader twelve = headerOf(WavEncoding::Plain, 12, false);
    EXPECT_EQ(written(twelve, 0.5 + 1.0 / 4096), (std::array<std::uint8_t, 8>{0, 0x40})) << "to the even one";
    EXPECT_EQ(written(twelve, 1), (std::array<std::uint8_t, 8>{0xF0, 0x7F}));
}
