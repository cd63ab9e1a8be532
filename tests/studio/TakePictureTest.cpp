// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/TakePicture.h"

#include "studio/GrowingWav.h"
#include "tests/studio/CaptureSounds.h"
#include "tests/support/Waiting.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <fstream>

using namespace velmora;
using namespace velmora::testsounds;
using testing::HasSubstr;

namespace {
struct TakePictureTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path file = temporary.filePath("take.wav").toStdString();

    void write(const std::vector<std::int16_t>& values, int channels = 2) {
        GrowingWav wav(file, {44100, 16, channels});
        ASSERT_EQ(wav.open(), "");
        ASSERT_EQ(wav.append(std::as_bytes(std::span(values))), "");
        ASSERT_EQ(wav.finish(), "");
    }
    static bool isDone(const TakePicture& picture) {
        return within(5, [&] { return picture.isDone(); });
    }
};
} // namespace

TEST_F(TakePictureTest, EachColumnHasTheExtremesOfItsFramesAndAllOfThemBelongToOne) {
    const auto noise = sixteenBitNoise(2 * 70'001);
    write(noise);
    for (const std::size_t count : {1U, 7U, 1000U, 4096U}) {
        TakePicture picture(file, {}, count);
        ASSERT_TRUE(isDone(picture));
        EXPECT_EQ(picture.frames(), 70'001);
        EXPECT_EQ(picture.rate(), 44100);
        EXPECT_EQ(picture.share(), 1);
        const auto columns = picture.columns();
        ASSERT_EQ(columns.size(), count);
        std::vector<WaveColumn> expected(count);
        std::vector<bool> begun(count);
        for (std::size_t frame = 0; frame < 70'001; ++frame) {
            const std::size_t at = frame * count / 70'001;
            for (std::size_t side = 0; side < 2; ++side) {
                const float value = static_cast<float>(noise[2 * frame + side]) / 32768;
                float& lowest = expected[at].lowest[side];
                float& highest = expected[at].highest[side];
                lowest = begun[at] ? std::min(lowest, value) : value;
                highest = begun[at] ? std::max(highest, value) : value;
            }
            begun[at] = true;
        }
        EXPECT_EQ(columns, expected);
    }
}

TEST_F(TakePictureTest, MonoStandsOnBothSidesAndAFewFramesAreAsManyColumns) {
    write({16384, -8192, 0}, 1);
    TakePicture picture(file);
    ASSERT_TRUE(isDone(picture));
    const auto columns = picture.columns();
    ASSERT_EQ(columns.size(), 3U);
    EXPECT_EQ(columns[0], (WaveColumn{{0.5F, 0.5F}, {0.5F, 0.5F}}));
    EXPECT_EQ(columns[1], (WaveColumn{{-0.25F, -0.25F}, {-0.25F, -0.25F}}));
}

TEST_F(TakePictureTest, WhoShowsItIsToldAtTheEndAndOfAFileThatCannotBeRead) {
    std::atomic<int> told{0};
    TakePicture picture(temporary.filePath("missing.wav").toStdString(), [&] { ++told; });
    ASSERT_TRUE(within(5, [&] { return told == 1; }));
    EXPECT_TRUE(picture.isDone());
    EXPECT_THAT(picture.problem(), HasSubstr("missing.wav"));
    EXPECT_TRUE(picture.columns().empty());
}

TEST_F(TakePictureTest, AnEndBeforeItIsDoneDoesNotWaitForALongFile) {
    write({1, 2});
    std::filesystem::resize_file(file, std::uintmax_t{3} << 30U); // a hole: no disk is needed for it
    std::fstream(file, std::ios::in | std::ios::out | std::ios::binary)
        .seekp(40)
        .write("\xFF\xFF\xFF\xFF", 4);
    const double begin = steadySeconds();
    {
        TakePicture picture(file);
        ASSERT_TRUE(within(2, [&] { return picture.share() > 0; }));
        EXPECT_LT(picture.share(), 1);
        EXPECT_FALSE(picture.isDone());
    }
    EXPECT_LT(steadySeconds() - begin, 0.5 * kPatience);
}

TEST(FoldTest, AWindowOfAnyWidthShowsAllExtremes) {
    std::vector<WaveColumn> columns(100);
    columns[57].highest[1] = 0.9F;
    columns[58].lowest[0] = -0.8F;
    for (const std::size_t width : {1U, 3U, 99U, 100U, 101U, 250U}) {
        const auto folded = fold(columns, width);
        ASSERT_EQ(folded.size(), width);
        float highest = 0;
        float lowest = 0;
        for (const WaveColumn& one : folded) {
            highest = std::max(highest, one.highest[1]);
            lowest = std::min(lowest, one.lowest[0]);
        }
        EXPECT_EQ(highest, 0.9F);
        EXPECT_EQ(lowest, -0.8F);
    }
    EXPECT_EQ(fold(columns, 100), columns);
    EXPECT_TRUE(fold({}, 100).empty());
}
