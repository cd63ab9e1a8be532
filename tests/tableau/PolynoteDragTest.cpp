// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/PolynoteDrag.h"

#include "tests/composition/WorkspaceFixture.h"

#include <gmock/gmock.h>

using namespace velmora;

namespace {

struct PolynoteDragTest : WorkspaceFixture {
    PolynoteDragTest() { store("NumNotes", "100"); }

    PolynoteDrag hand;
    std::optional<int> drag(int x, MouseButton button = MouseButton::Left) {
        return hand.move(workspace(), button, x, 3);
    }
    int chordAt(int position) { return score().Polyphonics.valueOr(1, position, -9); }
};

} // namespace

TEST_F(PolynoteDragTest, EachColumnThatIsCrossedTakesTheChordOfTheList) {
    workspace().view.ViewFirstColumn = 20;
    EXPECT_EQ(drag(13), 1);
    EXPECT_EQ(drag(24, MouseButton::Right), 2);
    EXPECT_EQ(chordAt(21), 3);
    EXPECT_EQ(chordAt(22), 3);
    EXPECT_EQ(chordAt(23), 0);
}

TEST_F(PolynoteDragTest, AMoveWithinAColumnIsNone) {
    EXPECT_EQ(drag(13), 1);
    score().Polyphonics.set(1, 1, 0);
    EXPECT_FALSE(drag(23));
    EXPECT_EQ(chordAt(1), 0);
    EXPECT_FALSE(drag(23, MouseButton::None));
    EXPECT_EQ(drag(23), 1) << "another drag";
}

TEST_F(PolynoteDragTest, InPolyphonicModeTheListOfTheSetupToolbarCounts) {
    workspace().view.RightClickMode = RightClick::Polyphonic;
    workspace().setup.Combo3 = 6;
    drag(5);
    EXPECT_EQ(chordAt(0), 6);
}

TEST_F(PolynoteDragTest, WithoutAButtonOrOutsideTheScoreNothingIsStored) {
    EXPECT_FALSE(drag(5, MouseButton::None));
    EXPECT_FALSE(drag(-5));
    EXPECT_FALSE(drag(101 * 12));
    EXPECT_EQ(chordAt(0), 0);
}

TEST_F(PolynoteDragTest, PercussionTakesNoChord) {
    workspace().selectChannel(8);
    EXPECT_FALSE(drag(5));
    EXPECT_EQ(score().Polyphonics.at(9, 0), 0);
}

TEST_F(PolynoteDragTest, InCarefulMannerTheSetupToolbarsChordIsTheOneThatItNames) {
    beCareful();
    workspace().view.RightClickMode = RightClick::Polyphonic;
    workspace().setup.Combo3 = 6;
    drag(5);
    EXPECT_EQ(chordAt(0), 7);
    workspace().view.RightClickMode = RightClick::Erase;
    drag(17);
    EXPECT_EQ(chordAt(1), 3) << "the other list begins with the single note";
}

TEST_F(PolynoteDragTest, InCarefulMannerANoteTakesItsChordAsAWhole) {
    beCareful();
    putNotes(score(), 0, 60, 3, 3);
    EXPECT_EQ(drag(5 * 12), 5);
    for (int position = 0; position < 9; ++position)
        EXPECT_EQ(chordAt(position), position >= 3 && position <= 5 ? 3 : 0) << position;
}

TEST_F(PolynoteDragTest, InClassicMannerAColumnTakesItsChordAlone) {
    putNotes(score(), 0, 60, 3, 3);
    drag(5 * 12);
    for (int position = 0; position < 9; ++position)
        EXPECT_EQ(chordAt(position), position == 5 ? 3 : 0) << position;
}
