// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Mp3File.h"

#include "../sound/TestSound.h"
#include "tests/studio/TestSinks.h"

#include <gmock/gmock.h>
#include <sndfile.h>

using namespace velmora;
using namespace velmora::testsinks;
using testing::HasSubstr;

namespace {
struct Mp3FileTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();
    std::filesystem::path path = folder / "a song.mp3";

    /// Decoded by another program.
    [[nodiscard]] std::vector<float> decoded() const {
        const std::string wav = (folder / "decoded.wav").string();
        const Witness witness = ask("mpg123 -q -w '" + wav + "' '" + path.string() + "'");
        EXPECT_EQ(witness.exitCode, 0) << witness.output;
        SF_INFO info{};
        SNDFILE* file = sf_open(wav.c_str(), SFM_READ, &info);
        if (!file)
            return {};
        std::vector<float> samples(static_cast<std::size_t>(info.frames * info.channels));
        sf_readf_float(file, samples.data(), info.frames);
        sf_close(file);
        return samples;
    }
};

/// The largest difference of two samples, a frame of the encoder's away from where the sound breaks off.
float furthestApart(std::span<const float> a, std::span<const float> b) {
    constexpr std::size_t kEdge = std::size_t{2} * 1152;
    float furthest = 0;
    for (std::size_t i = kEdge; i + kEdge < std::min(a.size(), b.size()); ++i)
        furthest = std::max(furthest, std::abs(a[i] - b[i]));
    return furthest;
}
} // namespace

TEST_F(Mp3FileTest, AnotherProgramDecodesTheSameSoundOfTheSameLength) {
    const std::vector<float> sound = sine(440, 3 * 44'100 + 77);
    Mp3File file(path);
    ASSERT_EQ(writeWhole(file, sound), "");
    const Witness test = ask("mpg123 -t -v '" + path.string() + "'");
    EXPECT_EQ(test.exitCode, 0);
    EXPECT_THAT(test.output,
                AllOf(HasSubstr("MPEG 1.0 L III cbr224 44100 j-s"), testing::Not(HasSubstr("rror"))));
    const std::vector<float> heard = decoded();
    EXPECT_EQ(heard.size(), sound.size()) << "the encoder's delay is not told";
    EXPECT_LT(furthestApart(heard, sound), 0.02F); // LAME takes 2 % off at this bitrate
    EXPECT_EQ(testsound::strongest(heard, {415.3, 427.5, 440.0, 452.9, 466.2}), 440.0);
}

TEST_F(Mp3FileTest, EveryBitrateOfTheListIsWhatTheFileHas) {
    for (const int bitrate : kMp3Bitrates) {
        Mp3File file(path, {.bitrate = bitrate});
        ASSERT_EQ(writeWhole(file, sine(440, 10'000)), "") << bitrate;
        const Witness test = ask("mpg123 -t -v '" + path.string() + "'");
        EXPECT_THAT(test.output, HasSubstr(" cbr" + std::to_string(bitrate) + " "));
    }
}

TEST_F(Mp3FileTest, ABitrateThatMp3LacksIsRefusedInWords) {
    for (const int bitrate : {129, 0, -1, 8, 400}) {
        Mp3File file(path, {.bitrate = bitrate});
        EXPECT_THAT(file.open(),
                    AllOf(HasSubstr("no bitrate of " + std::to_string(bitrate)), HasSubstr("224, 256")));
    }
    EXPECT_EQ(filesIn(folder), 0U);
}

TEST_F(Mp3FileTest, TheSizesOfTheBlocksMakeNoDifference) {
    const std::vector<float> sound = sine(523, 30'000);
    Mp3File blocks(path);
    ASSERT_EQ(writeWhole(blocks, sound), "");
    const std::string bytes = bytesOf(path);
    Mp3File whole(path);
    ASSERT_EQ(whole.open(), "");
    ASSERT_EQ(whole.write(sound), "");
    ASSERT_EQ(whole.finish(), "");
    EXPECT_TRUE(bytesOf(path) == bytes);
}

TEST_F(Mp3FileTest, AnEmptySoundIsAWholeFile) {
    Mp3File file(path);
    EXPECT_EQ(writeWhole(file, {}), "");
    EXPECT_EQ(ask("mpg123 -q -t '" + path.string() + "'").exitCode, 0);
}

TEST_F(Mp3FileTest, WhatIsNotFinishedLeavesTheOldFileAndNoTrace) {
    std::ofstream(path) << "the old song";
    {
        Mp3File file(path);
        EXPECT_EQ(file.open(), "");
        EXPECT_EQ(file.write(sine(440, 10'000)), "");
    }
    EXPECT_EQ(bytesOf(path), "the old song");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST_F(Mp3FileTest, AFullDeviceIsAnErrorInWords) {
    Mp3File file("/dev/full");
    EXPECT_EQ(writeWhole(file, sine(440, 100'000)), "Writing \"/dev/full\" failed: No space left on device.");
}
