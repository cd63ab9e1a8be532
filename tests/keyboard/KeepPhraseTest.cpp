// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/KeepPhrase.h"

#include "base/Files.h"
#include "composition/Performance.h"
#include "composition/SetupRules.h"
#include "keyboard/Phrase.h"
#include "score/SngFile.h"
#include "sound/ShortMessage.h"
#include "tests/composition/WorkspaceFixture.h"

#include <cmath>
#include <map>
#include <random>
#include <utility>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
constexpr double kBeat = 0.6;

struct KeepPhraseTest : WorkspaceFixture {
    /// Beats, from when to when, of a pitch.
    struct Beats {
        double from;
        double to;
        int note = 60;
    };
    Phrase phraseOf(std::initializer_list<Beats> notes) {
        Phrase phrase;
        phrase.meter = meterOf(workspace().setup);
        phrase.pulse = {.anchors = {{0, 0}}, .period = kBeat};
        for (const Beats& beats : notes)
            phrase.notes.push_back(
                {beats.from * kBeat, beats.to * kBeat, static_cast<std::uint8_t>(beats.note), 90, 0, 40});
        return phrase;
    }
    KeepPlan plan(const Phrase& phrase, KeepChoice choice = {}) {
        return planKeep(workspace(), phrase, choice);
    }
    void keep(const Phrase& phrase, KeepChoice choice = {}) { keepPlan(workspace(), plan(phrase, choice)); }
    /// The cells of a channel from a position on.
    std::vector<int> cells(int channel, int from, int count) {
        std::vector<int> found;
        for (int position = from; position < from + count; ++position)
            found.push_back(score().NoteCell.valueOr(channel, position, -99));
        return found;
    }
    /// So that the score has steps of its own.
    void putSomethingElsewhere() {
        score().NoteCell.set(7, 900, 60);
        score().FindEndOfSong();
        workspace().history.restart(score(), workspace().setup);
    }
};
constexpr int kC = 127 - 60;
const auto kScale =
    std::initializer_list<KeepPhraseTest::Beats>{{0, 0.9, 60}, {1, 1.9, 60}, {2, 2.4, 60}, {2.5, 3, 60}};
} // namespace

TEST_F(KeepPhraseTest, APhraseStandsAtThePlayMarkOnItsChannel) {
    for (const bool careful : {false, true}) {
        workspace().setManners(Manners::of(!careful));
        workspace().clear();
        workspace().view.PlayMark = 20;
        keep(phraseOf(kScale), {.grid = NoteGrid::Eighth, .channel = 3});
        EXPECT_THAT(cells(3, 19, 14), ElementsAre(-1, kC, 1000 + kC, 1000 + kC, 1000 + kC, kC, 1000 + kC,
                                                  1000 + kC, 1000 + kC, kC, 1000 + kC, kC, 1000 + kC, -1));
        EXPECT_EQ(score().NoteInstrument.at(3, 22), 40);
        EXPECT_EQ(score().Volume.at(3, 23), 90);
        EXPECT_EQ(score().Volume.at(3, 40), 127);
        EXPECT_EQ(score().ActiveChannel, 3);
        EXPECT_GE(score().TopChannel, 3);
        EXPECT_EQ(score().SongEnd, 32);
    }
}

TEST_F(KeepPhraseTest, ItIsOneStepOfUndo) {
    beCareful();
    workspace().view.PlayMark = 995;
    const Score before = score();
    keep(phraseOf(kScale), {.grid = NoteGrid::ThirtySecond, .channel = 2});
    EXPECT_GT(score().NumNotes, 1000);
    EXPECT_EQ(workspace().undoStep(), "Keep what I just played");
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_EQ(score().NoteCell, before.NoteCell);
    EXPECT_EQ(score().Volume, before.Volume);
    EXPECT_EQ(score().Tempo, before.Tempo);
    EXPECT_EQ(score().NotesPerMeasure, before.NotesPerMeasure);
    EXPECT_EQ(score().NumNotes, before.NumNotes);
    EXPECT_EQ(workspace().undoStep(), "");
    ASSERT_TRUE(workspace().redoLast());
    EXPECT_EQ(score().NoteCell.at(2, 995), kC);
}

