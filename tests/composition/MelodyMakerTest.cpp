// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/MelodyMaker.h"

#include "tests/composition/WorkspaceFixture.h"

using namespace velmora;
using testing::ElementsAre;

namespace {
/// A hundred positions, all boxes ticked.
struct MelodyMakerTest : WorkspaceFixture {
    MelodyMakerTest() {
        store("NumNotes", "100");
        workspace().edit.ChannelPicked.fill(true);
    }

    EditState& edit() { return workspace().edit; }
    void cycle(int notes, int beats, int total) {
        edit().CycleNotes = static_cast<std::int16_t>(notes);
        edit().CycleBeats = static_cast<std::int16_t>(beats);
        edit().TotalNotes = static_cast<std::int16_t>(total);
    }
    void put(int channel, int position, int cell) {
        score().NoteCell.set(channel, position, static_cast<std::int16_t>(cell));
    }
    int cell(int channel, int position) { return score().NoteCell.valueOr(channel, position, -9); }
    std::vector<int> heads(int channel) {
        std::vector<int> list;
        for (int position = 0; position <= score().NumNotes; ++position) {
            if (cell(channel, position) >= 0)
                list.push_back(position);
        }
        return list;
    }
};
} // namespace

TEST_F(MelodyMakerTest, SixtyNotesOfEightEveryTwelfthBeginAtPositionOne) {
    put(0, 1, 60);
    cycle(8, 12, 60);
    createMelody(workspace(), 1);
    EXPECT_THAT(heads(0), ElementsAre(1, 13, 25, 37, 49, 61));
    EXPECT_EQ(workspace().view.PlayMark, 0);
    EXPECT_EQ(workspace().view.SelectStart, -1);
    EXPECT_EQ(workspace().view.SelectEnd, -1);
    EXPECT_EQ(edit().SelectSpan, 8);
}

TEST_F(MelodyMakerTest, AStampIsNineNoteCellsLongAndTheSilenceBetweenStampsStays) {
    for (int position = 1; position <= 70; ++position)
        put(0, position, 10);
    for (int position = 1; position <= 9; ++position)
        put(0, position, 60);
    cycle(8, 12, 60);
    createMelody(workspace(), 1);
    for (int position = 1; position <= 69; ++position)
        EXPECT_EQ(cell(0, position), (position - 1) % 12 < 9 ? 60 : 10) << position;
    EXPECT_EQ(cell(0, 70), 10);
}

TEST_F(MelodyMakerTest, TheLastCellOfAMotifBringsNoEffects) {
    put(0, 1, 60);
    put(0, 5, 61);
    score().Volume.set(0, 2, 11);
    score().Volume.set(0, 6, 12);
    cycle(4, 20, 20);
    createMelody(workspace(), 1);
    EXPECT_EQ(score().Volume.at(0, 22), 11);
    EXPECT_EQ(cell(0, 25), 61);
    EXPECT_EQ(score().Volume.at(0, 26), 127) << "what the buffer held";
    EXPECT_EQ(score().Volume.at(0, 6), 127) << "the motif's own last cell loses its own";
}

TEST_F(MelodyMakerTest, ALengthAndALoopOfZeroActAsEight) {
    put(0, 1, 60);
    cycle(2, 0, 0);
    createMelody(workspace(), 1);
    EXPECT_THAT(heads(0), ElementsAre(1, 9));
    EXPECT_EQ(edit().TotalNotes, 8);
    EXPECT_EQ(edit().CycleBeats, 8);
}

TEST_F(MelodyMakerTest, WithNoBoxTickedNothingIsStampedButTheStepIsKept) {
    edit().ChannelPicked.fill(false);
    put(0, 1, 60);
    cycle(4, 8, 40);
    createMelody(workspace(), 1);
    EXPECT_THAT(heads(0), ElementsAre(1));
    EXPECT_EQ(workspace().undoStep(), "Create Melody");
    EXPECT_EQ(score().ClipNoteCell.at(0, 0), -1);
}

