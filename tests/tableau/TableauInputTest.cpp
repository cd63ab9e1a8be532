// SPDX-License-Identifier: GPL-2.0-or-later
// Drawing on `MusicBox`: cells, sound, playing and undo.
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

constexpr int kTop = 42; ///< row of the score at the top of the view
constexpr auto kRight = MouseButton::Right;

struct TableauInputTest : GestureFixture {
    int chordAt(int position) { return score().Polyphonics.valueOr(1, position, -9); }
};

} // namespace

// Drawing

TEST_F(TableauInputTest, APressAndReleaseInOneCellIsAHeadWithoutContinuation) {
    press(3, 5);
    release(3, 5);
    EXPECT_THAT(cells(0, 5), ElementsAre(-1, -1, -1, kTop + 5, -1));
    EXPECT_EQ(score().NoteInstrument.at(0, 3), score().ChannelInstrument[0]);
}

TEST_F(TableauInputTest, ADragToTheRightGivesTheLength) {
    draw(1, 3, 10);
    EXPECT_THAT(cells(0, 5), ElementsAre(-1, 52, 1052, 1052, -1));
    EXPECT_EQ(score().NoteInstrument.at(0, 3), score().ChannelInstrument[0]);
}

TEST_F(TableauInputTest, TheScoreChangesOnlyAtTheRelease) {
    press(1, 10);
    drag(3, 10);
    EXPECT_THAT(cells(0, 5), testing::Each(-1));
}

TEST_F(TableauInputTest, TheRowOfThePressIsTheRowOfTheNote) {
    press(1, 10);
    drag(2, 30);
    release(2, 40);
    EXPECT_THAT(cells(0, 4), ElementsAre(-1, 52, 1052, -1));
}

TEST_F(TableauInputTest, RowsFollowTheLineHeightAndTheScrolledView) {
    view().Line_Height = 12;
    view().ViewTopRow = 60;
    view().ViewFirstColumn = 30;
    draw(1, 1, 4);
    EXPECT_EQ(cell(0, 31), 64);
}

TEST_F(TableauInputTest, ADragLeftOfThePressLeavesOneCellAtThePress) {
    draw(5, 2, 0);
    EXPECT_THAT(cells(0, 7), ElementsAre(-1, -1, -1, -1, -1, kTop, -1));
    EXPECT_THAT(screen().callsOf("drawBand"), ElementsAre("drawBand 0 0 5 5"));
}

TEST_F(TableauInputTest, APointLeftOfTheBoxIsNoColumnOfIt) {
    view().ViewFirstColumn = 10;
    input().MusicBox_MouseDown(MouseButton::Left, 0, 3, 3);
    input().MusicBox_MouseUp(MouseButton::Left, 0, -30, 3);
    EXPECT_EQ(cell(0, 10), kTop);
    EXPECT_EQ(cell(0, 9), -1);
}

TEST_F(TableauInputTest, ANoteEndingInsideAnOlderOneLeavesItsRestAsANote) {
    draw(2, 6, 20);
    draw(1, 3, 10);
    EXPECT_THAT(cells(0, 8), ElementsAre(-1, 52, 1052, 1052, 62, 1062, 1062, -1));
}

TEST_F(TableauInputTest, ANoteStartingInsideAnOlderOneCutsItThere) {
    draw(1, 3, 20);
    draw(3, 4, 10);
    EXPECT_THAT(cells(0, 6), ElementsAre(-1, 62, 1062, 52, 1052, -1));
}

TEST_F(TableauInputTest, ANoteOverAWholeOlderOneReplacesIt) {
    draw(2, 3, 20);
    draw(1, 4, 10);
    EXPECT_THAT(cells(0, 6), ElementsAre(-1, 52, 1052, 1052, 1052, -1));
}

TEST_F(TableauInputTest, ANoteBeforeAHeadLeavesItAHead) {
    draw(3, 4, 20);
    draw(1, 2, 10);
    EXPECT_THAT(cells(0, 6), ElementsAre(-1, 52, 1052, 62, 1062, -1));
}

