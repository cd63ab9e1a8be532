// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/Score.h"

#include <gtest/gtest.h>

using namespace velmora;

TEST(ScoreTest, MidiNote60IsNamed5CAndStandsInRow67) {
    EXPECT_EQ(NoteNames()[67], "5C");
    EXPECT_EQ(NoteNames()[0], "10G");
    EXPECT_EQ(NoteNames()[127], "0C");
    EXPECT_EQ(NoteNames()[67 - 3], "5Eb");
}

TEST(ScoreTest, AContinuationAfterAnEmptyCellStillYieldsItsRow) {
    EXPECT_EQ(cellClass(1060), CellClass::Continuation);
    EXPECT_EQ(cellRow(1060), 60);
}

TEST(ScoreTest, AHeadOnRowZeroIsANote) {
    EXPECT_EQ(cellClass(0), CellClass::Head);
    EXPECT_EQ(cellClass(-1), CellClass::Empty);
    EXPECT_EQ(cellClass(999), CellClass::Head);
    EXPECT_EQ(cellClass(1000), CellClass::Continuation);
}

TEST(ScoreTest, ClearAllResetsEffectsAndLeavesInstrumentsOfChannels) {
    Score score(20);
    score.ChannelInstrument[3] = 40;
    score.Volume.set(2, 5, 12);
    score.Pan_Change.set(12, 20, 1);
    score.TopChannel = 9;
    score.TopDrumHint = 4;
    score.Tempo = 7;
    score.ClearAll();
    EXPECT_EQ(score.Volume, ChannelGrid(21, 127));
    EXPECT_EQ(score.Pan_Change, ChannelGrid(21, 64));
    EXPECT_EQ(score.ChannelInstrument[3], 40);
    EXPECT_EQ(score.TopChannel, 1);
    EXPECT_EQ(score.Tempo, 100);
}

TEST(ScoreTest, ClearNoteArraysLeavesTheEffectsAlone) {
    Score score(20);
    score.NoteCell.set(0, 3, 60);
    score.NoteInstrument.set(0, 3, 24);
    score.Polyphonics.set(1, 3, 2);
    score.Volume.set(0, 4, 99);
    score.ClearNoteArrays();
    EXPECT_EQ(score.NoteCell, ChannelGrid(21, -1));
    EXPECT_EQ(score.NoteInstrument, ChannelGrid(21, 0));
    EXPECT_EQ(score.Polyphonics, ChannelGrid(21, 0));
    EXPECT_EQ(score.Volume.at(0, 4), 99);
}

TEST(ScoreTest, ClearNoteArraysForgetsTheBeatsUpToTheTopDrumHint) {
    Score score(20);
    score.rememberBeat(8, 0, 128);
    score.rememberBeat(10, 0, 130);
    score.TopDrumHint = 1;
    score.ClearNoteArrays();
    EXPECT_EQ(score.BeatMemo[1][1], 0);
    EXPECT_EQ(score.BeatMemo[3][1], 130);
}

TEST(ScoreTest, BeatMemoLeavesOutWhatDoesNotFit) {
    Score score(20);
    const auto before = score.BeatMemo;
    score.rememberBeat(12, 0, 130);
    score.rememberBeat(8, 15, 130);
    score.rememberBeat(6, 3, 130);
    EXPECT_EQ(score.BeatMemo, before);
    score.rememberBeat(11, 14, 131);
    EXPECT_EQ(score.BeatMemo[4][15], 131);
}

TEST(ScoreTest, ClearThisArrayClearsOneChannelAndNoneForANegativeName) {
    Score score(20);
    score.NoteCell.set(0, 3, 60);
    score.NoteCell.set(1, 3, 61);
    score.ClearThisArray(-1);
    EXPECT_EQ(score.NoteCell.at(0, 3), 60);
    score.ClearThisArray(0);
    EXPECT_EQ(score.NoteCell.at(0, 3), -1);
    EXPECT_EQ(score.NoteCell.at(1, 3), 61);
}