TEST_F(MelodyMakerTest, TheCellAfterAStampInsideAnOlderNoteBecomesAHead) {
    put(0, 1, 60);
    put(0, 12, 70);
    for (int position = 13; position <= 30; ++position)
        put(0, position, 1070);
    cycle(3, 14, 14);
    createMelody(workspace(), 1);
    EXPECT_EQ(cell(0, 14), 1070);
    EXPECT_EQ(cell(0, 15), 60);
    EXPECT_EQ(cell(0, 18), -1);
    EXPECT_EQ(cell(0, 19), 70);
    EXPECT_EQ(cell(0, 20), 1070);
}

TEST_F(MelodyMakerTest, AMotifThatBeginsInTheMiddleOfANoteBeginsWithAHead) {
    put(0, 0, 60);
    put(0, 1, 1060);
    put(0, 2, 1060);
    cycle(2, 10, 10);
    createMelody(workspace(), 1);
    EXPECT_EQ(cell(0, 1), 60) << "the first stamp lands on the motif";
    EXPECT_EQ(cell(0, 11), 60);
    EXPECT_EQ(cell(0, 12), 1060);
}

TEST_F(MelodyMakerTest, AStampOverwritesTheTailOfTheOneBefore) {
    for (int offset = 0; offset <= 4; ++offset)
        put(0, 1 + offset, 60 + offset);
    cycle(4, 3, 6);
    createMelody(workspace(), 1);
    std::vector<int> got;
    for (int position = 1; position <= 12; ++position)
        got.push_back(cell(0, position));
    EXPECT_THAT(got, ElementsAre(60, 61, 62, 60, 61, 62, 60, 61, 62, 63, 64, -1));
}

TEST_F(MelodyMakerTest, RepetitionStopsWithTheScore) {
    put(0, 1, 60);
    put(0, 4, 61);
    cycle(4, 48, 32000);
    createMelody(workspace(), 1);
    EXPECT_THAT(heads(0), ElementsAre(1, 4, 49, 52, 97, 100));
}

TEST_F(MelodyMakerTest, AMarkMovesTheStampsBeyondTheMotif) {
    put(0, 1, 60);
    cycle(1, 10, 10);
    workspace().view.PlayMark = 20;
    createMelody(workspace(), 1);
    EXPECT_THAT(heads(0), ElementsAre(1, 21, 31));
}

TEST_F(MelodyMakerTest, OnlyTickedChannelsAreStampedMutedOrNot) {
    for (const int channel : {0, 3, 5})
        put(channel, 1, 60);
    edit().ChannelPicked[3] = false;
    score().ChannelMuted[5] = true;
    workspace().CopyonlyOneTrack = true; // doesn't matter here
    cycle(1, 10, 10);
    createMelody(workspace(), 1);
    EXPECT_THAT(heads(0), ElementsAre(1, 11));
    EXPECT_THAT(heads(3), ElementsAre(1));
    EXPECT_THAT(heads(5), ElementsAre(1, 11));
}

TEST_F(MelodyMakerTest, ChannelsInUseAreLit) {
    score().ChannelInUse[4] = true;
    score().ChannelShown[4] = false;
    createMelody(workspace(), 1);
    EXPECT_TRUE(score().ChannelShown[4]);
    EXPECT_FALSE(score().ChannelShown[6]);
}

TEST_F(MelodyMakerTest, TheEditorsDuplicateBeginsAtTheSelectionWhichGoes) {
    for (const int channel : {0, 7, 8, 12})
        put(channel, 3, 60);
    cycle(1, 20, 20);
    workspace().view.SelectStart = 3;
    edit().Check5 = true;
    duplicateMelody(workspace());
    EXPECT_EQ(cell(0, 23), 60);
    EXPECT_EQ(cell(7, 23), 60);
    EXPECT_EQ(cell(8, 23), -1);
    EXPECT_EQ(workspace().view.SelectStart, -1);
    workspace().view.SelectStart = 3;
    workspace().view.NoteEffectsOn = true;
    edit().Check5 = false;
    duplicateMelody(workspace());
    EXPECT_EQ(cell(8, 23), 60);
    EXPECT_EQ(cell(12, 23), 60);
}

