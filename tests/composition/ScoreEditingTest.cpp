// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/ScoreEditing.h"

#include "composition/MelodyMaker.h"
#include "composition/ScoreLayers.h"
#include "tests/composition/WorkspaceFixture.h"

using namespace velmora;
using testing::Each;
using testing::ElementsAre;

namespace {
/// Thirty positions, all boxes ticked.
struct ScoreEditingTest : WorkspaceFixture {
    ScoreEditingTest() {
        store("NumNotes", "30");
        workspace().edit.ChannelPicked.fill(true);
    }

    void notes(int channel, int first, const std::vector<int>& cells) {
        for (const int cell : cells)
            score().NoteCell.set(channel, first++, static_cast<std::int16_t>(cell));
    }
    std::vector<int> cells(int channel, int first, int count) {
        std::vector<int> list;
        for (int position = first; position < first + count; ++position)
            list.push_back(score().NoteCell.valueOr(channel, position, -9));
        return list;
    }
    void select(int first, int last) {
        workspace().view.SelectStart = first;
        workspace().view.SelectEnd = last;
    }
    void copy(int first, int more) {
        select(first, first);
        workspace().edit.CycleNotes = static_cast<std::int16_t>(more);
        copyIt(workspace());
    }
    void mark(int position) { workspace().view.PlayMark = position; }
    /// A different value in each layer, for a channel's position.
    void fillLayers(int channel, int position) {
        std::int16_t value = 3;
        for (const ScoreLayer& layer : kScoreLayers)
            (score().*layer.cells).set(channel + layer.channelShift, position + layer.positionShift, value++);
    }
    std::vector<int> layers(int channel, int position) {
        std::vector<int> list;
        for (const ScoreLayer& layer : kScoreLayers)
            list.push_back((score().*layer.cells)
                               .valueOr(channel + layer.channelShift, position + layer.positionShift, -9));
        return list;
    }
    std::vector<int> clipped(int channel, int position) {
        std::vector<int> list;
        for (const ScoreLayer& layer : kScoreLayers)
            list.push_back((score().*layer.clip)
                               .valueOr(channel + layer.channelShift, position + layer.positionShift, -9));
        return list;
    }
};

const auto kFilled = ElementsAre(3, 4, 5, 6, 7, 8, 9, 10);
const auto kCleared = ElementsAre(-1, 0, 0, 127, 0, 64, 0, 0);
} // namespace

TEST(BlockChannelsTest, TheRulesStandInTheOrderOfTheCommands) {
    for (std::size_t row = 0; row < kBlockRules.size(); ++row)
        EXPECT_EQ(static_cast<std::size_t>(kBlockRules[row].command), row);
}

TEST_F(ScoreEditingTest, CopyAndPasteAskTheBoxesAndCutAndInsertTheMutes) {
    workspace().edit.ChannelPicked[3] = false;
    score().ChannelMuted[4] = true;
    for (const BlockCommand command : {BlockCommand::Copy, BlockCommand::Paste}) {
        EXPECT_FALSE(worksOn(workspace(), command, 3));
        EXPECT_TRUE(worksOn(workspace(), command, 4));
    }
    for (const BlockCommand command : {BlockCommand::Cut, BlockCommand::InsertSpaces}) {
        EXPECT_TRUE(worksOn(workspace(), command, 3));
        EXPECT_FALSE(worksOn(workspace(), command, 4));
    }
}

TEST_F(ScoreEditingTest, WithOneTrackTheActiveChannelAloneIsMeantUnlessItIsMuted) {
    workspace().CopyonlyOneTrack = true;
    workspace().selectChannel(5);
    workspace().edit.ChannelPicked.fill(false);
    for (const BlockRules& rules : kBlockRules) {
        EXPECT_TRUE(worksOn(workspace(), rules.command, 5)) << "the boxes don't matter";
        EXPECT_FALSE(worksOn(workspace(), rules.command, 4));
    }
    score().ChannelMuted[5] = true;
    for (const BlockRules& rules : kBlockRules)
        EXPECT_FALSE(worksOn(workspace(), rules.command, 5));
}