TEST_F(KeepPhraseTest, ClassicMannersHaveItAsTheirOneStep) {
    putNotes(score(), 0, 50, 4);
    const Score before = score();
    keep(phraseOf(kScale));
    EXPECT_NE(score().NoteCell, before.NoteCell);
    EXPECT_EQ(workspace().undoStep(), "Keep what I just played");
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_EQ(score().NoteCell, before.NoteCell);
    EXPECT_EQ(score().Volume, before.Volume);
}

TEST_F(KeepPhraseTest, AnEmptyScoreTakesItsTempoFromThePhrase) {
    keep(phraseOf(kScale));
    // Four positions a beat of 0.6 seconds.
    EXPECT_EQ(score().Tempo, std::lround(13.8 / 0.15));
    EXPECT_EQ(score().NotesPerMeasure, 16);
}

TEST_F(KeepPhraseTest, AnEmptyScoreTakesPositionsThatTheGridNeeds) {
    struct Row {
        NoteGrid grid;
        int notesPerMeasure;
    };
    for (const Row& row : {Row{NoteGrid::Quarter, 16}, Row{NoteGrid::Eighth, 16},
                           Row{NoteGrid::EighthTriplet, 12}, Row{NoteGrid::Sixteenth, 16},
                           Row{NoteGrid::SixteenthTriplet, 24}, Row{NoteGrid::ThirtySecond, 32}}) {
        workspace().clear();
        TxBeats_Change(workspace(), 16);
        keep(phraseOf({{0, 1}, {1, 2}, {2, 3}, {3, 4}}), {.grid = row.grid});
        EXPECT_EQ(score().NotesPerMeasure, row.notesPerMeasure) << rowOf(row.grid).caption;
        EXPECT_EQ(workspace().setup.TxBeats, row.notesPerMeasure);
        const int beat = row.notesPerMeasure / 4;
        EXPECT_EQ(score().NoteCell.at(0, 3 * beat), kC);
        EXPECT_NEAR(13.8 / score().Tempo * beat, kBeat, kBeat * 0.01);
    }
}

TEST_F(KeepPhraseTest, AScoreWithNotesKeepsItsStepsAndOffersGridsThatFallOnThem) {
    EXPECT_EQ(gridsFor(workspace()).size(), kNoteGrids.size());
    putSomethingElsewhere();
    EXPECT_THAT(gridsFor(workspace()), ElementsAre(NoteGrid::Quarter, NoteGrid::Eighth, NoteGrid::Sixteenth));
    const int tempo = score().Tempo;
    keep(phraseOf(kScale), {.grid = NoteGrid::Sixteenth});
    EXPECT_EQ(score().Tempo, tempo);
    EXPECT_EQ(score().NoteCell.at(0, 4), kC);
    score().NotesPerMeasure = 12; // triplets
    EXPECT_THAT(gridsFor(workspace()), ElementsAre(NoteGrid::Quarter, NoteGrid::EighthTriplet));
    score().NotesPerMeasure = 5; // no whole ticks
    EXPECT_THAT(gridsFor(workspace()), ElementsAre(NoteGrid::Quarter, NoteGrid::Eighth, NoteGrid::Sixteenth));
}

