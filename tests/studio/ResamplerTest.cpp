// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Resampler.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

using namespace velmora;

namespace {
std::vector<float> converted(int from, int to, const std::vector<float>& sound, std::size_t block,
                             int channels = 1) {
    Resampler resampler(from, to, channels);
    EXPECT_EQ(resampler.problem(), "");
    std::vector<float> out;
    for (std::size_t at = 0; at < sound.size(); at += block * static_cast<std::size_t>(channels))
        resampler.process(std::span(sound).subspan(
                              at, std::min(sound.size() - at, block * static_cast<std::size_t>(channels))),
                          out);
    resampler.finish(out);
    return out;
}
std::vector<float> tone(double frequency, int rate, int frames) {
    std::vector<float> sound;
    for (int i = 0; i < frames; ++i)
        sound.push_back(static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * frequency * i / rate)));
    return sound;
}
/// In decibels, of a tone, away from where it begins and ends.
double errorOf(int from, int to, double frequency) {
    const std::vector<float> out = converted(from, to, tone(frequency, from, from / 2), 1000);
    const std::size_t edge = out.size() / 4;
    double wrong = 0;
    double right = 0;
    for (std::size_t i = edge; i < out.size() - edge; ++i) {
        const double expected =
            0.5 * std::sin(2 * std::numbers::pi * frequency * static_cast<double>(i) / to);
        wrong += (out[i] - expected) * (out[i] - expected);
        right += expected * expected;
    }
    return 10 * std::log10(wrong / right);
}
struct Rates {
    int from;
    int to;
};
constexpr std::array kRates{Rates{48000, 44100}, Rates{44100, 48000}, Rates{22050, 44100},
                            Rates{96000, 44100}, Rates{32000, 44100}, Rates{192000, 44100},
                            Rates{44100, 16000}, Rates{44101, 44100}};
} // namespace

TEST(ResamplerTest, WhatBothRatesHoldComesThroughExactlyAndWithoutDelay) {
    for (const Rates& rates : kRates) {
        const double highest = std::min(rates.from, rates.to) / 2.0;
        for (const double share : {0.01, 0.3, 0.7, 0.9, 0.97, 0.985})
            EXPECT_LT(errorOf(rates.from, rates.to, share * highest), -90)
                << rates.from << " to " << rates.to << ", " << share;
    }
}

TEST(ResamplerTest, WhatTheLowerRateCannotHoldIsGone) {
    for (const double frequency : {23000.0, 30000.0, 44000.0}) {
        const std::vector<float> out = converted(96000, 44100, tone(frequency, 96000, 48000), 1000);
        float loudest = 0;
        for (std::size_t i = out.size() / 4; i < out.size() * 3 / 4; ++i)
            loudest = std::max(loudest, std::abs(out[i]));
        EXPECT_LT(loudest, 1e-5F) << frequency;
    }
}

TEST(ResamplerTest, TheLengthIsThatOfTheRates) {
    for (const Rates& rates : kRates) {
        for (const int frames : {0, 1, 2, 3, 147, 1000, 44100, 50'001}) {
            const auto expected = std::llround(static_cast<double>(frames) * rates.to / rates.from);
            const std::vector<float> sound(static_cast<std::size_t>(frames), 0.25F);
            EXPECT_EQ(static_cast<std::int64_t>(converted(rates.from, rates.to, sound, 999).size()), expected)
                << rates.from << " to " << rates.to << ", " << frames;
            EXPECT_EQ(framesAtRate(frames, rates.from, rates.to), expected);
        }
    }
}

TEST(ResamplerTest, BlocksOfAnySizeGiveTheSame) {
    const std::vector<float> sound = tone(1000, 48000, 20'000);
    const std::vector<float> whole = converted(48000, 44100, sound, 20'000, 2);
    EXPECT_EQ(converted(48000, 44100, sound, 1, 2), whole);
    EXPECT_EQ(converted(48000, 44100, sound, 777, 2), whole);
}

TEST(ResamplerTest, TheSameRateChangesNothing) {
    const std::vector<float> sound = tone(1000, 44100, 5000);
    EXPECT_EQ(converted(44100, 44100, sound, 100), sound);
}

TEST(ResamplerTest, RatesTooFarApartAreRefused) {
    EXPECT_NE(Resampler(1, 44100, 2).problem(), "");
    EXPECT_NE(Resampler(2'000'000'000, 44100, 2).problem(), "");
    EXPECT_EQ(Resampler(1000, 44100, 2).problem(), "");
}

TEST(ResamplerTest, LengthsAreRoundedWithoutOverflow) {
    constexpr std::int64_t kDays = std::int64_t{1} << 40;
    EXPECT_EQ(framesAtRate(kDays * 48000, 48000, 44100), kDays * 44100);
    EXPECT_EQ(framesAtRate(1, 2, 1), 1) << "halves go up";
    EXPECT_EQ(framesAtRate(1, 3, 1), 0);
}
