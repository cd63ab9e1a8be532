// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/UndoSnapshot.h"

#include "RandomScore.h"
#include "base/Files.h"
#include "score/SngFile.h"

#include <QTemporaryDir>

#include <fstream>

using namespace velmora;
using namespace velmora::test;

namespace {
struct UndoSnapshotTest : testing::Test {
    QTemporaryDir folder;
    std::filesystem::path path = folder.filePath("temp.sng").toStdString();
    UndoSnapshot undo{path};
    Score score{300};
    SetupState setup;

    void note(int channel, int position, int code) {
        score.NoteCell.set(channel, position, 60);
        score.NoteInstrument.set(channel, position, static_cast<std::int16_t>(code));
    }
};

/// So large that its file is written beside what the user does.
struct LargeUndoTest : UndoSnapshotTest {
    LargeUndoTest() {
        score.resizeNotes(6000);
        for (int channel = 0; channel < kUsedChannels; ++channel)
            for (int position = 0; position <= score.NumNotes; position += 3)
                note(channel, position, 24 + position % 90);
        for (int position = 0; position <= score.NumNotes; position += 7)
            score.Pan_Change.set(5, position, 9);
        score.Polyphonics.set(12, 7, 3); // no file has this row
        score.ActiveChannel = 2;
        score.FindEndOfSong();
    }
    void keepAndClear() {
        undo.keepWhole(score, setup, "Clear", StepScope::Score);
        score.ClearAll();
    }
};
} // namespace

TEST_F(LargeUndoTest, TheScoreComesBackWhileItsFileMayStillBeBeingWritten) {
    const Score before = score;
    for (int time = 0; time < 20; ++time) {
        keepAndClear();
        EXPECT_EQ(undo.step(), "Clear");
        ASSERT_TRUE(undo.OpenforUndo(score, setup));
        expectSameScore(score, before);
        EXPECT_EQ(score.ActiveChannel, 2);
    }
}

TEST_F(LargeUndoTest, TheFileIsTheScoreInTheNewestForm) {
    const std::string text = serializePoliFile(score, setup);
    keepAndClear();
    undo.finishWriting();
    EXPECT_EQ(readWholeFile(path), text);
}

TEST_F(LargeUndoTest, AFileThatIsGoneOrDamagedUndoesNothing) {
    keepAndClear();
    undo.finishWriting();
    const std::string text = readWholeFile(path).value_or("");
    const Score before = score;
    for (const std::string& damaged : {std::string(), text.substr(0, text.size() / 2), text + "1"}) {
        std::ofstream(path, std::ios::binary) << damaged;
        EXPECT_FALSE(undo.OpenforUndo(score, setup));
        expectSameScore(score, before);
    }
    std::filesystem::remove(path);
    EXPECT_FALSE(undo.OpenforUndo(score, setup));
    std::ofstream(path, std::ios::binary) << text;
    EXPECT_TRUE(undo.OpenforUndo(score, setup)) << "it is there again";
}

TEST_F(LargeUndoTest, ANewStepTakesThePlaceOfOneThatIsStillBeingWritten) {
    for (int time = 0; time < 20; ++time) {
        undo.keepWhole(score, setup, "Paste", StepScope::Cells);
        undo.SaveforUndo(score, setup);
        EXPECT_EQ(readWholeFile(path), serializeUndo(score, setup));
        EXPECT_EQ(undo.step(), UndoSnapshot::kNoteStep);
    }
}

TEST_F(UndoSnapshotTest, TheHighMarksFallByNoUndoOfCells) {
    const auto marks = [this] {
        return std::array{score.TopChannel, score.TopMelodyHint, score.TopDrumHint};
    };
    const auto set = [this](int mark) {
        score.TopChannel = mark;
        score.TopMelodyHint = mark + 1;
        score.TopDrumHint = mark + 2;
    };
    for (const auto& [kept, now, wanted] : {std::array{1, 5, 5}, std::array{5, 1, 5}}) {
        set(kept);
        undo.keepWhole(score, setup, "Paste", StepScope::Cells);
        set(now);
        ASSERT_TRUE(undo.OpenforUndo(score, setup));
        EXPECT_EQ(marks(), (std::array{wanted, wanted + 1, wanted + 2})) << kept << ", " << now;
    }
}

