// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/TrimTake.h"

#include "studio/GrowingWav.h"
#include "tests/studio/CaptureSounds.h"
#include "tests/studio/TestSinks.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

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
} // namespace

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
