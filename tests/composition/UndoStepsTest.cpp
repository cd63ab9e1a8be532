// SPDX-License-Identifier: GPL-2.0-or-later
// What each command keeps for undo, and what comes back.
#include "base/Files.h"
#include "composition/MelodyMaker.h"
#include "composition/ScoreEditing.h"
#include "score/SngFile.h"
#include "tests/score/RandomScore.h"
#include "tests/tableau/GestureFixture.h"

#include <filesystem>
#include <fstream>

using namespace velmora;
using namespace velmora::test;

namespace {
struct Step {
    const char* name;
    void (*run)(Workspace&);
};

const std::array kSteps{
    Step{"Cut Selection", [](Workspace& workspace) { CutBut_Click(workspace); }},
    Step{"Paste (Overwrite)", [](Workspace& workspace) { PasteBut_Click(workspace, 0); }},
    Step{"Paste (Insert)", [](Workspace& workspace) { PasteIntoBut_Click(workspace, 0); }},
    Step{"Insert Space(s)", [](Workspace& workspace) { InsertColumnBut_Click(workspace, 0); }},
    Step{"Duplicate notes", [](Workspace& workspace) { duplicateNotes(workspace, {}); }},
    Step{"Duplicate notes", [](Workspace& workspace) { duplicateMelody(workspace); }},
    Step{"Create Melody", [](Workspace& workspace) { createMelody(workspace, 4); }},
    Step{"Clear all notes", [](Workspace& workspace) { workspace.clear(); }},
};

struct UndoStepsTest : GestureFixture {
    /// A score with something in every layer, also behind its last note, and all set for each command.
    void makeScore(unsigned seed) {
        std::minstd_rand random(seed);
        const Score made = randomScore(random, score().NumNotes);
        for (const auto grid :
             {&Score::NoteCell, &Score::NoteInstrument, &Score::Polyphonics, &Score::Volume,
              &Score::Modulation_Change, &Score::Pan_Change, &Score::Reverb_Change, &Score::Chorus_Change})
            score().*grid = made.*grid;
        for (int channel = 0; channel < kUsedChannels; ++channel)
            for (int position = 120; position <= score().NumNotes; ++position)
                score().NoteCell.set(channel, position, kEmptyCell);
        score().Polyphonics.set(12, 7, 3); // no file has this row
        score().Volume.set(3, score().NumNotes, 9);
        score().Tempo = 77;
        workspace().selectChannel(2);
        score().FindEndOfSong();
        EditState& edit = workspace().edit;
        edit.ChannelPicked.fill(true);
        edit.CycleNotes = edit.Txtspc = 6;
        edit.CycleBeats = 9;
        edit.TotalNotes = 50;
        edit.Check2 = edit.Check5 = view().NoteEffectsOn = true;
        view().SelectStart = 10;
        copyIt(workspace());
        view().SelectStart = 12;
        view().SelectEnd = 30;
        view().PlayMark = 15;
    }
    std::string fileText() { return readWholeFile(folders.undoFile()).value_or("none"); }
};
} // namespace

TEST_F(UndoStepsTest, EachCommandNamesItsStepAndComesBackWholeOnce) {
    unsigned seed = 1;
    for (const Step& step : kSteps) {
        makeScore(seed++);
        const Score before = score();
        step.run(workspace());
        EXPECT_NE(score().NoteCell, before.NoteCell) << step.name;
        EXPECT_EQ(workspace().undoStep(), step.name);
        ASSERT_TRUE(workspace().undoLast()) << step.name;
        expectSameScore(score(), before);
        EXPECT_EQ(workspace().undoStep(), "");
        score().NoteCell.set(2, 3, 55);
        EXPECT_FALSE(workspace().undoLast()) << "a second undo";
        EXPECT_EQ(score().NoteCell.at(2, 3), 55);
    }
}

TEST_F(UndoStepsTest, EachCommandsFileIsTheWholeScoreInTheNewestFormAndStays) {
    for (const Step& step : kSteps) {
        makeScore(5);
        const std::string text = serializePoliFile(score(), workspace().setup);
        step.run(workspace());
        EXPECT_EQ(fileText(), text) << step.name;
        ASSERT_TRUE(workspace().undoLast());
        EXPECT_EQ(fileText(), text) << step.name;
    }
}

TEST_F(UndoStepsTest, AFileThatIsGoneOrDamagedUndoesNothingAndHarmsNothing) {
    makeScore(6);
    CutBut_Click(workspace());
    const std::string text = fileText();
    const Score before = score();
    for (const std::string& damaged :
         {std::string(), text.substr(0, text.size() / 2), text + "1", "x" + text.substr(1)}) {
        std::ofstream(folders.undoFile(), std::ios::binary) << damaged;
        EXPECT_FALSE(workspace().undoLast());
        expectSameScore(score(), before);
    }
    std::filesystem::remove(folders.undoFile());
    EXPECT_FALSE(workspace().undoLast());
    expectSameScore(score(), before);
    std::ofstream(folders.undoFile(), std::ios::binary) << text;
    EXPECT_TRUE(workspace().undoLast()) << "it is there again";
}

TEST_F(UndoStepsTest, ADamagedFileOfOneChannelHarmsNothingEither) {
    press(1, 20);
    release(4, 20);
    std::ofstream(folders.undoFile(), std::ios::binary) << "1,2,3";
    EXPECT_FALSE(workspace().undoLast());
    EXPECT_EQ(cells(0, 4), (std::vector<int>{-1, 62, 1062, 1062}));
}

