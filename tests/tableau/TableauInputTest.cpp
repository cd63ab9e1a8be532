// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/TableauInput.h"

#include "tests/sound/RealtimeWatch.h"
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

// What is shown

TEST_F(TableauInputTest, TheStripIsSavedAndTheBallDrawnAtThePress) {
    press(4, 10);
    EXPECT_EQ(screen().count("GetRow 0 10"), 1);
    EXPECT_EQ(screen().count("drawPressBall 10 4"), 1);
    EXPECT_EQ(screen().pointer(Box::MusicBox), Pointer::Pencil);
    release(4, 10);
    EXPECT_EQ(screen().pointer(Box::MusicBox), Pointer::Arrow);
}

TEST_F(TableauInputTest, TraditionalNotationHasNoBall) {
    view().Notationstyle = 1;
    draw(4, 6, 10);
    EXPECT_THAT(screen().callsOf("drawPressBall"), IsEmpty());
    EXPECT_EQ(screen().count("drawBand 0 10 4 6"), 1);
}

TEST_F(TableauInputTest, TheBandIsDrawnOverTheSavedStripAndOnlyForANewColumn) {
    press(4, 10);
    screen().calls.clear();
    drag(6, 10);
    drag(6, 10);
    EXPECT_THAT(screen().calls, ElementsAre("PutRow 0 10", "drawBand 0 10 4 6", "drawPressBall 10 4"));
    drag(5, 10);
    EXPECT_EQ(screen().calls.back(), "drawPressBall 10 4");
    EXPECT_EQ(screen().count("drawBand 0 10 4 5"), 1);
}

TEST_F(TableauInputTest, ADragNeverRepaintsTheScore) {
    press(4, 10);
    screen().calls.clear();
    drag(20, 10);
    EXPECT_THAT(screen().callsOf("DrawNoteArray"), IsEmpty());
}

TEST_F(TableauInputTest, ADragStepTakesNoMemory) {
    press(4, 10);
    screen().quiet = true;
    const RealtimeWatch watch;
    for (int column = 5; column < 50; ++column)
        drag(column, 10);
    EXPECT_EQ(watch.memoryCalls(), 0U);
}

TEST_F(TableauInputTest, ThePressShowsTheEffectsOfItsPosition) {
    score().Modulation_Change.set(0, 3, 1);
    score().Pan_Change.set(0, 3, 60);
    score().Reverb_Change.set(0, 3, 3);
    score().Chorus_Change.set(0, 3, 4);
    press(2, 0);
    EXPECT_EQ(screen().count("showEffects 1 -4 3 4"), 1);
}

TEST_F(TableauInputTest, TheReleaseShowsTheNewNoteAndTheSongsEnd) {
    score().SongEnd = 7;
    screen().calls.clear();
    draw(2, 5, 10);
    EXPECT_EQ(screen().count("doNotemod 2"), 1);
    EXPECT_EQ(screen().count("setScrollMaximum " + std::to_string(2 * view().ViewColumns + 7)), 1)
        << "the song's end before the note";
    EXPECT_EQ(screen().count("showNote 2"), 1);
    EXPECT_EQ(screen().shown.number, "3");
    EXPECT_EQ(screen().count("showSongEnd 6"), 1);
    EXPECT_EQ(screen().calls.back(), "DrawNoteArray");
}

TEST_F(TableauInputTest, AStrokeClearsTheMarksAndLeavesItsLastColumnAsSelectEnd) {
    view().SelectStart = 3;
    view().SelectEnd = 8;
    view().PlayMark = 3;
    view().ViewFirstColumn = 10;
    press(2, 10);
    EXPECT_EQ(view().SelectStart, -1);
    EXPECT_EQ(view().SelectEnd, -1);
    EXPECT_EQ(view().PlayMark, 0);
    release(5, 10);
    EXPECT_EQ(view().SelectStart, -1);
    EXPECT_EQ(view().SelectEnd, 5);
}

