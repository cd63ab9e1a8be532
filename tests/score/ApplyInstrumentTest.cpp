// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/ApplyInstrument.h"

#include "score/Score.h"
#include "score/ViewState.h"
#include "sound/Instruments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace velmora;

namespace {
struct ApplyInstrumentTest : testing::Test {
    Score score{20};
    InstrumentSelection chosen;
    ViewState view;

    void mark(int start, int end) {
        view.SelectStart = start;
        view.SelectEnd = end;
    }
};
} // namespace

TEST_F(ApplyInstrumentTest, WithoutASelectionOnlyTheChannelTakesTheCode) {
    score.ActiveChannel = 3;
    score.NoteCell.set(3, 4, 60);
    chosen.MelodyInstrument = 40;
    chosen.MelodyInstrumentName = "Violin";
    EXPECT_EQ(applyMelodyInstrument(score, chosen, 7, view), 0);
    EXPECT_EQ(score.ChannelInstrument[3], 40);
    EXPECT_EQ(score.NoteInstrument.at(3, 4), 0);
}

TEST_F(ApplyInstrumentTest, HeadsAndContinuationsWithinTheMarksTakeTheCodeAndEmptyCellsDoNot) {
    score.NoteCell.set(0, 4, 0);
    score.NoteCell.set(0, 5, 1000);
    score.NoteCell.set(0, 7, 60);
    score.NoteCell.set(1, 4, 60);
    chosen.MelodyInstrumentName = "Nylon Guitar";
    mark(4, 6);
    EXPECT_EQ(applyMelodyInstrument(score, chosen, 7, view), 2);
    EXPECT_EQ(score.NoteInstrument.at(0, 4), 24);
    EXPECT_EQ(score.NoteInstrument.at(0, 5), 24);
    EXPECT_EQ(score.NoteInstrument.at(0, 6), 0);
    EXPECT_EQ(score.NoteInstrument.at(0, 7), 0);
    EXPECT_EQ(score.NoteInstrument.at(1, 4), 0);
}

TEST_F(ApplyInstrumentTest, TheCallerHearsOnceBeforeACellChangesAndNeverWhereNoneDoes) {
    score.NoteCell.set(0, 4, 60);
    score.NoteCell.set(0, 6, 60);
    chosen.MelodyInstrumentName = "Nylon Guitar";
    std::vector<int> heard;
    const auto before = [&] { heard.push_back(score.ChannelInstrument[0]); };
    applyMelodyInstrument(score, chosen, 7, view, before);
    EXPECT_THAT(heard, testing::IsEmpty()); // no selection
    score.ChannelInstrument[0] = 5;
    mark(0, 20);
    applyMelodyInstrument(score, chosen, 7, view, before);
    EXPECT_THAT(heard, testing::ElementsAre(5));
    applyMelodyInstrument(score, chosen, 7, view, before);
    EXPECT_EQ(heard.size(), 1U); // the notes have the instrument already
}

TEST_F(ApplyInstrumentTest, WithABlankNameTheStoredCodeIsTakenFirst) {
    applyMelodyInstrument(score, chosen, 7, view);
    EXPECT_EQ(chosen.MelodyInstrument, 7);
    EXPECT_EQ(score.ChannelInstrument[0], 7);
    score.ActiveChannel = 8;
    applyPercussionInstrument(score, chosen, 150, view);
    EXPECT_EQ(chosen.PercussionInstrument, 150);
    EXPECT_EQ(score.ChannelInstrument[8], 150);
}

TEST_F(ApplyInstrumentTest, TheChannelKeepsItsInstrumentWhenItBelongsToTheOtherGroup) {
    chosen.MelodyInstrumentName = chosen.PercussionInstrumentName = "picked";
    score.ActiveChannel = 8;
    score.NoteCell.set(8, 2, 56);
    mark(0, 20);
    EXPECT_EQ(applyMelodyInstrument(score, chosen, 7, view), 1);
    EXPECT_EQ(score.ChannelInstrument[8], 0);
    EXPECT_EQ(score.NoteInstrument.at(8, 2), 24);
    score.ActiveChannel = 7;
    applyPercussionInstrument(score, chosen, 7, view);
    EXPECT_EQ(score.ChannelInstrument[7], 0);
}

TEST_F(ApplyInstrumentTest, MarksBeyondTheScoreAndChannelsOutsideItAreHarmless) {
    score.NoteCell.set(0, 20, 60);
    mark(0, 2147483647);
    EXPECT_EQ(applyMelodyInstrument(score, chosen, 7, view), 1);
    mark(9, 3);
    EXPECT_EQ(applyMelodyInstrument(score, chosen, 7, view), 0);
    mark(0, 20);
    for (const int channel : {-1, 16, 2147483647}) {
        score.ActiveChannel = channel;
        EXPECT_EQ(applyMelodyInstrument(score, chosen, 7, view), 0);
        EXPECT_EQ(applyPercussionInstrument(score, chosen, 7, view), 0);
    }
}
