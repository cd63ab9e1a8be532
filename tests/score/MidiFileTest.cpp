// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/MidiFile.h"

#include "MidiFileModel.h"
#include "RandomScore.h"
#include "base/Files.h"
#include "sound/Chords.h"
#include "tests/support/Walks.h"

#include <QTemporaryDir>

using namespace velmora;
using namespace velmora::test;

namespace {
std::string hex(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += text.empty() ? "" : " ";
        text += {kDigits[value / 16], kDigits[value % 16]};
    }
    return text;
}

struct MidiFileTest : testing::Test {
    Score score{100};
    ChordSteps steps;

    void cells(int channel, int position, std::initializer_list<int> codes, int instrument) {
        for (const int code : codes) {
            score.NoteCell.set(channel, position, static_cast<std::int16_t>(code));
            score.NoteInstrument.set(channel, position++, static_cast<std::int16_t>(instrument));
        }
    }
    std::string build() { return buildMidiFile(score, steps); }

    /// The chunks after the first, each as (length field, events).
    static std::vector<std::string> tracks(const std::string& file) {
        std::vector<std::string> found;
        for (std::size_t at = 41; at < file.size();) {
            EXPECT_EQ(file.substr(at, 4), "MTrk");
            std::size_t length = 0;
            for (std::size_t i = 4; i < 8; ++i)
                length = length << 8 | static_cast<unsigned char>(file.at(at + i));
            EXPECT_LE(at + 8 + length, file.size());
            found.push_back(file.substr(at + 8, length));
            at += 8 + length;
        }
        return found;
    }
    std::string track(std::size_t index) { return hex(tracks(build()).at(index)); }
};
} // namespace

TEST_F(MidiFileTest, TheHeadIsFixedButForTempoAndMeter) {
    score.Tempo = 60;
    EXPECT_EQ(hex(build().substr(0, 41)), "4D 54 68 64 00 00 00 06 00 01 00 0E 00 30 4D 54 72 6B 00 00 00 13 "
                                          "00 FF 51 03 0F 42 40 00 FF 58 04 04 "
                                          "04 18 08 00 FF 2F 00");
}

TEST_F(MidiFileTest, TempoBytesAreMicrosecondsAQuarterAndNeverOverflow) {
    constexpr std::pair<int, const char*> kRows[] = {
        {60, "0F 42 40"}, {100, "09 27 C0"}, {32767, "00 07 27"}, {4, "E4 E1 C0"},
        {3, "FF FF FF"},  {1, "FF FF FF"},   {0, "00 00 00"},     {-5, "00 00 00"},
    };
    for (const auto& [tempo, bytes] : kRows) {
        score.Tempo = static_cast<std::int16_t>(tempo);
        EXPECT_EQ(hex(build().substr(26, 3)), bytes) << tempo;
    }
}

TEST_F(MidiFileTest, TheDenominatorFollowsTheNotesPerMeasure) {
    for (int notes = -1; notes <= 40; ++notes) {
        score.NotesPerMeasure = static_cast<std::int16_t>(notes);
        const int wanted = notes < 4 ? 0 : notes <= 7 ? 2 : notes <= 15 ? 3 : notes <= 20 ? 4 : 0;
        EXPECT_EQ(build()[34], wanted) << notes;
    }
}

TEST_F(MidiFileTest, AScoreOnChannelZeroHasFourteenChunksAllTheSame) {
    cells(0, 0, {60, 60}, 24);
    const auto chunks = tracks(build());
    ASSERT_EQ(chunks.size(), 13u);
    EXPECT_EQ(hex(chunks[0]), "00 C0 18 00 90 43 7F 0C 80 43 00 00 90 43 7F 0C 80 43 00 0C FF 2F 00");
    for (std::size_t channel = 1; channel < 13; ++channel)
        EXPECT_EQ(hex(chunks[channel]), "24 FF 2F 00");
}

