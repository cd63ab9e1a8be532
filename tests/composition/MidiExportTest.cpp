// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/MidiExport.h"

#include "WorkspaceFixture.h"
#include "base/Files.h"
#include "score/MidiFile.h"
#include "score/MidiFileReader.h"
#include "sound/ShortMessage.h"
#include "tests/score/RandomScore.h"
#include "tests/support/MidiReader.h"

#include <algorithm>
#include <map>
#include <random>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int kMeter = 0x58;
constexpr int kTempo = 0x51;
constexpr int kName = 0x03;
constexpr int kEnd = 0x2F;

std::uint32_t wordOf(const MidiReader::Event& event) {
    auto word = static_cast<std::uint32_t>(event.status);
    for (std::size_t i = 0; i < event.data.size(); ++i)
        word |= std::uint32_t{static_cast<unsigned char>(event.data[i])} << (8 * (i + 1));
    return word;
}

struct MidiExportTest : WorkspaceFixture {
    MidiExportTest() { beCareful(); }

    MidiReader exported() { return MidiReader(midiFileOf(perform(workspace()))); }
    std::vector<std::string> meters() {
        std::vector<std::string> list;
        for (const auto& one : exported().metas(kMeter))
            list.push_back(std::to_string(one.tick) + ": " + std::to_string(one.data[0]) + "/" +
                           std::to_string(1 << one.data[1]));
        return list;
    }
    void setTempo(int tempo) { score().Tempo = static_cast<std::int16_t>(tempo); }
};

/// The messages of all tracks in the order in which a player that merges them sends them.
std::vector<MidiReader::Event> merged(const MidiReader& file) {
    auto events = file.messages();
    std::ranges::stable_sort(events, {}, &MidiReader::Event::tick);
    return events;
}

/// The file has what is performed, in this order, each within a millisecond of its moment; what it has
/// besides ends notes, at the end.
void expectPerformed(const MidiReader& file, const Performance& performance) {
    const auto events = merged(file);
    std::size_t next = 0;
    double furthest = 0;
    for (const TimedMessage& one : performance.messages) {
        if (one.reset || !shortmessage::isValid(one.word))
            continue;
        ASSERT_LT(next, events.size());
        const MidiReader::Event& event = events[next++];
        ASSERT_EQ(wordOf(event), one.word) << next;
        furthest = std::max(furthest, std::abs(file.seconds(event.tick) - one.seconds));
    }
    EXPECT_LT(furthest, 0.001);
    const auto ends = file.metas(kEnd);
    for (; next < events.size(); ++next) {
        EXPECT_EQ(events[next].status & 0xF0, 0x80);
        EXPECT_EQ(events[next].tick, ends.front().tick);
    }
    for (const auto& end : ends)
        EXPECT_NEAR(file.seconds(end.tick), performance.seconds, 0.001) << end.track;
}

/// Our reader has of the file what is performed, word for word; what it has besides ends notes, at the end.
void expectReadBack(const std::string& bytes, const Performance& performance) {
    const MidiMusic music = readMidi(bytes);
    EXPECT_EQ(music.error, "");
    EXPECT_NEAR(music.seconds, performance.seconds, 0.001);
    auto next = music.messages.begin();
    for (const TimedMessage& one : performance.messages) {
        if (one.reset || !shortmessage::isValid(one.word))
            continue;
        ASSERT_NE(next, music.messages.end());
        ASSERT_EQ(next->word, one.word);
        ASSERT_NEAR(next->seconds, one.seconds, 0.001);
        ++next;
    }
    for (; next != music.messages.end(); ++next) {
        EXPECT_EQ(shortmessage::status(next->word), 0x80);
        EXPECT_EQ(next->seconds, music.seconds);
    }
}

void expectEachNoteEnds(const MidiReader& file) {
    std::map<std::array<int, 3>, int> open; // track, channel, note
    for (const auto& event : file.messages()) {
        const std::array<int, 3> note{event.track, event.status & 0xF, event.data[0]};
        if ((event.status & 0xF0) == 0x90 && event.data[1] > 0)
            ++open[note];
        else if ((event.status & 0xE0) == 0x80 && open[note] > 0)
            --open[note];
    }
    for (const auto& [note, count] : open)
        EXPECT_EQ(count, 0) << note[2] << " on track " << note[0];
}

} // namespace

