// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Normalise.h"

#include "sound/Limiter.h"
#include "studio/SoundReader.h"
#include "tests/studio/SoundBytes.h"
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

TEST_F(NormaliseTest, TheFormatOfTheFileStays) {
    for (const int width : std::initializer_list<int>{
             SF_FORMAT_PCM_U8, SF_FORMAT_PCM_24, SF_FORMAT_PCM_32, SF_FORMAT_FLOAT, SF_FORMAT_DOUBLE,
             static_cast<int>(SF_FORMAT_PCM_16) | static_cast<int>(SF_ENDIAN_BIG)}) {
        writeWav(in, times(music(48000, 2, 100'000), 0.1F), 48000, 2, width);
        const NormaliseOutcome outcome = normalise(in, out);
        ASSERT_EQ(outcome.error, "");
        EXPECT_EQ(outcome.note, "");
        const Decoded made = readSound(out);
        EXPECT_EQ(made.format & (SF_FORMAT_SUBMASK | SF_FORMAT_ENDMASK),
                  readSound(in).format & (SF_FORMAT_SUBMASK | SF_FORMAT_ENDMASK));
        EXPECT_EQ(made.rate, 48000);
        EXPECT_EQ(made.frames, 100'000);
        EXPECT_NEAR(measureLoudness(out).loudness.integrated, -14, 0.1);
    }
}

TEST_F(NormaliseTest, LogarithmicSamplesBecomeSixteenBitsWithAWord) {
    for (const int width : {SF_FORMAT_ALAW, SF_FORMAT_ULAW}) {
        writeWav(in, times(music(8000, 1, 40'000), 0.1F), 8000, 1, width);
        const NormaliseOutcome outcome = normalise(in, out);
        ASSERT_EQ(outcome.error, "");
        EXPECT_EQ(outcome.note, "Logarithmic samples can't be turned up: those of the new file have 16 bits");
        EXPECT_EQ(readSound(out).format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
        EXPECT_EQ(readSound(out).frames, 40'000);
    }
}

TEST_F(NormaliseTest, AllOfMoreChannelsAreTurnedUpAlikeAndNoneIsTooLoud) {
    std::vector<float> sound = times(music(44100, 6, 100'000), 0.05F);
    for (std::size_t i = 5; i < sound.size(); i += 6)
        sound[i] = i / 6 % 1000 == 0 ? 0.9F : 0; // where no one measures
    writeWav(in, sound, 44100, 6, SF_FORMAT_FLOAT);
    const NormaliseOutcome outcome = normalise(in, out);
    ASSERT_EQ(outcome.error, "");
    const Decoded made = readSound(out);
    ASSERT_EQ(made.channels, 6);
    ASSERT_EQ(made.frames, 100'000);
    EXPECT_LE(highest(made.samples), Limiter::kCeiling);
    EXPECT_NEAR(made.samples[6 * 5000 + 5], Limiter::kCeiling, 0.01) << "its strokes are limited";
    for (std::size_t at : {6U * 20'300, 6U * 60'300}) // and what sounds with them likewise
        for (std::size_t channel = 1; channel < 5; ++channel)
            EXPECT_NEAR(made.samples[at + channel] / sound[at + channel], made.samples[at] / sound[at],
                        0.001);
}

TEST_F(NormaliseTest, AQuietMp3FileBecomesAsLoudAsOthersFrameForFrame) {
    const std::filesystem::path mp3 = folder / "quiet.mp3";
    const std::filesystem::path loud = folder / "loud.mp3";
    for (const int channels : {1, 2}) {
        writeWav(in, times(music(44100, channels, 200'001), 0.05F), 44100, channels);
        ASSERT_EQ(encode({.wav = in, .mp3 = mp3, .settings = {.bitrate = 320, .title = "Morning"}}).error,
                  "");
        const NormaliseOutcome outcome = normalise(mp3, loud, -14, {}, {}, {.artist = "Ada"});
        ASSERT_EQ(outcome.error, "");
        EXPECT_THAT(outcome.note, HasSubstr("encoded again, at 320 kbit/s"));
        EXPECT_NEAR(measureLoudness(loud).loudness.integrated, -14, 0.2);
        const OpenedSound before = openSound(mp3);
        const OpenedSound after = openSound(loud);
        ASSERT_EQ(after.error, "");
        const SoundInfo& info = after.reader->info();
        EXPECT_EQ(info.kind, SoundKind::Mp3);
        EXPECT_EQ(info.frames, 200'001);
        EXPECT_EQ(info.channels, channels);
        EXPECT_EQ(info.title, "Morning");
        EXPECT_EQ(info.artist, "Ada");
        std::vector<float> old(static_cast<std::size_t>(200'001 * channels));
        std::vector<float> made(old.size());
        before.reader->read(old);
        after.reader->read(made);
        EXPECT_GT(belowSound(times(old, static_cast<float>(std::pow(10, outcome.gain / 20))), made), 25);
    }
    ASSERT_EQ(normalise(mp3, mp3, -20).error, "");
    EXPECT_NEAR(measureLoudness(mp3).loudness.integrated, -20, 0.2) << "in its own place";
}

TEST_F(NormaliseTest, AnMp3FileStaysWhateverEndsItEarly) {
    const std::filesystem::path mp3 = folder / "quiet.mp3";
    writeWav(in, times(music(44100, 2, 600'000), 0.1F), 44100, 2);
    ASSERT_EQ(encode({.wav = in, .mp3 = mp3, .deleteWav = true}).error, "");
    const std::string before = bytesOf(mp3);
    std::ofstream(folder / "loud.mp3") << "the old take";
    for (const double until : {0.05, 0.5, 0.8}) {
        std::stop_source cancel;
        const NormaliseOutcome outcome = normalise(
            mp3, folder / "loud.mp3", -14,
            [&](double share) {
                if (share > until)
                    cancel.request_stop();
            },
            cancel.get_token());
        EXPECT_EQ(outcome.end, End::Cancelled) << until;
    }
    {
        const FullDisk disk(20'000);
        EXPECT_EQ(normalise(mp3, folder / "loud.mp3").error,
                  "Writing \"" + (folder / "loud.mp3").string() + "\" failed: File too large.");
        EXPECT_EQ(normalise(mp3, mp3).end, End::Failed);
    }
    EXPECT_EQ(normalise(mp3, folder / "none" / "a.mp3").end, End::Failed);
    EXPECT_EQ(bytesOf(mp3), before);
    EXPECT_EQ(bytesOf(folder / "loud.mp3"), "the old take");
    EXPECT_EQ(filesIn(folder), 2U);
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