TEST_F(MidiFileTest, AnEmptyTrackOf77PositionsHoldsTheDeltaAndItsEnd) {
    cells(0, 75, {60}, 24);
    EXPECT_EQ(track(9), "87 1C FF 2F 00");
    EXPECT_EQ(score.SongEnd, 77);
}

TEST_F(MidiFileTest, AHeldNoteLastsOverItsContinuationsAndARestEndsIt) {
    cells(2, 1, {60, 1060, 1060}, 40);
    cells(2, 6, {61}, 40);
    EXPECT_EQ(track(2), "0C C2 28 00 92 43 7F 24 82 43 00 18 92 42 7F 0C 82 42 00 0C FF 2F 00");
}

TEST_F(MidiFileTest, APercussionTrackSoundsOnTheDrumChannelWithoutAProgram) {
    cells(8, 0, {56}, 128);
    cells(8, 2, {10}, 131);
    EXPECT_EQ(track(8), "00 99 23 7F 0C 89 23 00 0C 99 26 7F 0C 89 26 00 0C FF 2F 00");
}

TEST_F(MidiFileTest, AProgramChangeComesAtAHeadAndBeforeTheNoteOff) {
    cells(0, 0, {60}, 24);
    cells(0, 1, {1060}, 30);
    cells(0, 2, {62}, 31);
    EXPECT_EQ(track(0), "00 C0 18 00 90 43 7F 18 C0 1F 00 80 43 00 00 90 41 7F 0C 80 41 00 0C FF 2F 00");
}

TEST_F(MidiFileTest, TheVelocityIsTheVolumeOneIndexFurther) {
    cells(0, 2, {60}, 0);
    score.Volume.set(0, 2, 1);
    score.Volume.set(0, 3, 99);
    EXPECT_EQ(track(0), "18 C0 00 00 90 43 63 0C 80 43 00 0C FF 2F 00");
    EXPECT_EQ(score.ChannelVelocity[0], 99);
}

TEST_F(MidiFileTest, ANoteInTheLastPositionHasNoVolumeOfItsOwnAndEndsWithTheSong) {
    Score small(2);
    small.NoteCell.set(0, 1, 60);
    small.NoteCell.set(0, 2, 61);
    small.Volume.set(0, 2, 50);
    EXPECT_EQ(hex(tracks(buildMidiFile(small, steps)).at(0)),
              "0C C0 00 00 90 43 32 0C 80 43 00 00 90 42 32 0C 80 42 00 0C FF 2F 00");
}

TEST_F(MidiFileTest, AScoreOfPositionZeroAloneEndsItsNoteWithTheSong) {
    cells(0, 0, {60}, 24);
    EXPECT_EQ(track(0), "00 C0 18 00 90 43 7F 0C 80 43 00 00 FF 2F 00");
}

TEST_F(MidiFileTest, AMutedChannelHoldsOnlyItsEnd) {
    cells(0, 0, {60, 1060}, 24);
    cells(1, 0, {60, 1060, 1060, 1060}, 24);
    score.ChannelMuted[1] = true;
    EXPECT_EQ(track(1), "24 FF 2F 00");
}

TEST_F(MidiFileTest, AContinuationAfterARestIsSilentButItsEndIsWritten) {
    cells(0, 1, {1060}, 24);
    EXPECT_EQ(track(0), "18 80 43 00 0C FF 2F 00"); // as the player does
}

TEST_F(MidiFileTest, ValuesNoMidiByteCanHoldAreKeptWithinIt) {
    cells(0, 1, {200, 1200}, 24);
    cells(1, 1, {60}, -3);
    cells(2, 1, {60}, 32767);
    score.Volume.set(0, 2, 999);
    score.Volume.set(1, 2, -999);
    const auto chunks = tracks(build());
    EXPECT_EQ(hex(chunks[0]), "0C C0 18 00 90 00 7F 18 80 00 00 0C FF 2F 00");
    EXPECT_EQ(hex(chunks[1]), "0C C1 00 00 91 43 00 0C 81 43 00 18 FF 2F 00");
    EXPECT_EQ(hex(chunks[2]), "0C 99 7F 7F 0C 89 7F 00 18 FF 2F 00");
}

