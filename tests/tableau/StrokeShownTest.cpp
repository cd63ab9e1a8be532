// SPDX-License-Identifier: GPL-2.0-or-later
// What a stroke on `MusicBox` shows while it lasts and after it.
#include "tableau/TableauInput.h"

#include "tests/sound/RealtimeWatch.h"
#include "tests/tableau/GestureFixture.h"

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using StrokeShownTest = GestureFixture;

} // namespace

// What is shown

TEST_F(StrokeShownTest, TheStripIsSavedAndTheBallDrawnAtThePress) {
    press(4, 10);
    EXPECT_EQ(screen().count("GetRow 0 10"), 1);
    EXPECT_EQ(screen().count("drawPressBall 10 4"), 1);
    EXPECT_EQ(screen().pointer(Box::MusicBox), Pointer::Pencil);
    release(4, 10);
    EXPECT_EQ(screen().pointer(Box::MusicBox), Pointer::Arrow);
}

TEST_F(StrokeShownTest, TraditionalNotationHasNoBall) {
    view().Notationstyle = 1;
    draw(4, 6, 10);
    EXPECT_THAT(screen().callsOf("drawPressBall"), IsEmpty());
    EXPECT_EQ(screen().count("drawBand 0 10 4 6"), 1);
}

TEST_F(StrokeShownTest, TheBandIsDrawnOverTheSavedStripAndOnlyForANewColumn) {
    press(4, 10);
    screen().calls.clear();
    drag(6, 10);
    drag(6, 10);
    EXPECT_THAT(screen().calls, ElementsAre("PutRow 0 10", "drawBand 0 10 4 6", "drawPressBall 10 4"));
    drag(5, 10);
    EXPECT_EQ(screen().calls.back(), "drawPressBall 10 4");
    EXPECT_EQ(screen().count("drawBand 0 10 4 5"), 1);
}

TEST_F(StrokeShownTest, ADragNeverRepaintsTheScore) {
    press(4, 10);
    screen().calls.clear();
    drag(20, 10);
    EXPECT_THAT(screen().callsOf("melody"), IsEmpty());
}

TEST_F(StrokeShownTest, ADragStepTakesNoMemory) {
    press(4, 10);
    screen().quiet = true;
    const RealtimeWatch watch;
    for (int column = 5; column < 50; ++column)
        drag(column, 10);
    EXPECT_EQ(watch.memoryCalls(), 0U);
}

TEST_F(StrokeShownTest, ThePressShowsTheEffectsOfItsPosition) {
    score().Modulation_Change.set(0, 3, 1);
    score().Pan_Change.set(0, 3, 60);
    score().Reverb_Change.set(0, 3, 3);
    score().Chorus_Change.set(0, 3, 4);
    press(2, 0);
    EXPECT_EQ(screen().count("showEffects 1 -4 3 4"), 1);
}

TEST_F(StrokeShownTest, TheReleaseShowsTheNewNoteAndTheSongsEnd) {
    score().SongEnd = 7;
    screen().calls.clear();
    draw(2, 5, 10);
    EXPECT_EQ(screen().count("doNotemod 2"), 1);
    EXPECT_EQ(screen().count("setScrollMaximum " + std::to_string(2 * view().ViewColumns + 7)), 1)
        << "the song's end before the note";
    EXPECT_EQ(screen().count("showNote 2"), 1);
    EXPECT_EQ(screen().shown.number, "3");
    EXPECT_EQ(score().SongEnd, 6);
    EXPECT_EQ(screen().calls.back(), "melody");
}

TEST_F(StrokeShownTest, AStrokeClearsTheMarksAndLeavesItsLastColumnAsSelectEnd) {
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

TEST_F(StrokeShownTest, TheLastColumnOfTheViewReachesAsFarAsTheStroke) {
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

TEST_F(StrokeShownTest, TheLastColumnOfTheViewStaysTenBeforeTheEnd) {
    view().ViewFirstColumn = 150;
    view().ViewColumns = 45;
    draw(3, 44, 0);
    EXPECT_EQ(view().ViewLastColumn, 190);
}

TEST_F(StrokeShownTest, AnEditLetsPlayingVisitTheChannel) {
    workspace().selectChannel(5);
    draw(1, 2, 10);
    EXPECT_EQ(score().TopChannel, 6);
    EXPECT_EQ(score().TopMelodyHint, 5);
    workspace().selectChannel(2);
    draw(1, 2, 10);
    EXPECT_EQ(score().TopChannel, 6);
    EXPECT_EQ(score().TopMelodyHint, 5);
}

TEST_F(StrokeShownTest, ANoteInPositionZeroStaysVisible) {
    workspace().selectChannel(3);
    draw(0, 0, 10);
    EXPECT_TRUE(score().ChannelInUse[3]);
    EXPECT_TRUE(score().ChannelShown[3]);
    EXPECT_EQ(score().SongEnd, 0);
}

TEST_F(StrokeShownTest, ADragDisplacesTheFirstFiveCellsOfAnEarlierCopy) {
    putNotes(score(), 0, 70, 6);
    score().Volume.set(0, 3, 44);
    for (int position = 2; position <= 7; ++position)
        score().Polyphonics.set(1, position, static_cast<std::int16_t>(position - 1));
    for (ChannelGrid* clip : {&score().ClipNoteCell, &score().ClipPolyphonics})
        for (int row = 0; row < ChannelGrid::kChannels; ++row)
            clip->fillRow(row, 99);
    press(2, 10);
    drag(4, 10);
    const auto firstSix = [](const ChannelGrid& clip, int row) {
        return std::vector<int>(clip.row(row).begin(), clip.row(row).begin() + 6);
    };
    EXPECT_THAT(firstSix(score().ClipNoteCell, 0), ElementsAre(70, 1070, 70, 1070, 70, 99));
    EXPECT_THAT(firstSix(score().ClipPolyphonics, 1), ElementsAre(1, 2, 3, 4, 5, 99));
    EXPECT_THAT(firstSix(score().ClipPolyphonics, 0), testing::Each(99)) << "row 0 is no channel's";
    EXPECT_EQ(score().ClipVolume.at(0, 1), 44);
}

TEST_F(StrokeShownTest, APressWithoutADragKeepsTheCopy) {
    score().ClipNoteCell.set(0, 0, 99);
    press(2, 10);
    release(4, 10);
    EXPECT_EQ(score().ClipNoteCell.at(0, 0), 99);
}

// The tool text

TEST_F(StrokeShownTest, TheToolTextNamesTheCellUnderTheMouse) {
    putNotes(score(), 0, 67, 1, 2);
    score().NoteInstrument.set(0, 1, 0);
    drag(1, 30, MouseButton::None);
    EXPECT_EQ(screen().toolCaption, "Note-Instrument");
    EXPECT_EQ(screen().toolText, "Acoustic Grand Piano - 5C");
    drag(2, 30, MouseButton::None);
    EXPECT_EQ(screen().toolText, "");
}

TEST_F(StrokeShownTest, TheToolTextLivesOnWhilePlaying) {
    putNotes(score(), 0, 67, 1, 2);
    workspace().play.Playing = true;
    drag(0, 30, MouseButton::None);
    EXPECT_THAT(screen().toolText, testing::EndsWith(" - 5C"));
}