// Copy

TEST_F(ScoreEditingTest, CopyingWithoutASelectionDoesNothing) {
    score().ClipNoteCell.set(0, 0, 99);
    workspace().edit.SelectSpan = 7;
    EXPECT_FALSE(copyIt(workspace()));
    EXPECT_EQ(score().ClipNoteCell.at(0, 0), 99);
    EXPECT_EQ(workspace().edit.SelectSpan, 7);
}

TEST_F(ScoreEditingTest, TheCycleAndNotTheSelectionSaysHowMuchIsCopied) {
    notes(0, 2, {60, 61, 62, 63, 64, 65});
    select(2, 20);
    workspace().edit.CycleNotes = 3;
    EXPECT_TRUE(copyIt(workspace()));
    EXPECT_EQ(score().ClipNoteCell.at(0, 3), 63);
    EXPECT_EQ(score().ClipNoteCell.at(0, 4), -1);
    EXPECT_EQ(workspace().edit.SelectSpan, 3);
    EXPECT_EQ(workspace().view.SelectStart, -1);
    EXPECT_EQ(workspace().view.SelectEnd, -1);
}

TEST_F(ScoreEditingTest, ACopyTakesAllLayersFromTheirOwnPlaces) {
    fillLayers(2, 6);
    copy(5, 2);
    EXPECT_THAT(clipped(2, 1), kFilled);
    EXPECT_EQ(score().ClipVolume.at(2, 2), 6);
    EXPECT_EQ(score().ClipPolyphonics.at(3, 1), 5);
}

TEST_F(ScoreEditingTest, AFragmentThatBeginsInTheMiddleOfANoteBeginsWithAHead) {
    notes(0, 4, {60, 1060, 1060, 1060});
    copy(5, 1);
    mark(12);
    PasteBut_Click(workspace(), 0);
    EXPECT_THAT(cells(0, 12, 3), ElementsAre(60, 1060, -1));
}

TEST_F(ScoreEditingTest, ACopyErasesTheBuffersOfNotesAndKeepsTheOthers) {
    fillLayers(0, 5);
    copy(5, 0);
    workspace().edit.ChannelPicked[0] = false;
    copy(8, 0);
    EXPECT_THAT(clipped(0, 0), ElementsAre(-1, 0, 5, 6, 7, 8, 9, 10));
}

TEST_F(ScoreEditingTest, ACopyReachesNoFurtherThanTheScore) {
    notes(0, 29, {60, 61});
    copy(29, 5);
    EXPECT_EQ(score().ClipNoteCell.at(0, 1), 61);
    EXPECT_EQ(score().ClipNoteCell.at(0, 2), -1);
    EXPECT_EQ(workspace().edit.SelectSpan, 5);
}

// Cut

TEST_F(ScoreEditingTest, CuttingWithoutASelectionDoesNothing) {
    notes(0, 0, {60, 61});
    EXPECT_FALSE(CutBut_Click(workspace()));
    EXPECT_THAT(cells(0, 0, 2), ElementsAre(60, 61));
    EXPECT_EQ(workspace().undoStep(), "");
}

TEST_F(ScoreEditingTest, ACutRemovesOnePositionLessThanSelected) {
    notes(0, 0, {60, 61, 62, 63, 64, 65});
    select(1, 3);
    EXPECT_TRUE(CutBut_Click(workspace()));
    EXPECT_THAT(cells(0, 0, 5), ElementsAre(60, 63, 64, 65, -1));
    EXPECT_EQ(workspace().edit.SelectSpan, 2);
    EXPECT_EQ(workspace().view.SelectStart, -1);
}

TEST_F(ScoreEditingTest, ACutOfOnePositionRemovesNone) {
    notes(0, 0, {60, 61});
    select(0, 0);
    EXPECT_TRUE(CutBut_Click(workspace()));
    EXPECT_THAT(cells(0, 0, 2), ElementsAre(60, 61));
}

