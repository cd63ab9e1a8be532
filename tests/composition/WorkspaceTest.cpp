// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/Workspace.h"

#include "WorkspaceFixture.h"
#include "tests/support/RecordingWatcher.h"

#include <array>
#include <bit>
#include <functional>

using namespace velmora;
using testing::Each;

namespace {
using WorkspaceTest = WorkspaceFixture;

/// What a user could miss after a clearing: notes, effects, speed and names.
bool isSame(const Score& one, const Score& other) {
    return one.NoteCell == other.NoteCell && one.NoteInstrument == other.NoteInstrument &&
           one.Polyphonics == other.Polyphonics && one.Volume == other.Volume &&
           one.Modulation_Change == other.Modulation_Change && one.Pan_Change == other.Pan_Change &&
           one.Reverb_Change == other.Reverb_Change && one.Chorus_Change == other.Chorus_Change &&
           one.Tempo == other.Tempo && one.NotesPerMeasure == other.NotesPerMeasure &&
           one.ChannelInstrument == other.ChannelInstrument && one.ChannelInUse == other.ChannelInUse &&
           one.SongEnd == other.SongEnd && one.TopChannel == other.TopChannel &&
           one.ActiveChannel == other.ActiveChannel && one.currentFile == other.currentFile;
}

/// Three channels, with something in every array.
void fill(Workspace& workspace) {
    Score& score = workspace.score;
    for (const int channel : {0, 5, 11}) {
        workspace.selectChannel(channel);
        putNotes(score, channel, 60 + channel, 8);
    }
    score.Polyphonics.set(6, 2, 3);
    score.Volume.set(5, 3, 40);
    score.Modulation_Change.set(5, 3, 41);
    score.Pan_Change.set(0, 3, 42);
    score.Reverb_Change.set(11, 3, 43);
    score.Chorus_Change.set(11, 3, 44);
    score.Tempo = 144;
    score.currentFile = "/songs/waltz.sng";
    score.NotesPerMeasure = workspace.setup.TxBeats = 12;
    workspace.setup.TxtMeter = 3;
    workspace.setup.Ch[5] = true;
    workspace.setup.Chkstrum[5] = true;
    score.FindEndOfSong();
}
} // namespace

TEST_F(WorkspaceTest, MannersAreCarefulUnlessClassicOnesAreStored) {
    EXPECT_EQ(workspace().manners, Manners::classic());
    EXPECT_EQ(Workspace(MemorySettings(), folders).manners, Manners::careful());
}

TEST_F(WorkspaceTest, EveryDepartureIsOfCarefulMannersAlone) {
    constexpr Manners none{};
    EXPECT_EQ(Manners::classic(), none);
    // A field that a preset forgets would be false in it.
    const auto fields = std::bit_cast<std::array<bool, sizeof(Manners)>>(Manners::careful());
    EXPECT_THAT(fields, Each(true));
}

TEST_F(WorkspaceTest, AnEmptyStoreGivesTheStartValues) {
    EXPECT_EQ(score().NumNotes, 1000);
    EXPECT_EQ(score().NotesPerMeasure, 16);
    EXPECT_EQ(score().Tempo, 100);
    EXPECT_EQ(score().ActiveChannel, 0);
    EXPECT_EQ(score().TopChannel, 1);
    EXPECT_EQ(score().SongEnd, 0);
    EXPECT_EQ(workspace().setup.TxBeats, 16);
    EXPECT_EQ(workspace().setup.TxtMeter, 4);
    EXPECT_EQ(workspace().setup.NoteX, 4);
    EXPECT_TRUE(workspace().setup.ChTreble);
    EXPECT_TRUE(workspace().setup.ChBass);
    EXPECT_TRUE(workspace().play.ShowPlayLine);
    EXPECT_FALSE(workspace().CopyonlyOneTrack);
    EXPECT_EQ(workspace().instruments.MelodyInstrument, 24);
    EXPECT_EQ(workspace().instruments.PercussionInstrument, 128);
    EXPECT_EQ(workspace().instruments.MelodyInstrumentName, nameOfCode(24));
    EXPECT_EQ(workspace().instruments.PercussionInstrumentName, nameOfCode(128));
    EXPECT_EQ(workspace().chords.ChordStep1, 3);
    EXPECT_EQ(workspace().chords.ChordStep2, 7);
    EXPECT_EQ(workspace().chords.ChordStep3, 12);
    EXPECT_FALSE(workspace().undoLast());
    EXPECT_EQ(settings.values.size(), 1u) << "reading writes nothing beside the stored manner";
}