TEST_F(MidiExportTest, ItHasTheMessagesMomentsAndOrderOfPlaying) {
    std::minstd_rand random(3);
    const std::vector<int> tempi{2, 3, 4, 100, 137, 500, 1379, 1380};
    for (std::size_t i = 0; i < 40; ++i) {
        score() = test::randomScore(random, 120);
        score().TopChannel = kUsedChannels - 1;
        setTempo(i < tempi.size() ? tempi[i] : 2 + test::below(random, 1379));
        for (int row = 1; row <= kMelodyChannels; ++row)
            for (int position = 0; position < 120; position += 1 + test::below(random, 9))
                score().Polyphonics.set(row, position, static_cast<std::int16_t>(test::below(random, 8)));
        for (int channel = 0; channel < kMelodyChannels; ++channel)
            workspace().setup.Chkstrum[channel] = test::below(random, 3) == 0;
        SCOPED_TRACE(score().Tempo);
        const Performance performance = perform(workspace());
        const MidiReader file(midiFileOf(performance));
        expectPerformed(file, performance);
        expectEachNoteEnds(file);
        expectReadBack(midiFileOf(performance), performance);
    }
}

TEST_F(MidiExportTest, AFileOfAnyTempoLastsAsLongAsPlaying) {
    for (int tempo = 2; tempo <= 1380; tempo += tempo < 12 ? 1 : 97) {
        setTempo(tempo);
        const double step = 13.8 / tempo;
        const int positions = static_cast<int>(190 / step);
        score().resizeNotes(std::max(positions, 10));
        putNotes(score(), 0, 60, std::max(positions, 1), 1);
        const Performance performance = perform(workspace());
        const MidiReader file(midiFileOf(performance));
        EXPECT_NEAR(file.seconds(file.metas(kEnd).front().tick), performance.seconds, 0.001) << tempo;
        EXPECT_NEAR(performance.seconds, (positions + 2) * step, 0.001) << tempo;
        const auto events = file.messages();
        const auto last = std::ranges::find(events.rbegin(), events.rend(), 0x90, &MidiReader::Event::status);
        ASSERT_NE(last, events.rend());
        EXPECT_NEAR(file.seconds(last->tick), positions * step, 0.002) << tempo;
        for (const auto& one : events)
            ASSERT_EQ(one.tick * 4 % file.division, 0) << "positions stand on the grid";
    }
}

