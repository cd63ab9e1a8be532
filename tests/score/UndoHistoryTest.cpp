// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/UndoHistory.h"

#include "score/StepBytes.h"
#include "sound/SetupState.h"
#include "tests/support/Walks.h"

#include <gmock/gmock.h>

#include <random>

using namespace velmora;
using testing::ElementsAre;

namespace {

using Cells = std::vector<std::int16_t>;

struct UndoHistoryTest : testing::Test {
    UndoHistoryTest() { history.restart(score, setup); }

    /// A note as a stroke writes it, which is an act of its own.
    void stroke(int channel, int row, int first, int length, std::string_view name = "Draw note") {
        history.begin(score, setup);
        history.name(name);
        for (int p = first; p < first + length; ++p) {
            score.NoteCell.set(channel, p, static_cast<std::int16_t>(p == first ? row : 1000 + row));
            score.NoteInstrument.set(channel, p, 24);
        }
        score.FindEndOfSong();
        taken = history.commit(score, setup);
    }
    int cell(int channel, int position) { return score.NoteCell.valueOr(channel, position, -9); }

    Score score{100};
    SetupState setup;
    UndoHistory history;
    bool taken = false;
};

/// Cells of few values, in stretches, as scores are, or any.
Cells randomCells(std::mt19937& random, std::size_t size) {
    std::uniform_int_distribution<int> any(-32768, 32767);
    Cells cells;
    while (cells.size() < size) {
        const auto stretch = static_cast<std::size_t>(random() % 12 + 1);
        const auto value = static_cast<std::int16_t>(random() % 3 == 0 ? any(random) : -1);
        cells.insert(cells.end(), std::min(stretch, size - cells.size()), value);
    }
    return cells;
}

} // namespace