TEST_F(WorkspaceTest, TheFirstTwelveChannelsBeginAtFullVelocity) {
    EXPECT_THAT(std::vector<int>(score().ChannelVelocity.begin(), score().ChannelVelocity.begin() + 12),
                Each(127));
    EXPECT_EQ(score().ChannelVelocity[12], 0);
}

TEST_F(WorkspaceTest, WhatIsStoredIsWhatItStartsWith) {
    for (const auto& [key, value] : std::map<std::string, std::string>{{"NumNotes", "1500"},
                                                                       {"Notes per measure", "12"},
                                                                       {"Beats per measure", "3"},
                                                                       {"Type of note", "8"},
                                                                       {"Show Bass staff", "0"},
                                                                       {"Show Treble staff", "0"},
                                                                       {"Playing position", "False"},
                                                                       {"CopyonlyOneTrack", "-1"},
                                                                       {"Intrumentval", "40"},
                                                                       {"Intrumentval2", "131"}})
        store(key, value);
    EXPECT_EQ(score().NumNotes, 1500);
    EXPECT_EQ(score().NotesPerMeasure, 12);
    EXPECT_EQ(workspace().setup.TxBeats, 12);
    EXPECT_EQ(workspace().setup.TxtMeter, 3);
    EXPECT_EQ(workspace().setup.NoteX, 8);
    EXPECT_FALSE(workspace().setup.ChBass);
    EXPECT_FALSE(workspace().setup.ChTreble);
    EXPECT_FALSE(workspace().play.ShowPlayLine);
    EXPECT_TRUE(workspace().CopyonlyOneTrack);
    EXPECT_EQ(score().ChannelInstrument[7], 40);
    EXPECT_EQ(score().ChannelInstrument[8], 131);
    EXPECT_EQ(score().ChannelInstrument[12], 131);
    EXPECT_EQ(score().ChannelInstrument[13], 0);
}

TEST_F(WorkspaceTest, RubbishInTheStoreCountsAsNothing) {
    for (const char* key : {"NumNotes", "Notes per measure", "Beats per measure", "Type of note",
                            "Playing position", "Intrumentval", "Intrumentval2"})
        store(key, "a lot");
    EXPECT_EQ(score().NumNotes, 1000);
    EXPECT_EQ(score().NotesPerMeasure, 16);
    EXPECT_EQ(workspace().setup.TxtMeter, 4);
    EXPECT_EQ(workspace().setup.NoteX, 4);
    EXPECT_TRUE(workspace().play.ShowPlayLine);
    EXPECT_EQ(workspace().instruments.MelodyInstrument, 24);
    EXPECT_EQ(workspace().instruments.PercussionInstrument, 128);
}

TEST_F(WorkspaceTest, AMeterOfZeroOrLessIsNone) {
    store("Notes per measure", "0");
    store("Beats per measure", "-3");
    store("Type of note", "0");
    EXPECT_EQ(score().NotesPerMeasure, 16);
    EXPECT_EQ(workspace().setup.TxtMeter, 4);
    EXPECT_EQ(workspace().setup.NoteX, 4);
}

TEST_F(WorkspaceTest, AStoredLineHeightIsOneThatTheStaffPanelOffers) {
    store("Line_Height", "1000");
    EXPECT_EQ(workspace().view.Line_Height, kMostLineHeight);
}

class NumNotesTest : public WorkspaceFixture,
                     public testing::WithParamInterface<std::pair<const char*, int>> {};