TEST_F(UndoStepsTest, WithoutASelectionACutKeepsTheStepBeforeIt) {
    makeScore(7);
    PasteBut_Click(workspace(), 0);
    view().SelectStart = -1;
    CutBut_Click(workspace());
    EXPECT_EQ(workspace().undoStep(), "Paste (Overwrite)");
}

TEST_F(UndoStepsTest, CopyingTakesNoStep) {
    makeScore(8);
    const int before = workspace().undo.snapshots;
    copyIt(workspace());
    EXPECT_EQ(workspace().undo.snapshots, before);
    EXPECT_EQ(workspace().undoStep(), "");
}

TEST_F(UndoStepsTest, AStrokeTakesTheStepOfOneChannelFromACommand) {
    makeScore(9);
    CutBut_Click(workspace());
    const Score cut = score();
    press(3, 20);
    release(6, 20);
    EXPECT_EQ(workspace().undoStep(), "Last note");
    EXPECT_EQ(workspace().undo.UndoChannel, 2);
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_EQ(score().NoteCell, cut.NoteCell);
    EXPECT_FALSE(workspace().undoLast()) << "the cut is not to be had back";
}

TEST_F(UndoStepsTest, APercussionStrokeTakesNoStep) {
    makeScore(10);
    CutBut_Click(workspace());
    input().Beatbox_MouseDown(MouseButton::Left, 0, x(3), 20);
    input().Beatbox_MouseUp(MouseButton::Left, 0, x(5), 20);
    EXPECT_EQ(workspace().undoStep(), "Cut Selection");
}

TEST_F(UndoStepsTest, ARightClickComesBackWithTheChordsOfItsChannel) {
    for (const RightClick mode : {RightClick::Erase, RightClick::Polyphonic}) {
        makeScore(13);
        view().MouseMode = Mouse::Draw;
        view().NoteEffectsOn = false;
        view().RightClickMode = mode;
        workspace().setup.Combo3 = 6;
        draw(20, 23, 30);
        const Score before = score();
        rightClick(22);
        EXPECT_FALSE(score().NoteCell == before.NoteCell && score().Polyphonics == before.Polyphonics);
        EXPECT_EQ(workspace().undoStep(), "Last note");
        ASSERT_TRUE(workspace().undoLast());
        expectSameScore(score(), before);
    }
}

TEST_F(UndoStepsTest, ThePressThatEndsADuplicateLeavesItsStep) {
    makeScore(11);
    const Score before = score();
    view().NoteEffectsOn = true;
    duplicateNotes(workspace(), [this] {
        input().MusicBox_MouseDown(MouseButton::Left, 0, 1, 1);
        input().MusicBox_MouseUp(MouseButton::Left, 0, 1, 1);
    });
    EXPECT_EQ(score().NoteCell.at(2, 0), view().ViewTopRow) << "a head of its own";
    EXPECT_EQ(workspace().undoStep(), "Duplicate notes");
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_EQ(score().NoteCell, before.NoteCell);
}

TEST_F(UndoStepsTest, UndoingACommandKeepsTheBuffersTheNameAndTheActiveChannelOfToday) {
    makeScore(12);
    CutBut_Click(workspace());
    const ChannelGrid taken = score().ClipNoteCell;
    score().currentFile = "/songs/new name.sng";
    workspace().selectChannel(6);
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_EQ(score().ClipNoteCell, taken);
    EXPECT_EQ(score().currentFile, "/songs/new name.sng");
    EXPECT_EQ(score().ActiveChannel, 6);
    EXPECT_EQ(workspace().edit.SelectSpan, 18);
}

TEST_F(UndoStepsTest, UndoingAClearingBringsNameAndActiveChannelBack) {
    makeScore(13);
    score().currentFile = "/songs/old.sng";
    workspace().clear();
    EXPECT_EQ(score().currentFile, "");
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_EQ(score().currentFile, "/songs/old.sng");
    EXPECT_EQ(score().ActiveChannel, 2);
}

TEST_F(UndoStepsTest, AClearingSetsTheFieldsOfTheMelodyMakerBack) {
    makeScore(14);
    workspace().edit.txtStart = 30;
    workspace().clear();
    EXPECT_EQ(workspace().edit.CycleNotes, 0);
    EXPECT_EQ(workspace().edit.CycleBeats, 0);
    EXPECT_EQ(workspace().edit.TotalNotes, 0);
    EXPECT_EQ(workspace().edit.txtStart, 1);
}

TEST_F(UndoStepsTest, AScoreThatGrewInBetweenKeepsItsLength) {
    makeScore(15);
    const auto cell = score().NoteCell.at(1, 150);
    CutBut_Click(workspace());
    score().resizeNotes(400);
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_EQ(score().NumNotes, 400);
    EXPECT_EQ(score().NoteCell.at(1, 150), cell);
    EXPECT_EQ(score().NoteCell.at(1, 399), -1);
}

TEST_F(UndoStepsTest, AScoreThatShrankInBetweenGetsItsLengthBack) {
    makeScore(16);
    const Score before = score();
    CutBut_Click(workspace());
    score().resizeNotes(40);
    ASSERT_TRUE(workspace().undoLast());
    expectSameScore(score(), before);
}

TEST_F(UndoStepsTest, WhereNoFileCanBeWrittenTheStepIsKeptInMemory) {
    makeScore(17);
    const Score before = score();
    std::filesystem::remove_all(folders.songs());
    CutBut_Click(workspace());
    EXPECT_EQ(workspace().undoStep(), "Cut Selection");
    ASSERT_TRUE(workspace().undoLast());
    expectSameScore(score(), before);
}
