// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/cMetronome.h"

#include <gmock/gmock.h>

#include <cmath>
#include <vector>

using namespace velmora;
using testing::ElementsAre;

namespace {
struct Beat {
    int number;
    double moment;
};

struct cMetronomeTest : testing::Test {
    cMetronome metronome;

    /// What comes until a moment, each looked for when it is said to be due.
    std::vector<Beat> beatsUntil(double end) {
        std::vector<Beat> beats;
        for (auto due = metronome.nextDue(); due && *due <= end; due = metronome.nextDue()) {
            EXPECT_EQ(metronome.beat(*due - 0.001), std::nullopt);
            if (const auto number = metronome.beat(*due))
                beats.push_back({*number, *due});
            else
                ADD_FAILURE() << "nothing at " << *due;
        }
        return beats;
    }
    std::vector<int> numbersUntil(double end) {
        std::vector<int> numbers;
        for (const Beat& beat : beatsUntil(end))
            numbers.push_back(beat.number);
        return numbers;
    }
};
} // namespace

TEST_F(cMetronomeTest, NothingBeatsUntilItIsStarted) {
    EXPECT_FALSE(metronome.isRunning());
    EXPECT_EQ(metronome.nextDue(), std::nullopt);
    EXPECT_EQ(metronome.beat(100), std::nullopt);
}

TEST_F(cMetronomeTest, TheFirstBeatComesOneIntervalAfterTheStart) {
    metronome.StartMetronome(7);
    EXPECT_TRUE(metronome.isRunning());
    EXPECT_DOUBLE_EQ(metronome.beatInterval(), 0.5);
    EXPECT_DOUBLE_EQ(metronome.start(), 7);
    EXPECT_EQ(metronome.beat(7), std::nullopt);
    EXPECT_DOUBLE_EQ(metronome.nextDue().value_or(0), 7.5);
    EXPECT_EQ(metronome.beat(7.499), std::nullopt);
    EXPECT_EQ(metronome.beat(7.5), 1);
    EXPECT_EQ(metronome.beat(7.5), std::nullopt);
    EXPECT_DOUBLE_EQ(metronome.nextDue().value_or(0), 8);
}

TEST_F(cMetronomeTest, BeatsAreNumberedByTheMeasure) {
    metronome.StartMetronome(0);
    EXPECT_THAT(numbersUntil(4.5), ElementsAre(1, 2, 3, 4, 1, 2, 3, 4, 1));
    metronome.StopMetronome();
    metronome.BeatsPerMeasure = 3;
    metronome.StartMetronome(10);
    EXPECT_THAT(numbersUntil(12), ElementsAre(2, 3, 1, 2));
}

TEST_F(cMetronomeTest, TheNumberGoesOnOverAStop) {
    metronome.StartMetronome(0);
    EXPECT_THAT(numbersUntil(1), ElementsAre(1, 2));
    metronome.StopMetronome();
    EXPECT_FALSE(metronome.isRunning());
    EXPECT_EQ(metronome.beat(1.5), std::nullopt);
    metronome.StartMetronome(5);
    EXPECT_DOUBLE_EQ(metronome.nextDue().value_or(0), 5.5);
    EXPECT_THAT(numbersUntil(6.5), ElementsAre(3, 4, 1));
}

TEST_F(cMetronomeTest, ANewRateTakesEffectAtTheNextStart) {
    metronome.StartMetronome(0);
    metronome.BeatsPerMinute = 60;
    EXPECT_EQ(numbersUntil(2).size(), 4U);
    metronome.StartMetronome(2);
    EXPECT_EQ(numbersUntil(4).size(), 2U);
    EXPECT_DOUBLE_EQ(metronome.beatInterval(), 1);
}

TEST_F(cMetronomeTest, ABeatComesWithTheFirstTickAtOrAfterItsMoment) {
    metronome.BeatsPerMinute = 180; // a third of a second, which is 13 and a third ticks
    metronome.StartMetronome(0);
    const auto beats = beatsUntil(1.1);
    ASSERT_EQ(beats.size(), 3U);
    EXPECT_NEAR(beats[0].moment, 0.350, 1e-12);
    EXPECT_NEAR(beats[1].moment, 0.675, 1e-12);
    EXPECT_NEAR(beats[2].moment, 1.000, 1e-12);
}

TEST_F(cMetronomeTest, NoRateDriftsAndNoBeatIsLostAtAnyOfThem) {
    for (int rate = 1; rate <= 1000; ++rate) {
        for (const double start : {0.0, 0.1, 86400.7}) {
            cMetronome one;
            one.BeatsPerMinute = rate;
            one.StartMetronome(start);
            for (int n = 1; n <= 2000; ++n) {
                // In whole ticks: 2400 of them are a minute.
                const int tick = (2400 * n + rate - 1) / rate;
                const double due = one.nextDue().value_or(0);
                ASSERT_NEAR(due, start + tick * 0.025, 1e-7) << rate << " beat " << n;
                ASSERT_EQ(one.beat(due), (n - 1) % 4 + 1) << rate;
            }
        }
    }
}

TEST_F(cMetronomeTest, SixHundredAMinuteFallOnEveryFourthTick) {
    metronome.BeatsPerMinute = 600;
    metronome.StartMetronome(0);
    const auto beats = beatsUntil(60.001);
    ASSERT_EQ(beats.size(), 600U);
    for (std::size_t n = 0; n < beats.size(); ++n)
        EXPECT_NEAR(beats[n].moment, 0.1 * static_cast<double>(n + 1), 1e-9);
}

TEST_F(cMetronomeTest, ALateLookMovesNoLaterBeat) {
    metronome.StartMetronome(0);
    EXPECT_EQ(metronome.beat(0.93), 1);
    EXPECT_DOUBLE_EQ(metronome.nextDue().value_or(0), 1);
    EXPECT_EQ(metronome.beat(1.02), 2);
    EXPECT_DOUBLE_EQ(metronome.nextDue().value_or(0), 1.5);
}

TEST_F(cMetronomeTest, AfterALongStallItGoesOnWithTheNextBeatToCome) {
    metronome.StartMetronome(0);
    EXPECT_EQ(metronome.beat(3.7), 1); // the one that was waited for; six are lost and not counted
    EXPECT_DOUBLE_EQ(metronome.nextDue().value_or(0), 4);
    EXPECT_EQ(metronome.beat(3.99), std::nullopt);
    EXPECT_EQ(metronome.beat(4), 2);
    EXPECT_EQ(metronome.beat(6), 3); // exactly on one
    EXPECT_DOUBLE_EQ(metronome.nextDue().value_or(0), 6.5);
}

TEST_F(cMetronomeTest, FoolishNumbersDoNoHarm) {
    metronome.BeatsPerMinute = 0;
    metronome.BeatsPerMeasure = 0;
    metronome.StartMetronome(0);
    EXPECT_DOUBLE_EQ(metronome.nextDue().value_or(0), 60);
    EXPECT_EQ(metronome.beat(60), 1);
    EXPECT_EQ(metronome.beat(120), 1);
}