TEST_F(MidiExportTest, ATempoThatAFileCanTellIsToldOnceAndAnyOtherNowAndThen) {
    putNotes(score(), 0, 60, 900, 1);
    const MidiReader even = exported();
    ASSERT_EQ(even.metas(kTempo).size(), 1U);
    EXPECT_EQ(MidiReader::big(even.metas(kTempo).front().data), 552'000) << "tempo 100";
    setTempo(1300);
    score().resizeNotes(20000);
    putNotes(score(), 0, 60, 19000, 1);
    const auto tempi = exported().metas(kTempo);
    EXPECT_GT(tempi.size(), 2U);
    EXPECT_LT(tempi.size(), 12U);
    for (const auto& one : tempi)
        EXPECT_NEAR(static_cast<double>(MidiReader::big(one.data)), 55.2e6 / 1300, 1);
}

TEST_F(MidiExportTest, AQuarterThatIsTooSlowForAFileHasFewerPositions) {
    putNotes(score(), 0, 60, 9, 1);
    struct Row {
        int tempo;
        std::int64_t microseconds;
        int positions;
    };
    for (const Row& row : {Row{4, 13'800'000, 4}, Row{3, 9'200'000, 2}, Row{2, 13'800'000, 2}}) {
        setTempo(row.tempo);
        const MidiReader file = exported();
        EXPECT_EQ(MidiReader::big(file.metas(kTempo).front().data), row.microseconds) << row.tempo;
        EXPECT_EQ(file.messages().front().tick * row.positions, file.division) << row.tempo;
        EXPECT_LE(static_cast<double>(row.microseconds) / file.division, 1000) << "a tick is short";
        EXPECT_LT(file.division, 0x8000);
    }
}

TEST_F(MidiExportTest, TheFirstTrackHasTempoAndMeterAndEachChannelANamedTrackOfItsOwn) {
    putNotes(score(), 0, 60, 4);
    putNotes(score(), 12, 60, 4);
    score().NoteInstrument.fillRow(12, 131);
    score().TopChannel = 12;
    const MidiReader file = exported();
    EXPECT_EQ(file.format, 1);
    EXPECT_EQ(file.tracks, 14);
    EXPECT_EQ(file.division, 960);
    std::vector<std::string> names;
    for (const auto& one : file.metas(kName))
        names.push_back(std::to_string(one.track) + " " + one.data);
    EXPECT_THAT(names, ElementsAre("1 Channel 1", "2 Channel 2", "3 Channel 3", "4 Channel 4", "5 Channel 5",
                                   "6 Channel 6", "7 Channel 7", "8 Channel 8", "9 Percussion Channel 9",
                                   "10 Unused", "11 Percussion Channel 10", "12 Percussion Channel 11",
                                   "13 Percussion Channel 12"));
    for (const auto& one : file.messages()) {
        EXPECT_TRUE(one.track == 1 || one.track == 13);
        EXPECT_EQ(one.status & 0xF, one.track == 1 ? 0 : 9);
    }
    EXPECT_EQ(file.metas(kEnd).size(), 14U);
}

TEST_F(MidiExportTest, MeasuresBeginWhereTheyDoInTheScore) {
    putNotes(score(), 0, 60, 40, 1);
    struct Row {
        int notes, beats, value;
        std::string meter;
    };
    for (const Row& row :
         {Row{16, 4, 4, "4/4"}, Row{12, 3, 4, "3/4"}, Row{12, 6, 8, "6/8"}, Row{20, 5, 4, "5/4"},
          Row{6, 4, 4, "3/8"}, Row{7, 4, 4, "7/16"}, Row{16, 8, 8, "8/8"}, Row{16, 6, 8, "4/4"},
          Row{24, 0, 0, "6/4"}, Row{0, 4, 4, "4/4"}}) {
        score().NotesPerMeasure = static_cast<std::int16_t>(row.notes);
        workspace().setup.TxtMeter = static_cast<std::int16_t>(row.beats);
        workspace().setup.NoteX = static_cast<std::int16_t>(row.value);
        EXPECT_THAT(meters(), ElementsAre("0: 1/16", "240: " + row.meter)) << row.notes;
    }
    score().NotesPerMeasure = 1;
    EXPECT_THAT(meters(), ElementsAre("0: 1/16"));
    score().NotesPerMeasure = 16;
    workspace().setup.TxtMeter = workspace().setup.NoteX = 4;
    setTempo(3);
    EXPECT_THAT(meters(), ElementsAre("0: 1/8", std::to_string(exported().division / 2) + ": 8/4"));
}

TEST_F(MidiExportTest, ASegmentBeginsWithinItsMeasure) {
    putNotes(score(), 0, 60, 60, 1);
    const auto metersOf = [this](int first, int last) {
        const MidiReader file(
            midiFileOf(perform(PerformedScore::of(workspace()), PerformedSegment{first, last})));
        std::vector<std::int64_t> list;
        for (const auto& one : file.metas(kMeter)) {
            list.push_back(one.tick / (file.division / 4));
            list.push_back(one.data[0]);
        }
        return list;
    };
    EXPECT_THAT(metersOf(16, 40), ElementsAre(0, 1, 1, 4));
    EXPECT_THAT(metersOf(20, 40), ElementsAre(0, 13, 13, 4))
        << "twelve positions are left, and the first wait";
    EXPECT_THAT(metersOf(17, 40), ElementsAre(0, 4)) << "the wait makes the measure whole";
    EXPECT_THAT(metersOf(20, 22), ElementsAre(0, 13)) << "it ends before another begins";
}

TEST_F(MidiExportTest, MutedChannelsAndThoseAboveTheTopAreLeftOut) {
    for (const int channel : {0, 1, 2})
        putNotes(score(), channel, 60, 4);
    score().TopChannel = 1;
    score().ChannelMuted[0] = true;
    const auto messages = exported().messages();
    ASSERT_FALSE(messages.empty());
    for (const auto& one : messages)
        EXPECT_EQ(one.track, 2);
}

TEST_F(MidiExportTest, NoteThatPlayingLeavesToTheFinalSilenceEndsThere) {
    score().TopChannel = 8;
    score().NoteCell.set(8, 0, 50);
    score().NoteInstrument.set(8, 0, 130);
    score().NoteCell.set(8, 1, 50); // another key: the first one's note-off has this one's
    score().NoteInstrument.set(8, 1, 140);
    const MidiReader file = exported();
    expectEachNoteEnds(file);
    EXPECT_EQ(file.messages().back().tick, file.metas(kEnd).front().tick);
    EXPECT_EQ(wordOf(file.messages().back()), shortmessage::noteOff(9, 130 - 93));
}

TEST_F(MidiExportTest, MessagesThatNoPortTakesAreLeftOut) {
    score().NoteCell.set(0, 0, 2); // a chord on top of note 125
    score().Polyphonics.set(1, 0, 1);
    score().Modulation_Change.set(0, 1, -1);
    const MidiReader file = exported();
    for (const auto& one : file.messages())
        EXPECT_TRUE(shortmessage::isValid(wordOf(one)));
    expectPerformed(file, perform(workspace()));
}

TEST_F(MidiExportTest, AScoreThatIsNotPlayedMakesAnEmptyFile) {
    putNotes(score(), 0, 60, 4);
    setTempo(1);
    const MidiReader file = exported();
    EXPECT_EQ(file.tracks, 14);
    EXPECT_THAT(file.messages(), IsEmpty());
    EXPECT_EQ(file.metas(kEnd).back().tick, 0);
    EXPECT_EQ(meters().size(), 1U);
}

TEST_F(MidiExportTest, APauseOfDaysIsToldInPieces) {
    score().resizeNotes(90000);
    setTempo(2);
    score().NoteCell.set(0, 89999, 60);
    const Performance performance = perform(workspace());
    EXPECT_GT(performance.seconds, 7 * 24 * 3600);
    const MidiReader file(midiFileOf(performance));
    EXPECT_NEAR(file.seconds(file.messages().front().tick), performance.messages.front().seconds, 0.001);
    EXPECT_NEAR(file.seconds(file.metas(kEnd).back().tick), performance.seconds, 0.001);
}

TEST_F(MidiExportTest, MannersDecideWhatIsWritten) {
    std::minstd_rand random(5);
    score() = test::randomScore(random, 80);
    score().TopChannel = 5;
    score().TopMelodyHint = 3;
    const std::filesystem::path path = folders.home() / "a.mid";
    std::filesystem::create_directories(path.parent_path());
    for (const bool classic : {true, false}) {
        workspace().manners = Manners::of(classic);
        const Score before = score();
        const ChordSteps steps = workspace().chords;
        std::int32_t size = 10000;
        EXPECT_EQ(writeMidi(path, PerformedScore::of(workspace()), size), "");
        test::expectSameScore(score(), before);
        EXPECT_EQ(score().ChannelVelocity, before.ChannelVelocity);
        EXPECT_EQ(score().PlayedCell, before.PlayedCell);
        EXPECT_EQ(workspace().chords, steps);
        Score copy = before;
        ChordSteps copied = steps;
        std::int32_t wanted = 10000;
        EXPECT_EQ(*readWholeFile(path),
                  classic ? buildMidiFile(copy, copied, wanted) : midiFileOf(perform(workspace())));
        EXPECT_EQ(size, wanted) << "what is performed needs no size that settings remember";
    }
}

TEST_F(MidiExportTest, WhatCannotBeWrittenIsToldInWords) {
    std::int32_t size = 10000;
    EXPECT_NE(writeMidi("/nowhere/a.mid", PerformedScore::of(workspace()), size), "");
}
