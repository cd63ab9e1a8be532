// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/SetupRules.h"

#include "tests/composition/WorkspaceFixture.h"

using namespace velmora;

namespace {
class SetupRulesTest : public WorkspaceFixture {
protected:
    SetupState& setup() { return workspace().setup; }
    void meter(std::int16_t beats, std::int16_t note, std::int16_t notes) {
        setup().TxtMeter = beats;
        setup().NoteX = note;
        TxBeats_Change(workspace(), notes);
    }
    /// Whether every position of the channel holds the value.
    static bool holds(const ChannelGrid& grid, int channel, std::int16_t value) {
        return std::ranges::all_of(grid.row(channel), [value](std::int16_t cell) { return cell == value; });
    }
};
} // namespace

TEST_F(SetupRulesTest, ATextWithoutANumberCountsAsZero) {
    EXPECT_EQ(fieldNumber(""), 0);
    EXPECT_EQ(fieldNumber("abc"), 0);
    EXPECT_EQ(fieldNumber("12 abc"), 12);
    EXPECT_EQ(fieldCount("ten"), 0);
}

TEST_F(SetupRulesTest, ANumberBelowZeroCountsAsZero) {
    EXPECT_EQ(fieldNumber("-4"), 0);
    EXPECT_EQ(fieldCount("-1e300"), 0);
}

TEST_F(SetupRulesTest, ANumberThatIsTooLargeIsNone) {
    EXPECT_EQ(fieldNumber("32767"), 32767);
    EXPECT_EQ(fieldNumber("32768"), std::nullopt);
    EXPECT_EQ(fieldCount("99999999999999999999"), std::nullopt);
}

TEST_F(SetupRulesTest, TheBeatsStepThroughTheirTenPositions) {
    std::vector<std::int16_t> values{1};
    while (values.size() < 12)
        values.push_back(stepped(kBeats, values.back(), 1));
    EXPECT_THAT(values, testing::ElementsAre(1, 2, 3, 4, 5, 6, 8, 10, 12, 16, 16, 16));
}

TEST_F(SetupRulesTest, TheNoteValuesStepByOctaves) {
    EXPECT_EQ(stepped(kNoteValues, 4, 1), 8);
    EXPECT_EQ(stepped(kNoteValues, 4, -2), 1);
    EXPECT_EQ(stepped(kNoteValues, 32, 1), 32);
    EXPECT_EQ(stepped(kNoteValues, 1, -1), 1);
}

TEST_F(SetupRulesTest, AValueBetweenTwoPositionsStepsToTheNext) {
    EXPECT_EQ(stepped(kBeats, 7, 1), 8);
    EXPECT_EQ(stepped(kBeats, 7, -1), 6);
    EXPECT_EQ(stepped(kBeats, 0, 1), 1);
    EXPECT_EQ(stepped(kBeats, 99, -1), 16);
}

TEST_F(SetupRulesTest, FourQuartersAreSixteenNotes) {
    meter(4, 2, 8);
    EXPECT_TRUE(NoteX_Change(workspace(), 4));
    EXPECT_EQ(setup().TxBeats, 16);
    EXPECT_EQ(score().NotesPerMeasure, 16);
}

TEST_F(SetupRulesTest, AProductUpToSixteenIsTaken) {
    meter(4, 4, 16);
    TxtMeter_Change(workspace(), 3);
    EXPECT_EQ(setup().TxBeats, 12);
    NoteX_Change(workspace(), 2);
    EXPECT_EQ(setup().TxBeats, 6);
}

TEST_F(SetupRulesTest, AMultipleOfSixteenIsSixteenInEither) {
    meter(16, 1, 12);
    NoteX_Change(workspace(), 32); // 512
    EXPECT_EQ(setup().TxBeats, 16);
    meter(1, 32, 12);
    TxtMeter_Change(workspace(), 16);
    EXPECT_EQ(setup().TxBeats, 16);
}

TEST_F(SetupRulesTest, AMultipleOfThirtyTwoIsSixteenToo) {
    meter(4, 8, 12);
    TxtMeter_Change(workspace(), 8); // 64
    EXPECT_EQ(setup().TxBeats, 16);
}

TEST_F(SetupRulesTest, AnyOtherProductIsForTheBeatsAlone) {
    meter(10, 1, 12);
    EXPECT_FALSE(NoteX_Change(workspace(), 2)); // 20
    EXPECT_EQ(setup().TxBeats, 12);
    EXPECT_TRUE(TxtMeter_Change(workspace(), 10));
    EXPECT_EQ(setup().TxBeats, 20);
    EXPECT_EQ(score().NotesPerMeasure, 20);
}