TEST_F(TableauInputTest, OtherChannelsKeepTheirCells) {
    putNotes(score(), 1, 70, 3);
    draw(0, 5, 10);
    EXPECT_THAT(cells(1, 6), ElementsAre(70, 1070, 70, 1070, 70, 1070));
}

TEST_F(TableauInputTest, ADrawnNoteKeepsTheChordThatStandsThere) {
    score().Polyphonics.set(1, 2, 3);
    draw(2, 2, 10);
    EXPECT_EQ(chordAt(2), 3);
}

TEST_F(TableauInputTest, ANotePastTheEndOfTheScoreIsLeftPartlyDone) {
    view().ViewFirstColumn = 150;
    draw(48, 60, 10);
    EXPECT_EQ(cell(0, 198), 52);
    EXPECT_EQ(cell(0, 200), 1052);
    EXPECT_THAT(sounding(), IsEmpty());
}

TEST_F(TableauInputTest, ARowBelowTheLowestPitchIsNoNote) {
    view().ViewTopRow = 100;
    draw(1, 2, 28);
    EXPECT_THAT(cells(0, 4), testing::Each(-1));
    EXPECT_THAT(port().words(), IsEmpty());
    draw(1, 1, 27);
    EXPECT_EQ(cell(0, 1), 127);
}

TEST_F(TableauInputTest, TheReleaseIsBoundByTheColumnsInView) {
    view().ViewColumns = 20;
    press(18, 0);
    release(30, 0);
    EXPECT_EQ(cell(0, 20), 1000 + kTop);
    EXPECT_EQ(cell(0, 21), -1);
}

// The sound

TEST_F(TableauInputTest, ANoteSoundsFromPressToReleaseAtItsPitch) {
    press(1, 10);
    EXPECT_THAT(sounding(), ElementsAre(Pair(0, 127 - 52)));
    drag(3, 10);
    EXPECT_THAT(sounding(), SizeIs(1));
    release(3, 10);
    EXPECT_THAT(sounding(), IsEmpty());
    EXPECT_EQ(port().words().back(), RecordingPort::kReset);
}

TEST_F(TableauInputTest, ThePressSoundsBeforeTheSnapshotIsTaken) {
    struct Watched : RecordingScreen {
        using RecordingScreen::RecordingScreen;
        void setPointer(Box, Pointer) override { snapshots = first < 0 ? (first = now()) : snapshots; }
        std::function<int()> now;
        int first = -1;
        int snapshots = -1;
    } watched(workspace());
    VirtualLoop loop;
    RecordingPort listening{loop};
    NotePlayer player{score(), workspace().setup, workspace().play, workspace().chords, listening, loop};
    TableauInput hand{workspace(), player, listening, watched};
    watched.now = [&] { return listening.sent.empty() ? 1000 : workspace().undo.snapshots; };
    hand.MusicBox_MouseDown(MouseButton::Left, 0, 5, 5);
    EXPECT_EQ(watched.first, 0);
    EXPECT_EQ(workspace().undo.snapshots, 1);
}

TEST_F(TableauInputTest, TheVelocityIsTheVolumeOfThePosition) {
    score().Volume.set(0, 4, 55);
    press(3, 0);
    EXPECT_EQ(score().ChannelVelocity[0], 55);
    EXPECT_EQ(shortmessage::data2(port().words().back()), 55);
}

TEST_F(TableauInputTest, AnInaudibleVolumeCountsAsTheLoudest) {
    score().ChannelMuted[0] = true; // so that the sounding leaves the velocity alone
    score().Volume.set(0, 4, 0);
    press(3, 0);
    EXPECT_EQ(score().ChannelVelocity[0], 127);
    release(3, 0);
    score().Volume.set(0, 4, 1);
    press(3, 0);
    EXPECT_EQ(score().ChannelVelocity[0], 1);
}

TEST_F(TableauInputTest, AMutedChannelIsDrawnInSilence) {
    score().ChannelMuted[0] = true;
    press(1, 10);
    EXPECT_THAT(port().words(), IsEmpty());
    release(1, 10);
    EXPECT_EQ(cell(0, 1), 52);
    EXPECT_THAT(port().notes(), SizeIs(1)) << "only the silence at the end";
}

