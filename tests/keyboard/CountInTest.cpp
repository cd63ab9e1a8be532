// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/CountIn.h"

#include "keyboard/cMetronome.h"

#include <gtest/gtest.h>

using namespace velmora;

TEST(CountInTest, ABarOfBeatsAndHalfABeatLaterTheTakeBegins) {
    CountIn count;
    count.start(4);
    for (int beat = 1; beat <= 4; ++beat) {
        EXPECT_TRUE(count.isRunning());
        EXPECT_EQ(count.nextDue(), std::nullopt);
        EXPECT_FALSE(count.isOver(100));
        EXPECT_EQ(count.beat(beat * 0.5, 0.5), beat);
    }
    EXPECT_DOUBLE_EQ(count.nextDue().value_or(0), 2.25);
    EXPECT_FALSE(count.isOver(2.24));
    EXPECT_TRUE(count.isRunning());
    EXPECT_TRUE(count.isOver(2.25));
    EXPECT_FALSE(count.isRunning());
    EXPECT_FALSE(count.isOver(2.25));
    EXPECT_EQ(count.nextDue(), std::nullopt);
}

TEST(CountInTest, BeatsWithoutACountInAreNone) {
    CountIn count;
    EXPECT_FALSE(count.isRunning());
    EXPECT_EQ(count.beat(1, 0.5), 0);
    EXPECT_FALSE(count.isOver(100));
}

TEST(CountInTest, ABeatBetweenTheLastAndTheTakeIsNoneOfTheBar) {
    CountIn count;
    count.start(2);
    EXPECT_EQ(count.beat(1, 1), 1);
    EXPECT_EQ(count.beat(2, 1), 2);
    EXPECT_EQ(count.beat(2.1, 1), 0);
    EXPECT_DOUBLE_EQ(count.nextDue().value_or(0), 2.5);
}

TEST(CountInTest, CancellingAndStartingAnew) {
    CountIn count;
    count.start(3);
    EXPECT_EQ(count.beat(1, 1), 1);
    count.cancel();
    EXPECT_FALSE(count.isRunning());
    EXPECT_EQ(count.beat(2, 1), 0);
    count.start(1);
    EXPECT_EQ(count.beat(3, 1), 1);
    count.start(2);
    EXPECT_EQ(count.nextDue(), std::nullopt);
    EXPECT_EQ(count.beat(4, 1), 1);
}

TEST(CountInTest, AMeasureWithoutBeatsHasOne) {
    CountIn count;
    count.start(0);
    EXPECT_EQ(count.beat(1, 1), 1);
    EXPECT_TRUE(count.isOver(1.5));
}

TEST(CountInTest, WithTheMetronomeTheTakeIsReadyForTheBeatThatFollows) {
    cMetronome metronome;
    metronome.BeatsPerMinute = 90;
    metronome.StartMetronome(10);
    CountIn count;
    count.start(metronome.BeatsPerMeasure);
    double moment = 10;
    while (!count.nextDue()) {
        moment = metronome.nextDue().value_or(0);
        ASSERT_TRUE(metronome.beat(moment));
        count.beat(moment, metronome.beatInterval());
    }
    EXPECT_GT(count.nextDue().value_or(0), moment);
    EXPECT_LT(count.nextDue().value_or(0), metronome.nextDue().value_or(0));
}