TEST_F(TableauInputTest, TheLastColumnOfTheViewReachesAsFarAsTheStroke) {
    view().ViewColumns = 20;
    view().ViewLastColumn = 20;
    press(5, 0);
    EXPECT_EQ(view().ViewLastColumn, 20);
    release(5, 0);
    press(22, 0);
    EXPECT_EQ(view().ViewLastColumn, 22);
    drag(25, 0);
    EXPECT_EQ(view().ViewLastColumn, 25);
    release(5, 0);
    EXPECT_EQ(view().ViewLastColumn, 25);
    draw(3, 4, 0);
    EXPECT_EQ(view().ViewLastColumn, 20);
}

TEST_F(TableauInputTest, TheLastColumnOfTheViewStaysTenBeforeTheEnd) {
    view().ViewFirstColumn = 150;
    view().ViewColumns = 45;
    draw(3, 44, 0);
    EXPECT_EQ(view().ViewLastColumn, 190);
}

TEST_F(TableauInputTest, AnEditLetsPlayingVisitTheChannel) {
    workspace().selectChannel(5);
    draw(1, 2, 10);
    EXPECT_EQ(score().TopChannel, 6);
    EXPECT_EQ(score().TopMelodyHint, 5);
    workspace().selectChannel(2);
    draw(1, 2, 10);
    EXPECT_EQ(score().TopChannel, 6);
    EXPECT_EQ(score().TopMelodyHint, 5);
}

TEST_F(TableauInputTest, ANoteInPositionZeroStaysVisible) {
    workspace().selectChannel(3);
    draw(0, 0, 10);
    EXPECT_TRUE(score().ChannelInUse[3]);
    EXPECT_TRUE(score().ChannelShown[3]);
    EXPECT_EQ(score().SongEnd, 0);
}

TEST_F(TableauInputTest, ADragDisplacesTheFirstFiveCellsOfAnEarlierCopy) {
    putNotes(score(), 0, 70, 6);
    score().Volume.set(0, 3, 44);
    score().ClipNoteCell.set(0, 5, 99);
    press(2, 10);
    drag(4, 10);
    EXPECT_EQ(score().ClipNoteCell.at(0, 0), 70);
    EXPECT_EQ(score().ClipNoteCell.at(0, 3), 1070);
    EXPECT_EQ(score().ClipNoteCell.at(0, 5), 99);
    EXPECT_EQ(score().ClipVolume.at(0, 1), 44);
}

