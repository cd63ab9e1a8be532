// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Mp3Stream.h"

#include "tests/studio/Mp3Walk.h"
#include "tests/studio/TestMusic.h"
#include "tests/studio/TestSinks.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::testmusic;
using namespace velmora::testsinks;

namespace {
/// Notes that begin and end, louder and softer, for a stream that has much and little to do in turn.
std::vector<float> tune(int rate, int channels, double seconds) {
    std::mt19937 random(11);
    std::uniform_real_distribution<float> noise(-1, 1);
    std::vector<float> samples;
    for (int i = 0; i < static_cast<int>(seconds * rate); ++i) {
        const double time = static_cast<double>(i) / rate;
        const int note = static_cast<int>(time / 0.23);
        const double since = time - 0.23 * note;
        const double fade = std::exp(-9 * since) * (note % 7 == 0 ? 0.9 : 0.3);
        const double pitch = 220 * std::pow(2, note * 5 % 24 / 12.0);
        for (int side = 0; side < channels; ++side) {
            const double tone = std::sin(2 * std::numbers::pi * pitch * (side + 1) * since);
            const double stroke = note % 3 == 0 ? std::exp(-60 * since) * double{noise(random)} : 0;
            samples.push_back(static_cast<float>(0.6 * fade * tone + 0.3 * stroke));
        }
    }
    return samples;
}

struct Made {
    std::string bytes;
    int code = kBeSuccessful;
};

Made streamed(const EncoderRecord& record, std::span<const float> sound, std::size_t block) {
    Made made;
    Mp3Stream stream(record, [&](std::span<const unsigned char> bytes) {
        made.bytes.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return true;
    });
    made.code = stream.open();
    while (!sound.empty() && made.code == kBeSuccessful) {
        const auto part = sound.first(std::min(block, sound.size()));
        made.code = stream.write(part);
        sound = sound.subspan(part.size());
    }
    if (made.code == kBeSuccessful)
        made.code = stream.finish();
    made.bytes.replace(0, stream.info().size(), reinterpret_cast<const char*>(stream.info().data()),
                       stream.info().size());
    return made;
}

/// By one stream from the begin to the end.
std::string inOne(const EncoderRecord& record, std::span<const float> sound) {
    LameStream stream;
    std::uint32_t samples = 0;
    std::uint32_t size = 0;
    EXPECT_EQ(beInitStream(record, samples, size, stream), 0);
    std::vector<unsigned char> output(size);
    std::uint32_t written = 0;
    std::string mp3;
    const auto keep = [&] { mp3.append(reinterpret_cast<const char*>(output.data()), written); };
    for (; !sound.empty(); keep()) {
        const auto block = sound.first(std::min<std::size_t>(samples, sound.size()));
        EXPECT_EQ(beEncodeChunk(stream, block, output, written), 0);
        sound = sound.subspan(block.size());
    }
    EXPECT_EQ(beDeinitStream(stream, output, written), 0);
    keep();
    const std::size_t info = infoFrame(stream, output);
    mp3.replace(0, info, reinterpret_cast<const char*>(output.data()), info);
    return mp3;
}

struct Mp3StreamTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();

    /// By a decoder that tells of whatever is wrong.
    [[nodiscard]] std::vector<float> decoded(const std::string& mp3) const {
        std::ofstream(folder / "a.mp3", std::ios::binary) << mp3;
        const std::string wav = (folder / "a.wav").string();
        const Witness witness =
            ask("mpg123 -q -e s16 -w '" + wav + "' '" + (folder / "a.mp3").string() + "'");
        EXPECT_EQ(witness.exitCode, 0);
        EXPECT_EQ(witness.output, "");
        return readSound(wav).samples;
    }
};
} // namespace

