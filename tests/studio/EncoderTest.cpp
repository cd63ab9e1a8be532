// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Encoder.h"

#include "../sound/TestSound.h"
#include "tests/studio/Mp3Walk.h"
#include "tests/studio/TestMusic.h"
#include "tests/studio/TestSinks.h"
#include "tests/support/FullDisk.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <random>
#include <thread>

using namespace velmora;
using namespace velmora::testmusic;
using namespace velmora::testsinks;
using testing::HasSubstr;
using End = EncodeOutcome::End;

namespace {
struct EncoderTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();
    std::filesystem::path wav = folder / "a take.wav";
    std::filesystem::path mp3 = folder / "a take.mp3";

    /// By a decoder that heeds delay and padding.
    [[nodiscard]] Decoded decoded(const std::filesystem::path& file) const {
        const std::string out = (folder / "decoded").string();
        const Witness witness = ask("mpg123 -q -w '" + out + "' '" + file.string() + "'");
        EXPECT_EQ(witness.exitCode, 0) << witness.output;
        Decoded result = readSound(out);
        std::filesystem::remove(out);
        return result;
    }

    EncodeOutcome made(EncodeSettings settings = {}) { return encode({wav, mp3, std::move(settings)}); }
};

/// One side of interleaved stereo.
std::vector<float> side(std::span<const float> samples, std::size_t which) {
    std::vector<float> one;
    for (std::size_t i = which; i < samples.size(); i += 2)
        one.push_back(samples[i]);
    return one;
}

} // namespace

TEST_F(EncoderTest, TheFileHasRateAndChannelsOfTheTake) {
    for (const int rate : kMp3Rates) {
        for (const int channels : {1, 2}) {
            const std::vector<float> sound = music(rate, channels, rate / 2);
            writeWav(wav, sound, rate, channels);
            ASSERT_EQ(made().end, End::Done);
            const mp3walk::Walk walk = mp3walk::walk(bytesOf(mp3));
            ASSERT_FALSE(walk.frames.empty());
            EXPECT_EQ(walk.frames[0].rate, rate);
            EXPECT_EQ(walk.frames[0].mode, channels == 1 ? kMono : kJointStereo);
            const Decoded heard = decoded(mp3);
            EXPECT_EQ(heard.rate, rate);
            EXPECT_EQ(heard.channels, channels);
            EXPECT_EQ(heard.frames, rate / 2);
            EXPECT_GT(belowSound(sound, heard.samples), 20) << rate << " " << channels;
        }
    }
}

TEST_F(EncoderTest, AnyFrameIsOfTheOneBitrateAndTheFirstTellsTheTruth) {
    for (const int rate : {44100, 22050, 16000}) {
        writeWav(wav, music(rate, 2, rate), rate, 2);
        for (const int bitrate : kMp3Bitrates) {
            const EncodeOutcome outcome = made({.bitrate = bitrate});
            ASSERT_EQ(outcome.error, "");
            EXPECT_EQ(outcome.rate, rate);
            EXPECT_EQ(outcome.bitrate, rate < 32000 ? std::min(160, bitrate) : bitrate);
            const std::string bytes = bytesOf(mp3);
            const mp3walk::Walk walk = mp3walk::walk(bytes);
            EXPECT_EQ(walk.end, bytes.size()) << "nothing stands behind the last frame";
            for (const mp3walk::Header& frame : walk.frames) {
                EXPECT_EQ(frame.bitrate, outcome.bitrate);
                EXPECT_EQ(frame.rate, rate);
                EXPECT_EQ(frame.mode, kJointStereo);
                EXPECT_EQ(frame.emphasis, 0);
                EXPECT_FALSE(frame.isCopyrighted);
                EXPECT_TRUE(frame.isOriginal);
            }
            const std::size_t needed = walk.frames[0].isVersion1 ? 192 : 177; // with what stands before it
            const bool hasRoom = walk.frames[0].size >= needed;
            EXPECT_EQ(walk.info.has_value(), hasRoom) << rate << " " << bitrate;
            if (!walk.info)
                continue;
            const std::uint32_t perFrame = walk.frames[0].isVersion1 ? 1152 : 576;
            EXPECT_EQ(walk.info->frames, walk.frames.size() - 1);
            EXPECT_EQ(walk.info->bytes, bytes.size());
            EXPECT_EQ(walk.info->musicLength, bytes.size());
            EXPECT_EQ(walk.info->frames * perFrame - walk.info->delay - walk.info->padding,
                      static_cast<std::uint32_t>(rate));
            EXPECT_EQ(walk.info->musicChecksum, walk.soundChecksum);
            EXPECT_EQ(walk.info->tagChecksum, walk.info->tagChecksumFound);
        }
    }
}

