// SPDX-License-Identifier: GPL-2.0-or-later
// The edge of the view, the modes Cursor and Select, and the static test.
#include "tableau/TableauInput.h"

#include "tests/tableau/GestureFixture.h"

#include <gmock/gmock.h>

using namespace velmora;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

namespace {

constexpr auto kRight = MouseButton::Right;

using MouseModesTest = GestureFixture;

} // namespace

// The edge

TEST_F(MouseModesTest, AStrokeEndsItselfAtTheEdgeAndScrollsByOneColumn) {
    press(90, 10);
    input().MusicBox_MouseMove(MouseButton::Left, 0, screen().pixels - 24, y(10));
    EXPECT_THAT(screen().callsOf("advanceScroll"), IsEmpty());
    input().MusicBox_MouseMove(MouseButton::Left, 0, screen().pixels - 23, y(10));
    EXPECT_EQ(screen().toolText, "Scroll ahead ");
    EXPECT_EQ(screen().calls.back(), "advanceScroll 1");
    EXPECT_EQ(cell(0, 90), 52);
    EXPECT_EQ(cell(0, 98), 1052);
    EXPECT_EQ(cell(0, 99), -1);
    EXPECT_THAT(sounding(), IsEmpty());
}

TEST_F(MouseModesTest, AfterTheEdgeANewStrokeMustBeStarted) {
    press(90, 10);
    drag(99, 10);
    drag(99, 10);
    drag(95, 10);
    release(95, 10);
    EXPECT_THAT(screen().callsOf("advanceScroll"), SizeIs(1));
    EXPECT_EQ(cell(0, 91), 1052);
    EXPECT_EQ(cell(0, 100), -1);
}

TEST_F(MouseModesTest, ARightDragAtTheEdgeScrollsByFive) {
    press(90, 10, kRight);
    drag(99, 10, kRight);
    drag(99, 10, kRight);
    EXPECT_EQ(screen().toolText, "Scroll to next page");
    EXPECT_THAT(screen().callsOf("advanceScroll"), ElementsAre("advanceScroll 5"));
}

TEST_F(MouseModesTest, AHandThatOnlyPointsAtTheEdgeScrollsNothing) {
    drag(99, 10, MouseButton::None);
    drag(99, 10);
    EXPECT_THAT(screen().callsOf("advanceScroll"), IsEmpty());
}

// Cursor and Select

TEST_F(MouseModesTest, AMarkThatAPressClearsIsNoLongerSeen) {
    for (const RightClick mode : {RightClick::Menu, RightClick::Erase})
        for (const MouseButton button : {MouseButton::Left, kRight}) {
            view().RightClickMode = mode;
            view().SelectStart = 3;
            view().SelectEnd = 9;
            bool seen = true;
            screen().inMenu = [&] { seen = screen().count("marks") == 0; };
            screen().calls.clear();
            press(40, 10, button);
            EXPECT_EQ(view().SelectStart, -1);
            EXPECT_EQ(screen().calls.front(), "marks");
            if (mode == RightClick::Menu && button == kRight) {
                EXPECT_FALSE(seen) << "a menu that asks for a selection would belie it";
            }
            release(40, 10, button);
        }
}

TEST_F(MouseModesTest, InCursorModeALeftPressSetsThePlayMark) {
    view().MouseMode = Mouse::Cursor;
    view().ViewFirstColumn = 20;
    press(3, 10);
    EXPECT_EQ(view().PlayMark, 23);
    EXPECT_EQ(screen().count("marks"), 1);
    EXPECT_EQ(screen().pointer(Box::MusicBox), Pointer::Cursor);
    release(3, 10);
    EXPECT_EQ(view().PlayMark, 23);
    EXPECT_THAT(port().words(), IsEmpty());
    EXPECT_EQ(cell(0, 23), -1);
}