TEST_F(KeepPhraseTest, TheSimplestGridThatTheScoreHasIsOfferedFirst) {
    const Phrase triplets =
        phraseOf({{0, 0.3}, {0.34, 0.6}, {0.66, 1}, {1, 1.3}, {1.33, 1.6}, {1.67, 2}, {2, 3}});
    EXPECT_EQ(firstChoice(workspace(), triplets).grid, NoteGrid::EighthTriplet);
    EXPECT_EQ(firstChoice(workspace(), phraseOf(kScale)).grid, NoteGrid::Eighth);
    putSomethingElsewhere();
    EXPECT_EQ(firstChoice(workspace(), triplets).grid, NoteGrid::Sixteenth);
    workspace().selectChannel(5);
    EXPECT_EQ(firstChoice(workspace(), triplets).channel, 5);
    workspace().selectChannel(10);
    EXPECT_EQ(firstChoice(workspace(), triplets).channel, 0) << "percussion has no pitches";
}

TEST_F(KeepPhraseTest, NotesOfAChordGoToFreeChannels) {
    score().NoteCell.set(3, 6, 50); // in the way, later
    score().ChannelMuted[4] = true;
    const KeepPlan made =
        plan(phraseOf({{0, 1, 60}, {0.01, 1, 64}, {0.02, 1, 67}, {1, 2, 60}, {1.01, 2, 65}}),
             {.grid = NoteGrid::Quarter, .channel = 2});
    std::vector<std::pair<int, int>> found;
    for (const KeptNote& note : made.notes)
        found.emplace_back(note.note, note.channel);
    using P = std::pair<int, int>;
    EXPECT_THAT(found, ElementsAre(P{67, 2}, P{64, 3}, P{60, 5}, P{65, 2}, P{60, 5}))
        << "the topmost on the chosen channel, none over older notes or on what is muted";
    EXPECT_EQ(planText(made), "");
}

TEST_F(KeepPhraseTest, ChordsThatFindNoRoomAreTold) {
    for (int channel = 0; channel < 7; ++channel)
        putNotes(score(), channel, 40, 4);
    const KeepPlan made =
        plan(phraseOf({{0, 1, 60}, {0, 1, 64}, {0, 1, 67}, {1, 2, 60}}), {.grid = NoteGrid::Quarter});
    EXPECT_EQ(made.notes.size(), 3U);
    EXPECT_EQ(made.withoutRoom, 1);
    EXPECT_EQ(planText(made),
              "4 notes that stand there are replaced. One note of a chord finds no free channel.");
}

TEST_F(KeepPhraseTest, WhatStandsThereIsReplacedAndWhatIsBesideStays) {
    putNotes(score(), 0, 40, 6, 4); // 0 to 23
    workspace().view.PlayMark = 6;
    keep(phraseOf({{0, 1}, {1.5, 2}}), {.grid = NoteGrid::Eighth, .lengths = NoteLengths::AsPlayed});
    EXPECT_THAT(cells(0, 4, 12), ElementsAre(40, 1040, kC, 1000 + kC, 1000 + kC, 1000 + kC, -1, -1, kC,
                                             1000 + kC, 1040 - 1000, 1040));
}

TEST_F(KeepPhraseTest, CarefulMannersGrowTheScoreAndClassicOnesSayWhatDoesNotFit) {
    workspace().view.PlayMark = 996;
    const Phrase phrase = phraseOf({{0, 1}, {1, 2}, {2, 3}});
    const KeepPlan classic = plan(phrase, {.grid = NoteGrid::Quarter});
    EXPECT_EQ(classic.notes.size(), 1U);
    EXPECT_EQ(planText(classic), "2 notes do not fit into the score.");
    keepPlan(workspace(), classic);
    EXPECT_EQ(score().NumNotes, 1000);
    workspace().clear();
    workspace().view.PlayMark = 996;
    workspace().setManners(Manners::careful());
    keep(phrase, {.grid = NoteGrid::Quarter});
    EXPECT_EQ(score().NumNotes, 996 + 12 + 10);
    EXPECT_EQ(score().NoteCell.at(0, 1004), kC);
    EXPECT_EQ(score().Volume.at(0, 1008), 90);
}