TEST_F(SetupRulesTest, ALetterInAFieldMakesTheMeasureNothing) {
    meter(4, 4, 16);
    TxtMeter_Change(workspace(), *fieldNumber("x"));
    EXPECT_EQ(setup().TxBeats, 0);
    EXPECT_FALSE(topBarText(score(), setup()).empty());
}

TEST_F(SetupRulesTest, AProductThatIsTooLargeLeavesTheMeasure) {
    meter(4, 4, 16);
    setup().NoteX = 9999;
    EXPECT_FALSE(TxtMeter_Change(workspace(), 9999));
    EXPECT_EQ(setup().TxBeats, 16);
}

TEST_F(SetupRulesTest, TheTempoRisesInFours) {
    EXPECT_EQ(tempoAt(0, 250), 0);
    EXPECT_EQ(tempoAt(1, 250), 0); // the whole part of a half
    EXPECT_EQ(tempoAt(2, 250), 4);
    EXPECT_EQ(tempoAt(51, 250), 100);
    EXPECT_EQ(tempoAt(250, 250), 500);
}

TEST_F(SetupRulesTest, BeyondTheBarIsItsEnd) {
    EXPECT_EQ(tempoAt(900, 250), 500);
    EXPECT_EQ(tempoAt(-3, 250), 0);
    EXPECT_EQ(tempoAt(3, 0), 0);
    EXPECT_EQ(tempoAt(1, 1), 500);
    EXPECT_EQ(tempoAt(3, -1), 0);
}

TEST_F(SetupRulesTest, TheVolumeIsTheWholePartOfItsShare) {
    EXPECT_EQ(volumeAt(50, 100), 63);
    EXPECT_EQ(volumeAt(100, 100), 127);
    EXPECT_EQ(volumeAt(1, 1000), 0);
}

TEST_F(SetupRulesTest, TheStartOfTheBarIsFullVolume) {
    EXPECT_EQ(volumeAt(0, 100), 127);
}

TEST_F(SetupRulesTest, AVolumeIsTheActiveChannelsAlone) {
    score().ActiveChannel = 2;
    setVelocity(workspace(), 90);
    EXPECT_EQ(score().ChannelVelocity[2], 90);
    EXPECT_EQ(setup().channels[2].volume, 90);
    EXPECT_EQ(score().ChannelVelocity[1], 127);
    fillVolume(workspace(), 90);
    EXPECT_TRUE(holds(score().Volume, 2, 90));
    EXPECT_TRUE(holds(score().Volume, 1, 127));
}

TEST_F(SetupRulesTest, TheEffectsFillEveryPositionOfTheChannel) {
    setup().SetupOpen = true;
    score().ActiveChannel = 3;
    PlaybackChannelSetup& values = setup().channels[3];
    values.pan = 10;
    values.reverb = 20;
    values.chorus = 30;
    values.modulation = 40;
    fillEffects(workspace());
    EXPECT_TRUE(holds(score().Pan_Change, 3, 10));
    EXPECT_TRUE(holds(score().Reverb_Change, 3, 20));
    EXPECT_TRUE(holds(score().Chorus_Change, 3, 30));
    EXPECT_TRUE(holds(score().Modulation_Change, 3, 40));
    EXPECT_TRUE(holds(score().Pan_Change, 4, 64));
}

TEST_F(SetupRulesTest, ClosedTheToolbarFillsNoEffects) {
    setup().channels[0].pan = 10;
    fillEffects(workspace());
    EXPECT_TRUE(holds(score().Pan_Change, 0, 64));
}

TEST_F(SetupRulesTest, TheChordListSetsTheStepsOfTheNextType) {
    Combo3_Click(setup(), workspace().chords, 0);
    EXPECT_EQ(workspace().chords, (ChordSteps{4, 7, 12, "", {}})); // Major, without its hint
    Combo3_Click(setup(), workspace().chords, 6);
    EXPECT_EQ(workspace().chords, (ChordSteps{-12, 12, 0, "", {}}));
    EXPECT_EQ(setup().Combo3, 6);
}

TEST_F(SetupRulesTest, NoItemOfTheChordListChangesNothing) {
    Combo3_Click(setup(), workspace().chords, 2);
    Combo3_Click(setup(), workspace().chords, -1);
    Combo3_Click(setup(), workspace().chords, 7);
    EXPECT_EQ(setup().Combo3, 2);
}