TEST_F(Mp3StreamTest, StretchesJoinToAStreamAsGoodAsOneOfOnePiece) {
    int seams = 0; // of streams that differ from one of one piece
    struct Row {
        std::uint32_t rate;
        std::int32_t mode;
        std::uint32_t bitrate;
        double seconds;
    };
    for (const Row& row : {Row{44100, kJointStereo, 224, 43},
                           {44100, kJointStereo, 320, 24},
                           {44100, kJointStereo, 128, 24},
                           {44100, kMono, 64, 43},
                           {44100, kMono, 32, 24},
                           {48000, kJointStereo, 192, 24},
                           {22050, kJointStereo, 160, 24},
                           {16000, kMono, 32, 43}}) {
        const EncoderRecord record{
            .dwSampleRate = row.rate, .nMode = row.mode, .dwBitrate = row.bitrate, .nPreset = 1000};
        const int channels = row.mode == kMono ? 1 : 2;
        const std::vector<float> sound = tune(static_cast<int>(row.rate), channels, row.seconds);
        const Made made = streamed(record, sound, 20'000);
        ASSERT_EQ(made.code, 0);
        const std::string whole = inOne(record, sound);
        EXPECT_EQ(made.bytes.size(), whole.size()) << row.rate << " " << row.bitrate;
        seams += made.bytes == whole ? 0 : 1;
        const std::vector<float> heard = decoded(made.bytes);
        const std::vector<float> expected = decoded(whole);
        ASSERT_EQ(heard.size(), expected.size());
        EXPECT_GT(belowSound(sound, heard), belowSound(sound, expected) - 0.1)
            << row.rate << " " << row.bitrate;
        // Nor is any second of it worse, wherever the seams are.
        const std::size_t second = std::size_t{row.rate} * static_cast<std::size_t>(channels);
        for (std::size_t at = 0; at + second < std::min(sound.size(), heard.size()); at += second) {
            const auto part = [&](std::span<const float> of) { return of.subspan(at, second); };
            EXPECT_GT(belowSound(part(sound), part(heard)), belowSound(part(sound), part(expected)) - 1.5)
                << row.rate << " " << row.bitrate << " at " << at / second << " s";
        }

        const mp3walk::Walk walk = mp3walk::walk(made.bytes);
        const mp3walk::Walk wholeWalk = mp3walk::walk(whole);
        EXPECT_EQ(walk.end, made.bytes.size());
        EXPECT_EQ(walk.frames.size(), wholeWalk.frames.size());
        ASSERT_EQ(walk.info.has_value(), wholeWalk.info.has_value());
        if (!walk.info)
            continue;
        EXPECT_EQ(walk.info->frames, wholeWalk.info->frames);
        EXPECT_EQ(walk.info->bytes, made.bytes.size());
        EXPECT_EQ(walk.info->musicLength, made.bytes.size());
        EXPECT_EQ(walk.info->delay, wholeWalk.info->delay);
        EXPECT_EQ(walk.info->padding, wholeWalk.info->padding);
        EXPECT_EQ(walk.info->musicChecksum, walk.soundChecksum);
        EXPECT_EQ(walk.info->tagChecksum, walk.info->tagChecksumFound);
    }
    EXPECT_GE(seams, 4);
}

TEST_F(Mp3StreamTest, WhatIsShorterThanAStretchIsTheEncodersOwnWork) {
    for (const double seconds : {0.0, 0.01, 3.0, 19.0}) {
        const std::vector<float> sound = tune(44100, 2, seconds);
        const EncoderRecord record{.nPreset = 1000};
        const std::string whole = inOne(record, sound);
        const std::string made = streamed(record, sound, 4096).bytes;
        ASSERT_EQ(made.size(), whole.size());
        const std::size_t frame = 731;
        EXPECT_TRUE(made.substr(frame) == whole.substr(frame)) << seconds;
        EXPECT_EQ(mp3walk::walk(made).info->padding, mp3walk::walk(whole).info->padding);
    }
}

TEST_F(Mp3StreamTest, EveryLengthAroundTheEndOfAStretchIsExact) {
    // A stretch has 784 frames of 576, and 38 more are needed before the next begins.
    const EncoderRecord record{.dwSampleRate = 22050, .nMode = kMono, .dwBitrate = 80, .nPreset = 1};
    for (const int frames : {783 * 576, 784 * 576, 784 * 576 + 1, 821 * 576 + 575, 822 * 576, 822 * 576 + 1,
                             823 * 576, 2 * 784 * 576 + 38 * 576, 2 * 784 * 576 + 38 * 576 + 1}) {
        const std::vector<float> sound = tune(22050, 1, (frames + 0.5) / 22050);
        ASSERT_EQ(sound.size(), static_cast<std::size_t>(frames));
        const std::string made = streamed(record, sound, 5000).bytes;
        EXPECT_EQ(decoded(made).size(), sound.size());
        EXPECT_EQ(mp3walk::walk(made).end, made.size());
    }
}

TEST_F(Mp3StreamTest, TheSizesOfTheBlocksMakeNoDifference) {
    const std::vector<float> sound = tune(44100, 2, 24);
    const EncoderRecord record{.nPreset = 1000};
    const std::string bytes = streamed(record, sound, 1000).bytes;
    EXPECT_TRUE(streamed(record, sound, 30'000).bytes == bytes);
    EXPECT_TRUE(streamed(record, sound, sound.size()).bytes == bytes);
}

TEST_F(Mp3StreamTest, BytesThatAreRefusedAreTold) {
    Mp3Stream stream({.nPreset = 1000}, [](std::span<const unsigned char>) { return false; });
    ASSERT_EQ(stream.open(), 0);
    ASSERT_EQ(stream.write(tune(44100, 2, 1)), 0);
    EXPECT_FALSE(stream.isRefused());
    EXPECT_EQ(stream.finish(), 0);
    EXPECT_TRUE(stream.isRefused());
}

TEST_F(Mp3StreamTest, WhatIsLeftInTheMiddleEndsCleanly) {
    Mp3Stream stream({.nPreset = 1000}, [](std::span<const unsigned char>) { return true; });
    ASSERT_EQ(stream.open(), 0);
    EXPECT_EQ(stream.write(tune(44100, 2, 30)), 0);
}

TEST_F(Mp3StreamTest, ARecordThatIsNoneIsToldAtOnce) {
    Mp3Stream stream({.dwBitrate = 100}, [](std::span<const unsigned char>) { return true; });
    EXPECT_EQ(stream.open(), 2);
}
