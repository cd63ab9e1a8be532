// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/NoteEffects.h"

#include "base/VirtualLoop.h"
#include "score/NotePlayer.h"
#include "sound/ShortMessage.h"
#include "tableau/TableauInput.h"
#include "tests/composition/WorkspaceFixture.h"
#include "tests/support/RecordingPort.h"
#include "tests/tableau/RecordingScreen.h"

#include <gmock/gmock.h>

using namespace velmora;
using shortmessage::controller;
using shortmessage::noteOn;
using shortmessage::programChange;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int kRow = 60;
constexpr int kNote = 127 - kRow;
constexpr int kHeight = 127; ///< of a strip in which a step is a pixel

struct NoteEffectsTest : WorkspaceFixture {
    NoteEffectsTest() {
        store("NumNotes", "100");
        effects() = {
            .NoteInstrumentPick = 40, .Combo3 = 2, .vol3 = 90, .T1 = 11, .T2 = -20, .T3 = 33, .T4 = 44};
    }

    EffectSelectors& effects() { return workspace().effects; }
    ViewState& view() { return workspace().view; }

    std::vector<int> row(const ChannelGrid& grid, int channel, int first, int count) {
        std::vector<int> list;
        for (int position = first; position < first + count; ++position)
            list.push_back(grid.valueOr(channel, position, -9));
        return list;
    }
    std::vector<int> instruments(int count, int channel = 0) {
        return row(score().NoteInstrument, channel, 0, count);
    }
    std::vector<int> chords(int count, int channel = 0) {
        return row(score().Polyphonics, channel + 1, 0, count);
    }
    /// What stands at @p position, which is one further in these layers.
    std::vector<int> effectsAt(int position, int channel = 0) {
        std::vector<int> list;
        for (const ChannelGrid* grid : {&score().Volume, &score().Modulation_Change, &score().Pan_Change,
                                        &score().Reverb_Change, &score().Chorus_Change})
            list.push_back(grid->valueOr(channel, position + 1, -9));
        return list;
    }

    std::optional<NoteCells> apply(int head) { return applyNoteEffects(workspace(), player(), head); }
    NotePlayer& player() {
        if (!player_)
            player_ = std::make_unique<NotePlayer>(score(), workspace().setup, workspace().play,
                                                   workspace().chords, port, loop);
        return *player_;
    }
    /// Notes begun since the last look, as channel, note and velocity.
    std::vector<std::vector<int>> heard() {
        std::vector<std::vector<int>> list;
        for (const std::uint32_t word : port.words())
            if (word != RecordingPort::kReset && shortmessage::status(word) == 0x90)
                list.push_back(
                    {shortmessage::channel(word), shortmessage::data1(word), shortmessage::data2(word)});
        port.sent.clear();
        return list;
    }

    VirtualLoop loop;
    RecordingPort port{loop};

private:
    std::unique_ptr<NotePlayer> player_;
};

} // namespace

// On a note

TEST_F(NoteEffectsTest, AHeadAndItsContinuationsTakeInstrumentAndChord) {
    putNotes(score(), 0, kRow, 3, 3);
    EXPECT_EQ(apply(3), (NoteCells{3, 5}));
    EXPECT_THAT(instruments(8), ElementsAre(24, 24, 24, 40, 40, 40, 24, 24));
    EXPECT_THAT(chords(8), ElementsAre(0, 0, 0, 2, 2, 2, 0, 0));
}

TEST_F(NoteEffectsTest, VolumeAndTheFourEffectsOfANoteStayAsTheyWere) {
    putNotes(score(), 0, kRow, 1);
    apply(0);
    EXPECT_THAT(effectsAt(0), ElementsAre(127, 0, 64, 0, 0));
}

TEST_F(NoteEffectsTest, TheLastNoteOfTheScoreEndsWithIt) {
    score().NoteCell.set(0, 99, kRow);
    score().NoteCell.set(0, 100, 1000 + kRow);
    EXPECT_EQ(apply(99), (NoteCells{99, 100}));
    EXPECT_EQ(score().NoteInstrument.at(0, 100), 40);
}

