// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/TakeRun.h"

#include "studio/GrowingWav.h"
#include "tests/sound/RealtimeWatch.h"
#include "tests/studio/CaptureSounds.h"
#include "tests/support/FullDisk.h"
#include "tests/support/Waiting.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::testsounds;
using testing::HasSubstr;

namespace {
struct TakeRunTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path place = temporary.filePath("take.wav").toStdString();
    GrowingWav file{place, {}};
    std::atomic<int> grew{0};
    std::function<void()> grown = [this] { ++grew; };
    std::vector<float> noise = floatsOf(sixteenBitNoise(2048));
};
} // namespace

TEST_F(TakeRunTest, WhatADiskIsTooSlowForIsCountedAndSilentInItsPlace) {
    ASSERT_EQ(file.open(), "");
    TakeRun run(file, TakeRun::Pace::Live, grown, 4096);
    for (int i = 0; i < 200; ++i)
        run.hear(noise);
    run.end();
    EXPECT_EQ(run.heard(), 200 * 1024);
    EXPECT_EQ(file.frames(), run.heard());
    EXPECT_GT(run.lost(), 0);
    EXPECT_EQ(run.lost() % 1024, 0);
    const auto take = sixteenBitsOf(bytesOf(place));
    std::int64_t silent = 0;
    for (std::size_t block = 0; block < take.size(); block += noise.size())
        silent += take[block] == 0 && take[block + 1] == 0 && take[block + 2] == 0 ? 1024 : 0;
    EXPECT_EQ(silent, run.lost());
}

TEST_F(TakeRunTest, HearingTakesNoMemoryAndNoLockWhereItIsLive) {
    ASSERT_EQ(file.open(), "");
    TakeRun run(file, TakeRun::Pace::Live, grown, 4096);
    run.hear(noise);
    const RealtimeWatch watch;
    for (int i = 0; i < 100; ++i)
        run.hear(noise);
    EXPECT_EQ(watch.memoryCalls(), 0U);
    EXPECT_EQ(watch.locks(), 0U);
}

TEST_F(TakeRunTest, AFullDiskEndsItWithoutAWordTooManyAndKeepsWhatFitted) {
    for (const auto pace : {TakeRun::Pace::Live, TakeRun::Pace::AtOnce}) {
        GrowingWav wav(place, {});
        ASSERT_EQ(wav.open(), "");
        TakeRun run(wav, pace, grown);
        {
            const FullDisk full(50'000, FullDisk::Signal::LeftAlone);
            for (int i = 0; i < 40; ++i)
                run.hear(noise);
            EXPECT_TRUE(within(2, [&] { return run.hasFailed(); }));
            run.hear(noise);
            run.end();
        }
        EXPECT_THAT(run.problem(), HasSubstr(place.string()));
        EXPECT_EQ(wav.frames(), (50'000 - 44) / 4);
        const std::string bytes = bytesOf(place);
        EXPECT_EQ(numberAt(bytes, 40), bytes.size() - 44);
        EXPECT_EQ(bytes.size(), 44U + 4 * ((50'000 - 44) / 4));
    }
}

TEST_F(TakeRunTest, WhereItIsLiveTheFileGrowsByItselfAndTells) {
    ASSERT_EQ(file.open(), "");
    TakeRun run(file, TakeRun::Pace::Live, grown);
    run.hear(noise);
    EXPECT_TRUE(within(0.5, [&] { return grew > 0; }));
    EXPECT_EQ(numberAt(bytesOf(place), 40), 4096U);
    run.end();
    EXPECT_EQ(file.frames(), 1024);
}

TEST_F(TakeRunTest, TheEndOfSoundIsThatOfTheLastBlockThatIsLouderThanHalfAStep) {
    ASSERT_EQ(file.open(), "");
    TakeRun run(file, TakeRun::Pace::AtOnce, grown);
    run.hear(std::vector<float>(200, 0.49F / 32768));
    EXPECT_EQ(run.soundEnd(), 0);
    run.hear(std::vector<float>(200, -0.51F / 32768));
    EXPECT_EQ(run.soundEnd(), 200);
    run.hear(std::vector<float>(200, 0));
    EXPECT_EQ(run.soundEnd(), 200);
    EXPECT_EQ(run.heard(), 300);
}