TEST_F(KeepPhraseTest, AFingerThatIsALittleLateMakesNoChord) {
    const KeepPlan made = plan(phraseOf({{0, 1.2, 60}, {1, 2.2, 62}, {2, 3, 64}, {2, 6, 48}, {3, 4, 65}}),
                               {.grid = NoteGrid::Sixteenth, .lengths = NoteLengths::AsPlayed});
    std::map<int, KeptNote> notes;
    for (const KeptNote& note : made.notes)
        notes[note.note] = note;
    EXPECT_EQ(notes[60].last, 3);
    EXPECT_EQ(notes[62].channel, 0);
    EXPECT_EQ(notes[48].channel, 1) << "a bass that is held is one";
    EXPECT_EQ(notes[48].last, 23);
}

TEST_F(KeepPhraseTest, WhatIsKeptComesIntoView) {
    ViewState& view = workspace().view;
    view.PlayMark = 300;
    keep(phraseOf({{0, 1, 40}, {1, 2, 41}}));
    EXPECT_LE(view.ViewFirstColumn, 300);
    EXPECT_GT(view.ViewFirstColumn + view.ViewColumns, 300);
    EXPECT_LE(view.ViewTopRow, 127 - 40);
    EXPECT_GT(view.ViewTopRow + view.ViewRows / 2, 127 - 40);
    const ViewState before = view;
    keep(phraseOf({{0, 1, 41}}));
    EXPECT_EQ(view.ViewTopRow, before.ViewTopRow) << "what is seen stays where it is";
    EXPECT_EQ(view.ViewFirstColumn, before.ViewFirstColumn);
}

TEST_F(KeepPhraseTest, NothingPlayedKeepsNothing) {
    workspace().beginHistory();
    keep(phraseOf({}));
    EXPECT_EQ(workspace().undoStep(), "");
    EXPECT_FALSE(workspace().isUnsaved());
}

TEST_F(KeepPhraseTest, WhatWasKeptPlaysWhatWasPlayedAtItsTempo) {
    beCareful();
    const Phrase phrase = phraseOf({{0, 0.9, 60}, {0, 0.9, 64}, {1, 1.9, 62}, {2, 3.9, 67}});
    keep(phrase, {.grid = NoteGrid::Eighth});
    const Performance played = perform(workspace());
    std::vector<std::pair<int, double>> strikes;
    for (const TimedMessage& message : played.messages)
        if (shortmessage::status(message.word) == 0x90)
            strikes.emplace_back(shortmessage::data1(message.word), message.seconds - played.step);
    ASSERT_EQ(strikes.size(), 4U);
    std::ranges::sort(strikes);
    EXPECT_NEAR(strikes[1].second, kBeat, 0.02);
    EXPECT_EQ(strikes[3].first, 67);
    EXPECT_NEAR(strikes[3].second, 2 * kBeat, 0.03);
}

TEST_F(KeepPhraseTest, EachNoteOfAChordIsAsLoudAsItWasPlayed) {
    Phrase phrase = phraseOf({{0, 1, 72}, {0, 1, 60}, {1, 2, 74}, {1, 2, 62}});
    std::map<int, int> wanted;
    for (std::size_t i = 0; i < phrase.notes.size(); ++i)
        wanted[phrase.notes[i].note] = phrase.notes[i].velocity = static_cast<std::uint8_t>(40 + 20 * i);
    keep(phrase);
    std::map<int, int> heard;
    for (const TimedMessage& message : perform(workspace()).messages)
        if (shortmessage::status(message.word) == 0x90 && shortmessage::data2(message.word) > 0)
            heard[shortmessage::data1(message.word)] = shortmessage::data2(message.word);
    EXPECT_EQ(heard, wanted);
}