TEST_F(NoteEffectsTest, ANoteSoundsWithItsInstrumentItsEffectsAndItsChord) {
    putNotes(score(), 0, kRow, 2);
    score().Reverb_Change.set(0, 3, 77);
    score().Volume.set(0, 3, 100);
    effects().Combo3 = 1;
    apply(2);
    // Softened twice where a chord sounds: by a fifth for the note, once more for what joins it.
    EXPECT_THAT(port.words(),
                ElementsAre(controller(0, 0, 0), controller(0, 32, 0), programChange(0, 40),
                            controller(0, 1, 0), controller(0, 10, 64), controller(0, 91, 77),
                            controller(0, 93, 0), noteOn(0, kNote, 80), noteOn(0, kNote + 4, 64),
                            noteOn(0, kNote + 7, 64), noteOn(0, kNote + 12, 64)));
}

TEST_F(NoteEffectsTest, AMutedChannelTakesTheEffectsInSilence) {
    putNotes(score(), 0, kRow, 1);
    score().ChannelMuted[0] = true;
    apply(0);
    EXPECT_THAT(instruments(2), Each(40));
    EXPECT_THAT(port.sent, IsEmpty());
}

TEST_F(NoteEffectsTest, AHeadOnRowZeroIsANote) {
    putNotes(score(), 0, 0, 1);
    apply(0);
    EXPECT_THAT(instruments(2), Each(40));
    effects().Combo3 = 0;
    port.sent.clear();
    apply(0);
    EXPECT_THAT(heard(), ElementsAre(ElementsAre(0, 127, 127)));
}

TEST_F(NoteEffectsTest, AnEmptyCellTakesInstrumentAndChordSilently) {
    EXPECT_EQ(apply(5), (NoteCells{5, 5}));
    EXPECT_EQ(score().NoteInstrument.at(0, 5), 40);
    EXPECT_EQ(score().Polyphonics.at(1, 5), 2);
    EXPECT_EQ(score().NoteCell.at(0, 5), -1);
    EXPECT_EQ(score().NoteInstrument.at(0, 4), 0);
    EXPECT_EQ(score().NoteInstrument.at(0, 6), 0);
    EXPECT_THAT(port.sent, IsEmpty());
}

TEST_F(NoteEffectsTest, OutsideTheScoreThereIsNothingToApplyTo) {
    EXPECT_EQ(apply(-1), std::nullopt);
    EXPECT_EQ(apply(101), std::nullopt);
}

TEST_F(NoteEffectsTest, ARestWithoutAHeadTakesTheEffectsSilently) {
    for (const int position : {0, 1})
        score().NoteCell.set(0, position, 1000 + kRow);
    EXPECT_EQ(apply(-1), (NoteCells{0, 1}));
    EXPECT_THAT(instruments(3), ElementsAre(40, 40, 0));
    EXPECT_THAT(port.sent, IsEmpty());
}

TEST_F(NoteEffectsTest, PercussionTakesTheInstrumentAndNoChord) {
    workspace().selectChannel(8);
    putNotes(score(), 8, kRow, 1);
    effects().NoteInstrumentPick = 131; // key 38
    apply(0);
    EXPECT_THAT(instruments(3, 8), ElementsAre(131, 131, 0));
    EXPECT_THAT(chords(3, 8), Each(0));
    EXPECT_THAT(heard(), ElementsAre(ElementsAre(9, 38, 127)));
}

// With the mouse

TEST_F(NoteEffectsTest, ARightDragAppliesToEachNoteOncePerMoveAndSoundsItEachTime) {
    putNotes(score(), 0, kRow, 3); // at 0, 2 and 4
    effects().Combo3 = 0;
    view().NoteEffectsOn = true;
    RecordingScreen screen(workspace());
    TableauInput input(workspace(), player(), port, screen);
    input.MusicBox_MouseDown(MouseButton::Right, 0, 5, 150);
    for (const int x : {17, 29, 53}) // the end of the first note, the second, the head of the third
        input.MusicBox_MouseMove(MouseButton::Right, 0, x, 150);
    input.MusicBox_MouseUp(MouseButton::Right, 0, 53, 150);
    EXPECT_THAT(instruments(7), ElementsAre(40, 40, 40, 40, 40, 40, 0));
    EXPECT_THAT(heard(), testing::SizeIs(4));
}