TEST(ScoreTest, AChannelThatCanBeSelectedIsOneOfTheUsedOnesButIndexNine) {
    std::vector<int> channels;
    for (int channel = -2; channel < 20; ++channel) {
        if (isChannel(channel))
            channels.push_back(channel);
    }
    EXPECT_EQ(channels, (std::vector{0, 1, 2, 3, 4, 5, 6, 7, 8, 10, 11, 12}));
}

TEST(ScoreTest, SongEndIsOnePastTheLastCellOfAnyChannelThatIsNotMuted) {
    Score score(50);
    score.NoteCell.set(0, 10, 60);
    score.NoteCell.set(12, 50, 1060);
    score.FindEndOfSong();
    EXPECT_EQ(score.SongEnd, 51);
    EXPECT_TRUE(score.ChannelInUse[12]);
    EXPECT_TRUE(score.ChannelShown[12]);
    score.ChannelMuted[12] = true;
    score.FindEndOfSong();
    EXPECT_EQ(score.SongEnd, 11);
    EXPECT_EQ(noteCountText(score.SongEnd), "11 Notes");
}

TEST(ScoreTest, ASingleNoteInPosition0OfChannel2DoesNotCount) {
    Score score(50);
    score.NoteCell.set(2, 0, 60);
    score.ChannelInUse[2] = true;
    score.FindEndOfSong();
    EXPECT_EQ(score.SongEnd, 0);
    EXPECT_FALSE(score.ChannelInUse[2]);
}

TEST(ScoreTest, TheActiveChannelIsInUseUntilItIsFoundEmpty) {
    Score score(50);
    score.ActiveChannel = 0;
    score.FindEndOfSong();
    EXPECT_TRUE(score.ChannelInUse[0]);
    score.ActiveChannel = 3;
    score.FindEndOfSong();
    EXPECT_FALSE(score.ChannelInUse[3]);
}

TEST(ScoreTest, ResizingKeepsContentsAndLeavesFiveCopyBuffersAtTheirOldSize) {
    Score score(20);
    score.NoteCell.set(4, 20, 60);
    score.ClipNoteCell.set(4, 7, 61);
    score.resizeNotes(200000);
    EXPECT_EQ(score.NoteCell.at(4, 20), 60);
    EXPECT_EQ(score.NoteCell.at(4, 200000), -1);
    EXPECT_EQ(score.Volume.at(4, 200000), 127);
    EXPECT_EQ(score.Pan_Change.at(4, 200000), 64);
    EXPECT_EQ(score.ClipNoteCell.at(4, 7), 61);
    for (const ChannelGrid* kept :
         {&score.ClipVolume, &score.ClipModulation, &score.ClipPan, &score.ClipReverb, &score.ClipChorus})
        EXPECT_EQ(kept->positions(), 21);
    score.resizeNotes(10);
    EXPECT_EQ(score.NoteCell.positions(), 11);
}

TEST(ChannelGridTest, AccessOutsideTheGridIsSkipped) {
    ChannelGrid grid(5, 3);
    EXPECT_FALSE(grid.set(16, 0, 1));
    EXPECT_FALSE(grid.set(0, 5, 1));
    EXPECT_FALSE(grid.set(-1, 0, 1));
    EXPECT_FALSE(grid.set(0, -1, 1));
    EXPECT_EQ(grid.at(0, 5), std::nullopt);
    EXPECT_EQ(grid.valueOr(99, 0, -7), -7);
    EXPECT_TRUE(grid.row(16).empty());
    EXPECT_EQ(grid, ChannelGrid(5, 3));
}

TEST(ScoreTest, AChannelThatLostItsLastNoteIsNoLongerInUseUnlessItIsActive) {
    Score score(20);
    for (const int channel : {0, 1, 2})
        score.ChannelInUse[channel] = true;
    score.NoteCell.set(2, 20, 60);
    score.Isnotes();
    EXPECT_TRUE(score.ChannelInUse[0]) << "the active one";
    EXPECT_FALSE(score.ChannelInUse[1]);
    EXPECT_TRUE(score.ChannelInUse[2]);
}
