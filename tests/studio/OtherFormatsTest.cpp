// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/OtherFormats.h"

#include "studio/WavFile.h"
#include "tests/studio/TestMusic.h"
#include "tests/studio/TestSinks.h"
#include "tests/support/FullDisk.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::testmusic;
using namespace velmora::testsinks;
using testing::HasSubstr;
using End = EncodeOutcome::End;

namespace {
struct OtherFormatsTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();
    std::filesystem::path wav = folder / "a take.wav";
};
} // namespace

TEST_F(OtherFormatsTest, TheExtensionNamesTheFormatInAnyCaseOfLetters) {
    EXPECT_EQ(otherFormat("a.flac"), SoundFormat::Flac);
    EXPECT_EQ(otherFormat("a.FLAC"), SoundFormat::Flac);
    EXPECT_EQ(otherFormat("a.b.Ogg"), SoundFormat::Vorbis);
    EXPECT_EQ(otherFormat("a.opus"), SoundFormat::Opus);
    for (const char* name : {"a.mp3", "a.wav", "flac", "a.", ""})
        EXPECT_EQ(otherFormat(name), std::nullopt) << name;
}

TEST_F(OtherFormatsTest, AFlacFileKeepsEveryBitOfATake) {
    const std::filesystem::path flac = folder / "a.flac";
    for (const int channels : {1, 2}) {
        const std::vector<float> sound = music(44100, channels, 100'001);
        writeWav(wav, sound, 44100, channels);
        ASSERT_EQ(encodeByName({.wav = wav, .mp3 = flac}).error, "");
        ASSERT_EQ(
            ask("flac -s -f -d -o '" + (folder / "d.wav").string() + "' '" + flac.string() + "'").exitCode,
            0);
        const Decoded heard = readSound(folder / "d.wav");
        EXPECT_TRUE(heard.samples == sound) << channels;
        EXPECT_EQ(heard.rate, 44100);
        EXPECT_EQ(heard.channels, channels);
    }
}

TEST_F(OtherFormatsTest, AFlacFileKeepsTwentyFourBits) {
    std::vector<float> sound = music(48000, 2, 20'000);
    for (std::size_t i = 0; i < sound.size(); ++i)
        sound[i] += static_cast<float>(i % 256) / 8'388'608.0F;
    writeWav(wav, sound, 48000, 2, SF_FORMAT_PCM_24);
    ASSERT_EQ(encodeByName({.wav = wav, .mp3 = folder / "a.flac"}).error, "");
    const Decoded heard = readSound(folder / "a.flac");
    EXPECT_EQ(heard.format & SF_FORMAT_SUBMASK, SF_FORMAT_PCM_24);
    EXPECT_TRUE(heard.samples == readSound(wav).samples);
}

TEST_F(OtherFormatsTest, OtherProgramsDecodeVorbisAndOpusOfTheSameLength) {
    struct Row {
        const char* name;
        const char* decoder;
        int rate;
        int decodedRate;
    };
    for (const Row& row :
         {Row{"a.ogg", "oggdec -Q -o", 44100, 44100}, Row{"a.ogg", "oggdec -Q -o", 22050, 22050},
          Row{"a.opus", "opusdec --quiet --rate 48000", 48000, 48000},
          Row{"a.opus", "opusdec --quiet --rate 48000", 44100, 48000}}) {
        const std::vector<float> sound = music(row.rate, 2, row.rate);
        writeWav(wav, sound, row.rate, 2);
        const std::filesystem::path file = folder / row.name;
        ASSERT_EQ(encodeByName({.wav = wav, .mp3 = file}).error, "");
        const std::string out = "'" + (folder / "d.wav").string() + "'";
        const bool isFirst = std::string_view(row.decoder).ends_with("-o");
        const std::string in = "'" + file.string() + "'";
        const Witness witness =
            ask(std::string(row.decoder) + " " + (isFirst ? out + " " + in : in + " " + out));
        ASSERT_EQ(witness.exitCode, 0) << witness.output;
        const Decoded heard = readSound(folder / "d.wav");
        EXPECT_EQ(heard.rate, row.decodedRate);
        EXPECT_EQ(heard.frames, row.decodedRate) << row.name << " " << row.rate;
        if (row.rate == row.decodedRate) {
            EXPECT_GT(belowSound(sound, heard.samples), 12) << row.name << " begins at another frame";
        }
    }
}

TEST_F(OtherFormatsTest, TitleAndArtistAreInEachFormat) {
    writeWav(wav, music(44100, 2, 44'100), 44100, 2);
    for (const OtherFormat& format : kOtherFormats) {
        const std::filesystem::path file = folder / ("a" + std::string(format.extension));
        ASSERT_EQ(encodeByName({.wav = wav, .mp3 = file, .settings = {.title = "月光", .artist = "Ø"}}).error,
                  "");
        const Decoded heard = readSound(file);
        EXPECT_EQ(heard.title, "月光") << format.extension;
        EXPECT_EQ(heard.artist, "Ø") << format.extension;
    }
}

TEST_F(OtherFormatsTest, WithoutATitleThatOfTheSoundStays) {
    const std::filesystem::path mp3 = folder / "a.mp3";
    writeWav(wav, music(44100, 2, 44'100), 44100, 2);
    ASSERT_EQ(encode({.wav = wav, .mp3 = mp3, .settings = {.title = "Morning", .artist = "Bob"}}).error, "");
    for (const OtherFormat& format : kOtherFormats) {
        const std::filesystem::path file = folder / ("b" + std::string(format.extension));
        ASSERT_EQ(encodeByName({.wav = mp3, .mp3 = file, .settings = {.artist = "Ada"}}).error, "");
        EXPECT_EQ(readSound(file).title, "Morning");
        EXPECT_EQ(readSound(file).artist, "Ada");
    }
}

TEST_F(OtherFormatsTest, AnyOtherNameIsAnMp3File) {
    writeWav(wav, music(44100, 2, 44'100), 44100, 2);
    ASSERT_EQ(encodeByName({.wav = wav, .mp3 = folder / "a.mp3"}).error, "");
    EXPECT_EQ(ask("mpg123 -q -t '" + (folder / "a.mp3").string() + "'").exitCode, 0);
    EXPECT_EQ(bytesOf(folder / "a.mp3")[0], '\xFF');
}

TEST_F(OtherFormatsTest, AnOldFileIsReplacedOnlyByAWholeOne) {
    writeWav(wav, music(44100, 2, 400'000), 44100, 2);
    for (const OtherFormat& format : kOtherFormats) {
        const std::filesystem::path file = folder / ("a" + std::string(format.extension));
        std::ofstream(file) << "the old song";
        std::stop_source cancel;
        const EncodeOutcome cancelled = encodeByName(
            {.wav = wav, .mp3 = file, .deleteWav = true},
            [&](double share) {
                if (share > 0.3)
                    cancel.request_stop();
            },
            cancel.get_token());
        EXPECT_EQ(cancelled.end, End::Cancelled);
        {
            const FullDisk disk(10'000);
            const EncodeOutcome outcome = encodeByName({.wav = wav, .mp3 = file, .deleteWav = true});
            EXPECT_EQ(outcome.end, End::Failed);
            EXPECT_EQ(outcome.error, "Writing \"" + file.string() + "\" failed: File too large.");
        }
        EXPECT_EQ(bytesOf(file), "the old song");
        EXPECT_EQ(filesIn(folder), 2U);
        EXPECT_EQ(encodeByName({.wav = wav, .mp3 = folder / "none" / file.filename()}).end, End::Failed);
        EXPECT_EQ(encodeByName({.wav = wav, .mp3 = file}).error, "");
        EXPECT_NE(bytesOf(file), "the old song");
        std::filesystem::remove(file);
    }
}

TEST_F(OtherFormatsTest, WavFilesKeepTheirNearestValues) {
    const std::filesystem::path file = folder / "b.wav";
    const std::vector<float> sound{0.1F, -0.3F, 1.5F, -1.5F, 0.9F, 0.0F};
    const auto sink = makeSoundFileSink(file, {.format = SoundFormat::Wav}, 44100, 2);
    ASSERT_EQ(writeWhole(*sink, sound), "");
    std::vector<std::int16_t> nearest(sound.size());
    toSixteenBits(sound, nearest.data());
    const Decoded heard = readSound(file);
    for (std::size_t i = 0; i < sound.size(); ++i)
        EXPECT_EQ(heard.samples[i] * 32768, nearest[i]);
}