TEST_F(NoteEffectsTest, AClickOnAContinuationResetsTheEffectsOfTheCellsPassed) {
    putNotes(score(), 0, kRow, 1, 3);
    for (const int position : {1, 2, 3})
        score().Modulation_Change.set(0, position, 50);
    view().NoteEffectsOn = true;
    RecordingScreen screen(workspace());
    TableauInput input(workspace(), player(), port, screen);
    input.MusicBox_MouseDown(MouseButton::Right, 0, 29, 150);
    input.MusicBox_MouseUp(MouseButton::Right, 0, 29, 150);
    EXPECT_THAT(row(score().Modulation_Change, 0, 1, 3), ElementsAre(50, 0, 0));
    EXPECT_THAT(chords(4), ElementsAre(2, 2, 2, 0)); // the chord was given after that
}

// Along Pic2a

TEST_F(NoteEffectsTest, ThePressOnTheIndicatorGivesEveryValueToItsPosition) {
    putNotes(score(), 0, kRow, 2);
    apply(0);
    applyAlongIndicator(workspace(), 0);
    EXPECT_THAT(effectsAt(0), ElementsAre(90, 11, 44, 33, 44));
    EXPECT_EQ(score().NoteInstrument.at(0, 0), 24); // the channel's again
    EXPECT_THAT(effectsAt(1), ElementsAre(127, 0, 64, 0, 0));
}

TEST_F(NoteEffectsTest, TheIndicatorWritesTheChordOnePositionLater) {
    putNotes(score(), 0, kRow, 2);
    applyAlongIndicator(workspace(), 1);
    EXPECT_THAT(chords(4), ElementsAre(0, 0, 2, 0));
}

TEST_F(NoteEffectsTest, PanShownAsZeroIsStoredAs64) {
    effects().T2 = 0;
    score().Pan_Change.set(0, 4, 1);
    applyAlongIndicator(workspace(), 3);
    EXPECT_EQ(score().Pan_Change.at(0, 4), 64);
}

TEST_F(NoteEffectsTest, TheEndsOfPanAreZeroAnd127) {
    for (const auto& [shown, stored] : {std::pair{-64, 0}, {63, 127}}) {
        effects().T2 = static_cast<std::int16_t>(shown);
        applyAlongIndicator(workspace(), 3);
        EXPECT_EQ(score().Pan_Change.at(0, 4), stored);
    }
}

TEST_F(NoteEffectsTest, PercussionTakesItsInstrumentAndTheVolumeAlone) {
    workspace().selectChannel(10);
    workspace().instruments.PercussionInstrument = 140;
    putNotes(score(), 10, kRow, 1);
    applyAlongIndicator(workspace(), 0);
    EXPECT_EQ(score().NoteInstrument.at(10, 0), 140);
    EXPECT_THAT(effectsAt(0, 10), ElementsAre(90, 0, 64, 0, 0));
    EXPECT_THAT(chords(3, 10), Each(0));
}

TEST_F(NoteEffectsTest, AnEmptyCellBesideTheIndicatorTakesTheInstrumentLikeANote) {
    applyAlongIndicator(workspace(), 7);
    EXPECT_EQ(score().NoteInstrument.at(0, 7), 24);
    EXPECT_EQ(score().NoteCell.at(0, 7), -1);
}

TEST_F(NoteEffectsTest, TheLabelsShowThePositionAsItIsThen) {
    putNotes(score(), 0, kRow, 1);
    const auto shown = applyAlongIndicator(workspace(), 0);
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->vol, "90");
    EXPECT_EQ(shown->inst, "Nylon Guitar");
    EXPECT_EQ(shown->number, "1");
}

TEST_F(NoteEffectsTest, TheLastPositionTakesOnlyItsInstrument) {
    const Score before = score();
    EXPECT_TRUE(applyAlongIndicator(workspace(), 100));
    EXPECT_EQ(score().NoteInstrument.at(0, 100), 24);
    EXPECT_EQ(score().Volume, before.Volume);
    EXPECT_EQ(score().Polyphonics, before.Polyphonics);
}

TEST_F(NoteEffectsTest, OutsideTheScoreAndWhilePlayingNothingHappens) {
    const Score before = score();
    EXPECT_EQ(applyAlongIndicator(workspace(), 101), std::nullopt);
    EXPECT_EQ(applyAlongIndicator(workspace(), -1), std::nullopt);
    workspace().play.Playing = true;
    EXPECT_EQ(applyAlongIndicator(workspace(), 5), std::nullopt);
    EXPECT_EQ(score().Volume, before.Volume);
    EXPECT_EQ(score().NoteInstrument, before.NoteInstrument);
}

// ClearEffects

