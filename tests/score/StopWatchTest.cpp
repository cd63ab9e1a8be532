// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/StopWatch.h"
#include "base/VirtualLoop.h"

#include <gtest/gtest.h>

using namespace velmora;

namespace {
struct StopWatchTest : testing::Test {
    VirtualLoop loop;
    mStopWatch watches{loop};
};

/// A clock of which every reading costs a quarter of a second.
class SlowClock : public VirtualLoop {
public:
    [[nodiscard]] double now() const override { return 0.25 * ++readings_; }

private:
    mutable int readings_ = 0;
};
} // namespace

TEST_F(StopWatchTest, NumbersBeginWithOne) {
    EXPECT_EQ(watches.create(), 1);
    EXPECT_EQ(watches.create(), 2);
}

TEST_F(StopWatchTest, EachWatchCountsFromItsOwnStart) {
    const int first = watches.create();
    const int second = watches.create();
    EXPECT_TRUE(watches.start(first));
    loop.block(1.5);
    EXPECT_TRUE(watches.start(second));
    loop.block(2);
    EXPECT_DOUBLE_EQ(watches.elapsed(first), 3.5);
    EXPECT_DOUBLE_EQ(watches.elapsed(second), 2);
    EXPECT_TRUE(watches.start(first));
    EXPECT_DOUBLE_EQ(watches.elapsed(first), 0);
}

TEST_F(StopWatchTest, ABadNumberOrAWatchNotStartedReadsZero) {
    const int watch = watches.create();
    loop.block(1);
    for (const int number : {watch, 0, -1, watch + 1})
        EXPECT_EQ(watches.elapsed(number), 0) << number;
    EXPECT_FALSE(watches.start(0));
    EXPECT_FALSE(watches.start(watch + 1));
}

TEST_F(StopWatchTest, AWaitIsMeasuredFromItsOwnBeginning) {
    const int watch = watches.create();
    watches.start(watch);
    watches.WaitSeconds(watch, 0.138);
    loop.block(0.05); // the work of a step
    watches.WaitSeconds(watch, 0.138);
    EXPECT_DOUBLE_EQ(watches.elapsed(watch), 0.138 + 0.05 + 0.138);
}

TEST_F(StopWatchTest, AWaitOnAWatchThatDoesNotRunReturnsAtOnce) {
    watches.WaitSeconds(watches.create(), 5);
    watches.WaitSeconds(7, 5);
    EXPECT_EQ(loop.now(), 0);
}

TEST(StopWatchOverheadTest, TheCostOfReadingTheClockIsTakenOff) {
    SlowClock clock;
    mStopWatch watches(clock);
    const int watch = watches.create();
    watches.start(watch);
    EXPECT_DOUBLE_EQ(watches.elapsed(watch), 0.25);
    EXPECT_DOUBLE_EQ(watches.elapsed(watch), 0.5);
}