INSTANTIATE_TEST_SUITE_P(Stored, NumNotesTest,
                         testing::Values(std::pair{"-1", 1000}, std::pair{"0", 1000}, std::pair{"1", 1},
                                         std::pair{"32767", 32767}, std::pair{"2000000000", 200'000},
                                         std::pair{"99999999999999", 1000}));
TEST_P(NumNotesTest, IsAtLeastOneAndLeavesRoomInMemory) {
    store("NumNotes", GetParam().first);
    EXPECT_EQ(score().NumNotes, GetParam().second);
}

TEST_F(WorkspaceTest, TheFolderOfSongsIsMade) {
    EXPECT_FALSE(std::filesystem::exists(folders.songs()));
    workspace();
    EXPECT_TRUE(std::filesystem::is_directory(folders.songs()));
}

TEST_F(WorkspaceTest, ASelectedMelodyChannelIsActiveAndPlayed) {
    workspace().selectChannel(5);
    EXPECT_EQ(score().ActiveChannel, 5);
    EXPECT_EQ(score().TopChannel, 5);
    EXPECT_TRUE(score().ChannelInUse[5]);
    EXPECT_TRUE(score().ChannelShown[5]);
    workspace().selectChannel(2);
    EXPECT_EQ(score().ActiveChannel, 2);
    EXPECT_EQ(score().TopChannel, 5) << "it never falls";
}

TEST_F(WorkspaceTest, APercussionChannelLeavesAHintAndNotTheTopChannel) {
    for (const auto& [channel, hint] : std::map<int, int>{{8, 1}, {10, 2}, {11, 3}, {12, 4}}) {
        workspace().selectChannel(channel);
        EXPECT_EQ(score().ActiveChannel, channel);
        EXPECT_EQ(score().TopDrumHint, hint);
        EXPECT_EQ(score().TopChannel, 1);
    }
}

TEST_F(WorkspaceTest, WhatIsNoChannelIsRefused) {
    workspace().selectChannel(3);
    for (const int channel : {-1, 9, 13, 99}) {
        workspace().selectChannel(channel);
        workspace().toggleMuted(channel);
        EXPECT_EQ(score().ActiveChannel, 3);
        EXPECT_EQ(score().TopDrumHint, 0);
    }
    EXPECT_THAT(score().ChannelMuted, Each(false));
}

TEST_F(WorkspaceTest, AMutedChannelDoesNotCountForTheSongsEnd) {
    putNotes(score(), 0, 60, 3);
    putNotes(score(), 1, 62, 8);
    EXPECT_EQ(score().SongEnd, 16);
    workspace().toggleMuted(1);
    EXPECT_TRUE(score().ChannelMuted[1]);
    EXPECT_EQ(score().SongEnd, 6);
    workspace().toggleMuted(1);
    EXPECT_FALSE(score().ChannelMuted[1]);
    EXPECT_EQ(score().SongEnd, 16);
}

TEST_F(WorkspaceTest, AfterAClearingNothingIsLeft) {
    fill(workspace());
    workspace().clear();
    EXPECT_TRUE(score().usedChannels().empty());
    EXPECT_EQ(score().SongEnd, 0);
    EXPECT_EQ(score().Tempo, 100);
    EXPECT_EQ(score().TopChannel, 1);
    EXPECT_EQ(score().ActiveChannel, 0);
    EXPECT_EQ(score().Volume.valueOr(5, 3, 0), 127);
    EXPECT_EQ(score().currentFile, "");
    EXPECT_THAT(workspace().setup.Ch, Each(false));
    EXPECT_THAT(workspace().setup.Chkstrum, Each(false));
}

TEST_F(WorkspaceTest, UndoAfterAClearingBringsTheWholeScoreBack) {
    fill(workspace());
    const Score before = score();
    workspace().clear();
    ASSERT_FALSE(isSame(score(), before));
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_TRUE(isSame(score(), before));
    EXPECT_TRUE(workspace().setup.Ch[5]);
    EXPECT_TRUE(workspace().setup.Chkstrum[5]);
    EXPECT_FALSE(workspace().undoLast()) << "there is one step";
    EXPECT_TRUE(isSame(score(), before));
}

TEST_F(WorkspaceTest, ClearingTwiceStillLeavesTheScoreToBringBack) {
    fill(workspace());
    const Score before = score();
    workspace().clear();
    workspace().clear();
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_TRUE(isSame(score(), before));
}

TEST_F(WorkspaceTest, UndoAfterAnotherScoreTookItsPlaceBringsTheOldOneBackWithItsMeter) {
    fill(workspace());
    const Score before = score();
    workspace().keepReplaced("Open Score File");
    score().ClearAll();
    putNotes(score(), 3, 50, 4);
    score().NotesPerMeasure = workspace().setup.TxBeats = 20;
    workspace().setup.TxtMeter = 5;
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_TRUE(isSame(score(), before));
    EXPECT_EQ(workspace().setup.TxBeats, 12);
    EXPECT_EQ(workspace().setup.TxtMeter, 3);
}

TEST_F(WorkspaceTest, AnEditAfterAClearingIsWhatUndoTakesBack) {
    fill(workspace());
    workspace().clear();
    workspace().undo.SaveforUndo(score(), workspace().setup);
    putNotes(score(), 0, 70, 4);
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_TRUE(score().usedChannels().empty()) << "neither the new note nor the old score";
    EXPECT_FALSE(workspace().undoLast());
    EXPECT_TRUE(score().usedChannels().empty());
}

TEST_F(WorkspaceTest, NewWorkIsWhatUndoTakesBackEvenWhereNoSnapshotCouldBeWritten) {
    fill(workspace());
    workspace().clear();
    std::filesystem::remove_all(folders.songs());
    workspace().undo.SaveforUndo(score(), workspace().setup);
    putNotes(score(), 0, 70, 4);
    EXPECT_TRUE(workspace().undoLast());
    EXPECT_TRUE(score().usedChannels().empty()) << "the new work is taken back, and not the clearing";
}

TEST_F(WorkspaceTest, AClearingAfterAnEditIsWhatUndoTakesBack) {
    workspace().undo.SaveforUndo(score(), workspace().setup);
    putNotes(score(), 0, 70, 4);
    workspace().clear();
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_EQ(score().SongEnd, 8);
}

TEST(TopBarTextTest, TellsTempoAndMeterInWords) {
    struct Row {
        int tempo, notesPerMeasure, beats, noteValue;
        const char* text;
    };
    for (const Row& row : {
             Row{100, 16, 4, 4, "100 BPM  1/4 Note per Beat    (16 Divisions -   1/16 Note per Division)"},
             Row{72, 12, 3, 4, "72 BPM  1/4 Note per Beat    (12 Divisions -   1/16 Note per Division)"},
             Row{120, 12, 6, 8, "120 BPM  1/8 Note per Beat    (12 Divisions -   1/16 Note per Division)"},
             Row{90, 10, 4, 4, "90 BPM  1/4 Note per Beat    (10 Divisions -   1/8 Note per Division)"},
             Row{90, 16, 0, 4, "90 BPM  1/4 Note per Beat    (16 Divisions -   1/64 Note per Division)"},
         }) {
        Score score(10);
        SetupState setup;
        score.Tempo = static_cast<std::int16_t>(row.tempo);
        score.NotesPerMeasure = static_cast<std::int16_t>(row.notesPerMeasure);
        setup.TxtMeter = static_cast<std::int16_t>(row.beats);
        setup.NoteX = static_cast<std::int16_t>(row.noteValue);
        EXPECT_EQ(topBarText(score, setup), row.text);
    }
}

namespace {
class UnsavedTest : public WorkspaceFixture {
protected:
    UnsavedTest() { beCareful(); }
    /// As a command does it: kept for undo, and announced.
    void step(const std::function<void()>& change) {
        const Edit edit(workspace(), kAnyNotes | Change::Effects);
        workspace().keepForUndo("a step");
        change();
    }
    void draw(int notes) {
        step([&] { putNotes(score(), 0, 60, notes); });
    }
};
} // namespace

TEST_F(UnsavedTest, AScoreIsUnsavedWhileItIsOtherThanItsFile) {
    EXPECT_FALSE(workspace().isUnsaved()) << "a new score";
    step([this] { score().Tempo = 77; });
    EXPECT_FALSE(workspace().isUnsaved()) << "there is nothing to save without notes";
    step([this] { score().NoteCell.set(0, 0, 60); });
    EXPECT_TRUE(workspace().isUnsaved());
    workspace().markSaved();
    EXPECT_FALSE(workspace().isUnsaved());
    score().currentFile = "tune.sng";
    workspace().markSaved();
    const std::vector<std::function<void()>> changes{
        [this] { score().NoteCell.set(7, 3, 0); },      [this] { score().NoteInstrument.set(0, 0, 99); },
        [this] { score().Polyphonics.set(1, 0, 1); },   [this] { score().Volume.set(0, 1, 0); },
        [this] { score().Chorus_Change.set(0, 1, 1); }, [this] { score().Tempo = 78; },
        [this] { workspace().setup.NoteX = 8; },        [this] { score().ClearNoteArrays(); },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        step(changes[i]);
        EXPECT_TRUE(workspace().isUnsaved()) << i;
        workspace().markSaved();
        EXPECT_FALSE(workspace().isUnsaved()) << i;
    }
}

TEST_F(UnsavedTest, WhatNoFileHoldsLeavesAScoreSaved) {
    draw(4);
    workspace().markSaved();
    workspace().toggleMuted(0);
    workspace().selectChannel(5);
    workspace().view.SelectStart = 1;
    workspace().showFromStart();
    score().resizeNotes(3000);
    EXPECT_FALSE(workspace().isUnsaved());
}

TEST_F(UnsavedTest, AClearedScoreIsNothingToSaveAndWhatUndoBringsBackIs) {
    draw(4);
    workspace().clear();
    EXPECT_FALSE(workspace().isUnsaved());
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_TRUE(workspace().isUnsaved());
}

TEST_F(UnsavedTest, UndoneToWhatWasSavedItIsSaved) {
    draw(4);
    workspace().markSaved();
    draw(6);
    EXPECT_TRUE(workspace().isUnsaved());
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_FALSE(workspace().isUnsaved());
}

TEST_F(UnsavedTest, SavingIsAnnounced) {
    draw(4);
    RecordingWatcher watcher(workspace());
    workspace().markSaved();
    EXPECT_TRUE(watcher.take().any(Change::Undo));
}