TEST_F(SetupRulesTest, AChordForTheChannelIsTheListsIndexItself) {
    Combo3_Click(setup(), workspace().chords, 1);
    Ch_Click(workspace(), 0, true);
    EXPECT_TRUE(holds(score().Polyphonics, 1, 1));
    EXPECT_TRUE(holds(score().Polyphonics, 0, 0));
    EXPECT_TRUE(setup().Ch[0]);
}

TEST_F(SetupRulesTest, TheFirstChordOfTheListLeavesNone) {
    Combo3_Click(setup(), workspace().chords, 0);
    Ch_Click(workspace(), 7, true);
    EXPECT_TRUE(holds(score().Polyphonics, 8, 0));
    EXPECT_TRUE(setup().Ch[7]);
}

TEST_F(SetupRulesTest, ClearedTheChannelHasNoChords) {
    Combo3_Click(setup(), workspace().chords, 3);
    Ch_Click(workspace(), 7, true);
    Ch_Click(workspace(), 7, false);
    EXPECT_TRUE(holds(score().Polyphonics, 8, 0));
    EXPECT_FALSE(setup().Ch[7]);
}

TEST_F(SetupRulesTest, PercussionHasNoChords) {
    Combo3_Click(setup(), workspace().chords, 3);
    Ch_Click(workspace(), 8, true);
    EXPECT_TRUE(holds(score().Polyphonics, 9, 0));
}

TEST_F(SetupRulesTest, OneChannelAloneIsLit) {
    score().ChannelShown[1] = true;
    TrackSel_Click(workspace(), settings, 12);
    EXPECT_FALSE(score().ChannelShown[1]);
    EXPECT_TRUE(score().ChannelShown[12]);
    TrackSel_Click(workspace(), settings, 16);
    EXPECT_TRUE(score().ChannelShown[12]);
}

TEST_F(SetupRulesTest, ARowIsNeverTooLowToSee) {
    for (const auto& [typed, taken] : {std::pair<std::int16_t, int>{0, 4}, {12, 12}, {999, 40}}) {
        Text3_Change(workspace(), typed);
        EXPECT_EQ(workspace().view.Line_Height, taken);
    }
}

TEST_F(SetupRulesTest, ALongerScoreKeepsItsNotes) {
    putNotes(score(), 0, 60, 4);
    ASSERT_TRUE(setScoreLength(workspace(), 1200));
    EXPECT_EQ(score().NumNotes, 1200);
    EXPECT_EQ(score().NoteCell.positions(), 1201);
    EXPECT_EQ(score().SongEnd, 8);
    EXPECT_EQ(score().Volume.at(0, 1200), 127);
}

TEST_F(SetupRulesTest, AScoreKeepsAtLeastOnePosition) {
    EXPECT_FALSE(setScoreLength(workspace(), 0));
    EXPECT_FALSE(setScoreLength(workspace(), -500));
    EXPECT_EQ(score().NumNotes, 1000);
    EXPECT_TRUE(setScoreLength(workspace(), 1));
}

