// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/NoteSplit.h"

#include "CleanMusicReader.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::notation;

namespace {
struct NoteSplitTest : testing::Test, CleanMusicReader {};
} // namespace

TEST_F(NoteSplitTest, ANoteOfOneValueIsThatValue) {
    EXPECT_EQ(rhythm({16, 8, 4, 2, 1, 1, 16}).values(),
              "whole half quarter eighth sixteenth sixteenth whole");
}
TEST_F(NoteSplitTest, ANoteIsSplitAtTheBarLine) {
    EXPECT_EQ(rhythm({12, 8, -12}).values(), "half. quarter quarter (quarter+half)");
}
TEST_F(NoteSplitTest, ANoteThatBeginsTheBarMayHaveTwoDots) {
    EXPECT_EQ(rhythm({14, 2, 7, 1, -8}).values(), "half.. eighth quarter.. sixteenth (half)");
}
TEST_F(NoteSplitTest, ANoteOverTheMiddleOfFourBeatsIsTied) {
    EXPECT_EQ(rhythm({2, 12, 2}).values(), "eighth quarter.+quarter. eighth");
    EXPECT_EQ(rhythm({4, 12}).values(), "quarter quarter+half");
    EXPECT_EQ(rhythm({6, 4, 6}).values(), "quarter. eighth+eighth quarter.");
}
TEST_F(NoteSplitTest, AHalfBetweenTwoQuartersMayHideTheMiddle) {
    EXPECT_EQ(rhythm({4, 8, 4}).values(), "quarter half quarter");
}
TEST_F(NoteSplitTest, ShortLongShortWithinTwoBeatsIsNotTied) {
    EXPECT_EQ(rhythm({2, 4, 2, 1, 2, 1, -4}).values(),
              "eighth quarter eighth sixteenth eighth sixteenth (quarter)");
}
TEST_F(NoteSplitTest, ANoteThatHidesABeatFromASixteenthOnIsTied) {
    EXPECT_EQ(rhythm({3, 2, 3, -8}).values(), "eighth. sixteenth+sixteenth eighth. (half)");
    EXPECT_EQ(rhythm({1, 4, 3, -8}).values(), "sixteenth eighth.+sixteenth eighth. (half)");
}
TEST_F(NoteSplitTest, LengthsWithoutASignAreTied) {
    EXPECT_EQ(rhythm({5, 11}).values(), "quarter+sixteenth eighth.+half");
}
TEST_F(NoteSplitTest, ThreeBeatsAreOneDottedHalf) {
    meterOf(3, 4, 12);
    EXPECT_EQ(rhythm({12}).values(), "half.");
    EXPECT_EQ(rhythm({8, 4}).values(), "half quarter");
    EXPECT_EQ(rhythm({4, 8}).values(), "quarter half");
    EXPECT_EQ(rhythm({10, 2}).values(), "half+eighth eighth");
    EXPECT_EQ(rhythm({2, 10}).values(), "eighth eighth+half");
}
TEST_F(NoteSplitTest, SixEighthsAreTwoGroupsOfThree) {
    meterOf(6, 8, 12);
    EXPECT_EQ(rhythm({12}).values(), "half.");
    EXPECT_EQ(rhythm({6, 4, 2}).values(), "quarter. quarter eighth");
    EXPECT_EQ(rhythm({8, 4}).values(), "quarter.+eighth quarter");
    EXPECT_EQ(rhythm({2, 8, 2}).values(), "eighth quarter+quarter eighth");
}
TEST_F(NoteSplitTest, NineAndTwelveEighthsHoldGroupsOfThree) {
    EXPECT_EQ(meterOf(9, 8, 9).rhythm({6, 3, 9}).values(), "half. quarter. half.+quarter.");
    EXPECT_EQ(meterOf(12, 8, 12).rhythm({12, 6, 6, 3, 6, 3}).values(),
              "whole. half. half. quarter. quarter.+quarter. quarter.");
}
TEST_F(NoteSplitTest, FiveAndSevenEighthsAreSplitAtTheirGroups) {
    EXPECT_EQ(meterOf(5, 8, 5).rhythm({5, 4, 1}).values(), "quarter.+quarter quarter.+eighth eighth");
    EXPECT_EQ(meterOf(7, 8, 7).rhythm({7, 4, 3, 3, 4}).values(),
              "half+quarter. half quarter. quarter+eighth eighth+quarter.");
}
TEST_F(NoteSplitTest, TwoHalvesAreWrittenAsFourQuarters) {
    EXPECT_EQ(meterOf(2, 2, 4).rhythm({4, 3, 1, 1, 2, 1}).values(),
              "whole half. quarter quarter half quarter");
}
TEST_F(NoteSplitTest, StepsBelowASixteenthHaveTheirValues) {
    EXPECT_EQ(meterOf(4, 4, 64).rhythm({1, 2, 1, -60}).values(),
              "sixtyfourth thirtysecond sixtyfourth (sixteenth+eighth+quarter+half)");
    EXPECT_EQ(meterOf(4, 4, 512).rhythm({1, -511}).values().substr(0, 18), "fivehundredtwelfth");
}
TEST_F(NoteSplitTest, RestsShowEveryBeatWithoutDots) {
    EXPECT_EQ(rhythm({1, -3, 4, -8}).values(), "sixteenth (sixteenth+eighth) quarter (half)");
    EXPECT_EQ(rhythm({4, -12}).values(), "quarter (quarter+half)");
    EXPECT_EQ(rhythm({4, -8, 4}).values(), "quarter (quarter+quarter) quarter");
    EXPECT_EQ(rhythm({-6, 10}).values(), "(quarter+eighth) eighth+half");
}
TEST_F(NoteSplitTest, TwoBeatsOfThreeRestAsTwoQuarters) {
    EXPECT_EQ(meterOf(3, 4, 12).rhythm({4, -8}).values(), "quarter (quarter+quarter)");
}
TEST_F(NoteSplitTest, AGroupOfThreeRestsWithADot) {
    meterOf(6, 8, 12);
    EXPECT_EQ(rhythm({6, -6}).values(), "quarter. (quarter.)");
    EXPECT_EQ(rhythm({-4, 2, 2, -4}).values(), "(quarter) eighth eighth (eighth+eighth)");
    EXPECT_EQ(meterOf(12, 8, 12).rhythm({6, -6}).values(), "half. (half.)");
}
TEST_F(NoteSplitTest, AnEmptyBarIsOneRestInAnyMeter) {
    EXPECT_EQ(rhythm({16, -16}).values(), "whole (bar)");
    EXPECT_EQ(meterOf(3, 4, 12).rhythm({12, -12}).values(), "half. (bar)");
    EXPECT_EQ(meterOf(5, 8, 7).rhythm({-7}).values(), "(bar)");
}
TEST_F(NoteSplitTest, ThreeNotesInABeatAreATriplet) {
    EXPECT_EQ(meterOf(4, 4, 12).rhythm({1, 1, 1, 2, 1, 3, -3}).values(),
              "eighth3 eighth3 eighth3 quarter3 eighth3 quarter (quarter)");
}
TEST_F(NoteSplitTest, ThreeNotesInHalfABarAreATripletOfQuarters) {
    EXPECT_EQ(meterOf(4, 4, 12).rhythm({2, 2, 2, 6}).values(), "quarter3 quarter3 quarter3 half");
    EXPECT_EQ(meterOf(4, 4, 3).rhythm({1, 1, 1}).values(), "half3 half3 half3");
}
TEST_F(NoteSplitTest, TwoBeatsOfThreeMayHoldATriplet) {
    EXPECT_EQ(meterOf(3, 4, 9).rhythm({2, 2, 2, 3}).values(), "quarter3 quarter3 quarter3 quarter");
    EXPECT_EQ(meterOf(3, 4, 9).rhythm({3, 2, 2, 2}).values(), "quarter quarter3 quarter3 quarter3");
}
TEST_F(NoteSplitTest, ANoteThatReachesIntoATripletIsTied) {
    EXPECT_EQ(meterOf(4, 4, 12).rhythm({5, 1, 6}).values(), "quarter+quarter3 eighth3 half");
}
TEST_F(NoteSplitTest, ANoteOfABeatAndAThirdIsTiedIntoTheTriplet) {
    EXPECT_EQ(meterOf(4, 4, 12).rhythm({4, 1, 1, 6}).values(), "quarter+eighth3 eighth3 eighth3 half");
    EXPECT_EQ(rhythm({6, 4, 1, 1}).values(), "half quarter+eighth3 eighth3 eighth3");
    EXPECT_EQ(rhythm({1, 1, 4, 6}).values(), "eighth3 eighth3 eighth3+quarter half");
    EXPECT_EQ(rhythm({3, 4, 1, 1, 3}).values(), "quarter quarter+eighth3 eighth3 eighth3 quarter");
    EXPECT_EQ(rhythm({-4, 1, 1, 6}).values(), "(quarter+eighth3) eighth3 eighth3 half");
    EXPECT_EQ(meterOf(3, 4, 9).rhythm({4, 1, 1, 3}).values(), "quarter+eighth3 eighth3 eighth3 quarter");
    EXPECT_EQ(rhythm({3, 4, 1, 1}).values(), "quarter quarter+eighth3 eighth3 eighth3");
    EXPECT_EQ(meterOf(4, 4, 48).rhythm({-24, 16, 4, 4}).values(), "(half) quarter+eighth3 eighth3 eighth3");
}
TEST_F(NoteSplitTest, ATripletOverTwoBeatsShowsItsThirds) {
    EXPECT_EQ(meterOf(4, 4, 12).rhythm({2, 2, 1, 1, 6}).values(), "quarter3 quarter3 eighth3 eighth3 half");
    EXPECT_EQ(rhythm({4, 2, 6}).values(), "half3 quarter3 half");
}
TEST_F(NoteSplitTest, RestsStandInTripletsToo) {
    EXPECT_EQ(meterOf(4, 4, 12).rhythm({1, -1, 1, -2, 1, 6}).values(),
              "eighth3 (eighth3) eighth3 (quarter3) eighth3 half");
}
TEST_F(NoteSplitTest, FiveInAQuarterTakeTheNearestValues) {
    EXPECT_EQ(meterOf(4, 4, 20).rhythm({1, 1, 1, 1, 1, 5, 10}).values(),
              "thirtysecond. sixtyfourth+thirtysecond thirtysecond+thirtysecond thirtysecond+sixtyfourth "
              "thirtysecond. quarter half");
}
TEST_F(NoteSplitTest, SixteenStepsInThreeBeatsAreExact) {
    EXPECT_EQ(meterOf(3, 4, 16).rhythm({4, 4, 4, 4}).values(),
              "eighth. sixteenth+eighth eighth+sixteenth eighth.");
}