TEST_F(ScoreEditingTest, WhatFollowsACutBeginsWithAHead) {
    notes(0, 0, {60, 1060, 1060, 1060});
    select(0, 2);
    CutBut_Click(workspace());
    EXPECT_THAT(cells(0, 0, 3), ElementsAre(60, 1060, -1));
}

TEST_F(ScoreEditingTest, ACutMovesEveryLayer) {
    fillLayers(7, 9);
    select(2, 6);
    CutBut_Click(workspace());
    EXPECT_THAT(layers(7, 5), kFilled);
}

TEST_F(ScoreEditingTest, ACutCopiesTheChannelsThatItCutsTickedOrNot) {
    notes(6, 3, {70, 71});
    workspace().edit.ChannelPicked.fill(false);
    select(3, 4);
    CutBut_Click(workspace());
    EXPECT_EQ(score().ClipNoteCell.at(6, 0), 70);
    EXPECT_EQ(score().ClipNoteCell.at(6, 1), 71);
}

TEST_F(ScoreEditingTest, WithNoBoxTickedCopyAndPasteMoveNothingWhileCutStillDeletes) {
    workspace().edit.ChannelPicked.fill(false);
    notes(2, 0, {60, 61, 62, 63});
    copy(0, 2);
    EXPECT_EQ(score().ClipNoteCell.at(2, 0), -1);
    mark(10);
    PasteBut_Click(workspace(), 0);
    EXPECT_THAT(cells(2, 10, 3), Each(-1));
    select(0, 2);
    CutBut_Click(workspace());
    EXPECT_THAT(cells(2, 0, 3), ElementsAre(62, 63, -1));
}

TEST_F(ScoreEditingTest, ACutOfOneTrackStillEmptiesTheEndOfAll) {
    workspace().CopyonlyOneTrack = true;
    workspace().selectChannel(1);
    notes(1, 29, {60, 61});
    notes(2, 29, {70, 71});
    notes(3, 29, {80, 81});
    score().ChannelMuted[3] = true;
    select(0, 2);
    CutBut_Click(workspace());
    EXPECT_THAT(cells(1, 27, 4), ElementsAre(60, 61, -1, -1));
    EXPECT_THAT(cells(2, 27, 4), ElementsAre(-1, -1, -1, -1)) << "not moved, but its end is gone";
    EXPECT_THAT(cells(3, 29, 2), ElementsAre(80, 81)) << "muted";
}

TEST_F(ScoreEditingTest, ACutOfOneTrackMakesHeadsOfContinuationsInAllThatAreNotMuted) {
    workspace().CopyonlyOneTrack = true;
    workspace().selectChannel(1);
    notes(2, 4, {70, 1070});
    notes(3, 4, {70, 1070});
    score().ChannelMuted[3] = true;
    select(5, 6);
    CutBut_Click(workspace());
    EXPECT_EQ(cells(2, 5, 1)[0], 70);
    EXPECT_EQ(cells(3, 5, 1)[0], 1070);
}

TEST_F(ScoreEditingTest, TheEndThatACutEmptiesKeepsItsEffects) {
    fillLayers(0, 29);
    select(0, 2);
    CutBut_Click(workspace());
    EXPECT_THAT(layers(0, 29), ElementsAre(-1, 0, 5, 6, 7, 8, 9, 10));
}

// Spaces

TEST_F(ScoreEditingTest, SpacesGoInAtTheMarkAndAreClearedInEveryLayer) {
    notes(0, 0, {60, 61, 62});
    fillLayers(0, 2);
    workspace().edit.Txtspc = 4;
    mark(2);
    InsertColumnBut_Click(workspace(), 0);
    EXPECT_THAT(cells(0, 0, 2), ElementsAre(60, 61));
    for (int position = 2; position < 6; ++position)
        EXPECT_THAT(layers(0, position), kCleared);
    EXPECT_THAT(layers(0, 6), kFilled);
}

TEST_F(ScoreEditingTest, WithNoClickSpacesGoInAtTheStart) {
    notes(0, 0, {60, 61});
    InsertSpaces(workspace(), 2, 0);
    EXPECT_THAT(cells(0, 0, 4), ElementsAre(-1, -1, 60, 61));
}