TEST_F(SetupRulesTest, AScoreGrowsNoLargerThanMemoryIsMeantFor) {
    EXPECT_FALSE(setScoreLength(workspace(), 200'001));
    EXPECT_FALSE(setScoreLength(workspace(), std::int64_t{1} << 40));
    EXPECT_EQ(score().NumNotes, 1000);
}

TEST_F(SetupRulesTest, NotesThatWereCutOffCanBeBroughtBack) {
    putNotes(score(), 0, 60, 100); // 200 positions
    ASSERT_TRUE(setScoreLength(workspace(), 50));
    EXPECT_EQ(score().SongEnd, 51);
    EXPECT_TRUE(workspace().undoLast());
    EXPECT_EQ(score().NumNotes, 1000);
    EXPECT_EQ(score().SongEnd, 200);
}

TEST_F(SetupRulesTest, WithoutNotesBehindTheEndThereIsNothingToBringBack) {
    putNotes(score(), 0, 60, 2);
    ASSERT_TRUE(setScoreLength(workspace(), 50));
    EXPECT_FALSE(workspace().undoLast());
}

TEST_F(SetupRulesTest, MarksBehindTheNewEndGo) {
    ViewState& view = workspace().view;
    view.SelectStart = 40;
    view.SelectEnd = 90;
    view.PlayMark = 70;
    ASSERT_TRUE(setScoreLength(workspace(), 60));
    EXPECT_EQ(view.SelectStart, 40);
    EXPECT_EQ(view.SelectEnd, 60);
    EXPECT_EQ(view.PlayMark, 60);
    ASSERT_TRUE(setScoreLength(workspace(), 30));
    EXPECT_EQ(view.SelectStart, -1);
    EXPECT_EQ(view.SelectEnd, -1);
}

// The instrument of a channel

TEST_F(SetupRulesTest, AnInstrumentGoesToChannelsOfItsGroup) {
    workspace().instruments.MelodyInstrument = 40;
    workspace().instruments.MelodyInstrumentName = "Violin";
    workspace().instruments.PercussionInstrument = 149;
    workspace().instruments.PercussionInstrumentName = "Cowbell";
    for (const int channel : {7, 8}) {
        score().ActiveChannel = channel;
        applyInstrument(workspace(), settings);
    }
    EXPECT_EQ(score().ChannelInstrument[7], 40);
    EXPECT_EQ(score().ChannelInstrument[8], 149);
}

TEST_F(SetupRulesTest, WithoutAChosenNameTheInstrumentIsThatOfTheSettings) {
    store("Intrumentval", "33");
    store("Intrumentval2", "150");
    workspace().instruments.MelodyInstrumentName.clear();
    workspace().instruments.PercussionInstrumentName.clear();
    for (const int channel : {7, 8}) {
        score().ActiveChannel = channel;
        applyInstrument(workspace(), settings);
    }
    EXPECT_EQ(score().ChannelInstrument[7], 33);
    EXPECT_EQ(score().ChannelInstrument[8], 150);
}

// What choosing a channel does

namespace {
/// The open toolbar, and two notes on channel 2 that differ in every layer.
class ChosenChannelTest : public SetupRulesTest {
protected:
    ChosenChannelTest() {
        setup().SetupOpen = true;
        putNotes(score(), 2, 60, 2, 3);
        score().ChannelInstrument[2] = 73;
        for (const auto& [grid, value] : layers()) {
            grid->set(2, 1, value);
            grid->set(2, 4, static_cast<std::int16_t>(value + 1));
        }
    }
    std::vector<std::pair<ChannelGrid*, std::int16_t>> layers() {
        return {{&score().Volume, 90},
                {&score().Modulation_Change, 10},
                {&score().Pan_Change, 20},
                {&score().Reverb_Change, 30},
                {&score().Chorus_Change, 40}};
    }
    std::vector<std::int16_t> shown() {
        std::vector<std::int16_t> values;
        for (const ShownSound& sound : shownSound(workspace()))
            values.push_back(sound.value);
        return values;
    }
    void choose(const Manners& manners) {
        workspace().setManners(manners);
        TrackSel_Click(workspace(), settings, 2);
    }
};
} // namespace

TEST_F(ChosenChannelTest, InClassicMannerTheChannelTakesTheToolbarsFourEffects) {
    choose(Manners::classic());
    EXPECT_TRUE(holds(score().Modulation_Change, 2, 0));
    EXPECT_TRUE(holds(score().Pan_Change, 2, 64));
    EXPECT_TRUE(holds(score().Reverb_Change, 2, 0));
    EXPECT_TRUE(holds(score().Chorus_Change, 2, 0));
    EXPECT_EQ(score().Volume.at(2, 4), 91);
    EXPECT_THAT(shown(), testing::ElementsAre(127, 0, 64, 0, 0));
}

TEST_F(ChosenChannelTest, InCarefulMannerTheScoreStaysAsItIs) {
    workspace().view.SelectStart = 0;
    workspace().view.SelectEnd = 5;
    const Score before = score();
    choose(Manners::careful());
    for (const auto& [grid, value] : layers()) {
        EXPECT_EQ(grid->at(2, 1), value);
        EXPECT_EQ(grid->at(2, 4), value + 1);
    }
    EXPECT_EQ(score().NoteInstrument, before.NoteInstrument) << "the selection's, too";
    EXPECT_EQ(score().ChannelInstrument, before.ChannelInstrument);
    EXPECT_EQ(score().ActiveChannel, 2);
    EXPECT_TRUE(score().ChannelShown[2]);
}

TEST_F(ChosenChannelTest, InCarefulMannerTheChannelsInstrumentIsTheChosenOne) {
    choose(Manners::careful());
    EXPECT_EQ(workspace().instruments.MelodyInstrument, 73);
    EXPECT_EQ(workspace().instruments.MelodyInstrumentName, "Flute");
    score().ChannelInstrument[10] = 149;
    chooseChannel(workspace(), 10);
    EXPECT_EQ(workspace().instruments.PercussionInstrumentName, "Cowbell");
    EXPECT_EQ(workspace().instruments.MelodyInstrument, 73);
    score().ChannelInstrument[11] = 3; // which is none of percussion's
    chooseChannel(workspace(), 11);
    EXPECT_EQ(workspace().instruments.PercussionInstrument, 149);
    EXPECT_EQ(workspace().instruments.MelodyInstrument, 73);
}

TEST_F(ChosenChannelTest, TheValuesAreThoseOfTheNoteAtThePlayMark) {
    choose(Manners::careful());
    EXPECT_THAT(shown(), testing::ElementsAre(90, 10, 20, 30, 40));
    workspace().view.PlayMark = 2; // the end of the first note
    EXPECT_THAT(shown(), testing::ElementsAre(90, 10, 20, 30, 40));
    workspace().view.PlayMark = 3;
    EXPECT_THAT(shown(), testing::ElementsAre(91, 11, 21, 31, 41));
    workspace().view.PlayMark = 50; // behind the last note
    EXPECT_THAT(shown(), testing::ElementsAre(90, 10, 20, 30, 40));
}

TEST_F(ChosenChannelTest, OfARestTheNextNoteCounts) {
    choose(Manners::careful());
    for (const int position : {0, 1, 2})
        score().NoteCell.set(2, position, kEmptyCell);
    EXPECT_THAT(shown(), testing::ElementsAre(91, 11, 21, 31, 41));
}

TEST_F(ChosenChannelTest, WithoutNotesThePositionItselfCounts) {
    choose(Manners::careful());
    score().NoteCell.fillRow(2, kEmptyCell);
    workspace().view.PlayMark = 3;
    EXPECT_THAT(shown(), testing::ElementsAre(91, 11, 21, 31, 41));
    for (const ShownSound& sound : shownSound(workspace()))
        EXPECT_FALSE(sound.varies);
}

TEST_F(ChosenChannelTest, AValueThatNotAllNotesHaveIsToldSo) {
    choose(Manners::careful());
    score().Pan_Change.set(2, 4, 20);
    std::vector<bool> varies;
    for (const ShownSound& sound : shownSound(workspace()))
        varies.push_back(sound.varies);
    EXPECT_THAT(varies, testing::ElementsAre(true, true, false, true, true));
    workspace().setManners(Manners::classic());
    for (const ShownSound& sound : shownSound(workspace()))
        EXPECT_FALSE(sound.varies);
}

TEST_F(ChosenChannelTest, AMovedSliderWritesItsLayerAndNoOther) {
    choose(Manners::careful());
    setController(workspace(), SoundValue::Reverb, 77);
    EXPECT_TRUE(holds(score().Reverb_Change, 2, 77));
    EXPECT_TRUE(holds(score().Reverb_Change, 1, 0));
    EXPECT_EQ(setup().channels[2].reverb, 77);
    EXPECT_EQ(score().Modulation_Change.at(2, 4), 11);
    EXPECT_EQ(score().Pan_Change.at(2, 4), 21);
    EXPECT_EQ(score().Chorus_Change.at(2, 4), 41);
    EXPECT_EQ(score().Volume.at(2, 4), 91);
}

TEST_F(ChosenChannelTest, InClassicMannerASliderIsKeptForTheNextChannelChange) {
    choose(Manners::classic());
    setController(workspace(), SoundValue::Pan, 7);
    EXPECT_TRUE(holds(score().Pan_Change, 2, 64));
    EXPECT_EQ(shown()[2], 7);
    chooseChannel(workspace(), 2);
    EXPECT_TRUE(holds(score().Pan_Change, 2, 7));
}

// Chords by their types

TEST_F(SetupRulesTest, InCarefulMannerAChannelsChordIsTheOneThatTheListNames) {
    beCareful();
    for (const int item : {0, 1, 6}) {
        Combo3_Click(setup(), workspace().chords, item);
        Ch_Click(workspace(), 0, true);
        EXPECT_TRUE(holds(score().Polyphonics, 1, static_cast<std::int16_t>(item + 1))) << item;
    }
    Ch_Click(workspace(), 0, false);
    EXPECT_TRUE(holds(score().Polyphonics, 1, 0));
}
