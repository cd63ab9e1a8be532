// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/TipTimer.h"

#include <gmock/gmock.h>

using namespace velmora;
using Act = TipTimer::Act;
using Mouse = TipTimer::Mouse;

namespace {
constexpr TipTimer::Point kHere{10, 10};
constexpr TipTimer::Point kThere{11, 10};

/// A timer over a control, with the mouse just moved there.
class TipTimerTest : public testing::Test {
protected:
    TipTimerTest() {
        timer.setDelayTime(3);
        timer.setKillTime(5);
        timer.moved(Mouse::Inside);
        timer.arm();
    }
    /// Ticks until something happens; how many it took, or 0 if nothing did.
    int ticksUntil(Act act, TipTimer::Point mouse = kHere) {
        for (int n = 1; n <= 100; ++n)
            if (timer.tick(mouse, Mouse::Inside) == act)
                return n;
        return 0;
    }

    TipTimer timer;
};
} // namespace

TEST(TipTimerStartTest, ItStartsWithTheLongTimesAndAtRest) {
    TipTimer timer;
    EXPECT_EQ(timer.delayTime(), 10);
    EXPECT_EQ(timer.killTime(), 500);
    EXPECT_FALSE(timer.isAlive());
    EXPECT_FALSE(timer.isRunning());
    EXPECT_EQ(timer.tick(kHere, Mouse::Inside), Act::None);
}

TEST_F(TipTimerTest, AMoveInsideStartsTheTicks) {
    EXPECT_TRUE(timer.isRunning());
}

TEST_F(TipTimerTest, ATipComesWhenTheRestHasPassedTheDelay) {
    // One tick to learn the place, three of the delay, and the one that passes it.
    EXPECT_EQ(ticksUntil(Act::Show), 5);
    EXPECT_TRUE(timer.isShown());
}

TEST_F(TipTimerTest, AMovedMouseBeginsItsRestAnew) {
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(timer.tick(kHere, Mouse::Inside), Act::None);
    EXPECT_EQ(ticksUntil(Act::Show, kThere), 5);
}

TEST_F(TipTimerTest, AMouseThatNeverRestsGetsNoTip) {
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(timer.tick({i, 0}, Mouse::Inside), Act::None);
}

TEST_F(TipTimerTest, ATipStandsForTheKillTimeAndTheTicksGoOn) {
    ticksUntil(Act::Show);
    EXPECT_EQ(ticksUntil(Act::Destroy), 5);
    EXPECT_TRUE(timer.isRunning());
    EXPECT_FALSE(timer.isShown());
}

TEST_F(TipTimerTest, AMoveWithinTheControlDoesNotProlongTheTip) {
    ticksUntil(Act::Show);
    EXPECT_EQ(ticksUntil(Act::Destroy, kThere), 5);
}

TEST_F(TipTimerTest, TheMouseThatLeavesEndsTipAndTicks) {
    ticksUntil(Act::Show);
    EXPECT_EQ(timer.tick(kHere, Mouse::Outside), Act::Destroy);
    EXPECT_FALSE(timer.isShown());
    EXPECT_FALSE(timer.isRunning());
}

TEST_F(TipTimerTest, TheMouseThatLeavesBeforeTheDelayEndsGetsNoTip) {
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(timer.tick(kHere, Mouse::Inside), Act::None);
    EXPECT_EQ(timer.tick(kHere, Mouse::Outside), Act::Destroy); // on the very tick that was due
    EXPECT_EQ(ticksUntil(Act::Show), 0);
}

TEST_F(TipTimerTest, AMoveOutsideEndsTheFollowing) {
    timer.moved(Mouse::Outside);
    EXPECT_EQ(ticksUntil(Act::Show), 0);
    timer.moved(Mouse::Inside);
    EXPECT_EQ(ticksUntil(Act::Show), 5);
}

TEST_F(TipTimerTest, NewWordsBeginTheDelayAnew) {
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(timer.tick(kHere, Mouse::Inside), Act::None);
    timer.arm();
    EXPECT_EQ(ticksUntil(Act::Show), 4); // the place is known already
}

TEST_F(TipTimerTest, NothingIsShownAfterTheWindowIsGone) {
    timer.windowDestroyed();
    EXPECT_FALSE(timer.isAlive());
    EXPECT_FALSE(timer.isRunning());
    timer.moved(Mouse::Inside);
    EXPECT_EQ(ticksUntil(Act::Show), 0);
    timer.arm();
    EXPECT_EQ(ticksUntil(Act::Show), 4);
}

TEST_F(TipTimerTest, ActivationEndsTheTicksAndBringsTipsBackToLife) {
    ticksUntil(Act::Show);
    timer.setAlive(false);
    timer.activated();
    EXPECT_TRUE(timer.isAlive());
    EXPECT_FALSE(timer.isShown());
    EXPECT_FALSE(timer.isRunning());
    timer.moved(Mouse::Inside);
    EXPECT_EQ(ticksUntil(Act::Show), 5);
}