TEST_F(ScoreEditingTest, WhatFallsOffTheRightEndIsLost) {
    notes(0, 28, {60, 61, 62});
    InsertSpaces(workspace(), 2, 0);
    EXPECT_THAT(cells(0, 28, 3), ElementsAre(-1, -1, 60));
}

TEST_F(ScoreEditingTest, FewerSpacesThanNoneInsertNothing) {
    notes(0, 0, {60, 61, 62, 63});
    workspace().edit.Txtspc = -2;
    mark(1);
    InsertColumnBut_Click(workspace(), 0);
    EXPECT_THAT(cells(0, 0, 5), ElementsAre(60, 61, 62, 63, -1));
}

TEST_F(ScoreEditingTest, AStartThatWasTypedAloneIsNotCut) {
    notes(0, 0, {60, 61, 62, 63});
    takeStart(workspace(), 3);
    EXPECT_FALSE(CutBut_Click(workspace()));
    EXPECT_THAT(cells(0, 0, 5), ElementsAre(60, 61, 62, 63, -1));
    EXPECT_EQ(workspace().view.SelectStart, 2);
    EXPECT_EQ(workspace().undoStep(), "");
}

TEST_F(ScoreEditingTest, NoSpacesInsertNothing) {
    notes(0, 0, {60, 61});
    InsertSpaces(workspace(), 0, 0);
    EXPECT_THAT(cells(0, 0, 3), ElementsAre(60, 61, -1));
}

TEST_F(ScoreEditingTest, SpacesGoIntoChannelsThatAreNotMutedTickedOrNot) {
    notes(0, 0, {60});
    notes(1, 0, {61});
    workspace().edit.ChannelPicked.fill(false);
    score().ChannelMuted[1] = true;
    InsertSpaces(workspace(), 1, 0);
    EXPECT_EQ(cells(0, 0, 1)[0], -1);
    EXPECT_EQ(cells(1, 0, 1)[0], 61);
}

TEST_F(ScoreEditingTest, InsertingMovesTheSelectionsEndToTheMouseWithinTheView) {
    workspace().view.ViewFirstColumn = 3;
    workspace().view.ViewColumns = 10;
    InsertSpaces(workspace(), 1, 99);
    EXPECT_EQ(workspace().view.SelectEnd, 13);
    InsertSpaces(workspace(), 1, -4);
    EXPECT_EQ(workspace().view.SelectEnd, 3);
}

// Paste

TEST_F(ScoreEditingTest, APasteKeepsTheChannelAndGoesOverWhatStandsThere) {
    fillLayers(3, 0);
    notes(4, 10, {70, 71});
    copy(0, 1);
    mark(10);
    PasteBut_Click(workspace(), 6);
    EXPECT_THAT(layers(3, 10), kFilled);
    EXPECT_THAT(cells(4, 10, 2), Each(-1)) << "silence is pasted as well";
    EXPECT_EQ(workspace().view.SelectEnd, 6);
    EXPECT_EQ(workspace().view.PlayMark, 10);
}

TEST_F(ScoreEditingTest, AfterAPasteOverTheMiddleOfANoteItsRestIsANote) {
    notes(0, 10, {60, 1060, 1060, 1060});
    notes(5, 11, {70, 1070, 1070});
    workspace().edit.ChannelPicked[5] = false;
    copy(0, 1);
    mark(10);
    PasteBut_Click(workspace(), 0);
    EXPECT_THAT(cells(0, 10, 4), ElementsAre(-1, -1, 60, 1060));
    EXPECT_EQ(cells(5, 12, 1)[0], 70) << "a channel that isn't pasted is cut there, too";
}

TEST_F(ScoreEditingTest, APasteEndsWithTheScore) {
    notes(0, 0, {60, 61, 62, 63});
    copy(0, 3);
    mark(29);
    PasteBut_Click(workspace(), 0);
    EXPECT_THAT(cells(0, 28, 3), ElementsAre(-1, 60, 61));
}