TEST_F(UndoSnapshotTest, TheSnapshotHoldsTheActiveChannelAlone) {
    note(0, 0, 24);
    note(2, 1, 30);
    score.Volume.set(2, 2, 99);
    score.Polyphonics.set(2, 1, 5);
    score.ChannelInstrument[2] = 31;
    score.ActiveChannel = 2;
    EXPECT_EQ(serializeUndo(score, setup),
              "-1,60\r\n0,30\r\n31\r\nPolyphonics\r\n0,5,0\r\nVolume\r\n127,99\r\n"
              "Modulation_Change\r\n0,0\r\nPan_Change\r\n64,64\r\n"
              "Reverb_Change\r\n0,0\r\nChorus_Change\r\n0,0\r\nTempo=100\r\n"
              "Notes per measure=16\r\nBeats per measure=4\r\nNote Value=4\r\n");
}

TEST_F(UndoSnapshotTest, AnEditIsUndoneOnceAndOtherChannelsStay) {
    note(0, 3, 24);
    note(1, 4, 25);
    score.Volume.set(0, 4, 77);
    score.FindEndOfSong();
    const Score before = score;
    undo.SaveforUndo(score, setup);
    EXPECT_EQ(undo.UndoChannel, 0);
    note(0, 8, 50);
    score.NoteCell.set(0, 3, -1);
    score.Volume.set(0, 4, 1);
    score.Tempo = 33;
    score.ChannelInstrument[0] = 9;
    setup.TxBeats = 5;
    EXPECT_TRUE(undo.OpenforUndo(score, setup));
    expectSameScore(score, before);
    EXPECT_EQ(setup.TxBeats, 16);
    EXPECT_EQ(undo.UndoChannel, -1);
    EXPECT_TRUE(std::filesystem::exists(path));
    note(0, 8, 50);
    EXPECT_FALSE(undo.OpenforUndo(score, setup));
    EXPECT_EQ(score.NoteCell.at(0, 8), 60);
}

TEST_F(UndoSnapshotTest, TheInstrumentOfAChannelComesBackForChannelZeroOnly) {
    for (const int channel : {0, 1, 12}) {
        score.ActiveChannel = channel;
        score.ChannelInstrument.fill(40);
        undo.SaveforUndo(score, setup);
        score.ChannelInstrument.fill(50);
        EXPECT_TRUE(undo.OpenforUndo(score, setup));
        for (std::size_t c = 0; c < 13; ++c)
            EXPECT_EQ(score.ChannelInstrument[c], channel == 0 && c == 0 ? 40 : 50);
    }
}

TEST_F(UndoSnapshotTest, TheChordRowThatComesBackIsThatOfTheChannelBefore) {
    score.ActiveChannel = 3;
    note(3, 5, 24);
    score.Polyphonics.set(3, 5, 2); // channel 2's
    score.Polyphonics.set(4, 5, 6); // channel 3's own
    undo.SaveforUndo(score, setup);
    score.Polyphonics.set(3, 5, 0);
    EXPECT_TRUE(undo.OpenforUndo(score, setup));
    EXPECT_EQ(score.Polyphonics.at(3, 5), 2);
    EXPECT_EQ(score.Polyphonics.at(4, 5), 0);
}

TEST_F(UndoSnapshotTest, ASnapshotOfAPercussionChannelHasNoChordRowAboveChannelEight) {
    for (const int channel : {8, 10, 11, 12}) {
        score.ActiveChannel = channel;
        note(channel, 2, 130);
        score.Pan_Change.set(channel, 3, 9);
        const bool row = serializeUndo(score, setup).find("Polyphonics\r\n0") != std::string::npos;
        EXPECT_EQ(row, channel == 8);
        undo.SaveforUndo(score, setup);
        note(channel, 2, 140);
        score.Pan_Change.set(channel, 3, 64);
        EXPECT_TRUE(undo.OpenforUndo(score, setup));
        EXPECT_EQ(score.NoteInstrument.at(channel, 2), 130);
        EXPECT_EQ(score.Pan_Change.at(channel, 3), 9);
        if (channel < 12) {
            EXPECT_EQ(score.BeatMemo[static_cast<std::size_t>(channel - 7)][3], 130);
        }
    }
}