TEST(CellRunsTest, EitherSideOfAnyChangeComesBack) {
    std::mt19937 random(7);
    for (int times = 0; times < stepsOfWalk(20'000); ++times) {
        const std::size_t size = random() % 90;
        const Cells before = randomCells(random, size);
        Cells after = before;
        for (auto changes = random() % 4; changes > 0 && size > 0; --changes) {
            const std::size_t at = random() % size;
            const Cells piece = randomCells(random, std::min<std::size_t>(random() % 40, size - at));
            std::ranges::copy(piece, after.begin() + static_cast<std::ptrdiff_t>(at));
        }
        std::vector<std::uint8_t> bytes;
        StepWriter to(bytes);
        const std::size_t runs = writeRuns(to, before, after, 0);
        ASSERT_EQ(runs == 0, before == after);
        ASSERT_EQ(bytes.empty(), before == after);
        if (runs == 0)
            continue;
        for (const auto& [side, from, wanted] :
             {std::tuple(Side::Before, after, before), std::tuple(Side::After, before, after)}) {
            Cells row = from;
            StepReader reader(bytes);
            readRuns(reader, row, side);
            ASSERT_EQ(row, wanted);
            ASSERT_TRUE(reader.atEnd());
        }
    }
}

TEST(CellRunsTest, TheFirstIndexIsAdded) {
    std::vector<std::uint8_t> bytes;
    StepWriter to(bytes);
    writeRuns(to, Cells{1, 2, 3}, Cells{1, 9, 3}, 40);
    Cells row(50, 0);
    StepReader reader(bytes);
    const CellRange written = readRuns(reader, row, Side::After);
    EXPECT_EQ(row[41], 9);
    EXPECT_EQ(std::pair(written.first, written.end), std::pair(41, 42));
}

TEST(ChannelGridTest, WhatWasWrittenIsTouchedAndNothingElse) {
    ChannelGrid grid(50, 0);
    EXPECT_TRUE(grid.touched(3).empty());
    grid.set(3, 20, 1);
    grid.set(3, 10, 1);
    grid.set(3, 60, 1); // outside
    EXPECT_EQ(std::pair(grid.touched(3).first, grid.touched(3).end), std::pair(10, 21));
    EXPECT_TRUE(grid.touched(4).empty());
    grid.fillRow(4, 0);
    EXPECT_EQ(std::pair(grid.touched(4).first, grid.touched(4).end), std::pair(0, 50));
    grid.forgetTouched();
    EXPECT_TRUE(grid.touched(3).empty());
    static_cast<void>(std::as_const(grid).row(3));
    EXPECT_TRUE(grid.touched(3).empty()) << "who only reads touches nothing";
    grid.resize(20);
    EXPECT_EQ(grid.touched(0).end, 50) << "what was cut off has changed, too";
}

TEST_F(UndoHistoryTest, EachStepComesBackInOrderAndCanBeDoneAgain) {
    stroke(0, 60, 4, 3);
    stroke(0, 50, 5, 2);
    EXPECT_TRUE(history.undo(score, setup));
    EXPECT_THAT((Cells{score.NoteCell.row(0).begin() + 3, score.NoteCell.row(0).begin() + 8}),
                ElementsAre(-1, 60, 1060, 1060, -1));
    EXPECT_EQ(score.SongEnd, 7);
    EXPECT_TRUE(history.undo(score, setup));
    EXPECT_EQ(cell(0, 4), -1);
    EXPECT_EQ(score.SongEnd, 0);
    EXPECT_FALSE(history.undo(score, setup)) << "the oldest";
    EXPECT_TRUE(history.redo(score, setup));
    EXPECT_TRUE(history.redo(score, setup));
    EXPECT_FALSE(history.redo(score, setup)) << "the newest";
    EXPECT_EQ(cell(0, 5), 50);
    EXPECT_EQ(score.NoteInstrument.at(0, 6), 24);
}

TEST_F(UndoHistoryTest, WhatChangesNothingIsNoStep) {
    stroke(0, 60, 4, 3);
    EXPECT_TRUE(taken);
    stroke(0, 60, 4, 3);
    EXPECT_FALSE(taken);
    EXPECT_EQ(history.steps(), 1u);
}

TEST_F(UndoHistoryTest, AChoiceIsNoStepButComesBackWithTheActBehindIt) {
    stroke(0, 60, 4, 3);
    history.begin(score, setup);
    score.ActiveChannel = 5;
    EXPECT_FALSE(history.commit(score, setup));
    stroke(5, 40, 0, 2);
    score.ActiveChannel = 7;
    history.undo(score, setup);
    EXPECT_EQ(score.ActiveChannel, 5) << "where the note was drawn";
    history.undo(score, setup);
    EXPECT_EQ(score.ActiveChannel, 0);
    history.redo(score, setup);
    EXPECT_EQ(score.ActiveChannel, 0);
    history.redo(score, setup);
    EXPECT_EQ(score.ActiveChannel, 5);
}

TEST_F(UndoHistoryTest, WhatIsDoneAfterAnUndoTakesThePlaceOfWhatWasUndone) {
    stroke(0, 60, 4, 3, "first");
    stroke(0, 60, 10, 3, "second");
    history.undo(score, setup);
    EXPECT_EQ(history.redoName(), "second");
    stroke(0, 60, 20, 3, "third");
    EXPECT_EQ(history.redoName(), "");
    EXPECT_EQ(history.undoName(), "third");
    EXPECT_EQ(cell(0, 10), -1);
}

TEST_F(UndoHistoryTest, ALengthComesBackWithWhatWasCutOff) {
    stroke(0, 60, 90, 8);
    history.begin(score, setup);
    score.resizeNotes(50);
    ASSERT_TRUE(history.commit(score, setup));
    const auto undone = history.undo(score, setup);
    ASSERT_TRUE(undone);
    EXPECT_TRUE(undone->length);
    EXPECT_EQ(score.NumNotes, 100);
    EXPECT_EQ(cell(0, 97), 1060);
    history.redo(score, setup);
    EXPECT_EQ(score.NumNotes, 50);
    stroke(0, 30, 49, 2);
    history.undo(score, setup);
    history.undo(score, setup);
    EXPECT_EQ(cell(0, 90), 60);
}

TEST_F(UndoHistoryTest, ANameComesBackOnlyWithTheActThatChangedIt) {
    stroke(0, 60, 4, 3);
    score.currentFile = "tune.sng"; // saved under a name
    history.undo(score, setup);
    EXPECT_EQ(score.currentFile, "tune.sng");
    history.redo(score, setup);
    history.begin(score, setup);
    score.currentFile = "other.sng";
    score.Tempo = 70;
    history.commit(score, setup);
    EXPECT_TRUE(history.undo(score, setup)->name);
    EXPECT_EQ(score.currentFile, "tune.sng");
    EXPECT_EQ(score.Tempo, 100);
}

TEST_F(UndoHistoryTest, OnlyWhatWasSavedIsSaved) {
    EXPECT_TRUE(history.isSaved());
    stroke(0, 60, 4, 3);
    EXPECT_FALSE(history.isSaved());
    history.markSaved();
    EXPECT_TRUE(history.isSaved());
    history.undo(score, setup);
    EXPECT_FALSE(history.isSaved());
    history.redo(score, setup);
    EXPECT_TRUE(history.isSaved());
    history.undo(score, setup);
    stroke(0, 60, 20, 3);
    EXPECT_FALSE(history.isSaved()) << "as many steps, but others";
}

TEST_F(UndoHistoryTest, WithinAnActItsEndIsSaved) {
    history.begin(score, setup);
    score.NoteCell.set(0, 3, 60);
    history.markSaved();
    history.commit(score, setup);
    EXPECT_TRUE(history.isSaved());
    history.undo(score, setup);
    EXPECT_FALSE(history.isSaved());
}

TEST_F(UndoHistoryTest, UndoingTellsWhereNotesHaveChanged) {
    stroke(10, 7, 30, 3);
    const auto undone = history.undo(score, setup);
    ASSERT_TRUE(undone);
    EXPECT_TRUE(undone->percussion);
    EXPECT_FALSE(undone->melody);
    EXPECT_EQ(undone->channel, 10);
    EXPECT_EQ(undone->row, 7) << "of a note that is gone";
    EXPECT_EQ(std::pair(undone->positions.first, undone->positions.end), std::pair(30, 33));
    EXPECT_EQ(history.redo(score, setup)->row, 7);
}

TEST_F(UndoHistoryTest, TenThousandStrokesTakeAtMostAMegabyte) {
    std::mt19937 random(3);
    Score large(1000);
    history.restart(large, setup);
    std::swap(score, large);
    for (int times = 0; times < 10'000; ++times)
        stroke(static_cast<int>(random() % 8), static_cast<int>(random() % 128),
               static_cast<int>(random() % 990), static_cast<int>(random() % 8 + 1));
    EXPECT_GT(history.steps(), 9900u); // few repeat what stands there
    EXPECT_LE(history.bytes(), std::size_t{1} << 20);
}

TEST_F(UndoHistoryTest, TheOldestStepsGoWhereMemoryEnds) {
    UndoHistory small(1000);
    small.restart(score, setup);
    std::swap(history, small);
    for (int position = 0; position < 90; ++position)
        stroke(0, 60, position, 1);
    EXPECT_LE(history.bytes(), 1000u);
    const auto kept = static_cast<int>(history.steps());
    EXPECT_GT(kept, 3);
    int undone = 0;
    while (history.undo(score, setup))
        ++undone;
    EXPECT_EQ(undone, kept);
    EXPECT_EQ(cell(0, 89 - kept), 60);
    EXPECT_EQ(cell(0, 90 - kept), -1);
    EXPECT_FALSE(history.isSaved()) << "what was saved can't be reached any more";
}

TEST_F(UndoHistoryTest, OneStepIsKeptHoweverLarge) {
    UndoHistory tiny(1);
    tiny.restart(score, setup);
    std::swap(history, tiny);
    stroke(0, 60, 0, 50);
    EXPECT_TRUE(history.undo(score, setup));
    EXPECT_EQ(cell(0, 49), -1);
}