TEST_F(EncoderTest, DecodersYieldExactlyTheFramesOfTheTakeHoweverShort) {
    for (const int frames : {1, 2, 575, 576, 1104, 1105, 1151, 1152, 1153, 2304, 4000, 44'101}) {
        const std::vector<float> sound = music(44100, 2, frames);
        writeWav(wav, sound, 44100, 2);
        ASSERT_EQ(made().end, End::Done);
        const Decoded heard = decoded(mp3);
        EXPECT_EQ(heard.frames, frames);
        EXPECT_EQ(ask("lame --quiet --decode '" + mp3.string() + "' '" + (folder / "l.wav").string() +
                      "' && soxi -s '" + (folder / "l.wav").string() + "'")
                      .output,
                  std::to_string(frames) + "\n");
        if (frames > 4000) {
            EXPECT_GT(belowSound(sound, heard.samples), 25) << "begins at another frame";
        }
    }
}

TEST_F(EncoderTest, TwoHalvesOfATakeJoinSampleForSample) {
    const std::vector<float> sound = music(44100, 2, 100'000);
    const std::size_t cut = std::size_t{2} * 43'210;
    std::vector<float> joined;
    for (const auto half : {std::span(sound).first(cut), std::span(sound).subspan(cut)}) {
        writeWav(wav, half, 44100, 2);
        ASSERT_EQ(made().end, End::Done);
        const std::vector<float> heard = decoded(mp3).samples;
        EXPECT_EQ(heard.size(), half.size());
        joined.insert(joined.end(), heard.begin(), heard.end());
    }
    ASSERT_EQ(joined.size(), sound.size());
    EXPECT_GT(belowSound(sound, joined), 25);
    // Around the join the halves meet in the take's own sound; a frame of silence or of too much would show.
    const std::size_t around = std::size_t{2} * 400;
    EXPECT_GT(belowSound(std::span(sound).subspan(cut - around, 2 * around),
                         std::span(joined).subspan(cut - around, 2 * around)),
              15);
}

TEST_F(EncoderTest, ARowOfTheTableSetsRateAndModeAndNeverPitchOrLength) {
    for (const int channels : {1, 2}) {
        for (const int rate : {44100, 48000, 22050}) {
            const std::vector<float> sound = music(rate, channels, rate / 2);
            writeWav(wav, sound, rate, channels);
            for (std::size_t row = 0; row < kEncoderFormats.size(); ++row) {
                ASSERT_EQ(made({.format = row}).error, "");
                const Decoded heard = decoded(mp3);
                const EncoderFormat& format = kEncoderFormats[row];
                EXPECT_EQ(heard.rate, format.rate) << row;
                EXPECT_EQ(heard.channels, format.mode == kMono ? 1 : 2) << row;
                EXPECT_NEAR(static_cast<double>(heard.frames), 0.5 * format.rate, 1) << row;
                const std::vector<float> left = heard.channels == 2 ? side(heard.samples, 0) : heard.samples;
                // TestSound's ear hears interleaved stereo of 44,100 a second.
                std::vector<float> both;
                for (const float value : left)
                    both.insert(both.end(), {value, value});
                const double scale = 44100.0 / format.rate;
                EXPECT_EQ(testsound::strongest(
                              both, {220 * scale, 415.3 * scale, 440 * scale, 466.2 * scale, 880 * scale}),
                          440 * scale)
                    << row;
            }
        }
    }
}

TEST_F(EncoderTest, OneChannelOfTwoIsTheirMean) {
    std::vector<float> sound = music(44100, 2, 44'100);
    writeWav(wav, sound, 44100, 2);
    ASSERT_EQ(made({.format = 3}).end, End::Done);
    std::vector<float> mean;
    for (std::size_t i = 0; i < sound.size(); i += 2)
        mean.push_back(0.5F * (sound[i] + sound[i + 1]));
    EXPECT_GT(belowSound(mean, decoded(mp3).samples), 25);
}

TEST_F(EncoderTest, AMonoTakeInAStereoRowIsAlikeOnBothSides) {
    const std::vector<float> sound = music(44100, 1, 44'100);
    writeWav(wav, sound, 44100, 1);
    ASSERT_EQ(made({.format = 4}).end, End::Done);
    const Decoded heard = decoded(mp3);
    EXPECT_EQ(heard.frames, 44'100);
    EXPECT_GT(belowSound(sound, side(heard.samples, 0)), 25);
    EXPECT_GT(belowSound(sound, side(heard.samples, 1)), 25);
}

TEST_F(EncoderTest, RatesThatMp3LacksBecome44100) {
    for (const int rate : {8000, 11025, 96000}) {
        const std::vector<float> sound = music(rate, 2, rate);
        writeWav(wav, sound, rate, 2);
        const EncodeOutcome outcome = made();
        EXPECT_EQ(outcome.error, "");
        EXPECT_EQ(outcome.rate, 44100);
        EXPECT_EQ(decoded(mp3).frames, 44'100) << rate;
    }
}

TEST_F(EncoderTest, OfSixChannelsTheFirstTwoAreHeard) {
    const std::vector<float> two = music(44100, 2, 30'000);
    std::vector<float> six;
    for (std::size_t i = 0; i < two.size(); i += 2)
        six.insert(six.end(), {two[i], two[i + 1], 0.9F, -0.9F, 0.5F, 0});
    writeWav(wav, six, 44100, 6);
    ASSERT_EQ(made().end, End::Done);
    EXPECT_GT(belowSound(two, decoded(mp3).samples), 20);
}

TEST_F(EncoderTest, SoundThatComesBitByBitGivesTheSameFile) {
    for (const int rate : {44100, 48000, 11025}) {
        for (const std::optional<std::size_t> row :
             {std::optional<std::size_t>(), std::optional<std::size_t>(1)}) {
            const std::vector<float> sound = music(rate, 2, 50'000);
            writeWav(wav, sound, rate, 2);
            const EncodeSettings settings{
                .bitrate = 128, .format = row, .title = "Title", .artist = "Artist"};
            ASSERT_EQ(made(settings).error, "");
            const std::filesystem::path other = folder / "bit by bit.mp3";
            const auto sink = makeMp3Sink(other, settings, rate, 2);
            ASSERT_EQ(sink->open(), "");
            std::mt19937 random(3);
            for (std::span<const float> rest = sound; !rest.empty();) {
                const std::size_t frames = std::uniform_int_distribution<std::size_t>(0, 5000)(random);
                const auto block = rest.first(std::min(rest.size(), 2 * frames));
                ASSERT_EQ(sink->write(block), "");
                rest = rest.subspan(block.size());
            }
            ASSERT_EQ(sink->finish(), "");
            EXPECT_TRUE(bytesOf(other) == bytesOf(mp3)) << rate;
        }
    }
}

TEST_F(EncoderTest, TagsStandInFrontAndCountForNothing) {
    const std::vector<float> sound = music(44100, 2, 40'000);
    writeWav(wav, sound, 44100, 2);
    std::ofstream(folder / "cover", std::ios::binary) << "\xFF\xD8\xFF" << std::string(5000, '\xFF');
    ASSERT_EQ(made().end, End::Done);
    const std::string plain = bytesOf(mp3);
    ASSERT_EQ(made({.title = "月光", .artist = "Ø", .cover = folder / "cover"}).error, "");
    const std::string tagged = bytesOf(mp3);
    const mp3walk::Walk walk = mp3walk::walk(tagged);
    EXPECT_GT(walk.tagSize, 5000U);
    EXPECT_TRUE(tagged.substr(walk.tagSize) == plain);
    EXPECT_EQ(decoded(mp3).frames, 40'000);
}

TEST_F(EncoderTest, ACoverThatIsNoneIsToldAndNothingIsWritten) {
    writeWav(wav, music(44100, 2, 1000), 44100, 2);
    const EncodeOutcome outcome = made({.cover = folder / "none.png"});
    EXPECT_EQ(outcome.end, End::Failed);
    EXPECT_THAT(outcome.error, HasSubstr("none.png"));
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST_F(EncoderTest, AnOldFileIsReplacedOnlyByAWholeOne) {
    writeWav(wav, music(44100, 2, 400'000), 44100, 2);
    std::ofstream(mp3) << "the old song";
    std::stop_source cancel;
    double last = 0;
    const EncodeOutcome cancelled = encode(
        {.wav = wav, .mp3 = mp3, .deleteWav = true},
        [&](double share) {
            EXPECT_GE(share, last);
            last = share;
            if (share > 0.3)
                cancel.request_stop();
        },
        cancel.get_token());
    EXPECT_EQ(cancelled.end, End::Cancelled);
    EXPECT_EQ(bytesOf(mp3), "the old song");
    EXPECT_EQ(filesIn(folder), 2U) << "the take stays, and nothing else is left";
    EXPECT_EQ(encode({.wav = wav, .mp3 = mp3}, [&](double share) { last = share; }).end, End::Done);
    EXPECT_EQ(last, 1);
    EXPECT_EQ(decoded(mp3).frames, 400'000);
}

TEST_F(EncoderTest, TheTakeIsDeletedOnceTheMp3Stands) {
    writeWav(wav, music(44100, 2, 10'000), 44100, 2);
    const EncodeOutcome outcome = encode({.wav = wav, .mp3 = mp3, .deleteWav = true});
    EXPECT_EQ(outcome.end, End::Done);
    EXPECT_EQ(outcome.error, "");
    EXPECT_FALSE(std::filesystem::exists(wav));
    EXPECT_EQ(decoded(mp3).frames, 10'000);
}

TEST_F(EncoderTest, ATakeOfWhichNoMp3StandsIsKept) {
    writeWav(wav, music(44100, 2, 10'000), 44100, 2);
    const EncodeOutcome outcome = encode({.wav = wav, .mp3 = "/dev/null", .deleteWav = true});
    EXPECT_EQ(outcome.end, End::Done);
    EXPECT_THAT(outcome.error, HasSubstr(wav.string()));
    EXPECT_TRUE(std::filesystem::exists(wav));
}

TEST_F(EncoderTest, TheSourceIsNeverWrittenOver) {
    writeWav(wav, music(44100, 2, 10'000), 44100, 2);
    const std::string before = bytesOf(wav);
    std::filesystem::create_symlink(wav, folder / "link.mp3");
    std::filesystem::create_hard_link(wav, folder / "hard.mp3");
    for (const auto& name : {wav, folder / "link.mp3", folder / "hard.mp3"}) {
        const EncodeOutcome outcome = encode({.wav = wav, .mp3 = name, .deleteWav = true});
        EXPECT_EQ(outcome.end, End::Failed);
        EXPECT_THAT(outcome.error, HasSubstr(name.string()));
        EXPECT_EQ(bytesOf(wav), before);
    }
}

TEST_F(EncoderTest, AFullDiskIsAnErrorInWordsAndKeepsEverything) {
    writeWav(wav, music(44100, 2, 200'000), 44100, 2);
    std::ofstream(mp3) << "the old song";
    {
        const FullDisk disk(20'000);
        const EncodeOutcome outcome = encode({.wav = wav, .mp3 = mp3, .deleteWav = true});
        EXPECT_EQ(outcome.end, End::Failed);
        EXPECT_EQ(outcome.error, "Writing \"" + mp3.string() + "\" failed: File too large.");
    }
    EXPECT_EQ(encode({.wav = wav, .mp3 = "/dev/full", .deleteWav = true}).error,
              "Writing \"/dev/full\" failed: No space left on device.");
    EXPECT_EQ(bytesOf(mp3), "the old song");
    EXPECT_EQ(filesIn(folder), 2U);
}

TEST_F(EncoderTest, AFolderThatTakesNoFilesIsAnErrorInWords) {
    writeWav(wav, music(44100, 2, 10'000), 44100, 2);
    for (const std::filesystem::path& place : {folder / "none" / "a.mp3", wav / "a.mp3", folder}) {
        const EncodeOutcome outcome = encode({.wav = wav, .mp3 = place, .deleteWav = true});
        EXPECT_EQ(outcome.end, End::Failed);
        EXPECT_THAT(outcome.error, HasSubstr("\"" + place.string() + "\""));
    }
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST_F(EncoderTest, WhatIsNoSoundIsToldAndNothingIsWritten) {
    std::ofstream(wav) << "RIFF and nothing else";
    const EncodeOutcome outcome = encode({.wav = wav, .mp3 = mp3, .deleteWav = true});
    EXPECT_EQ(outcome.end, End::Failed);
    EXPECT_THAT(outcome.error, HasSubstr(wav.string()));
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST_F(EncoderTest, ABitrateThatMp3LacksIsRefused) {
    writeWav(wav, music(44100, 2, 10'000), 44100, 2);
    EXPECT_THAT(made({.bitrate = 100}).error, HasSubstr("no bitrate of 100"));
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST_F(EncoderTest, WithoutRewindingThereIsNoInfoFrameAndNoSilenceInItsPlace) {
    const std::vector<float> sound = music(44100, 2, 44'100);
    writeWav(wav, sound, 44100, 2);
    ASSERT_EQ(made().end, End::Done);
    const std::string whole = bytesOf(mp3);
    const std::filesystem::path piped = folder / "piped";
    ASSERT_EQ(mkfifo(piped.c_str(), 0600), 0);
    std::string came;
    std::thread reader([&] { came = bytesOf(piped); });
    EXPECT_EQ(encode({.wav = wav, .mp3 = piped}).error, "");
    reader.join();
    const mp3walk::Walk walk = mp3walk::walk(came);
    EXPECT_FALSE(walk.info);
    EXPECT_EQ(walk.end, came.size());
    EXPECT_EQ(walk.frames.size() + 1, mp3walk::walk(whole).frames.size());
}

TEST_F(EncoderTest, TwoEncodingsAtOnceGiveWhatEachGivesAlone) {
    writeWav(wav, music(44100, 2, 150'000), 44100, 2);
    const std::filesystem::path second = folder / "second.wav";
    writeWav(second, music(48000, 1, 150'000), 48000, 1);
    const auto alone = [&](const std::filesystem::path& source) {
        EXPECT_EQ(encode({source, mp3}).error, "");
        return bytesOf(mp3);
    };
    const std::array expected{alone(wav), alone(second)};
    std::array<std::thread, 4> threads;
    for (std::size_t i = 0; i < threads.size(); ++i)
        threads[i] = std::thread([&, i] {
            EXPECT_EQ(encode({i % 2 == 0 ? wav : second, folder / std::to_string(i)}).error, "");
        });
    for (std::size_t i = 0; i < threads.size(); ++i) {
        threads[i].join();
        EXPECT_TRUE(bytesOf(folder / std::to_string(i)) == expected[i % 2]) << i;
    }
}

TEST_F(EncoderTest, TheStockCommandMakesTheSameSoundOfTheSameSettings) {
    const std::vector<float> sound = music(44100, 2, 60'000);
    writeWav(wav, sound, 44100, 2);
    ASSERT_EQ(made().end, End::Done);
    const int effort = kEncoderQualities[kDefaultQuality].effort;
    const std::filesystem::path theirs = folder / "theirs.mp3";
    ASSERT_EQ(ask("lame --quiet -b 224 -m j -q " + std::to_string(effort) + " '" + wav.string() + "' '" +
                  theirs.string() + "'")
                  .exitCode,
              0);
    EXPECT_TRUE(decoded(theirs).samples == decoded(mp3).samples);
}