TEST_F(TableauInputTest, APressWithoutADragKeepsTheCopy) {
    score().ClipNoteCell.set(0, 0, 99);
    press(2, 10);
    release(4, 10);
    EXPECT_EQ(score().ClipNoteCell.at(0, 0), 99);
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

// The right button

TEST_F(TableauInputTest, ARightClickOnAContinuationErasesTheWholeNote) {
    draw(1, 4, 20);
    draw(5, 6, 20);
    rightClick(3);
    EXPECT_THAT(cells(0, 8), ElementsAre(-1, -1, -1, -1, -1, 62, 1062, -1));
    EXPECT_EQ(score().NoteInstrument.at(0, 1), 0);
    EXPECT_EQ(score().NoteInstrument.at(0, 4), 0);
}

TEST_F(TableauInputTest, AnErasedNoteTakesItsChordAndEffectsWithItButNotItsVolume) {
    draw(1, 2, 20);
    for (const int position : {1, 2}) {
        score().Polyphonics.set(1, position, 3);
        score().Pan_Change.set(0, position + 1, 9);
        score().Reverb_Change.set(0, position + 1, 9);
        score().Volume.set(0, position + 1, 9);
    }
    rightClick(1);
    for (const int position : {1, 2}) {
        EXPECT_EQ(chordAt(position), 0);
        EXPECT_EQ(score().Pan_Change.at(0, position + 1), 64);
        EXPECT_EQ(score().Reverb_Change.at(0, position + 1), 0);
        EXPECT_EQ(score().Volume.at(0, position + 1), 9);
    }
}

TEST_F(TableauInputTest, TheReleaseOfTheRightButtonRepaints) {
    draw(1, 2, 20);
    press(1, 0, kRight);
    EXPECT_EQ(input().stroke().ViewCol, 1);
    screen().calls.clear();
    release(1, 0, kRight);
    EXPECT_THAT(screen().calls, ElementsAre("doNotemod 1", "drawPolynoteBar", "DrawNoteArray"));
}

TEST_F(TableauInputTest, AHeadOnRowZeroCannotBeErased) {
    view().ViewTopRow = 0;
    draw(1, 1, 0);
    rightClick(1);
    EXPECT_EQ(cell(0, 1), 0);
}

TEST_F(TableauInputTest, AHeadOnRowZeroThatHasAChordCanBeErased) {
    view().ViewTopRow = 0;
    draw(1, 1, 0);
    score().Polyphonics.set(1, 1, 1);
    rightClick(1);
    EXPECT_EQ(cell(0, 1), -1);
    EXPECT_EQ(chordAt(1), 0);
}

TEST_F(TableauInputTest, AnOrphanContinuationIsErasedWithoutHarm) {
    score().NoteCell.set(0, 0, 1060);
    score().NoteCell.set(0, 1, 1060);
    score().Pan_Change.set(0, 0, 11);
    rightClick(1);
    EXPECT_THAT(cells(0, 2), ElementsAre(-1, -1));
    EXPECT_EQ(score().Pan_Change.at(0, 0), 11) << "belongs to no position";
}

TEST_F(TableauInputTest, ARightDragErasesEveryNoteThatItCrosses) {
    putNotes(score(), 0, 70, 4, 3);
    press(1, 0, kRight);
    drag(4, 3, kRight);
    drag(7, 90, kRight);
    EXPECT_THAT(cells(0, 12), ElementsAre(-1, -1, -1, -1, -1, -1, -1, -1, -1, 70, 1070, 1070));
}

TEST_F(TableauInputTest, ARightDragOutOfTheBoxToTheLeftErasesNothingMore) {
    putNotes(score(), 0, 70, 6, 3);
    view().ViewFirstColumn = 6;
    press(4, 0, kRight);
    input().MusicBox_MouseMove(kRight, 0, -4, 3);
    EXPECT_EQ(cell(0, 5), 1070);
    EXPECT_EQ(cell(0, 6), 70);
}

TEST_F(TableauInputTest, InMenuModeTheRightButtonOpensTheEditMenuAndErasesNothing) {
    draw(1, 2, 20);
    view().RightClickMode = RightClick::Menu;
    press(1, 0, kRight);
    drag(2, 0, kRight);
    EXPECT_EQ(screen().count("openEditMenu"), 1);
    EXPECT_EQ(cell(0, 1), 62);
    EXPECT_FALSE(input().stroke().PressActive) << "the menu takes the release";
}

TEST_F(TableauInputTest, InTipsModeTheRightButtonShowsTheTipAndNothingElse) {
    draw(1, 2, 20);
    view().RightClickMode = RightClick::Tips;
    screen().calls.clear();
    press(1, 0, kRight);
    drag(2, 0, kRight);
    release(2, 0, kRight);
    EXPECT_THAT(screen().calls, ElementsAre("showTip 0"));
    EXPECT_EQ(cell(0, 1), 62);
}

TEST_F(TableauInputTest, InPolyphonicModeTheRightButtonGivesTheNoteItsChordAndErasesNothing) {
    draw(1, 4, 20);
    view().RightClickMode = RightClick::Polyphonic;
    workspace().setup.Combo3 = 5;
    score().Pan_Change.set(0, 3, 9);
    rightClick(3);
    EXPECT_EQ(chordAt(1), 5);
    EXPECT_EQ(chordAt(3), 5);
    EXPECT_EQ(chordAt(2), 0);
    EXPECT_THAT(cells(0, 5), ElementsAre(-1, 62, 1062, 1062, 1062));
    EXPECT_EQ(score().Pan_Change.at(0, 3), 9);
    EXPECT_GE(screen().count("drawPolynoteBar"), 1);
    EXPECT_TRUE(workspace().undoLast());
}

TEST_F(TableauInputTest, WithNoteEffectsTheRightButtonAppliesThemToTheHeadAndErasesNothing) {
    draw(1, 3, 20);
    view().NoteEffectsOn = true;
    score().Reverb_Change.set(0, 2, 9);
    score().Reverb_Change.set(0, 3, 9);
    press(2, 0, kRight);
    EXPECT_EQ(screen().count("applyNoteEffects 1"), 1);
    EXPECT_THAT(cells(0, 4), ElementsAre(-1, 62, 1062, 1062));
    EXPECT_EQ(score().Reverb_Change.at(0, 2), 9) << "the head keeps its own";
    EXPECT_EQ(score().Reverb_Change.at(0, 3), 0) << "the walk to it resets what it passes";
    release(2, 0, kRight);
    EXPECT_EQ(port().words().back(), RecordingPort::kReset);
}

TEST_F(TableauInputTest, AnAppliedEffectEndsEvenIfTheToolIsLeftMeanwhile) {
    draw(1, 3, 20);
    view().NoteEffectsOn = true;
    press(2, 0, kRight);
    view().NoteEffectsOn = false;
    port().sent.clear();
    input().cancel();
    EXPECT_THAT(port().words(), ElementsAre(RecordingPort::kReset));
}

TEST_F(TableauInputTest, ARightDragAppliesEffectsOnceAMove) {
    putNotes(score(), 0, 70, 3, 2);
    view().NoteEffectsOn = true;
    press(0, 0, kRight);
    drag(2, 0, kRight);
    drag(4, 0, kRight);
    EXPECT_THAT(screen().callsOf("applyNoteEffects"),
                ElementsAre("applyNoteEffects 0", "applyNoteEffects 2", "applyNoteEffects 4"));
}

// The edge

TEST_F(TableauInputTest, AStrokeEndsItselfAtTheEdgeAndScrollsByOneColumn) {
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

TEST_F(TableauInputTest, AfterTheEdgeANewStrokeMustBeStarted) {
    press(90, 10);
    drag(99, 10);
    drag(99, 10);
    drag(95, 10);
    release(95, 10);
    EXPECT_THAT(screen().callsOf("advanceScroll"), SizeIs(1));
    EXPECT_EQ(cell(0, 91), 1052);
    EXPECT_EQ(cell(0, 100), -1);
}

TEST_F(TableauInputTest, ARightDragAtTheEdgeScrollsByFive) {
    press(90, 10, kRight);
    drag(99, 10, kRight);
    drag(99, 10, kRight);
    EXPECT_EQ(screen().toolText, "Scroll to next page");
    EXPECT_THAT(screen().callsOf("advanceScroll"), ElementsAre("advanceScroll 5"));
}

TEST_F(TableauInputTest, AHandThatOnlyPointsAtTheEdgeScrollsNothing) {
    drag(99, 10, MouseButton::None);
    drag(99, 10);
    EXPECT_THAT(screen().callsOf("advanceScroll"), IsEmpty());
}

// Cursor and Select

TEST_F(TableauInputTest, InCursorModeALeftPressSetsThePlayMark) {
    view().MouseMode = Mouse::Cursor;
    view().ViewFirstColumn = 20;
    press(3, 10);
    EXPECT_EQ(view().PlayMark, 23);
    EXPECT_EQ(screen().count("DrawNoteArray"), 1);
    EXPECT_EQ(screen().pointer(Box::MusicBox), Pointer::Cursor);
    release(3, 10);
    EXPECT_EQ(view().PlayMark, 23);
    EXPECT_THAT(port().words(), IsEmpty());
    EXPECT_EQ(cell(0, 23), -1);
}

TEST_F(TableauInputTest, InCursorModeTheRightButtonOpensTheEditMenu) {
    view().MouseMode = Mouse::Cursor;
    view().PlayMark = 9;
    press(3, 10, kRight);
    EXPECT_EQ(screen().count("openEditMenu"), 1);
    EXPECT_EQ(view().PlayMark, 9);
}

TEST_F(TableauInputTest, ASelectionReachesFromPressToRelease) {
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

TEST_F(TableauInputTest, ASelectionNeverEndsBeforeItsStart) {
    view().MouseMode = Mouse::Select;
    press(9, 10);
    release(3, 10);
    EXPECT_EQ(view().SelectEnd, 9);
}

TEST_F(TableauInputTest, AFirstOrEarlierSelectionIsBegunWithAnEdge) {
    view().MouseMode = Mouse::Select;
    press(9, 10);
    EXPECT_THAT(screen().calls, ElementsAre("GetBox", "drawSelectEdge 9", "DrawNoteArray"));
    release(9, 10);
    screen().calls.clear();
    press(4, 10);
    EXPECT_THAT(screen().calls, ElementsAre("GetBox", "drawSelectEdge 4", "DrawNoteArray"));
}

TEST_F(TableauInputTest, ALaterSelectionIsBegunWithTheStripOfTheLastPaint) {
    view().MouseMode = Mouse::Select;
    press(4, 10);
    release(4, 10);
    screen().calls.clear();
    press(9, 10);
    EXPECT_THAT(screen().calls, ElementsAre("DrawNoteArray", "GetBox", "blendSelectStrip"));
}

TEST_F(TableauInputTest, TheSelectionGrowsAndShrinksOverTheSavedTableau) {
    view().MouseMode = Mouse::Select;
    press(4, 10);
    screen().calls.clear();
    drag(8, 10);
    drag(6, 10);
    EXPECT_THAT(screen().calls, ElementsAre("PutBox", "drawSelectDrag 4 8", "PutBox", "drawSelectDrag 4 6"));
}

TEST_F(TableauInputTest, ASelectionDraggedAtTheEdgeScrollsOnAndKeepsItsStart) {
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

TEST_F(TableauInputTest, InSelectModeTheRightButtonOpensTheEditMenuAndThenClearsTheMarks) {
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
    EXPECT_EQ(screen().calls.back(), "DrawNoteArray");
}

// The static test

TEST_F(TableauInputTest, TheStaticTestPlaysTheNoteUnderTheMouseAndDrawsNothing) {
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

TEST_F(TableauInputTest, TheStaticTestSoundsAnEmptyPlaceAsItsRowAlone) {
    view().Check4 = true;
    press(2, 10);
    EXPECT_THAT(sounding(), ElementsAre(Pair(0, 75)));
}

TEST_F(TableauInputTest, TheStaticTestPlaysANoteWithItsOwnInstrumentIfNoteEffectsAreOn) {
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

TEST_F(TableauInputTest, TheStaticTestErasesNothing) {
    putNotes(score(), 0, 70, 1, 3);
    view().Check4 = true;
    rightClick(1);
    EXPECT_THAT(cells(0, 3), ElementsAre(70, 1070, 1070));
}

TEST_F(TableauInputTest, TheStaticTestLeavesAMutedChannelSilent) {
    putNotes(score(), 0, 70, 1, 3);
    score().ChannelMuted[0] = true;
    view().Check4 = true;
    press(1, 10);
    EXPECT_THAT(port().words(), IsEmpty());
}

TEST_F(TableauInputTest, TheStaticTestComesBeforeTheMode) {
    view().Check4 = true;
    view().MouseMode = Mouse::Select;
    press(2, 10);
    EXPECT_THAT(sounding(), SizeIs(1));
    EXPECT_EQ(view().SelectStart, -1);
    release(2, 10);
    EXPECT_THAT(sounding(), IsEmpty());
}

// The tool text

TEST_F(TableauInputTest, TheToolTextNamesTheCellUnderTheMouse) {
    putNotes(score(), 0, 67, 1, 2);
    score().NoteInstrument.set(0, 1, 0);
    drag(1, 30, MouseButton::None);
    EXPECT_EQ(screen().toolCaption, "Note-Instrument");
    EXPECT_EQ(screen().toolText, "Acoustic Grand Piano - 5C");
    drag(2, 30, MouseButton::None);
    EXPECT_EQ(screen().toolText, "");
}

TEST_F(TableauInputTest, TheToolTextLivesOnWhilePlaying) {
    putNotes(score(), 0, 67, 1, 2);
    workspace().play.Playing = true;
    drag(0, 30, MouseButton::None);
    EXPECT_THAT(screen().toolText, testing::EndsWith(" - 5C"));
}