TEST_F(MidiFileTest, AChordIsSpreadBelowTheNoteAtTwoThirdsOfItsVolume) {
    score.TopChannel = 3;
    cells(0, 0, {60, 1060}, 24);
    score.Polyphonics.set(1, 1, 1);
    score.Polyphonics.set(1, 2, 1);
    score.Volume.set(0, 1, 127);
    const auto chunks = tracks(build());
    EXPECT_EQ(hex(chunks[0]), "00 C0 18 00 90 43 7F 18 80 43 00 0C FF 2F 00");
    EXPECT_EQ(hex(chunks[3]), "00 C3 18 00 93 3F 53 18 83 3F 00 0C FF 2F 00");
    EXPECT_EQ(hex(chunks[4]), "00 C4 18 00 94 3C 53 18 84 3C 00 0C FF 2F 00");
    EXPECT_EQ(hex(chunks[5]), "00 C5 18 00 95 37 53 18 85 37 00 0C FF 2F 00");
    EXPECT_EQ(steps.ChordStep1, 4);
}

TEST_F(MidiFileTest, TheChordOfAPositionIsLookedUpOneIndexFurtherAndOnlyUpToTheMelodyHint) {
    score.TopChannel = 3;
    cells(0, 0, {60, 61}, 24);
    cells(1, 0, {60, 61}, 24);
    score.Polyphonics.set(1, 1, 1);
    score.Polyphonics.set(2, 1, 1);
    const auto chunks = tracks(build());
    EXPECT_EQ(hex(chunks[3]), "00 C3 18 00 93 3F 53 0C 83 3F 00 18 FF 2F 00");
    EXPECT_EQ(hex(chunks[6]), "24 FF 2F 00"); // channel 1 is above the hint, so its chord isn't spread
}

TEST_F(MidiFileTest, ChordChannelsAreEmptiedAfterwardsWhateverTheyHeld) {
    score.TopChannel = 2;
    score.TopMelodyHint = 1;
    for (int channel = 0; channel < kUsedChannels; ++channel)
        cells(channel, 0, {60, 60, 60}, 24);
    for (int channel = 0; channel < kUsedChannels; ++channel)
        score.Volume.fillRow(channel, 50);
    cells(0, 90, {60}, 24);
    const Score before = score;
    (void)build();
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        const bool cleared = channel >= 2 && channel <= 5;
        EXPECT_EQ(score.NoteCell.at(channel, 1), cleared ? -1 : 60) << channel;
        EXPECT_EQ(score.NoteInstrument.at(channel, 1), cleared ? 0 : 24) << channel;
        EXPECT_EQ(score.Volume.at(channel, 0), 50) << channel;
        EXPECT_EQ(score.Volume.at(channel, 1), cleared ? 127 : 50) << channel;
        EXPECT_EQ(score.Volume.at(channel, 93), cleared ? 127 : 50) << channel; // SongEnd is 92 by now
        EXPECT_EQ(score.Volume.at(channel, 94), 50) << channel;
    }
    EXPECT_EQ(score.Pan_Change, before.Pan_Change);
}

TEST_F(MidiFileTest, RepeatedExportsGiveTheSameFile) {
    std::minstd_rand random(2);
    for (int i = 0; i < 20; ++i) {
        score = randomScore(random, 100);
        score.TopChannel = 2;
        score.TopMelodyHint = 1;
        (void)build(); // empties the channels of chords
        const std::string first = build();
        EXPECT_EQ(build(), first);
    }
}