namespace {
struct SaveNotesAsPlayedTest : WorkspaceFixture {
    std::filesystem::path path = std::filesystem::path(home.path().toStdString()) / "take.sng";
    Performance saved(const std::vector<PlayedNote>& notes) {
        EXPECT_EQ(saveNotesAsPlayed(path, notes), "");
        beCareful();
        const std::string text = *readWholeFile(path);
        EXPECT_EQ(formOf(text), SngForm::Newest);
        workspace().score.resizeNotes(static_cast<int>(longestRow(text)));
        parseSng(text, SngReader::OpenPoliFile, score(), workspace().setup);
        score().TopChannel = 7;
        return perform(workspace());
    }
};
} // namespace

TEST_F(SaveNotesAsPlayedTest, EveryNoteSoundsWhenItWasPlayedWithinAStep) {
    std::vector<PlayedNote> notes;
    std::mt19937 random(4);
    double moment = 17;
    for (int i = 0; i < 400; ++i) {
        moment += 0.08 + static_cast<double>(random() % 1000) / 1000;
        notes.push_back({moment, moment + 0.05 + static_cast<double>(random() % 2000) / 1000,
                         static_cast<std::uint8_t>(40 + random() % 40),
                         static_cast<std::uint8_t>(1 + random() % 127), 0,
                         static_cast<std::uint8_t>(random() % 128)});
    }
    const Performance played = saved(notes);
    EXPECT_LE(played.step, 0.03);
    std::multimap<int, std::pair<double, bool>> found;
    for (const TimedMessage& message : played.messages)
        if (shortmessage::status(message.word) == 0x90 && shortmessage::data2(message.word) > 0)
            found.emplace(shortmessage::data1(message.word), std::pair(message.seconds - played.step, false));
    EXPECT_EQ(found.size(), notes.size());
    for (const PlayedNote& note : notes) {
        const auto [first, last] = found.equal_range(note.note);
        const auto own = std::find_if(first, last, [&](const auto& strike) {
            return !strike.second.second &&
                   std::abs(strike.second.first - (note.onset - notes[0].onset)) <= played.step;
        });
        ASSERT_NE(own, last) << int{note.note} << " at " << note.onset;
        own->second.second = true;
    }
}

TEST_F(SaveNotesAsPlayedTest, VelocitiesAndInstrumentsAreKept) {
    const Performance played = saved({{0, 1, 60, 33, 0, 73}, {1, 2, 62, 99, 0, 40}});
    EXPECT_EQ(score().NoteInstrument.at(0, 0), 73);
    EXPECT_EQ(score().Volume.at(0, 1), 33);
    const int second = static_cast<int>(std::lround(1 / played.step));
    EXPECT_EQ(score().NoteCell.at(0, second), 127 - 62);
    EXPECT_EQ(score().NoteInstrument.at(0, second), 40);
    EXPECT_EQ(score().Volume.at(0, second + 1), 99);
}

TEST_F(SaveNotesAsPlayedTest, ChordsStandOnFurtherChannelsAndANinthNoteCutsTheOldest) {
    std::vector<PlayedNote> notes;
    for (int i = 0; i < 9; ++i)
        notes.push_back({i * 0.1, 5, static_cast<std::uint8_t>(60 + i), 90, 0, 0});
    saved(notes);
    for (int channel = 0; channel < 8; ++channel)
        EXPECT_EQ(cellRow(score().NoteCell.valueOr(channel, 60, -1)),
                  127 - (channel == 0 ? 68 : 60 + channel))
            << channel;
    EXPECT_EQ(score().NoteCell.at(0, 0), 127 - 60);
}

TEST_F(SaveNotesAsPlayedTest, FailuresAreInWordsAndLoseNothing) {
    EXPECT_EQ(saveNotesAsPlayed(path, {}), "Nothing to save");
    EXPECT_FALSE(std::filesystem::exists(path));
    const std::vector<PlayedNote> notes{{0, 1}};
    const auto nowhere = path.parent_path() / "no folder" / "take.sng";
    EXPECT_NE(saveNotesAsPlayed(nowhere, notes), "");
}