TEST_F(TableauInputTest, EachVisibleChannelAtTheReleaseIsEndedWithItsInstrument) {
    putNotes(score(), 1, 70, 3);
    putNotes(score(), 2, 71, 3);
    score().ChannelMuted[2] = true;
    draw(1, 3, 10);
    EXPECT_THAT(port().words(), Contains(shortmessage::noteOff(1, 127 - 70)));
    EXPECT_THAT(port().words(), Contains(shortmessage::programChange(1, score().ChannelInstrument[1])));
    EXPECT_THAT(port().words(), testing::Not(Contains(shortmessage::noteOff(2, 127 - 71))));
}

TEST_F(TableauInputTest, AChordEndsWithItsNote) {
    score().Polyphonics.set(1, 1, 1);
    press(1, 10);
    EXPECT_THAT(sounding(), SizeIs(4));
    release(4, 10);
    EXPECT_THAT(sounding(), IsEmpty());
}

TEST_F(TableauInputTest, ANoteOnRowZeroEndsByItsOwnNoteOff) {
    view().ViewTopRow = 0;
    draw(1, 2, 0);
    EXPECT_THAT(port().words(), Contains(shortmessage::noteOff(0, 127)));
}

TEST_F(TableauInputTest, WithNoteEffectsEveryReleaseIsSilence) {
    view().NoteEffectsOn = true;
    release(1, 1);
    EXPECT_THAT(port().words(), ElementsAre(RecordingPort::kReset));
}

TEST_F(TableauInputTest, CancelEndsTheStrokeWhereTheMouseWasLast) {
    press(1, 10);
    drag(3, 10);
    input().cancel();
    EXPECT_THAT(cells(0, 5), ElementsAre(-1, 52, 1052, 1052, -1));
    EXPECT_THAT(sounding(), IsEmpty());
    port().sent.clear();
    input().cancel();
    release(9, 10);
    EXPECT_EQ(cell(0, 4), -1);
    EXPECT_THAT(port().words(), IsEmpty());
}

TEST_F(TableauInputTest, AMoveWithoutAButtonEndsAStrokeWhoseReleaseWasLost) {
    press(1, 10);
    drag(2, 10);
    drag(9, 10, MouseButton::None);
    EXPECT_THAT(cells(0, 4), ElementsAre(-1, 52, 1052, -1));
    EXPECT_THAT(sounding(), IsEmpty());
}

TEST_F(TableauInputTest, APressThatArrivesWhileAChordEndsIsRefused) {
    struct Busy : VirtualLoop {
        void YieldIfInput() override { meanwhile(); }
        std::function<void()> meanwhile;
    } loop;
    RecordingPort listening{loop};
    NotePlayer player{score(), workspace().setup, workspace().play, workspace().chords, listening, loop};
    TableauInput hand{workspace(), player, listening, screen()};
    loop.meanwhile = [&] { hand.MusicBox_MouseDown(MouseButton::Left, 0, x(9), y(20)); };
    score().Polyphonics.set(1, 1, 1);
    hand.MusicBox_MouseDown(MouseButton::Left, 0, x(1), y(10));
    hand.MusicBox_MouseUp(MouseButton::Left, 0, x(2), y(10));
    EXPECT_THAT(cells(0, 4), ElementsAre(-1, 52, 1052, -1));
    EXPECT_FALSE(hand.stroke().PressActive);
    EXPECT_THAT(soundingAfter(listening.words()), IsEmpty());
}

TEST_F(TableauInputTest, ASecondPressOfTheButtonEndsTheStrokeBefore) {
    press(1, 10);
    press(5, 20);
    release(5, 20);
    EXPECT_EQ(cell(0, 1), 52);
    EXPECT_EQ(cell(0, 5), 62);
    EXPECT_THAT(sounding(), IsEmpty());
}