TEST_F(MidiFileTest, OneMoreTrackIsWrittenAndCountedWhereTopChannelMeetsTheMelodyHint) {
    struct Row {
        int topChannel, hint;
        std::size_t tracks;
    };
    for (const Row& row : {Row{1, 0, 13}, Row{3, 3, 13}, Row{4, 4, 14}, Row{7, 7, 14}, Row{5, 4, 13},
                           Row{3, 4, 13}, Row{1, 7, 13}}) {
        score.TopChannel = row.topChannel;
        score.TopMelodyHint = row.hint;
        const std::string file = build();
        EXPECT_EQ(tracks(file).size(), row.tracks) << row.topChannel << ' ' << row.hint;
        EXPECT_EQ(file[11], static_cast<char>(row.tracks + 1));
    }
}

TEST_F(MidiFileTest, TheSizeHintGrowsWhereTheFileOutgrowsIt) {
    std::int32_t NumBytes = 10000;
    (void)buildMidiFile(score, steps, NumBytes);
    EXPECT_EQ(NumBytes, 10000);
    NumBytes = 60;
    // Chunks of 12 bytes after a head of 41: at the second the file has 65, and the hint becomes 4 + 1000.
    (void)buildMidiFile(score, steps, NumBytes);
    EXPECT_EQ(NumBytes, 1004);
}

TEST_F(MidiFileTest, MoreThan32767BytesAndPositionsAreWrittenRight) {
    Score large(200'000);
    for (int position = 0; position <= 200'000; ++position)
        large.NoteCell.set(0, position, 60);
    const auto chunks = tracks(buildMidiFile(large, steps));
    ASSERT_EQ(chunks.size(), 13u);
    EXPECT_EQ(chunks[0].size(), 3 + 200'001 * 8u + 4);
    EXPECT_EQ(hex(chunks[1]), "81 92 BE 18 FF 2F 00"); // 200,002 * 12 ticks
}

TEST_F(MidiFileTest, TheFileIsWrittenOrTheReasonGiven) {
    const QTemporaryDir folder;
    const std::filesystem::path path = folder.filePath("a.mid").toStdString();
    std::int32_t NumBytes = 10000;
    cells(0, 0, {60, 60}, 24);
    Score copy = score;
    EXPECT_EQ(MidiFile(path, score, steps, NumBytes), "");
    EXPECT_EQ(readWholeFile(path), buildMidiFile(copy, steps));
    EXPECT_NE(MidiFile(path / "below a file", score, steps, NumBytes), "");
}

TEST_F(MidiFileTest, RandomScoresAreWrittenByteForByteAsStepByStep) {
    std::minstd_rand random(30);
    for (int i = 0; i < stepsOfWalk(1500); ++i) {
        Score got = randomScore(random, below(random, 60));
        got.TopChannel = 1 + below(random, 13);
        got.TopMelodyHint = below(random, 8);
        got.ActiveChannel = below(random, 13);
        got.NotesPerMeasure = static_cast<std::int16_t>(below(random, 30));
        for (int cell = below(random, 30); cell > 0; --cell) { // what only a file can bring
            got.NoteCell.set(below(random, 16), below(random, 60),
                             static_cast<std::int16_t>(below(random, 65536)));
            got.NoteInstrument.set(below(random, 16), below(random, 60),
                                   static_cast<std::int16_t>(below(random, 65536)));
            got.Polyphonics.set(below(random, 16), below(random, 60),
                                static_cast<std::int16_t>(below(random, 9)));
            got.Volume.set(below(random, 16), below(random, 60),
                           static_cast<std::int16_t>(below(random, 300)));
        }
        got.ChannelMuted[below(random, 16)] = true;
        Score wanted = got;
        ChordSteps gotSteps, wantedSteps;
        ASSERT_EQ(hex(buildMidiFile(got, gotSteps)), hex(MidiFileModel(wanted, wantedSteps).write())) << i;
        expectSameScore(got, wanted);
        EXPECT_EQ(got.PlayedCell, wanted.PlayedCell);
        EXPECT_EQ(got.PlayedInstrument, wanted.PlayedInstrument);
        EXPECT_EQ(got.ChannelVelocity, wanted.ChannelVelocity);
        EXPECT_EQ(gotSteps, wantedSteps);
        ASSERT_FALSE(HasFailure()) << i;
    }
}