TEST_F(NoteEffectsTest, ClearingTakesTheMelodyInstrumentEverywhereEvenForPercussionAndEmptyCells) {
    workspace().instruments.MelodyInstrument = 5;
    putNotes(score(), 8, kRow, 2);
    ClearEffects(workspace());
    for (const int channel : {0, 8, 9, 12})
        EXPECT_THAT(score().NoteInstrument.row(channel), Each(5)) << channel;
    EXPECT_THAT(score().NoteInstrument.row(13), Each(0));
}

TEST_F(NoteEffectsTest, ClearingResetsEveryLayerAndLeavesTheNotes) {
    putNotes(score(), 0, kRow, 2);
    const ChannelGrid notes = score().NoteCell;
    apply(0);
    applyAlongIndicator(workspace(), 1);
    ClearEffects(workspace());
    const Score fresh(100);
    EXPECT_EQ(score().NoteCell, notes);
    EXPECT_EQ(score().Polyphonics, fresh.Polyphonics);
    EXPECT_EQ(score().Volume, fresh.Volume);
    EXPECT_EQ(score().Modulation_Change, fresh.Modulation_Change);
    EXPECT_EQ(score().Pan_Change, fresh.Pan_Change);
    EXPECT_EQ(score().Reverb_Change, fresh.Reverb_Change);
    EXPECT_EQ(score().Chorus_Change, fresh.Chorus_Change);
}

TEST_F(NoteEffectsTest, ClearingForgetsFileMarksAndHighMarks) {
    score().currentFile = "/tune.sng";
    score().TopChannel = score().TopMelodyHint = 6;
    score().TopDrumHint = 3;
    view().SelectStart = view().SelectEnd = view().PlayMark = view().ViewFirstColumn = 9;
    ClearEffects(workspace());
    EXPECT_EQ(score().currentFile, "");
    EXPECT_THAT((std::vector{view().SelectStart, view().SelectEnd, view().PlayMark, view().ViewFirstColumn}),
                ElementsAre(-1, -1, 0, 0));
    EXPECT_THAT((std::vector{score().TopChannel, score().TopMelodyHint, score().TopDrumHint}),
                ElementsAre(1, 0, 0));
}

TEST_F(NoteEffectsTest, InCarefulMannersClearingSilencesNoChannel) {
    workspace().setManners(Manners::careful());
    putNotes(score(), 6, kRow, 2);
    putNotes(score(), 11, kRow, 2);
    ClearEffects(workspace());
    EXPECT_THAT((std::vector{score().TopChannel, score().TopMelodyHint, score().TopDrumHint}),
                ElementsAre(11, 6, 3));
}

TEST_F(NoteEffectsTest, ClearingResetsTheSetupToolbarOnlyIfItIsOpen) {
    workspace().setup.Ch[3] = workspace().setup.Chkstrum[9] = true;
    score().Tempo = 333;
    workspace().selectChannel(4);
    ClearEffects(workspace());
    EXPECT_EQ(score().Tempo, 333);
    EXPECT_EQ(score().ActiveChannel, 4);
    EXPECT_TRUE(workspace().setup.Ch[3]);
    workspace().setup.SetupOpen = true;
    ClearEffects(workspace());
    EXPECT_EQ(score().Tempo, 100);
    EXPECT_EQ(score().ActiveChannel, 0);
    EXPECT_FALSE(workspace().setup.Ch[3] || workspace().setup.Chkstrum[9]);
}

// To a selection

TEST_F(NoteEffectsTest, NotesOfTheSelectionAndTheChannelTakeTheInstrument) {
    putNotes(score(), 0, kRow, 2);
    view().SelectStart = 1;
    view().SelectEnd = 5;
    EXPECT_EQ(applyInstrumentToSelection(workspace(), 73), "");
    EXPECT_THAT(instruments(6), ElementsAre(24, 73, 73, 73, 0, 0));
    EXPECT_EQ(score().ChannelInstrument[0], 73);
    EXPECT_EQ(effects().NoteInstrumentPick, 73);
}

TEST_F(NoteEffectsTest, NotesBeforeAndBehindTheSelectionKeepTheirInstrument) {
    putNotes(score(), 0, kRow, 4);
    view().SelectStart = 2;
    view().SelectEnd = 4;
    EXPECT_EQ(applyInstrumentToSelection(workspace(), 73), "");
    EXPECT_THAT(instruments(8), ElementsAre(24, 24, 73, 73, 73, 24, 24, 24));
}

