// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/NoteReadout.h"

#include "tests/composition/WorkspaceFixture.h"

#include <gmock/gmock.h>

using namespace velmora;

namespace {

struct NoteReadoutTest : WorkspaceFixture {
    NoteReadoutTest() { store("NumNotes", "100"); }
};

} // namespace

TEST_F(NoteReadoutTest, ANoteIsToldByNumberNameVolumeInstrumentAndChord) {
    workspace().selectChannel(2);
    score().ChannelInstrument[2] = 40;
    putNotes(score(), 2, 67, 2, 3);
    score().Volume.set(2, 5, 90);
    score().Polyphonics.set(3, 4, 1);
    EXPECT_EQ(readNote(score(), 4), (NoteReadout{"5", "5C", "90", "Violin", "Major"}));
}

TEST_F(NoteReadoutTest, ANoteWithoutAChordIsASingleNote) {
    putNotes(score(), 0, 67, 1);
    EXPECT_EQ(readNote(score(), 0).chord, "Single Note");
}

TEST_F(NoteReadoutTest, ABlankCellIsToldSo) {
    const NoteReadout note = readNote(score(), 9);
    EXPECT_EQ(note, (NoteReadout{"10", " -", "127", "Blank Note", "-"}));
}

TEST_F(NoteReadoutTest, PercussionHasNoNameAndNoChord) {
    workspace().selectChannel(10);
    score().ChannelInstrument[10] = 128;
    putNotes(score(), 10, 50, 1);
    EXPECT_EQ(readNote(score(), 1), (NoteReadout{"2", "-", "127", "Acoustic Bass Drum", ""}));
}

TEST_F(NoteReadoutTest, LookingAtANoteChangesNothing) {
    putNotes(score(), 0, 67, 1);
    score().Reverb_Change.set(0, 1, 9);
    Pic2a_MouseDown(workspace(), 0);
    EXPECT_EQ(score().Reverb_Change.at(0, 1), 9);
}

TEST_F(NoteReadoutTest, LookingAtABlankCellResetsItsFourEffects) {
    for (ChannelGrid* grid : {&score().Modulation_Change, &score().Pan_Change, &score().Reverb_Change,
                              &score().Chorus_Change, &score().Volume})
        grid->set(0, 6, 9);
    EXPECT_EQ(Pic2a_MouseDown(workspace(), 5).name, " -");
    EXPECT_EQ(score().Modulation_Change.at(0, 6), 0);
    EXPECT_EQ(score().Pan_Change.at(0, 6), 64);
    EXPECT_EQ(score().Reverb_Change.at(0, 6), 0);
    EXPECT_EQ(score().Chorus_Change.at(0, 6), 0);
    EXPECT_EQ(score().Volume.at(0, 6), 9);
}

TEST_F(NoteReadoutTest, APlaceOutsideTheScoreIsBlank) {
    EXPECT_EQ(Pic2a_MouseDown(workspace(), 101).inst, "Blank Note");
    EXPECT_EQ(Pic2a_MouseDown(workspace(), -1).inst, "Blank Note");
}

TEST_F(NoteReadoutTest, TheToolTextLineLinesItsNumbersUp) {
    EXPECT_EQ(noteLine({"12", "5C", "90", "Violin", ""}), "Note: 12       Vol: 90      Inst: Violin");
    EXPECT_EQ(noteLine({"1", " -", "0", "Blank Note", "-"}), "Note: 1       Vol:       Inst: Blank Note");
}

TEST_F(NoteReadoutTest, AChannelIsToldByTheNumberOnItsSquare) {
    for (const auto& [channel, square] : {std::pair{0, "1"}, {7, "8"}, {8, "9"}, {10, "10"}, {12, "12"}})
        EXPECT_EQ(trackOf(channel, Manners::careful()), square);
}

TEST_F(NoteReadoutTest, InClassicMannerPercussionCountsOnPastMidisDrumChannel) {
    for (const auto& [channel, track] : {std::pair{0, "1"}, {7, "8"}, {8, "9"}, {10, "11"}, {12, "13"}})
        EXPECT_EQ(trackOf(channel, Manners::classic()), track);
}