TEST_F(MelodyMakerTest, TheEditorsBoxesChooseWhatIsDuplicated) {
    struct Case {
        bool melody, percussion;
        std::vector<int> duplicated;
    };
    for (const Case& boxes : {Case{false, false, {}}, Case{true, false, {0, 7}}, Case{false, true, {8, 12}},
                              Case{true, true, {0, 7, 8, 12}}}) {
        SCOPED_TRACE(testing::Message() << boxes.melody << boxes.percussion);
        score().ClearNoteArrays();
        for (const int channel : {0, 7, 8, 12})
            put(channel, 3, 60);
        cycle(1, 20, 20);
        workspace().view.SelectStart = 3;
        edit().Check5 = boxes.melody;
        edit().Check3 = boxes.percussion;
        duplicateMelody(workspace());
        std::vector<int> duplicated;
        std::ranges::copy_if(std::array{0, 7, 8, 12}, std::back_inserter(duplicated),
                             [&](int channel) { return cell(channel, 23) == 60; });
        EXPECT_EQ(duplicated, boxes.duplicated);
    }
}

TEST_F(MelodyMakerTest, RepeatingAloneMendsByMuteAndNotByBox) {
    for (const int channel : {0, 1, 2})
        for (int position = 9; position < 20; ++position)
            put(channel, position, 1060);
    edit().ChannelPicked[1] = false;
    score().ChannelMuted[2] = true;
    edit().SelectSpan = 1;
    cycle(1, 30, 20);
    workspace().view.PlayMark = 10;
    CopyRepeat(workspace(), 0, 7);
    EXPECT_EQ(cell(0, 11), -1);
    EXPECT_EQ(cell(0, 12), 60);
    EXPECT_EQ(cell(1, 11), 1060) << "not stamped";
    EXPECT_EQ(cell(1, 12), 60) << "but mended";
    EXPECT_EQ(cell(2, 11), -1);
    EXPECT_EQ(cell(2, 12), 1060) << "muted";
    EXPECT_EQ(workspace().view.PlayMark, 10);
}

// Fields

TEST_F(MelodyMakerTest, PlayableNotesNeverPassTheLoop) {
    takeCycle(edit(), workspace().manners, 12, 8);
    EXPECT_EQ(edit().CycleBeats, 12);
    EXPECT_EQ(edit().CycleNotes, 8);
    takeCycle(edit(), workspace().manners, 12, 13);
    EXPECT_EQ(edit().CycleNotes, 12);
    takeCycle(edit(), workspace().manners, 5, 12);
    EXPECT_EQ(edit().CycleBeats, 5);
    EXPECT_EQ(edit().CycleNotes, 5);
}

TEST_F(MelodyMakerTest, TheStartSelectsThePositionBeforeItAndTheMelodyReachesIt) {
    edit().TotalNotes = 20;
    takeStart(workspace(), 21);
    EXPECT_EQ(workspace().view.SelectStart, 20);
    EXPECT_EQ(edit().TotalNotes, 20);
    takeStart(workspace(), 22);
    EXPECT_EQ(edit().TotalNotes, 22);
    EXPECT_EQ(edit().txtStart, 22);
}

TEST_F(MelodyMakerTest, APictureStepsByTenDownOnTheLeftAndUpOnTheRight) {
    EXPECT_EQ(steppedByPicture(50, 0, 41, {0, 100}), 40);
    EXPECT_EQ(steppedByPicture(50, 20, 41, {0, 100}), 40);
    EXPECT_EQ(steppedByPicture(50, 21, 41, {0, 100}), 60);
    EXPECT_EQ(steppedByPicture(5, 0, 41, {0, 100}), 0);
    EXPECT_EQ(steppedByPicture(95, 40, 41, {0, 100}), 100);
}

TEST_F(MelodyMakerTest, TheStartsBarGoesByMeasures) {
    score().NotesPerMeasure = 12;
    EXPECT_EQ(startSteps(score()).small, 12);
    EXPECT_EQ(startSteps(score()).large, 120);
}