TEST_F(UndoSnapshotTest, CellsMoreThanAHundredPositionsBeyondTheSongEndAreNotKept) {
    note(0, 4, 24);
    score.SongEnd = 5;
    note(0, 105, 24);
    note(0, 106, 24);
    undo.SaveforUndo(score, setup);
    EXPECT_TRUE(undo.OpenforUndo(score, setup));
    EXPECT_EQ(score.NoteCell.at(0, 105), 60);
    EXPECT_EQ(score.NoteCell.at(0, 106), -1);
    score.SongEnd = 0; // looks at the whole array
    note(0, 300, 24);
    undo.SaveforUndo(score, setup);
    EXPECT_TRUE(undo.OpenforUndo(score, setup));
    EXPECT_EQ(score.NoteCell.at(0, 300), 60);
}

TEST_F(UndoSnapshotTest, WhatTheDiskHasNoRoomForIsKeptInMemory) {
    UndoSnapshot nowhere(path / "no folder" / "temp.sng");
    for (const bool whole : {false, true}) {
        note(0, 4, 24);
        if (whole)
            nowhere.keepWhole(score, setup, "Clear", StepScope::Score);
        else
            nowhere.SaveforUndo(score, setup, "Clear");
        EXPECT_EQ(nowhere.step(), "Clear");
        const Score before = score;
        score.ClearThisArray(0);
        EXPECT_TRUE(nowhere.OpenforUndo(score, setup));
        EXPECT_EQ(score.NoteCell, before.NoteCell);
        EXPECT_EQ(score.NoteInstrument, before.NoteInstrument);
        EXPECT_EQ(nowhere.step(), "");
    }
}

TEST_F(UndoSnapshotTest, WhereNothingCouldBeReadNothingIsUndone) {
    note(0, 4, 24);
    undo.SaveforUndo(score, setup);
    std::filesystem::remove(path);
    const Score before = score;
    EXPECT_FALSE(undo.OpenforUndo(score, setup));
    expectSameScore(score, before);
    score.ActiveChannel = 13;
    undo.SaveforUndo(score, setup);
    EXPECT_EQ(undo.UndoChannel, -1);
}

TEST_F(UndoSnapshotTest, TheKeyLinesEndAtABlankLineAndNotWithTheMeterValues) {
    const std::string rows = "1\r\n1\r\n1\r\np\r\n0\r\nv\r\n1\r\nm\r\n1\r\np\r\n1\r\nr\r\n1\r\nc\r\n1\r\n";
    parseUndo(rows + "Notes per measure=3\r\nBeats per measure=3\r\nNote Value=8\r\nTempo=60\r\n\r\nTempo=70",
              0, score, setup);
    EXPECT_EQ(score.Tempo, 60);
    EXPECT_EQ(score.NotesPerMeasure, 3);
    EXPECT_EQ(setup.NoteX, 8);
}

TEST_F(UndoSnapshotTest, EveryChannelOfRandomScoresComesBackAsItWas) {
    std::minstd_rand random(11);
    for (int i = 0; i < 100; ++i) {
        score = randomScore(random, 80);
        for (int row = 1; row <= 8; ++row)
            score.Polyphonics.fillRow(row, 0);
        score.FindEndOfSong();
        score.ActiveChannel = below(random, 13);
        const Score before = score;
        undo.SaveforUndo(score, setup);
        for (int position = 0; position <= 80; ++position) {
            note(score.ActiveChannel, position, 100);
            // Beyond the last note the snapshot has no effects, so an edit's values stay there.
            if (position <= before.lastFilledPosition(score.ActiveChannel, 80))
                score.Chorus_Change.set(score.ActiveChannel, position + 1, 1);
        }
        ASSERT_TRUE(undo.OpenforUndo(score, setup));
        EXPECT_EQ(score.NoteCell, before.NoteCell);
        EXPECT_EQ(score.NoteInstrument, before.NoteInstrument);
        EXPECT_EQ(score.Chorus_Change, before.Chorus_Change);
        EXPECT_EQ(score.SongEnd, before.SongEnd);
    }
}