TEST_F(TableauInputTest, ARightPressDuringAStrokeDoesNotDisturbIt) {
    draw(2, 2, 0);
    press(1, 10);
    press(2, 10, kRight);
    release(2, 10, kRight);
    EXPECT_EQ(cell(0, 2), kTop);
    release(1, 10);
    EXPECT_EQ(cell(0, 1), 52);
}

TEST_F(TableauInputTest, AStrokeBelongsToTheModeAndTheChannelOfItsPress) {
    press(1, 10);
    view().MouseMode = Mouse::Select;
    workspace().selectChannel(3);
    release(2, 10);
    EXPECT_THAT(cells(0, 4), ElementsAre(-1, 52, 1052, -1));
    EXPECT_THAT(sounding(), IsEmpty());
}

TEST_F(TableauInputTest, AViewScrolledDuringAStrokeLeavesTheNoteWhereItWasPressed) {
    press(10, 10);
    view().ViewFirstColumn += 4;
    view().ViewTopRow -= 2;
    drag(8, 12);
    EXPECT_THAT(screen().callsOf("drawBand").back(), "drawBand 0 12 6 8");
    release(8, 12);
    EXPECT_EQ(cell(0, 10), 52);
    EXPECT_EQ(cell(0, 12), 1052);
}

TEST_F(TableauInputTest, AReleaseRightAfterScrollingFollowsTheView) {
    press(10, 10);
    view().ViewFirstColumn += 4;
    release(8, 10);
    EXPECT_THAT(screen().callsOf("GetRow").back(), "GetRow 0 10");
    EXPECT_EQ(cell(0, 10), 52);
    EXPECT_EQ(cell(0, 12), 1052);
    EXPECT_EQ(cell(0, 13), -1);
}

// Playing

TEST_F(TableauInputTest, PlayingRefusesAllStrokesButNotTheChannelChange) {
    workspace().play.Playing = true;
    workspace().selectChannel(8);
    draw(1, 3, 10);
    EXPECT_EQ(score().ActiveChannel, 0);
    EXPECT_THAT(cells(0, 5), testing::Each(-1));
    EXPECT_THAT(port().notes(), IsEmpty());
}

TEST_F(TableauInputTest, PlayingThatStartsDuringAStrokeEndsItsNoteAndNothingElse) {
    press(1, 10);
    workspace().play.Playing = true;
    drag(3, 10);
    release(3, 10);
    EXPECT_THAT(cells(0, 5), testing::Each(-1));
    EXPECT_THAT(sounding(), IsEmpty());
    EXPECT_NE(port().words().back(), RecordingPort::kReset) << "that would silence the playing, too";
    EXPECT_EQ(screen().pointer(Box::MusicBox), Pointer::Arrow);
    workspace().play.Playing = false;
    port().sent.clear();
    press(1, 10);
    EXPECT_EQ(port().notes().size(), 1U) << "it has ended once and for all";
}

// Undo

TEST_F(TableauInputTest, UndoReturnsToTheStateBeforeTheStroke) {
    draw(1, 3, 20);
    draw(2, 5, 10);
    EXPECT_TRUE(workspace().undoLast());
    EXPECT_THAT(cells(0, 6), ElementsAre(-1, 62, 1062, 1062, -1, -1));
}

TEST_F(TableauInputTest, ARightDragIsOneStepToUndo) {
    draw(1, 2, 20);
    draw(3, 4, 21);
    const int before = workspace().undo.snapshots;
    press(1, 0, kRight);
    drag(3, 0, kRight);
    release(3, 0, kRight);
    EXPECT_THAT(cells(0, 6), testing::Each(-1));
    EXPECT_EQ(workspace().undo.snapshots, before + 1);
    EXPECT_TRUE(workspace().undoLast());
    EXPECT_THAT(cells(0, 6), ElementsAre(-1, 62, 1062, 63, 1063, -1));
}

TEST_F(TableauInputTest, ARightClickOnNothingKeepsTheStepToUndo) {
    draw(1, 2, 20);
    const int before = workspace().undo.snapshots;
    rightClick(9);
    EXPECT_EQ(workspace().undo.snapshots, before);
}