TEST_F(ScoreEditingTest, ASingleTrackGoesToTheChannelThatIsActiveNow) {
    workspace().CopyonlyOneTrack = true;
    workspace().selectChannel(3);
    fillLayers(3, 0);
    copy(0, 0);
    EXPECT_EQ(workspace().edit.ClipChannel, 3);
    workspace().selectChannel(6);
    mark(5);
    PasteBut_Click(workspace(), 0);
    EXPECT_THAT(layers(6, 5), kFilled);
    EXPECT_THAT(layers(3, 5), kCleared);
}

TEST_F(ScoreEditingTest, APasteBetweenMovesTheRestByWhatIsPasted) {
    notes(0, 0, {60, 61, 62, 63});
    copy(0, 1);
    mark(1);
    PasteIntoBut_Click(workspace(), 0);
    EXPECT_THAT(cells(0, 0, 7), ElementsAre(60, 60, 61, 61, 62, 63, -1));
}

TEST(LongScoreEditingTest, BehindTheThousandthPositionAPasteMendsNothing) {
    QTemporaryDir home;
    ProgramFolders folders{std::filesystem::path(home.path().toStdString())};
    MemorySettings settings;
    settings.SaveSetting("Settings", "NumNotes", "1200");
    settings.SaveSetting("Settings", "Classic", "1");
    for (const auto& [end, after] : {std::pair{999, 60}, std::pair{1000, 1060}}) {
        Workspace workspace(settings, folders);
        workspace.score.NoteCell.set(0, end + 1, 1060);
        workspace.view.PlayMark = end;
        PasteBut_Click(workspace, 0);
        EXPECT_EQ(workspace.score.NoteCell.at(0, end + 1), after) << end;
    }
}

// Duplicate

TEST_F(ScoreEditingTest, DuplicatingStampsTheStartOfTheScoreFromTheMark) {
    EditState& edit = workspace().edit;
    notes(0, 0, {60, 61});
    edit.CycleNotes = 1;
    edit.CycleBeats = 4;
    edit.TotalNotes = 8;
    edit.Check2 = true;
    mark(10);
    select(4, 9);
    duplicateNotes(workspace(), {});
    EXPECT_THAT(cells(0, 10, 11), ElementsAre(60, 61, -1, -1, 60, 61, -1, -1, 60, 61, -1));
    EXPECT_EQ(workspace().view.PlayMark, 0);
    EXPECT_EQ(workspace().view.SelectStart, -1);
    EXPECT_EQ(edit.SelectSpan, 1);
}

TEST_F(ScoreEditingTest, TheBoxAndTheNoteEffectsChooseTheChannelsOfDuplicate) {
    struct Row {
        bool all, effects;
        std::vector<int> stamped;
    };
    for (const Row& row : {Row{false, false, {}}, Row{true, false, {0, 7}}, Row{false, true, {8, 12}},
                           Row{true, true, {0, 7, 8, 12}}}) {
        score().ClearAll();
        for (const int channel : {0, 7, 8, 12})
            notes(channel, 0, {60});
        workspace().edit.Check2 = row.all;
        workspace().view.NoteEffectsOn = row.effects;
        mark(20);
        duplicateNotes(workspace(), {});
        std::vector<int> stamped;
        for (int channel = 0; channel < kUsedChannels; ++channel) {
            if (score().NoteCell.at(channel, 20) == 60)
                stamped.push_back(channel);
        }
        EXPECT_EQ(stamped, row.stamped) << row.all << row.effects;
    }
}

TEST_F(ScoreEditingTest, ThePressThatEndsADuplicateComesInDrawModeBeforeTheMarkGoes) {
    workspace().view.MouseMode = Mouse::Select;
    workspace().edit.Check2 = true;
    mark(7);
    int presses = 0;
    duplicateNotes(workspace(), [&] {
        ++presses;
        EXPECT_EQ(workspace().view.MouseMode, Mouse::Draw);
        EXPECT_EQ(workspace().view.PlayMark, 7);
        EXPECT_EQ(workspace().view.SelectEnd, -1);
    });
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(workspace().view.PlayMark, 0);
}
