// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/TableauInput.h"

#include "tests/tableau/GestureFixture.h"

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

constexpr auto kLeft = MouseButton::Left;
constexpr auto kRight = MouseButton::Right;

struct BeatInputTest : GestureFixture {
    static constexpr int beatY(int row) { return row * 12 + 3; }
    void beatPress(int column, int row, MouseButton button = kLeft) {
        input().Beatbox_MouseDown(button, 0, x(column), beatY(row));
    }
    void beatDrag(int column, int row, MouseButton button = kLeft) {
        input().Beatbox_MouseMove(button, 0, x(column), beatY(row));
    }
    void beatRelease(int column, int row, MouseButton button = kLeft) {
        input().Beatbox_MouseUp(button, 0, x(column), beatY(row));
    }
    void beat(int from, int to, int row) {
        beatPress(from, row);
        beatDrag(to, row);
        beatRelease(to, row);
    }
};

} // namespace

TEST_F(BeatInputTest, AStrokeWritesIntoThePercussionChannelAtTheRowOfThePress) {
    view().Line_Height = 8;
    beat(1, 3, 4);
    EXPECT_EQ(score().ActiveChannel, 8);
    EXPECT_THAT(cells(8, 5), ElementsAre(-1, 46, 1046, 1046, -1));
    EXPECT_THAT(cells(0, 5), testing::Each(-1));
}

TEST_F(BeatInputTest, AMelodyChannelGivesWayToTheLastPercussionChannel) {
    workspace().instruments.PercussionInstrument = 140;
    workspace().selectChannel(11);
    press(1, 1);
    release(1, 1);
    EXPECT_EQ(score().ActiveChannel, 0);
    score().ChannelIsDrum[11] = false;
    beatPress(5, 1);
    EXPECT_EQ(screen().callsOf("channel").back(), "channel 11");
    EXPECT_TRUE(score().ChannelIsDrum[11]);
    EXPECT_EQ(score().ChannelInstrument[11], 140);
    EXPECT_THAT(sounding(), ElementsAre(Pair(9, 140 - 93)));
}

TEST_F(BeatInputTest, APercussionChannelGivesWayToTheLastMelodyChannel) {
    workspace().selectChannel(5);
    beat(1, 1, 1);
    press(2, 2);
    EXPECT_EQ(screen().callsOf("channel").back(), "channel 5");
    EXPECT_EQ(score().ActiveChannel, 5);
}

TEST_F(BeatInputTest, TheFirstPercussionChannelIsTheOneToReturnToAtFirst) {
    EXPECT_EQ(input().LastMelodyChannel, 0);
    EXPECT_EQ(input().LastDrumChannel, 8);
}

TEST_F(BeatInputTest, AChannelKeepsItsInstrumentWhileItStaysTheActiveOne) {
    workspace().selectChannel(10);
    score().ChannelInstrument[10] = 150;
    beat(1, 1, 1);
    EXPECT_EQ(score().ChannelInstrument[10], 150);
    EXPECT_EQ(score().NoteInstrument.at(10, 1), 150);
}

TEST_F(BeatInputTest, ThePressFixesTheDrumHintAndLetsPlayingVisitTheChannel) {
    constexpr std::array<std::pair<int, int>, 4> kHints{{{8, 1}, {10, 2}, {11, 3}, {12, 4}}};
    for (const auto& [channel, hint] : kHints) {
        workspace().selectChannel(channel);
        score().TopDrumHint = 0;
        score().TopChannel = 1;
        beat(1, 1, 1);
        EXPECT_EQ(score().TopDrumHint, hint) << channel;
        EXPECT_EQ(score().TopChannel, channel);
    }
}

TEST_F(BeatInputTest, ABeatEndsWithItsStroke) {
    beatPress(1, 2);
    EXPECT_EQ(sounding().size(), 1U);
    beatRelease(1, 2);
    EXPECT_THAT(sounding(), IsEmpty());
    beatPress(1, 2);
    input().cancel();
    EXPECT_THAT(sounding(), IsEmpty());
    EXPECT_EQ(port().words().back(), RecordingPort::kReset);
}

