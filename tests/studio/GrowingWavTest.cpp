// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/GrowingWav.h"

#include "tests/studio/CaptureSounds.h"
#include "tests/studio/TestSinks.h"
#include "tests/support/FullDisk.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <sndfile.h>

using namespace velmora;
using namespace velmora::testsounds;
using testing::HasSubstr;
using testing::StartsWith;

namespace {
constexpr WaveFormat kCd{};
constexpr std::uint64_t kShort = 100'000; ///< stands for 4 GiB

struct GrowingWavTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();
    std::filesystem::path place = folder / "take.wav";
    std::vector<std::int16_t> noise = sixteenBitNoise(400'000);

    [[nodiscard]] std::span<const std::byte> frames(std::size_t from, std::size_t to) const {
        return std::as_bytes(std::span(noise)).subspan(4 * from, 4 * (to - from));
    }
    /// What another library reads.
    static std::vector<std::int16_t> heardIn(const std::filesystem::path& file) {
        SF_INFO info{};
        SNDFILE* sound = sf_open(file.c_str(), SFM_READ, &info);
        if (!sound)
            return {};
        std::vector<std::int16_t> values(static_cast<std::size_t>(info.frames * info.channels));
        sf_readf_short(sound, values.data(), info.frames);
        sf_close(sound);
        return values;
    }
    [[nodiscard]] std::vector<std::int16_t> noiseOf(std::size_t count) const {
        return {noise.begin(), noise.begin() + static_cast<std::ptrdiff_t>(2 * count)};
    }
};

struct LongWavTest : GrowingWavTest, testing::WithParamInterface<bool> {};
} // namespace

TEST_F(GrowingWavTest, AFileWithoutSoundIsWhole) {
    GrowingWav wav(place, kCd);
    ASSERT_EQ(wav.open(), "");
    const std::string bytes = bytesOf(place);
    ASSERT_EQ(bytes.size(), 44U);
    EXPECT_EQ(numberAt(bytes, 4), 36U);
    EXPECT_EQ(numberAt(bytes, 40), 0U);
}

TEST_F(GrowingWavTest, WhatIsToldIsThereAndCanBeReadAgain) {
    GrowingWav wav(place, kCd);
    ASSERT_EQ(wav.open(), "");
    ASSERT_EQ(wav.append(frames(0, 1000)), "");
    EXPECT_TRUE(heardIn(place).empty());
    ASSERT_EQ(wav.tell(), "");
    EXPECT_EQ(heardIn(place), noiseOf(1000));
    ASSERT_EQ(wav.append(frames(1000, 1500)), "");
    EXPECT_EQ(wav.frames(), 1500);
    std::vector<std::byte> read(4 * 700);
    EXPECT_EQ(wav.read(900, read), 4U * 600);
    EXPECT_TRUE(std::ranges::equal(std::span(read).first(4 * 600), frames(900, 1500)));
    EXPECT_EQ(wav.read(1500, read), 0U);
}

TEST_F(GrowingWavTest, ALinkStaysOneAndWhatItLeadsToGrows) {
    std::filesystem::create_symlink("elsewhere.wav", place);
    GrowingWav wav(place, kCd);
    ASSERT_EQ(wav.open(), "");
    ASSERT_EQ(wav.append(frames(0, 100)), "");
    ASSERT_EQ(wav.finish(), "");
    EXPECT_TRUE(std::filesystem::is_symlink(place));
    EXPECT_EQ(heardIn(folder / "elsewhere.wav"), noiseOf(100));
}

