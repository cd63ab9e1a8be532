// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/TrimTake.h"

#include "studio/GrowingWav.h"
#include "studio/Id3Tag.h"
#include "studio/SoundReader.h"
#include "tests/studio/CaptureSounds.h"
#include "tests/studio/SoundBytes.h"
#include "tests/studio/TestMusic.h"
#include "tests/studio/TestSinks.h"
#include "tests/support/FullDisk.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <cstring>
#include <fstream>

using namespace velmora;
using namespace velmora::testsounds;
using testing::ElementsAre;
using testing::HasSubstr;
using End = TrimOutcome::End;

namespace {
struct TrimTakeTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();
    std::filesystem::path from = folder / "take.wav";
    std::filesystem::path to = folder / "part.wav";
    std::vector<std::int16_t> noise = sixteenBitNoise(2 * 200'000);

    void write(std::span<const std::byte> bytes, WaveFormat format, std::uint64_t longest = kLongestWav) {
        GrowingWav wav(from, format, longest);
        ASSERT_EQ(wav.open(), "");
        for (std::size_t at = 0; at < bytes.size(); at += 40'000)
            ASSERT_EQ(wav.append(bytes.subspan(at, std::min<std::size_t>(40'000, bytes.size() - at))), "");
        ASSERT_EQ(wav.finish(), "");
    }
    void writeNoise(std::uint64_t longest = kLongestWav) {
        write(std::as_bytes(std::span(noise)), {}, longest);
    }
    [[nodiscard]] std::vector<std::int16_t> noiseOf(std::ptrdiff_t begin, std::ptrdiff_t end) const {
        return {noise.begin() + 2 * begin, noise.begin() + 2 * end};
    }
};

/// What the program reads of a file, from a frame on.
std::vector<float> readFrom(const std::filesystem::path& file, std::int64_t frame) {
    const OpenedSound opened = openSound(file);
    EXPECT_EQ(opened.error, "");
    if (!opened.reader)
        return {};
    opened.reader->seek(frame);
    const SoundInfo& info = opened.reader->info();
    std::vector<float> samples(static_cast<std::size_t>((info.frames - frame) * info.channels));
    opened.reader->read(samples);
    return samples;
}
SoundInfo infoOf(const std::filesystem::path& file) {
    const OpenedSound opened = openSound(file);
    EXPECT_EQ(opened.error, "");
    return opened.reader ? opened.reader->info() : SoundInfo{};
}

/// Each kind of samples that the reader reads.
const std::vector<soundbytes::WavFormat> kKinds{
    {.bits = 8},
    {.channels = 1, .bits = 12, .alignment = 2},
    {.bits = 16},
    {.bits = 24},
    {.bits = 32},
    {.bits = 24, .isExtensible = true},
    {.channels = 6, .bits = 16, .isExtensible = true},
    {.code = 3, .bits = 32},
    {.code = 3, .channels = 1, .bits = 64},
    {.code = 6, .channels = 1, .rate = 8000, .bits = 8},
    {.code = 7, .rate = 8000, .bits = 8},
};

struct TrimMp3Test : TrimTakeTest {
    TrimMp3Test() {
        from.replace_extension("mp3");
        to.replace_extension("mp3");
    }
    void writeMp3(const EncodeSettings& settings, int frames = 200'000, int rate = 44100, int channels = 2) {
        const std::filesystem::path wav = folder / "source.wav";
        testmusic::writeWav(wav, testmusic::music(rate, channels, frames), rate, channels);
        ASSERT_EQ(encode({.wav = wav, .mp3 = from, .settings = settings, .deleteWav = true}).error, "");
    }
};
} // namespace

TEST_F(TrimTakeTest, WithoutAFadeEveryKindOfSamplesStaysByteForByte) {
    std::string sound(48'000, '\0');
    for (std::size_t i = 0; i < sound.size(); ++i)
        sound[i] = static_cast<char>(i * 197 >> 3U); // some are no numbers, as floats
    const std::string told = "INFOINAM" + soundbytes::ByteWriter().number(4, 4).text + "Song";
    const std::string toldBig = "INFOINAM" + soundbytes::ByteWriter(true).number(4, 4).text + "Song";
    for (const char* kind : {"RIFF", "RIFX"}) {
        for (const soundbytes::WavFormat& format : kKinds) {
            SCOPED_TRACE(std::string(kind) + " " + std::to_string(format.code) + " " +
                         std::to_string(format.bits));
            soundbytes::Wav wav{kind};
            wav.chunk("JUNK", "abc").format(format).chunk("data", sound);
            soundbytes::writeFile(from, wav.chunk("LIST", wav.isBig() ? toldBig : told).bytes());
            const TrimOutcome outcome = trimTake({from, to, 100, 401});
            ASSERT_EQ(outcome.error, "");
            EXPECT_EQ(outcome.note, "");
            const auto frame = static_cast<std::size_t>((format.bits + 7) / 8 * format.channels);
            soundbytes::Wav wanted{kind};
            wanted.format(format);
            if (format.code != 1 || format.isExtensible)
                wanted.chunk("fact", soundbytes::ByteWriter(wanted.isBig()).number(301, 4).text);
            wanted.chunk("data", sound.substr(100 * frame, 301 * frame))
                .chunk("LIST", wanted.isBig() ? toldBig : told);
            // Bytes a second of samples that fill no bytes: by those that they take.
            std::string made = bytesOf(to);
            if (format.bits == 12)
                made.replace(28, 4, wanted.bytes().substr(28, 4));
            EXPECT_EQ(made, wanted.bytes());
            EXPECT_EQ(infoOf(to).title, "Song");
            if (!wanted.isBig() && format.bits != 12) {
                EXPECT_EQ(testsinks::ask("soxi -V1 -s '" + to.string() + "'").output, "301\n");
            }
        }
    }
}

TEST_F(TrimTakeTest, AFadeLeavesFloatsAndWidthsAndMakesSixteenBitsOfLogarithmicSamples) {
    for (const char* kind : {"RIFF", "RIFX"}) {
        for (const soundbytes::WavFormat& format : kKinds) {
            SCOPED_TRACE(std::string(kind) + " " + std::to_string(format.code) + " " +
                         std::to_string(format.bits));
            const bool isFloat = format.code == 3;
            soundbytes::ByteWriter sound(kind[3] == 'X');
            // Steady: 1.5 as a float, half of full scale else.
            for (int i = 0; i < 1000 * format.channels; ++i) {
                if (isFloat)
                    sound.number(format.bits == 32 ? 0x3FC00000 : 0x3FF8000000000000, format.bits / 8);
                else if (format.code != 1)
                    sound.number(0xA7, 1);
                else
                    sound.number(format.bits == 8 ? 0xC0
                                                  : std::uint64_t{1} << ((format.bits + 7) / 8 * 8 - 2),
                                 (format.bits + 7) / 8);
            }
            soundbytes::writeFile(from,
                                  soundbytes::Wav{kind}.format(format).chunk("data", sound.text).bytes());
            const float steady = readFrom(from, 0).front();
            const TrimOutcome outcome = trimTake({from, to, 0, 1000, 100, 100});
            ASSERT_EQ(outcome.error, "");
            const bool isLogarithmic = format.code > 3;
            EXPECT_EQ(outcome.note,
                      isLogarithmic ? "Logarithmic samples can't be faded: those of the new file have 16 bits"
                                    : "");
            const SoundInfo info = infoOf(to);
            EXPECT_EQ(info.bits, isLogarithmic ? 16 : format.bits);
            EXPECT_EQ(info.isFloat, isFloat);
            EXPECT_EQ(info.channels, format.channels);
            EXPECT_EQ(info.rate, static_cast<int>(format.rate));
            const std::vector<float> made = readFrom(to, 0);
            ASSERT_EQ(made.size(), 1000U * static_cast<unsigned>(format.channels));
            const auto channels = static_cast<std::size_t>(format.channels);
            EXPECT_NEAR(made.front(), 0, 0.01);
            EXPECT_NEAR(made[50 * channels], steady / 2, 0.02);
            for (std::size_t i = 100 * channels; i < 900 * channels; ++i)
                ASSERT_EQ(made[i], steady);
            EXPECT_NEAR(made.back(), 0, 0.01);
        }
    }
}

TEST_F(TrimMp3Test, APartOfAnMp3FileHasExactlyItsFramesAndIsToldToBeEncodedAgain) {
    writeMp3({.bitrate = 320});
    const TrimOutcome outcome = trimTake({from, to, 10'001, 150'000});
    ASSERT_EQ(outcome.error, "");
    EXPECT_THAT(outcome.note, HasSubstr("encoded again, at 320 kbit/s"));
    const SoundInfo info = infoOf(to);
    EXPECT_EQ(info.kind, SoundKind::Mp3);
    EXPECT_EQ(info.frames, 139'999);
    const std::vector<float> part = readFrom(to, 0);
    const auto near = [&](std::int64_t frame) {
        return testmusic::belowSound(std::span(part).first(200'000), readFrom(from, frame));
    };
    EXPECT_GT(near(10'001), 25);
    EXPECT_GT(near(10'001), near(10'000) + 3) << "a frame late";
    EXPECT_GT(near(10'001), near(10'002) + 3) << "a frame early";
    EXPECT_EQ(testsinks::filesIn(folder), 2U);
}

TEST_F(TrimMp3Test, AnotherDecoderFindsTheSameFrames) {
    writeMp3({});
    ASSERT_EQ(trimTake({from, to, 7, 100'000}).error, "");
    const auto witness =
        testsinks::ask("ffmpeg -v error -i '" + to.string() + "' -f s16le - 2>/dev/null | wc -c");
    EXPECT_EQ(witness.output, std::to_string(99'993 * 4) + "\n");
}

TEST_F(TrimMp3Test, ItFadesToo) {
    writeMp3({.bitrate = 320}, 100'000, 44100, 1);
    ASSERT_EQ(trimTake({from, to, 0, 100'000, 20'000, 20'000}).error, "");
    EXPECT_EQ(infoOf(to).channels, 1);
    const std::vector<float> made = readFrom(to, 0);
    const auto loudest = [&made](std::size_t begin) {
        float peak = 0;
        for (const float value : std::span(made).subspan(begin, 1000))
            peak = std::max(peak, std::abs(value));
        return peak;
    };
    EXPECT_LT(loudest(0), 0.02F);
    EXPECT_NEAR(loudest(9500), loudest(50'000) / 2, 0.04);
    EXPECT_GT(loudest(50'000), 0.35F);
    EXPECT_LT(loudest(99'000), 0.02F);
}

TEST_F(TrimMp3Test, BitrateRateAndChannelsAreThoseOfTheFile) {
    writeMp3({.bitrate = 64}, 100'000, 22050, 1);
    ASSERT_EQ(trimTake({.from = from, .to = to, .begin = 0, .end = 50'000, .mp3 = {.bitrate = 320}}).error,
              "");
    const SoundInfo info = infoOf(to);
    EXPECT_EQ(info.bitrate, 64);
    EXPECT_EQ(info.rate, 22050);
    EXPECT_EQ(info.channels, 1);
    EXPECT_EQ(info.frames, 50'000);
}

TEST_F(TrimMp3Test, WhereTheEncoderLacksTheFilesBitrateThatOfTheSettingsCounts) {
    const std::filesystem::path wav = folder / "source.wav";
    testmusic::writeWav(wav, testmusic::music(16000, 1, 60'000), 16000, 1);
    ASSERT_EQ(testsinks::ask("lame --quiet -b 24 '" + wav.string() + "' '" + from.string() + "'").exitCode,
              0);
    ASSERT_EQ(infoOf(from).bitrate, 24);
    ASSERT_EQ(trimTake({.from = from, .to = to, .begin = 0, .end = 50'000, .mp3 = {.bitrate = 96}}).error,
              "");
    EXPECT_EQ(infoOf(to).bitrate, 96);
}

TEST_F(TrimMp3Test, TagsAndCoverComeAlongUnlessOthersAreGiven) {
    const std::filesystem::path cover = folder / "cover.png";
    const std::string picture = "\x89PNG\r\n\x1A\n the picture";
    std::ofstream(cover, std::ios::binary) << picture;
    writeMp3({.title = "Morning Walk", .artist = "Ada", .cover = cover});
    ASSERT_EQ(trimTake({from, to, 0, 50'000}).error, "");
    EXPECT_EQ(infoOf(to).title, "Morning Walk");
    EXPECT_EQ(infoOf(to).artist, "Ada");
    EXPECT_THAT(bytesOf(to), HasSubstr(picture));
    ASSERT_EQ(trimTake({.from = from, .to = to, .begin = 0, .end = 50'000, .mp3 = {.title = "Noon"}}).error,
              "");
    EXPECT_EQ(infoOf(to).title, "Noon");
    EXPECT_EQ(infoOf(to).artist, "Ada");
    EXPECT_THAT(bytesOf(to), AllOf(HasSubstr(picture), testing::StartsWith("ID3")));
    EXPECT_THAT(
        trimTake({.from = from, .to = to, .begin = 0, .end = 1, .mp3 = {.cover = folder / "none.png"}}).error,
        HasSubstr("none.png"));
}

TEST_F(TrimMp3Test, ItMayBeCutInItsOwnPlace) {
    writeMp3({});
    ASSERT_EQ(trimTake({from, from, 5, 200'000}).error, "");
    EXPECT_EQ(infoOf(from).frames, 199'995);
    EXPECT_EQ(testsinks::filesIn(folder), 1U);
}

TEST_F(TrimMp3Test, WhateverEndsItEarlyLeavesTheOldFilesAndNothingElse) {
    writeMp3({}, 2'000'000);
    const std::string before = bytesOf(from);
    std::ofstream(to) << "an old part";
    for (const double until : {0.0, 0.4, 0.9}) {
        std::stop_source source;
        double last = 0;
        const auto outcome = trimTake(
            {from, to, 0, 2'000'000},
            [&](double share) {
                EXPECT_GE(share, last);
                last = share;
                if (share > until)
                    source.request_stop();
            },
            source.get_token());
        EXPECT_EQ(outcome.end, End::Cancelled) << until;
    }
    {
        const FullDisk disk(20'000);
        EXPECT_EQ(trimTake({from, to, 0, 2'000'000}).error,
                  "Writing \"" + to.string() + "\" failed: File too large.");
        EXPECT_EQ(trimTake({from, from, 0, 2'000'000}).end, End::Failed);
    }
    EXPECT_THAT(trimTake({from, folder / "none" / "a.mp3", 0, 1000}).error, HasSubstr("none/a.mp3"));
    EXPECT_THAT(trimTake({from, to, 5, 5}).error, HasSubstr("take.mp3"));
    EXPECT_EQ(trimTake({from, to, 0, 2'000'001}).end, End::Failed);
    EXPECT_EQ(bytesOf(to), "an old part");
    EXPECT_EQ(bytesOf(from), before);
    EXPECT_EQ(testsinks::filesIn(folder), 2U);
}

TEST_F(TrimTakeTest, APartIsThereBitForBitBehindAHeaderOfItsLength) {
    writeNoise();
    EXPECT_EQ(trimTake({from, to, 10'000, 150'001}).end, End::Done);
    const std::string bytes = bytesOf(to);
    EXPECT_EQ(numberAt(bytes, 40), bytes.size() - 44);
    EXPECT_EQ(sixteenBitsOf(bytes), noiseOf(10'000, 150'001));
    EXPECT_EQ(testsinks::ask("soxi -s '" + to.string() + "'").output, "140001\n");
}

TEST_F(TrimTakeTest, ATakeMayBeCutInItsOwnPlace) {
    writeNoise();
    EXPECT_EQ(trimTake({from, from, 5, 200'000}).end, End::Done);
    EXPECT_EQ(sixteenBitsOf(bytesOf(from)), noiseOf(5, 200'000));
    EXPECT_EQ(testsinks::filesIn(folder), 1U);
}

TEST_F(TrimTakeTest, ATakeOfMoreThan4GiBIsCutToo) {
    writeNoise(100'000); // for which this stands
    ASSERT_TRUE(bytesOf(from).starts_with("RF64"));
    EXPECT_EQ(trimTake({from, to, 190'000, 200'000}).end, End::Done);
    EXPECT_EQ(sixteenBitsOf(bytesOf(to)), noiseOf(190'000, 200'000));
}

TEST_F(TrimTakeTest, FadesRiseAndFallWithoutACornerAndTouchNothingElse) {
    const std::vector<std::int16_t> steady(2 * 100'000, 16384);
    write(std::as_bytes(std::span(steady)), {});
    EXPECT_EQ(trimTake({from, to, 0, 100'000, 1000, 2000}).end, End::Done);
    const auto part = sixteenBitsOf(bytesOf(to));
    ASSERT_EQ(part.size(), steady.size());
    const auto left = [&part](std::size_t frame) { return part[2 * frame]; };
    EXPECT_EQ(left(0), 0);
    EXPECT_NEAR(left(500), 8192, 30);
    EXPECT_EQ(left(1000), 16384);
    EXPECT_EQ(left(97'999), 16384);
    EXPECT_NEAR(left(99'000), 8192, 30);
    EXPECT_EQ(left(99'999), 0);
    for (std::size_t frame = 1; frame < 1000; ++frame) {
        ASSERT_GE(left(frame), left(frame - 1));
        ASSERT_LT(left(frame) - left(frame - 1), 27); // a straight line rises by 16
        ASSERT_EQ(part[2 * frame + 1], left(frame));
    }
}

TEST_F(TrimTakeTest, OverlappingFadesOnlyMakeItSofter) {
    const std::vector<std::int16_t> steady(2 * 100, -32768);
    write(std::as_bytes(std::span(steady)), {});
    EXPECT_EQ(trimTake({from, to, 0, 100, 80, 1000}).end, End::Done);
    for (const std::int16_t value : sixteenBitsOf(bytesOf(to))) {
        EXPECT_LE(value, 0);
        EXPECT_GT(value, -2000);
    }
}

TEST_F(TrimTakeTest, EightBitsFadeAroundTheirMiddleAndAreEvenlyPadded) {
    const std::vector<std::byte> loud(101, std::byte{255});
    write(loud, {22050, 8, 1});
    EXPECT_EQ(trimTake({from, to, 0, 101, 0, 100}).end, End::Done);
    const std::string bytes = bytesOf(to);
    ASSERT_EQ(bytes.size(), 44U + 102);
    EXPECT_EQ(numberAt(bytes, 40), 101U);
    EXPECT_EQ(numberAt(bytes, 24), 22050U);
    EXPECT_EQ(static_cast<unsigned char>(bytes[44]), 255);
    EXPECT_EQ(static_cast<unsigned char>(bytes[44 + 100]), 128);
}

TEST_F(TrimTakeTest, TwentyFourBitsKeepTheirSign) {
    std::vector<std::byte> bytes;
    for (int i = 0; i < 40; ++i)
        for (const int part : {0x01, 0x00, 0xC0}) // -4,194,303
            bytes.push_back(static_cast<std::byte>(part));
    write(bytes, {48000, 24, 1});
    EXPECT_EQ(trimTake({from, to, 0, 40, 20, 0}).end, End::Done);
    const std::string part = bytesOf(to);
    EXPECT_EQ(part.substr(44 + 60), bytesOf(from).substr(44 + 60));
    EXPECT_EQ(static_cast<unsigned char>(part[44 + 3 * 10 + 2]), 0xDD); // a little more than half
}

TEST_F(TrimTakeTest, WhatCannotBeCutIsToldWithTheNameAndTheOldFileStays) {
    writeNoise();
    std::ofstream(to) << "an old part";
    for (const TrimJob& job :
         {TrimJob{from, to, 5, 5}, TrimJob{from, to, -1, 5}, TrimJob{from, to, 0, 200'001},
          TrimJob{from, to, 9, 5}, TrimJob{folder / "missing.wav", to, 0, 1}, TrimJob{to, to, 0, 1}}) {
        const TrimOutcome outcome = trimTake(job);
        EXPECT_EQ(outcome.end, End::Failed);
        EXPECT_THAT(outcome.error, HasSubstr(job.from.string()));
    }
    EXPECT_THAT(trimTake({from, "/dev/full", 0, 1000}).error, HasSubstr("/dev/full"));
    EXPECT_EQ(bytesOf(to), "an old part");
    EXPECT_EQ(testsinks::filesIn(folder), 2U);
}

TEST_F(TrimTakeTest, ACancelLeavesTheOldFileAndNothingElseAndTheShareNeverFalls) {
    writeNoise();
    std::ofstream(to) << "an old part";
    std::stop_source source;
    double last = 0;
    const auto outcome = trimTake(
        {from, to, 0, 200'000},
        [&](double share) {
            EXPECT_GE(share, last);
            last = share;
            if (share > 0.3)
                source.request_stop();
        },
        source.get_token());
    EXPECT_EQ(outcome.end, End::Cancelled);
    EXPECT_EQ(bytesOf(to), "an old part");
    EXPECT_EQ(testsinks::filesIn(folder), 2U);
}
