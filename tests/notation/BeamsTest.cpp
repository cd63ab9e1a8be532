// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Beams.h"

#include "CleanMusicReader.h"

#include <gmock/gmock.h>

using namespace velmora::notation;

namespace {
struct BeamsTest : testing::Test, CleanMusicReader {};
} // namespace

TEST_F(BeamsTest, EighthsJoinWithinHalfABar) {
    EXPECT_EQ(rhythm({2, 2, 2, 2, 2, 2, 2, 2}).beams(), "1 1 1 1 2 2 2 2");
}
TEST_F(BeamsTest, SixteenthsJoinByTheBeat) {
    EXPECT_EQ(rhythm({1, 1, 1, 1, 1, 1, 1, 1, 8}).beams(), "1 1 1 1 2 2 2 2 0");
}
TEST_F(BeamsTest, EighthsBesideSixteenthsJoinByTheBeat) {
    EXPECT_EQ(rhythm({2, 2, 2, 1, 1, 3, 1, 4}).beams(), "1 1 2 2 2 3 3 0");
}
TEST_F(BeamsTest, EighthsOfThreeBeatsJoinOverTheBar) {
    meterOf(3, 4, 12);
    EXPECT_EQ(rhythm({2, 2, 2, 2, 2, 2}).beams(), "1 1 1 1 1 1");
    EXPECT_EQ(rhythm({4, 2, 2, 2, 2}).beams(), "0 1 1 1 1");
}
TEST_F(BeamsTest, SixEighthsJoinByThree) {
    EXPECT_EQ(meterOf(6, 8, 6).rhythm({1, 1, 1, 1, 1, 1}).beams(), "1 1 1 2 2 2");
}
TEST_F(BeamsTest, FiveAndSevenEighthsJoinByTheirGroups) {
    EXPECT_EQ(meterOf(5, 8, 5).rhythm({1, 1, 1, 1, 1}).beams(), "1 1 1 2 2");
    EXPECT_EQ(meterOf(7, 8, 7).rhythm({1, 1, 1, 1, 1, 1, 1}).beams(), "1 1 2 2 3 3 3");
}
TEST_F(BeamsTest, ARestEndsABeam) {
    EXPECT_EQ(rhythm({2, -2, 1, 1, -1, 1, 2, 2, 4}).beams(), "0 0 1 1 0 0 2 2 0");
}
TEST_F(BeamsTest, AnEighthBetweenLongerNotesHasAFlag) {
    EXPECT_EQ(rhythm({6, 2, 6, 2}).beams(), "0 0 0 0");
}
TEST_F(BeamsTest, PiecesOfANoteStandUnderTheirBeams) {
    EXPECT_EQ(rhythm({3, 2, 3, 8}).beams(), "1 12 2 0");
}
TEST_F(BeamsTest, GroupsThatShareANotePointOneWay) {
    EXPECT_EQ(stroke(0, 72, 0, 3).stroke(0, 71, 3, 2).stroke(0, 48, 5, 3).stems(), "uuu");
}
TEST_F(BeamsTest, ALineTellsItsPlaceUnderTheBeam) {
    const auto items = rhythm({2, 2, 4, 8}).read().items;
    EXPECT_EQ(items[0].beamIndex, 1);
    EXPECT_EQ(items[1].beamIndex, 2);
    EXPECT_EQ(items[1].beamCount, 2);
    EXPECT_EQ(items[2].beamCount, 0);
}
TEST_F(BeamsTest, TripletsJoinByTheBeat) {
    EXPECT_EQ(meterOf(4, 4, 12).rhythm({1, 1, 1, 1, 1, 1, 6}).beams(), "1 1 1 2 2 2 0");
}
