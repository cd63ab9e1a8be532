// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/StereoReader.h"

#include "studio/Resampler.h"
#include "studio/WavReader.h"
#include "tests/studio/SoundBytes.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace velmora;
using namespace velmora::soundbytes;
using testing::ElementsAre;

namespace {
StereoReader reader(const WavFormat& format, const std::string& sound, int rate = 44100) {
    auto bytes = std::make_unique<OwnBytes>(Wav().format(format).chunk("data", sound).bytes());
    WavHeader header = readWavHeader(*bytes);
    EXPECT_EQ(header.problem, "");
    return {std::make_unique<WavReader>(std::move(bytes), std::move(header)), rate};
}
std::vector<float> readAll(StereoReader& from, std::size_t frames = 1000) {
    std::vector<float> all;
    std::vector<float> block(2 * frames);
    while (const std::size_t count = from.read(block))
        all.insert(all.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(2 * count));
    return all;
}
float value(int sixteen) {
    return static_cast<float>(sixteen) / 32768.0F;
}
std::vector<int> wave(int values) {
    std::vector<int> all;
    for (int i = 0; i < values; ++i)
        all.push_back(static_cast<int>(10'000 * std::sin(i * 0.07)));
    return all;
}
} // namespace

TEST(StereoReaderTest, ItsOwnRatePassesBitForBit) {
    const std::vector<int> values = wave(50'000);
    StereoReader stereo = reader({}, sixteenBits(values));
    EXPECT_EQ(stereo.problem(), "");
    EXPECT_EQ(stereo.frames(), 25'000);
    const std::vector<float> all = readAll(stereo);
    ASSERT_EQ(all.size(), values.size());
    for (std::size_t i = 0; i < all.size(); ++i)
        ASSERT_EQ(all[i], value(values[i])) << i;
}

TEST(StereoReaderTest, MonoSoundsAlikeOnBothSides) {
    StereoReader stereo = reader({.channels = 1}, sixteenBits({1, -2, 3}));
    EXPECT_THAT(readAll(stereo), ElementsAre(value(1), value(1), value(-2), value(-2), value(3), value(3)));
    StereoReader converted = reader({.channels = 1, .rate = 48000}, sixteenBits(wave(9'000)));
    const std::vector<float> all = readAll(converted);
    for (std::size_t i = 0; i < all.size(); i += 2)
        ASSERT_EQ(all[i], all[i + 1]);
}

TEST(StereoReaderTest, OfMoreChannelsTheFirstTwoAreHeard) {
    StereoReader stereo = reader({.channels = 4}, sixteenBits({1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_THAT(readAll(stereo), ElementsAre(value(1), value(2), value(5), value(6)));
    EXPECT_EQ(stereo.info().channels, 4);
}

TEST(StereoReaderTest, AnotherRateGivesExactlyItsLength) {
    for (const std::uint32_t rate : {8000U, 22050U, 48000U, 96000U}) {
        for (const int frames : {1, 777, 30'000}) {
            StereoReader stereo = reader({.rate = rate}, sixteenBits(wave(2 * frames)));
            const auto expected = std::llround(frames * 44100.0 / rate);
            EXPECT_EQ(stereo.frames(), expected);
            EXPECT_EQ(static_cast<std::int64_t>(readAll(stereo, 333).size()), 2 * expected)
                << rate << ' ' << frames;
        }
    }
}

TEST(StereoReaderTest, APlaceThatIsSoughtSoundsAsItDoesInPassing) {
    for (const std::uint32_t rate : {44100U, 48000U, 22050U, 44101U, 192000U}) {
        StereoReader stereo = reader({.rate = rate}, sixteenBits(wave(200'000)));
        const std::vector<float> whole = readAll(stereo);
        for (const int frame : {0, 1, 50'000, 99'999, 100'000}) {
            stereo.seek(frame);
            const std::vector<float> rest = readAll(stereo);
            const auto skipped = static_cast<std::size_t>(2 * framesAtRate(frame, rate, 44100));
            ASSERT_EQ(rest.size(), whole.size() - skipped) << rate << ' ' << frame;
            for (std::size_t i = 0; i < rest.size(); ++i)
                ASSERT_NEAR(rest[i], whole[skipped + i], 1e-6) << rate << ' ' << frame << ' ' << i;
        }
    }
}

TEST(StereoReaderTest, WhatIsFarTooLoudSpoilsNothingElse) {
    std::string sound;
    for (int i = 0; i < 30'000; ++i)
        sound += ByteWriter().number(i == 100 ? 0x7F7FFFFF : 0, 4).text; // the largest float there is
    StereoReader stereo = reader({.code = 3, .channels = 1, .rate = 48000, .bits = 32}, sound);
    const std::vector<float> all = readAll(stereo);
    for (const float sample : all)
        ASSERT_TRUE(std::isfinite(sample));
    EXPECT_LT(std::abs(all[40'000]), 1e-4F);
}

TEST(StereoReaderTest, ARateThatCannotBeConvertedIsTold) {
    StereoReader stereo = reader({.rate = 3}, sixteenBits({1, 2, 3, 4}));
    EXPECT_NE(stereo.problem(), "");
    EXPECT_EQ(stereo.frames(), 0);
    EXPECT_TRUE(readAll(stereo).empty());
}