TEST_F(GrowingWavTest, WhatFittedOnAFullDiskStaysInWholeFrames) {
    GrowingWav wav(place, kCd);
    ASSERT_EQ(wav.open(), "");
    {
        const FullDisk full(100'003, FullDisk::Signal::LeftAlone);
        for (std::size_t i = 0; i < 24; ++i)
            ASSERT_EQ(wav.append(frames(1000 * i, 1000 * (i + 1))), "");
        EXPECT_THAT(wav.append(frames(24'000, 25'000)), HasSubstr(place.string()));
    }
    EXPECT_EQ(wav.frames(), (100'003 - 44) / 4);
    EXPECT_EQ(std::filesystem::file_size(place), 44U + 4 * ((100'003 - 44) / 4));
    EXPECT_EQ(heardIn(place), noiseOf((100'003 - 44) / 4));
    // With room again it goes on where it stopped.
    const auto there = static_cast<std::size_t>(wav.frames());
    ASSERT_EQ(wav.append(frames(there, 30'000)), "");
    ASSERT_EQ(wav.finish(), "");
    EXPECT_EQ(heardIn(place), noiseOf(30'000));
}

TEST_F(GrowingWavTest, WhereThereIsNoRoomToPadTheLastByteGoes) {
    GrowingWav wav(place, {44100, 8, 1});
    ASSERT_EQ(wav.open(), "");
    {
        const FullDisk full(44 + 1001, FullDisk::Signal::LeftAlone);
        EXPECT_NE(wav.append(frames(0, 500).first(1001)), "");
    }
    EXPECT_EQ(wav.frames(), 1000);
    EXPECT_EQ(std::filesystem::file_size(place), 1044U);
    EXPECT_EQ(numberAt(bytesOf(place), 40), 1000U);
}

TEST_P(LongWavTest, BeyondWhatAPlainHeaderTellsTheFileIsRf64AndLosesNothing) {
    GrowingWav wav(place, kCd, kShort, GetParam());
    ASSERT_EQ(wav.open(), "");
    for (std::size_t i = 0; i < 60; ++i) {
        ASSERT_EQ(wav.append(frames(1000 * i, 1000 * (i + 1))), "");
        ASSERT_EQ(wav.tell(), "");
        const std::string bytes = bytesOf(place);
        if (4000 * (i + 1) <= kShort) {
            ASSERT_EQ(numberAt(bytes, 40), 4000 * (i + 1));
        } else if (bytes.starts_with("RF64")) {
            ASSERT_EQ(heardIn(place), noiseOf(1000 * (i + 1)));
        } else {
            ASSERT_EQ(numberAt(bytes, 40), 0xFFFFFFFFU);
            ASSERT_EQ(sixteenBitsOf(bytes), noiseOf(1000 * (i + 1)));
        }
    }
    ASSERT_EQ(wav.finish(), "");
    const std::string bytes = bytesOf(place);
    EXPECT_THAT(bytes, StartsWith("RF64\xFF\xFF\xFF\xFFWAVEds64"));
    EXPECT_EQ(numberAt(bytes, 20, 8), bytes.size() - 8);
    EXPECT_EQ(numberAt(bytes, 28, 8), 240'000U);
    EXPECT_EQ(numberAt(bytes, 36, 8), 60'000U);
    EXPECT_EQ(heardIn(place), noiseOf(60'000));
    EXPECT_EQ(testsinks::filesIn(folder), 1U);
    // And it goes on.
    ASSERT_EQ(wav.append(frames(60'000, 90'000)), "");
    ASSERT_EQ(wav.finish(), "");
    EXPECT_EQ(heardIn(place), noiseOf(90'000));
    std::vector<std::byte> read(4 * 90'000);
    EXPECT_EQ(wav.read(0, read), read.size());
    EXPECT_TRUE(std::ranges::equal(read, frames(0, 90'000)));
}

TEST_P(LongWavTest, AnOddNumberOfBytesIsPaddedThereToo) {
    GrowingWav wav(place, {44100, 8, 1}, kShort, GetParam());
    ASSERT_EQ(wav.open(), "");
    ASSERT_EQ(wav.append(frames(0, 20'000)), "");
    ASSERT_EQ(wav.append(frames(20'000, 30'000).first(39'999)), "");
    ASSERT_EQ(wav.finish(), "");
    const std::string bytes = bytesOf(place);
    EXPECT_EQ(numberAt(bytes, 28, 8), 119'999U);
    EXPECT_EQ(bytes.size() % 2, 0U);
    EXPECT_EQ(numberAt(bytes, 20, 8), bytes.size() - 8);
    EXPECT_EQ(bytes.back(), '\0');
}
INSTANTIATE_TEST_SUITE_P(Ways, LongWavTest, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "ByRoom" : "ByCopy"; });

TEST_F(GrowingWavTest, AHiddenFileThatIsLongIsSavedAsRf64) {
    GrowingWav wav({}, kCd, kShort);
    ASSERT_EQ(wav.open(), "");
    ASSERT_EQ(wav.append(frames(0, 20'000)), "");
    ASSERT_EQ(wav.append(frames(20'000, 90'000)), "");
    ASSERT_EQ(wav.finish(), "");
    ASSERT_EQ(wav.saveTo(place), "");
    EXPECT_THAT(bytesOf(place), StartsWith("RF64"));
    EXPECT_EQ(heardIn(place), noiseOf(90'000));
}

TEST_F(GrowingWavTest, SavingWhereItGrewIsNothingToDoAndSavingElsewhereACopy) {
    GrowingWav wav(place, kCd);
    ASSERT_EQ(wav.open(), "");
    ASSERT_EQ(wav.append(frames(0, 1000)), "");
    ASSERT_EQ(wav.finish(), "");
    ASSERT_EQ(wav.saveTo(place), "");
    ASSERT_EQ(wav.saveTo(folder / "copy.wav"), "");
    EXPECT_EQ(bytesOf(place), bytesOf(folder / "copy.wav"));
    // Somebody has put another file there: then the take comes back as a copy.
    testsinks::ask("echo other >'" + (folder / "other").string() + "'");
    std::filesystem::rename(folder / "other", place);
    ASSERT_EQ(wav.saveTo(place), "");
    EXPECT_EQ(bytesOf(place), bytesOf(folder / "copy.wav"));
}

TEST_F(GrowingWavTest, APipeIsRefusedAtOnce) {
    ASSERT_EQ(mkfifo(place.c_str(), 0600), 0);
    EXPECT_THAT(GrowingWav(place, kCd).open(), HasSubstr(place.string()));
}