TEST_F(BeatInputTest, ABandWithoutABallShrinksAgain) {
    beatPress(2, 3);
    screen().calls.clear();
    beatDrag(5, 3);
    beatDrag(4, 3);
    EXPECT_THAT(screen().calls,
                ElementsAre("PutRow 1 3", "drawBand 1 3 2 5", "PutRow 1 3", "drawBand 1 3 2 4"));
}

TEST_F(BeatInputTest, AMoveToAnotherRowPutsThePencilDown) {
    beatPress(2, 3);
    EXPECT_EQ(screen().pointer(Box::Beatbox), Pointer::Pencil);
    beatDrag(3, 3);
    EXPECT_EQ(screen().pointer(Box::Beatbox), Pointer::Pencil);
    beatDrag(4, 5);
    EXPECT_EQ(screen().pointer(Box::Beatbox), Pointer::Arrow);
    EXPECT_EQ(screen().callsOf("drawBand").back(), "drawBand 1 3 2 4") << "the row of the press";
}

TEST_F(BeatInputTest, APercussionStrokeTakesNoSnapshot) {
    beat(1, 3, 4);
    beatPress(2, 4, kRight);
    beatRelease(2, 4, kRight);
    EXPECT_THAT(cells(8, 4), testing::Each(-1));
    EXPECT_EQ(workspace().undo.snapshots, 0);
}

TEST_F(BeatInputTest, TheReleasePaintsThePercussionTableauAlone) {
    beatPress(1, 3);
    screen().calls.clear();
    beatRelease(2, 3);
    EXPECT_THAT(screen().callsOf("melody"), IsEmpty());
    EXPECT_EQ(screen().calls.back(), "beats");
}

TEST_F(BeatInputTest, AMarkThatAStrokeClearsDisappearsFromTheMelodyTableau) {
    view().PlayMark = 5;
    beatPress(1, 3);
    EXPECT_EQ(screen().count("marks"), 1);
    EXPECT_EQ(view().PlayMark, 0);
}

TEST_F(BeatInputTest, BeatMemoKeepsTheInstrumentLess128OfTheFirstPosition) {
    workspace().selectChannel(10);
    score().ChannelInstrument[10] = 133;
    beat(2, 4, 1);
    EXPECT_EQ(score().BeatMemo[3][3], 5);
    EXPECT_EQ(score().BeatMemo[3][4], 0);
}

TEST_F(BeatInputTest, ARightClickErasesTheWholeBeatAndItsMemoButNoEffects) {
    workspace().selectChannel(8);
    score().ChannelInstrument[8] = 133;
    beat(2, 4, 1);
    score().BeatMemo[1][4] = 5;
    score().Reverb_Change.set(8, 4, 9);
    beatPress(3, 1, kRight);
    beatRelease(3, 1, kRight);
    EXPECT_THAT(cells(8, 6), testing::Each(-1));
    EXPECT_EQ(score().NoteInstrument.at(8, 3), 0);
    EXPECT_EQ(score().BeatMemo[1][3], 0);
    EXPECT_EQ(score().BeatMemo[1][4], 0);
    EXPECT_EQ(score().Reverb_Change.at(8, 4), 9);
    EXPECT_EQ(screen().calls.back(), "beats");
}

TEST_F(BeatInputTest, InMenuModeTheRightButtonOpensTheFileMenu) {
    beat(2, 4, 1);
    view().RightClickMode = RightClick::Menu;
    beatPress(3, 1, kRight);
    EXPECT_EQ(screen().count("openFileMenu"), 1);
    EXPECT_EQ(screen().count("openEditMenu"), 0);
    EXPECT_EQ(cell(8, 3), 1043);
}

TEST_F(BeatInputTest, InTipsModeTheRightButtonShowsThePercussionTip) {
    view().RightClickMode = RightClick::Tips;
    beatPress(3, 1, kRight);
    EXPECT_THAT(screen().calls, ElementsAre("showTip 1"));
    EXPECT_EQ(score().ActiveChannel, 0);
}