TEST_F(MouseModesTest, InCursorModeTheRightButtonOpensTheEditMenu) {
    view().MouseMode = Mouse::Cursor;
    view().PlayMark = 9;
    press(3, 10, kRight);
    EXPECT_EQ(screen().count("openEditMenu"), 1);
    EXPECT_EQ(screen().pointer(Box::MusicBox), Pointer::Cursor);
    EXPECT_EQ(view().PlayMark, 9);
}

TEST_F(MouseModesTest, ASelectionReachesFromPressToRelease) {
    view().MouseMode = Mouse::Select;
    view().ViewFirstColumn = 20;
    press(3, 10);
    EXPECT_EQ(view().SelectStart, 23);
    EXPECT_EQ(view().PlayMark, 23);
    drag(9, 10);
    release(9, 10);
    EXPECT_EQ(view().SelectEnd, 29);
    EXPECT_EQ(workspace().play.SegmentBase, 20);
    EXPECT_EQ(workspace().play.SegmentEnd, 29);
    EXPECT_EQ(screen().pointer(Box::MusicBox), Pointer::Select);
    EXPECT_THAT(port().words(), IsEmpty());
}

TEST_F(MouseModesTest, ASelectionNeverEndsBeforeItsStart) {
    view().MouseMode = Mouse::Select;
    press(9, 10);
    release(3, 10);
    EXPECT_EQ(view().SelectEnd, 9);
}

TEST_F(MouseModesTest, AFirstOrEarlierSelectionIsBegunWithAnEdge) {
    view().MouseMode = Mouse::Select;
    press(9, 10);
    EXPECT_THAT(screen().calls, ElementsAre("GetBox", "drawSelectEdge 9", "marks"));
    release(9, 10);
    screen().calls.clear();
    press(4, 10);
    EXPECT_THAT(screen().calls, ElementsAre("GetBox", "drawSelectEdge 4", "marks"));
}

TEST_F(MouseModesTest, ALaterSelectionIsBegunWithTheStripOfTheLastPaint) {
    view().MouseMode = Mouse::Select;
    press(4, 10);
    release(4, 10);
    screen().calls.clear();
    press(9, 10);
    EXPECT_THAT(screen().calls, ElementsAre("marks", "GetBox", "blendSelectStrip"));
    release(9, 10);
    screen().calls.clear();
    press(9, 10); // no earlier than it was
    EXPECT_THAT(screen().calls, ElementsAre("marks", "GetBox", "blendSelectStrip"));
}

TEST_F(MouseModesTest, ASelectionFromTheFirstPositionIsOneToo) {
    view().MouseMode = Mouse::Select;
    press(0, 10);
    release(3, 10);
    screen().calls.clear();
    press(2, 10);
    EXPECT_THAT(screen().calls, ElementsAre("marks", "GetBox", "blendSelectStrip"));
}

TEST_F(MouseModesTest, TheSelectionGrowsAndShrinksOverTheSavedTableau) {
    view().MouseMode = Mouse::Select;
    press(4, 10);
    screen().calls.clear();
    drag(8, 10);
    drag(6, 10);
    EXPECT_THAT(screen().calls, ElementsAre("PutBox", "drawSelectDrag 4 8", "PutBox", "drawSelectDrag 4 6"));
}

TEST_F(MouseModesTest, ASelectionDraggedAtTheEdgeScrollsOnAndKeepsItsStart) {
    view().MouseMode = Mouse::Select;
    press(90, 10);
    for (int step = 0; step < 5; ++step)
        drag(99, 10);
    EXPECT_THAT(screen().callsOf("advanceScroll"), SizeIs(5));
    EXPECT_EQ(screen().callsOf("drawSelectDrag").back(), "drawSelectDrag 85 99");
    release(99, 10);
    EXPECT_EQ(view().SelectStart, 90);
    EXPECT_EQ(view().SelectEnd, 104);
}

