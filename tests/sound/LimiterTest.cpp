// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/Limiter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

using namespace velmora;

namespace {
std::vector<float> noise(int frames, float loudness, unsigned seed = 1) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> value(-loudness, loudness);
    std::vector<float> samples(2 * static_cast<std::size_t>(frames));
    std::generate(samples.begin(), samples.end(), [&] { return value(random); });
    return samples;
}

std::vector<float> limited(std::vector<float> samples, int blockFrames = 64) {
    Limiter limiter;
    const int frames = static_cast<int>(samples.size() / 2);
    for (int done = 0; done < frames; done += blockFrames) {
        limiter.process(&samples[2 * static_cast<std::size_t>(done)], std::min(blockFrames, frames - done));
    }
    return samples;
}

constexpr auto kDelayed = 2 * static_cast<std::size_t>(Limiter::kDelay);

/// True where @p out is @p in, bit for bit, one look-ahead later, from frame @p from of @p in on.
bool delayedExactly(const std::vector<float>& in, const std::vector<float>& out, std::size_t from = 0) {
    return std::equal(in.begin() + static_cast<std::ptrdiff_t>(2 * from), in.end() - kDelayed,
                      out.begin() + static_cast<std::ptrdiff_t>(2 * from + kDelayed));
}

float loudest(const std::vector<float>& samples) {
    float peak = 0;
    for (const float value : samples) {
        peak = std::max(peak, std::fabs(value));
    }
    return peak;
}
} // namespace

TEST(LimiterTest, SoundUpToTheCeilingComesOutBitForBitSixtyFourFramesLater) {
    auto in = noise(5000, 0.999F);
    in[100] = Limiter::kCeiling;
    in[201] = -Limiter::kCeiling;
    const auto out = limited(in);
    EXPECT_TRUE(delayedExactly(in, out));
    EXPECT_EQ(loudest({out.begin(), out.begin() + kDelayed}), 0.0F);
}

TEST(LimiterTest, NothingEverLeavesAboveTheCeiling) {
    for (const float loudness : {1.0F, 1.5F, 4.0F, 100.0F, 3e38F}) {
        EXPECT_LE(loudest(limited(noise(20000, loudness))), Limiter::kCeiling) << loudness;
    }
}

TEST(LimiterTest, ALonePeakReachesTheCeilingAndIsTurnedDownBeforeItComes) {
    std::vector<float> in(2 * 1000, 0.25F);
    in[2 * 500] = 2.0F;
    const auto out = limited(in);
    const auto peak = 2 * std::size_t{500} + kDelayed;
    EXPECT_NEAR(out[peak], Limiter::kCeiling, 1e-5);
    EXPECT_NEAR(out[peak + 1], 0.25F * Limiter::kCeiling / 2, 1e-5); // both sides alike
    for (std::size_t frame = peak / 2 - Limiter::kDelay + 1; frame < peak / 2; ++frame) {
        EXPECT_LT(out[2 * frame + 1], out[2 * frame - 1]) << frame;
        EXPECT_GT(out[2 * frame + 1], out[2 * frame - 1] - 0.01F) << frame; // no step, no click
    }
}

TEST(LimiterTest, AQuieterPeakBehindALouderOneIsHeldTooAndASecondLaterNothingIsChangedAnyMore) {
    auto in = noise(60000, 0.9F);
    in[200] = 3.0F;
    in[200 + 2 * 60] = 1.4F;
    const auto out = limited(in);
    EXPECT_LE(loudest(out), Limiter::kCeiling);
    EXPECT_FALSE(delayedExactly(in, out, 1000));
    EXPECT_TRUE(delayedExactly(in, out, 50000));
}

TEST(LimiterTest, TheCutIntoBlocksChangesNothing) {
    const auto in = noise(4000, 3.0F);
    const auto whole = limited(in, 4000);
    EXPECT_EQ(limited(in, 1), whole);
    EXPECT_EQ(limited(in, 441), whole);
}

TEST(LimiterTest, AfterEveryLoudPassageQuietSoundComesOutBitForBitAgain) {
    constexpr std::size_t kPassage = 61 * 1600; // frames, no multiple of the delay
    auto in = noise(4 * static_cast<int>(kPassage), 0.9F);
    for (std::size_t frame = 0; frame < in.size() / 2; ++frame) {
        if (frame / kPassage % 2 == 1 && frame % kPassage < 1000)
            in[2 * frame] *= 3;
    }
    const auto out = limited(in, 4096);
    EXPECT_EQ(out, limited(in, 1));
    EXPECT_LE(loudest(out), Limiter::kCeiling);
    for (const std::size_t loud : {std::size_t{1}, std::size_t{3}}) {
        const std::vector<float> calmBefore(in.begin(),
                                            in.begin() + static_cast<std::ptrdiff_t>(2 * loud * kPassage));
        const std::vector<float> outBefore(out.begin(),
                                           out.begin() + static_cast<std::ptrdiff_t>(2 * loud * kPassage));
        EXPECT_TRUE(delayedExactly(calmBefore, outBefore, loud * kPassage - 10000)) << loud;
    }
}

TEST(LimiterTest, NumbersThatAreNoneAreSilenceAndSpoilNothing) {
    std::vector<float> in(2 * 500, 0.5F);
    in[100] = std::numeric_limits<float>::quiet_NaN();
    in[201] = std::numeric_limits<float>::infinity();
    in[300] = -std::numeric_limits<float>::infinity();
    const auto out = limited(in);
    in[100] = in[201] = in[300] = 0;
    EXPECT_TRUE(delayedExactly(in, out));
}

TEST(LimiterTest, ResetForgetsSoundAndGain) {
    Limiter limiter;
    auto loud = noise(100, 5.0F);
    limiter.process(loud.data(), 100);
    limiter.reset();
    auto in = noise(1000, 0.9F);
    auto out = in;
    limiter.process(out.data(), 1000);
    EXPECT_TRUE(delayedExactly(in, out));
    EXPECT_EQ(loudest({out.begin(), out.begin() + kDelayed}), 0.0F);
}