TEST_F(BeatInputTest, PercussionTakesNoChordAndLosesNothingInPolyphonicMode) {
    beat(2, 4, 1);
    view().RightClickMode = RightClick::Polyphonic;
    workspace().setup.Combo3 = 4;
    beatPress(3, 1, kRight);
    beatRelease(3, 1, kRight);
    EXPECT_EQ(cell(8, 3), 1043);
    EXPECT_EQ(score().Polyphonics.at(9, 3), 0);
}

TEST_F(BeatInputTest, AStrokeEndsItselfAtTheEdge) {
    beatPress(95, 1);
    beatDrag(99, 1);
    EXPECT_EQ(cell(8, 95), 43);
    EXPECT_EQ(screen().calls.back(), "advanceScroll 1");
    EXPECT_THAT(sounding(), IsEmpty());
}

TEST_F(BeatInputTest, ARowPastThePitchesIsAPlaceForABeat) {
    view().ViewTopRow = 120;
    beat(1, 1, 10);
    EXPECT_EQ(cell(8, 1), 130);
}

TEST_F(BeatInputTest, TheStaticTestPlaysABeatAndEndsIt) {
    beat(1, 3, 4);
    score().NoteInstrument.set(8, 1, 150);
    score().NoteInstrument.set(8, 2, 150);
    view().Check4 = view().NoteEffectsOn = true;
    beatPress(2, 4);
    EXPECT_TRUE(sounding().contains({9, 150 - 93}));
    beatRelease(2, 4);
    EXPECT_THAT(sounding(), IsEmpty());
    view().NoteEffectsOn = false;
    beatPress(2, 4);
    beatRelease(2, 4);
    EXPECT_THAT(sounding(), IsEmpty());
}

TEST_F(BeatInputTest, TheMelodyTableauNamesNoBeatUnderTheMouse) {
    beat(1, 3, 4);
    drag(1, 4, MouseButton::None);
    EXPECT_EQ(screen().toolText, "");
    beatDrag(1, 4, MouseButton::None);
    EXPECT_THAT(screen().toolText, testing::HasSubstr(" - "));
}

TEST_F(BeatInputTest, WhereNoPercussionChannelCanBeTakenTheStrokeIsKeptAway) {
    input().LastDrumChannel = 9; // there is none
    beatPress(2, 5);
    beatRelease(2, 5);
    EXPECT_EQ(score().ActiveChannel, 0);
    EXPECT_TRUE(score().usedChannels().empty());
    EXPECT_THAT(port().words(), IsEmpty());
}

TEST_F(BeatInputTest, EachTableauNamesTheCellsOfItsChannelsUpToTheLast) {
    for (const int channel : {7, 8}) {
        workspace().selectChannel(channel);
        putNotes(score(), channel, 60, 1);
        drag(1, 4, MouseButton::None);
        EXPECT_EQ(screen().toolText.empty(), channel == 8);
        beatDrag(1, 4, MouseButton::None);
        EXPECT_EQ(screen().toolText.empty(), channel == 7);
    }
}

TEST_F(BeatInputTest, ABeatsStrokeEndsOnItsOwnTableau) {
    beatPress(1, 4);
    release(3, 4);
    EXPECT_TRUE(input().stroke().PressActive);
    beatRelease(2, 4, kRight);
    EXPECT_TRUE(input().stroke().PressActive);
    beatRelease(2, 4);
    EXPECT_THAT(cells(8, 4), ElementsAre(-1, 46, 1046, -1));
}

TEST_F(BeatInputTest, OfTheStaticTestsReleasesOnlyAMelodyChannelsIsSilence) {
    view().Check4 = true;
    for (const int channel : {7, 8}) {
        workspace().selectChannel(channel);
        port().sent.clear();
        channel == 7 ? release(2, 4) : beatRelease(2, 4);
        EXPECT_EQ(port().words().empty(), channel == 8);
    }
}