TEST_F(MouseModesTest, InSelectModeTheRightButtonOpensTheEditMenuAndThenClearsTheMarks) {
    view().MouseMode = Mouse::Select;
    view().SelectStart = 3;
    view().SelectEnd = 5;
    view().PlayMark = 3;
    int inMenu = -1;
    screen().inMenu = [&] { inMenu = view().SelectStart; };
    press(3, 10, kRight);
    EXPECT_EQ(inMenu, 3) << "the menu's commands need them";
    EXPECT_EQ(view().SelectStart, -1);
    EXPECT_EQ(view().SelectEnd, -1);
    EXPECT_EQ(view().PlayMark, 0);
    EXPECT_EQ(screen().calls.back(), "marks");
}

// The static test

TEST_F(MouseModesTest, TheStaticTestPlaysTheNoteUnderTheMouseAndDrawsNothing) {
    putNotes(score(), 0, 70, 1, 3);
    score().Polyphonics.set(1, 0, 1);
    view().Check4 = true;
    screen().calls.clear();
    press(2, 10);
    EXPECT_THAT(sounding(), Contains(Pair(0, 57))) << "the note that stands there";
    EXPECT_THAT(sounding(), Contains(Pair(0, 61))) << "with the chord of its head";
    EXPECT_THAT(sounding(), Contains(Pair(0, 75))) << "and the place that was pressed";
    drag(5, 10);
    release(5, 10);
    EXPECT_THAT(sounding(), IsEmpty());
    EXPECT_THAT(cells(0, 6), ElementsAre(70, 1070, 1070, -1, -1, -1));
    EXPECT_THAT(screen().calls, ElementsAre("doNotemod 2"));
    EXPECT_EQ(workspace().undo.snapshots, 0);
}

TEST_F(MouseModesTest, TheStaticTestSoundsAnEmptyPlaceAsItsRowAlone) {
    view().Check4 = true;
    press(2, 10);
    EXPECT_THAT(sounding(), ElementsAre(Pair(0, 75)));
}

TEST_F(MouseModesTest, TheStaticTestPlaysANoteWithItsOwnInstrumentIfNoteEffectsAreOn) {
    putNotes(score(), 0, 70, 1, 3);
    score().NoteInstrument.set(0, 0, 33);
    view().Check4 = view().NoteEffectsOn = true;
    press(0, 10);
    const auto words = port().words();
    const auto own = std::find(words.begin(), words.end(), shortmessage::programChange(0, 33));
    ASSERT_NE(own, words.end());
    EXPECT_NE(std::find(own, words.end(), shortmessage::noteOn(0, 57, 127)), words.end());
    EXPECT_EQ(words.back(), shortmessage::programChange(0, score().ChannelInstrument[0]));
}

TEST_F(MouseModesTest, AfterAStaticTestThePointerIsThatOfTheMode) {
    view().Check4 = true;
    view().MouseMode = Mouse::Select;
    press(2, 10);
    release(2, 10);
    EXPECT_EQ(screen().pointer(Box::MusicBox), Pointer::Select);
}

TEST_F(MouseModesTest, TheStaticTestErasesNothing) {
    putNotes(score(), 0, 70, 1, 3);
    view().Check4 = true;
    rightClick(1);
    EXPECT_THAT(cells(0, 3), ElementsAre(70, 1070, 1070));
}

TEST_F(MouseModesTest, TheStaticTestLeavesAMutedChannelSilent) {
    putNotes(score(), 0, 70, 1, 3);
    score().ChannelMuted[0] = true;
    view().Check4 = true;
    press(1, 10);
    EXPECT_THAT(port().words(), IsEmpty());
}

TEST_F(MouseModesTest, TheStaticTestComesBeforeTheMode) {
    view().Check4 = true;
    view().MouseMode = Mouse::Select;
    press(2, 10);
    EXPECT_THAT(sounding(), SizeIs(1));
    EXPECT_EQ(view().SelectStart, -1);
    release(2, 10);
    EXPECT_THAT(sounding(), IsEmpty());
}
