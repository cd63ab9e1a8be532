// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/WavFile.h"

#include "tests/studio/TestSinks.h"

#include <gmock/gmock.h>

#include <limits>

using namespace velmora;
using namespace velmora::testsinks;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {
struct WavFileTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();
    std::filesystem::path path = folder / "a sound.wav";

    [[nodiscard]] std::string soxi(const char* question) const {
        const Witness witness = ask("soxi " + std::string(question) + " '" + path.string() + "'");
        return witness.exitCode == 0 ? witness.output : "soxi failed: " + witness.output;
    }
};
} // namespace

TEST(ToSixteenBits, RoundsToTheNearestAndStaysWithinFullScale) {
    constexpr float kStep = 1.0F / 32768;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    const std::vector<float> samples{0,
                                     0.4F * kStep,
                                     0.6F * kStep,
                                     -0.6F * kStep,
                                     0.5F * kStep,
                                     1.5F * kStep,
                                     -2.5F * kStep,
                                     32766 * kStep,
                                     1,
                                     -1,
                                     7,
                                     -7,
                                     inf,
                                     -inf,
                                     nan};
    std::vector<std::int16_t> rounded(samples.size());
    toSixteenBits(samples, rounded.data());
    EXPECT_THAT(rounded,
                ElementsAre(0, 0, 1, -1, 0, 2, -2, 32766, 32767, -32768, 32767, -32768, 32767, -32768, 0));
}

TEST(ToSixteenBits, KeepsEveryValueThatSixteenBitsHave) {
    std::vector<float> samples;
    for (int i = -32768; i <= 32767; ++i)
        samples.push_back(static_cast<float>(i) / 32768);
    std::vector<std::int16_t> rounded(samples.size());
    toSixteenBits(samples, rounded.data());
    for (std::size_t i = 0; i < samples.size(); ++i)
        ASSERT_EQ(rounded[i], static_cast<int>(i) - 32768);
}

TEST_F(WavFileTest, IsReadByAnotherProgram) {
    WavFile file(path);
    ASSERT_EQ(writeWhole(file, sine(440, 44'100)), "");
    EXPECT_EQ(soxi("-r"), "44100\n");
    EXPECT_EQ(soxi("-c"), "2\n");
    EXPECT_EQ(soxi("-b"), "16\n");
    EXPECT_EQ(soxi("-e"), "Signed Integer PCM\n");
    EXPECT_EQ(soxi("-s"), "44100\n");
    const Witness stat = ask("sox '" + path.string() + "' -n remix 1 stat");
    EXPECT_THAT(stat.output, testing::ContainsRegex("Maximum amplitude: +0\\.5000"));
    EXPECT_THAT(stat.output, testing::ContainsRegex("Rough +frequency: +(439|440)\n"));
}

TEST_F(WavFileTest, AnEmptySoundIsAWholeFile) {
    WavFile file(path);
    EXPECT_EQ(writeWhole(file, {}), "");
    EXPECT_EQ(soxi("-s"), "0\n");
}

TEST_F(WavFileTest, WhatIsNotFinishedLeavesTheOldFileAndNoTrace) {
    std::ofstream(path) << "the old sound";
    {
        WavFile file(path);
        EXPECT_EQ(file.open(), "");
        EXPECT_EQ(file.write(sine(440, 1000)), "");
    }
    EXPECT_EQ(bytesOf(path), "the old sound");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST_F(WavFileTest, AFullDeviceIsAnErrorInWords) {
    WavFile file("/dev/full");
    EXPECT_THAT(writeWhole(file, sine(440, 100'000)),
                AllOf(HasSubstr("/dev/full"), HasSubstr("No space left")));
}

TEST_F(WavFileTest, AFolderThatIsNotThereIsAnErrorBeforeAnySound) {
    WavFile file(folder / "missing" / "a.wav");
    EXPECT_THAT(file.open(), HasSubstr("missing/a.wav"));
}
