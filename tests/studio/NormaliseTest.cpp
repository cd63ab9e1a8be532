// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Normalise.h"

#include "sound/Limiter.h"
#include "tests/studio/TestMusic.h"
#include "tests/studio/TestSinks.h"
#include "tests/support/FullDisk.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::testmusic;
using namespace velmora::testsinks;
using testing::HasSubstr;
using End = PourOutcome::End;

namespace {
struct NormaliseTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();
    std::filesystem::path in = folder / "quiet.wav";
    std::filesystem::path out = folder / "loud.wav";
};

std::vector<float> times(std::vector<float> samples, float factor) {
    for (float& value : samples)
        value *= factor;
    return samples;
}

/// Strokes that are far louder than what lies between.
std::vector<float> strokes(int frames) {
    std::vector<float> samples = music(44100, 2, frames);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] *= (i / 2) % 11'025 < 600 ? 1.0F : 0.05F;
    return samples;
}

float highest(std::span<const float> samples) {
    float peak = 0;
    for (const float value : samples)
        peak = std::max(peak, std::abs(value));
    return peak;
}
} // namespace

TEST_F(NormaliseTest, AQuietTakeBecomesAsLoudAsOthersAndIsOtherwiseTheSame) {
    for (const int channels : {1, 2}) {
        const std::vector<float> quiet = times(music(44100, channels, 200'000), 0.05F);
        writeWav(in, quiet, 44100, channels);
        const NormaliseOutcome outcome = normalise(in, out);
        ASSERT_EQ(outcome.error, "");
        EXPECT_GT(outcome.gain, 10);
        EXPECT_NEAR(outcome.after.integrated, -14, 0.1);
        EXPECT_NEAR(measureLoudness(out).loudness.integrated, -14, 0.1);
        const Decoded made = readSound(out);
        EXPECT_EQ(made.rate, 44100);
        EXPECT_EQ(made.channels, channels);
        EXPECT_EQ(made.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
        ASSERT_EQ(made.samples.size(), quiet.size());
        const auto gain = static_cast<float>(std::pow(10, outcome.gain / 20));
        EXPECT_GT(belowSound(times(readSound(in).samples, gain), made.samples), 60) << "not the same frames";
    }
}

TEST_F(NormaliseTest, ALoudTakeIsTurnedDown) {
    writeWav(in, times(music(44100, 2, 200'000), 2), 44100, 2);
    const NormaliseOutcome outcome = normalise(in, out, -20);
    EXPECT_LT(outcome.gain, 0);
    EXPECT_NEAR(measureLoudness(out).loudness.integrated, -20, 0.1);
}

TEST_F(NormaliseTest, WhatWouldBeTooLoudIsLimitedAndMadeUpFor) {
    writeWav(in, strokes(400'000), 44100, 2);
    const Loudness before = measureLoudness(in).loudness;
    const NormaliseOutcome outcome = normalise(in, out, before.integrated + 12);
    ASSERT_EQ(outcome.error, "");
    EXPECT_GT(before.peak + outcome.gain, 0) << "the case needs no limiter";
    EXPECT_GT(outcome.gain, 12);
    EXPECT_NEAR(measureLoudness(out).loudness.integrated, before.integrated + 12, 0.3);
    const Decoded made = readSound(out);
    EXPECT_EQ(made.frames, 400'000);
    EXPECT_LE(highest(made.samples), Limiter::kCeiling);
}

TEST_F(NormaliseTest, TheWidthOfTheSamplesStays) {
    for (const int width : {SF_FORMAT_PCM_24, SF_FORMAT_PCM_32, SF_FORMAT_FLOAT}) {
        writeWav(in, times(music(48000, 2, 100'000), 0.1F), 48000, 2, width);
        ASSERT_EQ(normalise(in, out).error, "");
        const Decoded made = readSound(out);
        EXPECT_EQ(made.format & SF_FORMAT_SUBMASK, width);
        EXPECT_EQ(made.rate, 48000);
    }
}

TEST_F(NormaliseTest, AFileCanTakeItsOwnPlace) {
    writeWav(in, times(music(44100, 2, 100'000), 0.1F), 44100, 2);
    EXPECT_EQ(normalise(in, in).error, "");
    EXPECT_NEAR(measureLoudness(in).loudness.integrated, -14, 0.1);
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST_F(NormaliseTest, SilenceIsNotTurnedUp) {
    writeWav(in, std::vector<float>(100'000), 44100, 2);
    const NormaliseOutcome outcome = normalise(in, out);
    EXPECT_EQ(outcome.end, End::Failed);
    EXPECT_THAT(outcome.error, AllOf(HasSubstr("quiet.wav"), HasSubstr("silent")));
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST_F(NormaliseTest, WhatIsCancelledOrFailsLeavesTheOldFile) {
    writeWav(in, times(music(44100, 2, 300'000), 0.1F), 44100, 2);
    std::ofstream(out) << "the old take";
    for (const double until : {0.05, 0.5, 0.8}) {
        std::stop_source cancel;
        const NormaliseOutcome outcome = normalise(
            in, out, -14,
            [&](double share) {
                if (share > until)
                    cancel.request_stop();
            },
            cancel.get_token());
        EXPECT_EQ(outcome.end, End::Cancelled) << until;
    }
    {
        const FullDisk disk(20'000);
        EXPECT_EQ(normalise(in, out).error, "Writing \"" + out.string() + "\" failed: File too large.");
    }
    EXPECT_EQ(normalise(in, folder / "none" / "a.wav").end, End::Failed);
    EXPECT_EQ(bytesOf(out), "the old take");
    EXPECT_EQ(filesIn(folder), 2U);
}

TEST_F(NormaliseTest, OnlyWavFilesOfOneOrTwoChannelsAreTaken) {
    writeWav(in, music(44100, 6, 30'000), 44100, 6);
    EXPECT_THAT(normalise(in, out).error, HasSubstr("quiet.wav"));
    EXPECT_EQ(filesIn(folder), 1U);
}
