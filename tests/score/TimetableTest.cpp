// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/Timetable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using namespace velmora;

namespace {

/// Steps of a tenth of a second from second 5 on, each with the work that follows it.
struct TimetableTest : testing::Test {
    Timetable timetable{5, 0.1};
    double now = 5;

    double step(double work = 0) {
        now = std::max(now, timetable.next());
        timetable.come(now);
        const double taken = now;
        now += work;
        return taken;
    }
};

} // namespace

TEST_F(TimetableTest, StepsFallAtTheStartAndNSteps) {
    for (int n = 1; n <= 3; ++n)
        EXPECT_DOUBLE_EQ(step(), 5 + 0.1 * n);
}

TEST_F(TimetableTest, WorkOfAStepDoesNotShiftTheNext) {
    for (int n = 1; n <= 1000; ++n)
        EXPECT_DOUBLE_EQ(step(0.09), 5 + 0.1 * n);
}

TEST_F(TimetableTest, WhatAWaitOvershootsDoesNotAddUp) {
    for (int n = 1; n <= 1000; ++n) {
        now = std::max(now, timetable.next()) + 0.003;
        timetable.come(now);
        EXPECT_NEAR(now, 5 + 0.1 * n, 0.0031);
    }
}

TEST_F(TimetableTest, MissedStepsFollowOneAnotherInQuartersAndThenItIsOnTime) {
    EXPECT_DOUBLE_EQ(step(0.42), 5.1);
    EXPECT_DOUBLE_EQ(step(), 5.52) << "as soon as it can";
    for (const double later : {0.025, 0.05, 0.075})
        EXPECT_DOUBLE_EQ(step(), 5.52 + later);
    EXPECT_NEAR(step(), 5.62, 1e-9);
    EXPECT_NEAR(step(), 5.7, 1e-9) << "due";
    EXPECT_NEAR(step(), 5.8, 1e-9);
}

TEST_F(TimetableTest, ManyStallsOfLessThanASecondAreAllMadeUpFor) {
    for (int n = 1; n <= 60; ++n)
        step(n % 20 == 0 ? 0.95 : 0);
    for (int n = 61; n <= 80; ++n)
        step();
    EXPECT_NEAR(step(), 5 + 0.1 * 81, 1e-9);
}

TEST_F(TimetableTest, LatenessThatGrowsStepByStepIsMadeUpForHoweverMuch) {
    for (int n = 1; n <= 50; ++n)
        step(0.5);
    EXPECT_NEAR(now, 5.1 + 25, 1e-9);
    for (int n = 51; n <= 400; ++n)
        step();
    EXPECT_NEAR(step(), 5 + 0.1 * 401, 1e-9);
}

TEST_F(TimetableTest, AfterMoreThanASecondInOneStepItGoesOnFromThere) {
    step();
    EXPECT_DOUBLE_EQ(step(60), 5.2);
    EXPECT_DOUBLE_EQ(step(), 65.2);
    EXPECT_NEAR(step(), 65.3, 1e-9);
    EXPECT_NEAR(step(), 65.4, 1e-9);
}

TEST_F(TimetableTest, AnotherOneBeginsWhenTheLastStepWasDue) {
    step();
    step(0.05);
    timetable = timetable.following(0.2);
    EXPECT_DOUBLE_EQ(step(), 5.4);
    EXPECT_DOUBLE_EQ(step(0.25), 5.6);
    timetable = timetable.following(0.2);
    EXPECT_DOUBLE_EQ(step(), 5.85) << "late, as it would have been";
    EXPECT_DOUBLE_EQ(step(), 6.0);
}