TEST_F(NoteEffectsTest, WithoutASelectionAnInstrumentIsOnlyPicked) {
    putNotes(score(), 0, kRow, 1);
    EXPECT_EQ(applyInstrumentToSelection(workspace(), 73), "");
    EXPECT_THAT(instruments(2), Each(24));
    EXPECT_EQ(score().ChannelInstrument[0], 24);
    EXPECT_EQ(effects().NoteInstrumentPick, 73);
}

TEST_F(NoteEffectsTest, AMelodyInstrumentIsRefusedOnAPercussionChannel) {
    workspace().selectChannel(12);
    putNotes(score(), 12, kRow, 1);
    view().SelectStart = 0;
    view().SelectEnd = 1;
    EXPECT_EQ(applyInstrumentToSelection(workspace(), 127), "This is a percussion instrument");
    EXPECT_THAT(instruments(2, 12), Each(128));
    EXPECT_EQ(effects().NoteInstrumentPick, 40);
    EXPECT_EQ(applyInstrumentToSelection(workspace(), 128 + 1), "");
    EXPECT_THAT(instruments(2, 12), Each(129));
}

TEST_F(NoteEffectsTest, APercussionInstrumentIsNotRefusedOnAMelodyChannel) {
    EXPECT_EQ(refusalOf(score(), 140), "");
}

TEST_F(NoteEffectsTest, ASelectionPastTheScoreEndsWithIt) {
    score().NoteCell.set(0, 100, kRow);
    view().SelectStart = 90;
    view().SelectEnd = 30'000;
    EXPECT_EQ(applyInstrumentToSelection(workspace(), 1), "");
    EXPECT_EQ(score().NoteInstrument.at(0, 100), 1);
}

// Read-outs and pointers

TEST_F(NoteEffectsTest, TheReadOutsShowTheEffectsOfThePositionAndPanAroundZero) {
    applyAlongIndicator(workspace(), 6);
    const EffectPlaces places = doNotemod(score(), 6, kHeight);
    EXPECT_THAT(places, ElementsAre(EffectPlace{11, 116}, EffectPlace{-20, 83}, EffectPlace{33, 94},
                                    EffectPlace{44, 83}));
    EXPECT_EQ(domodgraph(score(), 6, kHeight), places);
}

TEST_F(NoteEffectsTest, APointerStandsAtTheTopFor127AndAtTheFootForZero) {
    score().Modulation_Change.set(0, 1, 127);
    const EffectPlaces places = doNotemod(score(), 0, 60);
    EXPECT_EQ(places[0], (EffectPlace{127, 0}));
    EXPECT_EQ(places[2], (EffectPlace{0, 60}));
    EXPECT_EQ(places[1].pointerTop, 30);
}

TEST_F(NoteEffectsTest, AReadOutOutsideTheScoreShowsWhatIsCleared) {
    EXPECT_EQ(doNotemod(score(), -5, kHeight), doNotemod(score(), 100, kHeight));
    EXPECT_EQ(doNotemod(score(), 500, kHeight)[1].shown, 0);
}

TEST_F(NoteEffectsTest, ADraggedPointerGivesTheWholePartOfItsPlace) {
    EXPECT_EQ(selectorValue(0, 60, 10), 127);
    EXPECT_EQ(selectorValue(50, 60, 10), 0);
    EXPECT_EQ(selectorValue(25, 60, 10), 127 - 63);
    EXPECT_EQ(selectorValue(1, 60, 10), 127 - 2);
}

TEST_F(NoteEffectsTest, ADraggedPointerStaysOnItsStrip) {
    EXPECT_EQ(selectorValue(-30, 60, 10), 127);
    EXPECT_EQ(selectorValue(400, 60, 10), 0);
    EXPECT_EQ(selectorValue(3, 10, 10), 127); // a strip without a way for the pointer
}

// In careful manner

namespace {
struct CarefulEffectsTest : NoteEffectsTest {
    CarefulEffectsTest() { workspace().setManners(Manners::careful()); }

    std::vector<int> volumes(int first, int count, int channel = 0) {
        return row(score().Volume, channel, first, count);
    }
};
} // namespace