TEST_F(MelodyMakerTest, TheTwoCollectiveBoxesTickTheirChannels) {
    edit().ChannelPicked.fill(false);
    pickMelody(edit(), true);
    EXPECT_THAT(edit().ChannelPicked, ElementsAre(true, true, true, true, true, true, true, true, false,
                                                  false, false, false, false));
    pickPercussion(edit(), true);
    EXPECT_FALSE(edit().ChannelPicked[9]) << "there is no such channel";
    for (const int channel : {8, 10, 11, 12})
        EXPECT_TRUE(edit().ChannelPicked[channel]) << channel;
    pickMelody(edit(), false);
    EXPECT_THAT(edit().ChannelPicked, ElementsAre(false, false, false, false, false, false, false, false,
                                                  true, false, true, true, true));
    pickPercussion(edit(), false);
    EXPECT_THAT(edit().ChannelPicked, testing::Each(false));
}

// In careful manner

TEST_F(MelodyMakerTest, StartOneIsTheFirstColumn) {
    workspace().setManners(Manners::careful());
    put(0, 0, 60);
    put(0, 1, 1060);
    put(0, 5, 62);
    cycle(8, 12, 60);
    createMelody(workspace(), 1);
    EXPECT_THAT(heads(0), ElementsAre(0, 1, 5, 12, 13, 17, 24, 25, 29, 36, 37, 41, 48, 49, 53, 60, 61, 65));
    EXPECT_EQ(cell(0, 13), 1060) << "the note is whole";
}

TEST_F(MelodyMakerTest, AStartOfNothingIsTheFirstColumnToo) {
    workspace().setManners(Manners::careful());
    put(0, 0, 60);
    put(0, 1, 61);
    cycle(1, 20, 20);
    createMelody(workspace(), 0);
    EXPECT_THAT(heads(0), ElementsAre(0, 1, 20, 21));
}

TEST_F(MelodyMakerTest, BlankFieldsStandForTheWorkedExample) {
    workspace().setManners(Manners::careful());
    put(0, 0, 60);
    put(0, 8, 61);
    put(0, 9, 62); // behind the motif, which is one cell longer in its notes
    createMelody(workspace(), 1);
    EXPECT_THAT(heads(0), ElementsAre(0, 8, 9, 12, 20, 24, 32, 36, 44, 48, 56, 60, 68));
    EXPECT_EQ(edit().TotalNotes, 0) << "and stay blank";
    EXPECT_EQ(edit().CycleBeats, 0);
    EXPECT_EQ(edit().CycleNotes, 0);
    EXPECT_EQ(edit().SelectSpan, 8);
}

TEST_F(MelodyMakerTest, ABlankNumberOfNotesIsAtMostTheLoop) {
    const Manners careful = Manners::careful();
    EXPECT_EQ(cycleOf(edit(), careful), kWorkedExample);
    cycle(0, 5, 0);
    EXPECT_EQ(cycleOf(edit(), careful), (Cycle{60, 5, 5}));
    cycle(3, 0, 7);
    EXPECT_EQ(cycleOf(edit(), careful), (Cycle{7, 12, 3}));
}

TEST_F(MelodyMakerTest, NotesMayBeGivenBeforeTheirLoop) {
    const Manners careful = Manners::careful();
    takeCycle(edit(), careful, 0, 4);
    EXPECT_EQ(edit().CycleNotes, 4);
    EXPECT_EQ(edit().CycleBeats, 0);
    takeCycle(edit(), careful, 0, 13);
    EXPECT_EQ(edit().CycleNotes, 12);
    takeCycle(edit(), Manners::classic(), 0, 4);
    EXPECT_EQ(edit().CycleNotes, 0) << "a loop of nothing has no notes";
}

TEST_F(MelodyMakerTest, ABlankLengthGrowsOnlyWhereTheStartIsPastIt) {
    workspace().setManners(Manners::careful());
    takeStart(workspace(), 61);
    EXPECT_EQ(edit().TotalNotes, 0);
    takeStart(workspace(), 62);
    EXPECT_EQ(edit().TotalNotes, 62);
}
