// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Loudness.h"

#include "tests/studio/TestMusic.h"
#include "tests/studio/TestSinks.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::testmusic;
using namespace velmora::testsinks;
using testing::HasSubstr;

namespace {
/// A tone of 1,000 Hz with that peak in decibels of full scale, alike on all channels.
std::vector<float> tone(double peak, int rate, int channels, double seconds) {
    std::vector<float> samples;
    const double height = std::pow(10, peak / 20);
    for (int i = 0; i < static_cast<int>(seconds * rate); ++i) {
        const auto value = static_cast<float>(height * std::sin(2 * std::numbers::pi * 1000.0 * i / rate));
        samples.insert(samples.end(), static_cast<std::size_t>(channels), value);
    }
    return samples;
}

Loudness of(std::span<const float> samples, int rate, int channels) {
    LoudnessMeter meter(rate, channels);
    EXPECT_EQ(meter.problem(), "");
    meter.add(samples);
    return meter.result();
}
} // namespace

TEST(LoudnessTest, TheToneOfReferenceHasTheLoudnessOfItsPeak) {
    for (const double level : {-23.0, -33.0, -6.0}) {
        const Loudness loudness = of(tone(level, 48000, 2, 20), 48000, 2);
        EXPECT_NEAR(loudness.integrated, level, 0.1);
        EXPECT_NEAR(loudness.peak, level, 0.01);
    }
}

TEST(LoudnessTest, OneChannelIsAsLoudAsItIsHeard) {
    const Loudness one = of(tone(-20, 44100, 1, 5), 44100, 1);
    const Loudness both = of(tone(-20, 44100, 2, 5), 44100, 2);
    EXPECT_NEAR(one.integrated, both.integrated, 0.01);
}

TEST(LoudnessTest, PausesDoNotCount) {
    std::vector<float> sound = tone(-20, 48000, 2, 10);
    const double alone = of(sound, 48000, 2).integrated;
    sound.resize(sound.size() * 4);
    EXPECT_NEAR(of(sound, 48000, 2).integrated, alone, 0.15);
}

TEST(LoudnessTest, ThePeakIsThatOfTheLouderSide) {
    std::vector<float> sound(88'200);
    sound[20'001] = -0.5F;
    sound[30'000] = 0.25F;
    EXPECT_NEAR(of(sound, 44100, 2).peak, -6.02, 0.01);
}

TEST(LoudnessTest, SilenceHasNoLoudness) {
    const Loudness loudness = of(std::vector<float>(200'000), 44100, 2);
    EXPECT_EQ(loudness.integrated, Loudness::kSilent);
    EXPECT_EQ(loudness.peak, Loudness::kSilent);
    EXPECT_EQ(of({}, 44100, 2).integrated, Loudness::kSilent);
}

TEST(LoudnessTest, AFileIsAsLoudAsItsSound) {
    const QTemporaryDir temporary;
    const std::filesystem::path file = std::filesystem::path(temporary.path().toStdString()) / "a.wav";
    writeWav(file, tone(-23, 48000, 2, 5), 48000, 2);
    double last = 0;
    const MeasuredLoudness measured = measureLoudness(file, [&](double share) {
        EXPECT_GE(share, last);
        last = share;
    });
    EXPECT_EQ(measured.error, "");
    EXPECT_EQ(last, 1);
    EXPECT_NEAR(measured.loudness.integrated, -23, 0.1);
    std::stop_source cancel;
    cancel.request_stop();
    EXPECT_TRUE(measureLoudness(file, {}, cancel.get_token()).wasCancelled);
    EXPECT_THAT(measureLoudness(file.string() + "x").error, HasSubstr("a.wavx"));
}