TEST_F(CarefulEffectsTest, EachCellOfANoteTakesAllThatThePageShows) {
    putNotes(score(), 0, kRow, 3, 3);
    EXPECT_EQ(apply(3), (NoteCells{3, 5}));
    EXPECT_THAT(instruments(8), ElementsAre(24, 24, 24, 40, 40, 40, 24, 24));
    EXPECT_THAT(chords(8), ElementsAre(0, 0, 0, 2, 2, 2, 0, 0));
    for (const int position : {3, 4})
        EXPECT_THAT(effectsAt(position), ElementsAre(90, 11, 44, 33, 44)) << position;
    for (const int position : {0, 1, 6})
        EXPECT_THAT(effectsAt(position), ElementsAre(127, 0, 64, 0, 0)) << position;
}

TEST_F(CarefulEffectsTest, TheNoteIsHeardWithThem) {
    putNotes(score(), 0, kRow, 1);
    effects().Combo3 = 0;
    apply(0);
    EXPECT_THAT(port.words(), ElementsAre(controller(0, 0, 0), controller(0, 32, 0), programChange(0, 40),
                                          controller(0, 1, 11), controller(0, 10, 44), controller(0, 91, 33),
                                          controller(0, 93, 44), noteOn(0, kNote, 90)));
}

TEST_F(CarefulEffectsTest, TheVolumeStandsWhereverPlayingReadsItForTheHead) {
    score().NoteCell.set(0, 4, kRow);
    score().NoteCell.set(0, 5, 1000 + kRow);
    apply(4);
    EXPECT_THAT(volumes(3, 5), ElementsAre(127, 90, 90, 90, 127));
}

TEST_F(CarefulEffectsTest, NotesThatTouchKeepTheirVolumes) {
    putNotes(score(), 0, kRow, 3, 2);
    apply(2);
    EXPECT_THAT(volumes(1, 5), ElementsAre(127, 90, 90, 127, 127));
}

TEST_F(CarefulEffectsTest, ANoteOfOneCellHasItsVolumeOneFurtherOn) {
    putNotes(score(), 0, kRow, 3, 1);
    apply(1);
    EXPECT_THAT(volumes(0, 4), ElementsAre(127, 127, 90, 127));
}

TEST_F(CarefulEffectsTest, PercussionTakesItsSoundAndTheVolume) {
    workspace().selectChannel(8);
    putNotes(score(), 8, kRow, 1);
    effects().NoteInstrumentPick = 131; // key 38
    apply(0);
    EXPECT_THAT(instruments(3, 8), ElementsAre(131, 131, 0));
    EXPECT_THAT(chords(3, 8), Each(0));
    EXPECT_THAT(effectsAt(0, 8), ElementsAre(90, 0, 64, 0, 0));
    EXPECT_THAT(heard(), ElementsAre(ElementsAre(9, 38, 90)));
}

TEST_F(CarefulEffectsTest, PercussionKeepsItsSoundWhereAMelodyInstrumentIsPicked) {
    workspace().selectChannel(8);
    score().ChannelInstrument[8] = 131;
    putNotes(score(), 8, kRow, 1);
    apply(0);
    EXPECT_THAT(instruments(2, 8), Each(131));
    EXPECT_THAT(heard(), ElementsAre(ElementsAre(9, 38, 90)));
}

TEST_F(CarefulEffectsTest, AClickOnAContinuationGivesTheWholeNoteTheSame) {
    putNotes(score(), 0, kRow, 1, 3);
    view().NoteEffectsOn = true;
    RecordingScreen screen(workspace());
    TableauInput input(workspace(), player(), port, screen);
    input.MusicBox_MouseDown(MouseButton::Right, 0, 29, 150);
    input.MusicBox_MouseUp(MouseButton::Right, 0, 29, 150);
    EXPECT_THAT(row(score().Modulation_Change, 0, 1, 4), ElementsAre(11, 11, 11, 0));
    EXPECT_THAT(row(score().Pan_Change, 0, 1, 4), ElementsAre(44, 44, 44, 64));
    EXPECT_THAT(chords(4), ElementsAre(2, 2, 2, 0));
}

TEST_F(CarefulEffectsTest, TheIndicatorWritesTheChordWhereTheNoteIsReadFrom) {
    putNotes(score(), 0, kRow, 2);
    applyAlongIndicator(workspace(), 1);
    EXPECT_THAT(chords(4), ElementsAre(0, 2, 0, 0));
    EXPECT_THAT(effectsAt(1), ElementsAre(90, 11, 44, 33, 44));
}
