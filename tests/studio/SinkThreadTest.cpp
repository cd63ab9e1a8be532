// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/SinkThread.h"

#include "tests/studio/TestSinks.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>

using namespace velmora;
using namespace velmora::testsinks;

namespace {
/// Takes its time, and counts.
struct SlowSink : SampleSink {
    std::string open() override { return {}; }
    std::string write(std::span<const float> /*interleaved*/) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        ++written;
        return {};
    }
    std::string finish() override {
        finished = true;
        return {};
    }
    std::atomic<int> written{0};
    std::atomic<bool> finished{false};
};
} // namespace

TEST(SinkThreadTest, BlocksArriveWholeAndInOrder) {
    KeepingSink sink;
    std::vector<float> expected;
    {
        SinkThread thread(sink);
        for (int i = 0; i < 500; ++i) {
            const std::vector<float> block(static_cast<std::size_t>(i % 7) * 2, static_cast<float>(i));
            ASSERT_TRUE(thread.give(block));
            expected.insert(expected.end(), block.begin(), block.end());
        }
        EXPECT_EQ(thread.finish(), "");
    }
    EXPECT_EQ(sink.samples, expected);
    EXPECT_TRUE(sink.finished);
}

TEST(SinkThreadTest, TheGiverIsNeverMoreThanAFewBlocksAhead) {
    SlowSink sink;
    SinkThread thread(sink);
    const std::vector<float> block(2);
    for (int given = 1; given <= 30; ++given) {
        ASSERT_TRUE(thread.give(block));
        EXPECT_LE(given - sink.written, 9);
    }
    EXPECT_EQ(thread.finish(), "");
    EXPECT_EQ(sink.written, 30);
}

TEST(SinkThreadTest, AFailureStopsTheGiverAndIsToldAtTheEnd) {
    KeepingSink sink;
    sink.failAt = 3;
    SinkThread thread(sink);
    const std::vector<float> block(2);
    int given = 0;
    while (thread.give(block))
        ASSERT_LT(++given, 20);
    EXPECT_EQ(thread.finish(), "the disk is on fire");
    EXPECT_FALSE(sink.finished);
    EXPECT_EQ(sink.writes, 3);
}

TEST(SinkThreadTest, EndingWithoutFinishingDropsWhatWaits) {
    SlowSink sink;
    {
        SinkThread thread(sink);
        for (int i = 0; i < 8; ++i)
            ASSERT_TRUE(thread.give(std::vector<float>(2)));
    }
    EXPECT_LT(sink.written, 8);
    EXPECT_FALSE(sink.finished);
}
