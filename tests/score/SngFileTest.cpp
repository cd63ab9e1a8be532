// SPDX-License-Identifier: GPL-2.0-or-later
#include "score/SngFile.h"

#include "RandomScore.h"
#include "base/Files.h"
#include "score/Numbers.h"
#include "score/SngText.h"

#include <QTemporaryDir>

#include <algorithm>
#include <chrono>

using namespace velmora;
using namespace velmora::test;
using namespace std::string_view_literals;

namespace {
std::string joined(std::initializer_list<std::string> lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text;
}

std::string repeated(const std::string& line, int times) {
    std::string text;
    while (times-- > 0)
        text += line + "\r\n";
    return text;
}

/// 26 rows: one note on channel 0 with instrument 33, and a first cell of instrument 40 + c on the others.
std::string noteRows() {
    std::string text = joined({"60,1060", "33,33"});
    for (int channel = 1; channel < kUsedChannels; ++channel)
        text += joined({"-1", std::to_string(40 + channel)});
    return text;
}

/// The newest form's 107 lines before its key lines.
std::string beforeKeyLines() {
    return repeated("-1", 26) + repeated("1", 81);
}

struct SngFileTest : testing::Test {
    Score score{60};
    SetupState setup;
    QTemporaryDir folder;
    std::filesystem::path path = folder.filePath("a song.sng").toStdString();

    void read(std::string_view text, SngReader reader = SngReader::OpenPoliFile) {
        parseSng(text, reader, score, setup);
    }
};
} // namespace

TEST_F(SngFileTest, AScoreOfThreePositionsIsWrittenLineByLine) {
    score.NoteCell.set(0, 0, 60);
    score.NoteCell.set(0, 1, 60);
    score.NoteCell.set(0, 2, 1060);
    score.NoteCell.set(8, 0, 56);
    for (int position = 0; position < 3; ++position)
        score.NoteInstrument.set(0, position, 24);
    score.NoteInstrument.set(8, 0, 128);
    score.ChannelInstrument = {24, 24, 24, 0, 0, 0, 0, 0, 128, 0, 128, 0, 0};
    score.Tempo = 70;
    std::string wanted = joined({"60,60,1060", "24,24,24"});
    for (int channel = 1; channel <= 7; ++channel)
        wanted += joined({"-1", "0"});
    wanted += joined({"56", "128"});
    for (int channel = 9; channel <= 12; ++channel)
        wanted += joined({"-1", "0"});
    wanted += joined({"24,24,24,0,0,0,0,0,128,0,128,0,0", "Polyphonics"}) + repeated("0,0,0,0", 9);
    wanted += joined({"Volume"}) + repeated("127,127,127", 13);
    wanted += joined({"Modulation_Change"}) + repeated("0,0,0", 13);
    wanted += joined({"Pan_Change"}) + repeated("64,64,64", 13);
    wanted += joined({"Reverb_Change"}) + repeated("0,0,0", 13);
    wanted += joined({"Chorus_Change"}) + repeated("0,0,0", 13);
    wanted += joined({"Tempo=70", "Notes per measure=16", "Beats per measure=4", "Note Value=4"});
    EXPECT_EQ(serializePoliFile(score, setup), wanted);
    EXPECT_EQ(std::ranges::count(wanted, '\n'), 111);
}

TEST_F(SngFileTest, AScoreWithoutNotesStillHasEveryRowAndTheFourKeyLines) {
    std::string wanted;
    for (int channel = 0; channel < kUsedChannels; ++channel)
        wanted += joined({"-1", "0"});
    wanted += joined({"0,0,0,0,0,0,0,0,0,0,0,0,0", "Polyphonics"}) + repeated("0,0", 9);
    wanted += joined({"Volume"}) + repeated("127", 13) + joined({"Modulation_Change"}) + repeated("0", 13);
    wanted += joined({"Pan_Change"}) + repeated("64", 13) + joined({"Reverb_Change"}) + repeated("0", 13);
    wanted += joined({"Chorus_Change"}) + repeated("0", 13);
    wanted += joined({"Tempo=100", "Notes per measure=16", "Beats per measure=4", "Note Value=4"});
    EXPECT_EQ(serializePoliFile(score, setup), wanted);
}

TEST_F(SngFileTest, ANoteInTheLastPositionHasNoEffectFieldBeyondTheArray) {
    Score small(2);
    small.NoteCell.set(0, 2, 5);
    const std::string text = serializePoliFile(small, setup);
    EXPECT_TRUE(text.starts_with("-1,-1,5\r\n0,0,0\r\n"));
    EXPECT_NE(text.find("Polyphonics\r\n0,0,0\r\n"), std::string::npos);
    EXPECT_NE(text.find("Volume\r\n127,127\r\n"), std::string::npos);
}

TEST_F(SngFileTest, SavingThenLoadingGivesTheSameScore) {
    std::minstd_rand random(7);
    for (int i = 0; i < 200; ++i) {
        const int numNotes = 1 + below(random, 90);
        Score saved = randomScore(random, numNotes);
        setup.TxBeats = static_cast<std::int16_t>(1 + below(random, 40));
        const std::string text = serializePoliFile(saved, setup);
        Score loaded(numNotes);
        SetupState loadedSetup;
        parseSng(text, SngReader::OpenPoliFile, loaded, loadedSetup);
        EXPECT_EQ(loaded.NoteCell, saved.NoteCell);
        EXPECT_EQ(loaded.NoteInstrument, saved.NoteInstrument);
        EXPECT_EQ(loaded.ChannelInstrument, saved.ChannelInstrument);
        if (numNotes >= 4) { // a shorter score ends the search for keys before the last
            EXPECT_EQ(serializePoliFile(loaded, loadedSetup), text);
        }
        EXPECT_EQ(loadedSetup.TxBeats, setup.TxBeats * (numNotes >= 2) + 16 * (numNotes < 2));
        EXPECT_EQ(loaded.Tempo, saved.Tempo);
    }
}

TEST_F(SngFileTest, VolumeOfPositionZeroGoesThroughIndexOneBothWays) {
    score.NoteCell.set(0, 3, 60);
    score.Volume.set(0, 0, 5);
    score.Volume.set(0, 1, 99);
    const std::string text = serializePoliFile(score, setup);
    EXPECT_NE(text.find("Volume\r\n99,127,127,127\r\n"), std::string::npos);
    Score loaded(60);
    parseSng(text, SngReader::OpenPoliFile, loaded, setup);
    EXPECT_EQ(loaded.Volume.at(0, 1), 99);
    EXPECT_EQ(loaded.Volume.at(0, 0), 127);
}

TEST_F(SngFileTest, TheTempoOfTheFirstFormIsCappedByOpenFileAndNotByOpenSegment) {
    const std::string text = noteRows() + joined({" 500 ", "1,2,3,4,5,6,7,8,9,10,11,12,13"});
    read(text, SngReader::OpenFile);
    EXPECT_EQ(score.Tempo, 400);
    EXPECT_EQ(score.ChannelInstrument[12], 13);
    read(text, SngReader::OpenSegment);
    EXPECT_EQ(score.Tempo, 500);
}

TEST_F(SngFileTest, TheReadersStandInTheirTableInOrder) {
    for (const SngReader reader :
         {SngReader::OpenPoliFile, SngReader::OpenFile, SngReader::OpenPoliFile2, SngReader::OpenSegment})
        EXPECT_EQ(kSngRules[static_cast<std::size_t>(reader)].reader, reader);
}

TEST_F(SngFileTest, AFileThatEndsAfterTheNoteRowsTakesChannelInstrumentsFromTheFirstCells) {
    for (const SngReader reader :
         {SngReader::OpenPoliFile, SngReader::OpenFile, SngReader::OpenPoliFile2, SngReader::OpenSegment}) {
        score.ChannelInstrument.fill(7);
        score.Tempo = 90;
        read(noteRows(), reader);
        EXPECT_EQ(score.ChannelInstrument[0], 33);
        EXPECT_EQ(score.ChannelInstrument[12], 52);
        EXPECT_EQ(score.ChannelInstrument[13], 7);
        EXPECT_EQ(score.Tempo, 90);
    }
}

TEST_F(SngFileTest, AFirstFormWithoutItsLastRowDoesTheSameAfterTheTempo) {
    read(noteRows() + " 70 ", SngReader::OpenFile);
    EXPECT_EQ(score.Tempo, 70);
    EXPECT_EQ(score.ChannelInstrument[5], 45);
}

TEST_F(SngFileTest, AFileThatEndsWithinTheNoteRowsLeavesTheOtherChannelsEmpty) {
    score.NoteCell.set(3, 3, 60);
    score.ChannelInstrument[3] = 9;
    read("60\r\n24\r\n61");
    EXPECT_EQ(score.NoteCell.at(0, 0), 60);
    EXPECT_EQ(score.NoteCell.at(1, 0), 61);
    EXPECT_EQ(score.NoteCell.at(3, 3), -1);
    EXPECT_EQ(score.ChannelInstrument[0], 24);
    EXPECT_EQ(score.ChannelInstrument[3], 0);
}

TEST_F(SngFileTest, OpenPoliFileTakesTheTempoLineOfTheFirstFormForTheInstruments) {
    score.ChannelInstrument.fill(7);
    score.Tempo = 90;
    read(noteRows() + joined({" 70 ", "1,2,3,4,5,6,7,8,9,10,11,12,13"}));
    EXPECT_EQ(score.ChannelInstrument[0], 70);
    EXPECT_EQ(score.ChannelInstrument[1], 7);
    EXPECT_EQ(score.Tempo, 90);
    EXPECT_EQ(score.NoteCell.at(0, 1), 1060);
    EXPECT_EQ(score.NoteInstrument.at(0, 1), 33);
}

TEST_F(SngFileTest, OpenPoliFile2ReadsTheSectionsOfTheSecondFormAndNoKeyLines) {
    std::string text = noteRows() + joined({" 401 ", "1", "Polyphonics"}) + repeated("0,3", 9);
    text += joined({"Volume"}) + repeated("50,51", 13) + joined({"Modulation_Change"}) + repeated("1", 13);
    text += joined({"Pan_Change"}) + repeated("2", 13) + joined({"Reverb_Change"}) + repeated("3", 13);
    text += joined({"Chorus_Change"}) + repeated("4", 13) + joined({"Tempo=55", "Notes per measure=3"});
    read(text, SngReader::OpenPoliFile2);
    EXPECT_EQ(score.Tempo, 400);
    EXPECT_EQ(score.Polyphonics.at(8, 1), 3);
    EXPECT_EQ(score.Polyphonics.at(9, 1), 0);
    EXPECT_EQ(score.Volume.at(12, 2), 51);
    EXPECT_EQ(score.Modulation_Change.at(0, 1), 1);
    EXPECT_EQ(score.Pan_Change.at(0, 1), 2);
    EXPECT_EQ(score.Reverb_Change.at(0, 1), 3);
    EXPECT_EQ(score.Chorus_Change.at(12, 1), 4);
    EXPECT_EQ(score.NotesPerMeasure, 16);
}

TEST_F(SngFileTest, TheFormOfATextShowsInItsLines27And29) {
    const std::string codes = "1,2,3,4,5,6,7,8,9,10,11,12,13";
    const std::string chords = joined({"Polyphonics"}) + repeated("0,3", 9);
    for (const auto& [form, behindTheRows] : {std::pair(SngForm::First, joined({" 70 ", codes})),
                                              {SngForm::First, joined({" 70 "})},
                                              {SngForm::Second, joined({" 70 ", codes}) + chords},
                                              {SngForm::Second, joined({"70", "1"}) + chords},
                                              {SngForm::Newest, joined({codes}) + chords},
                                              {SngForm::Newest, std::string()},
                                              {SngForm::Newest, joined({codes, "70"}) + chords},
                                              {SngForm::Newest, joined({"", "1"}) + chords}})
        for (const char* mark : {"", "\xEF\xBB\xBF"}) {
            const std::string text = mark + noteRows() + behindTheRows;
            EXPECT_EQ(formOf(text), form) << behindTheRows;
            EXPECT_EQ(openingReader(text),
                      form == SngForm::Second ? SngReader::OpenPoliFile2 : SngReader::OpenPoliFile)
                << behindTheRows;
        }
    EXPECT_EQ(formOf(""), SngForm::Newest);
    EXPECT_EQ(formOf(serializePoliFile(score, setup)), SngForm::Newest);
    EXPECT_EQ(formOf(serializeRecording({}, 24, 100)), SngForm::Second);
}

TEST_F(SngFileTest, AScoreInTheSecondFormIsOpenedAndWrittenAsItIs) {
    std::minstd_rand random(11);
    for (int i = 0; i < 100; ++i) {
        const int numNotes = 4 + below(random, 60);
        Score saved = randomScore(random, numNotes);
        saved.Tempo = static_cast<std::int16_t>(1 + below(random, 400));
        const std::string newest = serializePoliFile(saved, setup);
        // The second form has the tempo before the instruments, and no key lines.
        std::size_t at = 0;
        for (int line = 0; line < 26; ++line)
            at = newest.find('\n', at) + 1;
        std::string second = newest.substr(0, newest.find("Tempo="));
        second.insert(at, " " + std::to_string(saved.Tempo) + " \r\n");
        ASSERT_EQ(openingReader(second), SngReader::OpenPoliFile2);
        Score opened(numNotes);
        SetupState openedSetup;
        parseSng(second, openingReader(second), opened, openedSetup);
        EXPECT_EQ(serializePoliFile(opened, openedSetup), newest);
    }
}

TEST_F(SngFileTest, AByteOrderMarkIsNoPartOfTheFirstNote) {
    const std::string text = noteRows();
    EXPECT_EQ(longestRow("\xEF\xBB\xBF" + text), longestRow(text));
    for (const SngReader reader :
         {SngReader::OpenPoliFile, SngReader::OpenFile, SngReader::OpenPoliFile2, SngReader::OpenSegment}) {
        read("\xEF\xBB\xBF" + text, reader);
        EXPECT_EQ(score.NoteCell.at(0, 0), 60);
        EXPECT_EQ(score.NoteCell.at(0, 1), 1060);
    }
}

TEST_F(SngFileTest, EveryValueIsWrittenAsItIs) {
    std::vector<std::int16_t> cells;
    std::string row;
    for (int value = -32768; value <= 32767; ++value) {
        cells.push_back(static_cast<std::int16_t>(value));
        row += (row.empty() ? "" : ",") + std::to_string(value);
    }
    SngWriter out(cells.size());
    out.row(cells);
    EXPECT_EQ(out.take(), row + "\r\n");
}

TEST_F(SngFileTest, OldEffectValuesStayWhereTheFileHasNone) {
    score.Volume.set(0, 1, 11);
    score.Volume.set(0, 2, 12);
    read(noteRows() + joined({"1"}) + repeated("x", 10) + joined({"Volume", "90"}));
    EXPECT_EQ(score.Volume.at(0, 1), 90);
    EXPECT_EQ(score.Volume.at(0, 2), 12);
}

TEST_F(SngFileTest, AKeyMayStandAnywhereAndItsValueIsAfterTheFirstEqualsSign) {
    read(beforeKeyLines() + joined({"x Tempo=44.5 y", "", "no key here=9", "tempo=3", "a=7 Note Value=9",
                                    "Beats per measure=1e1"}));
    EXPECT_EQ(score.Tempo, 44);
    EXPECT_EQ(setup.NoteX, 7);
    EXPECT_EQ(setup.TxtMeter, 10);
}

TEST_F(SngFileTest, TheKeySearchEndsWhenAllThreeMeterValuesWereRead) {
    const std::string head = beforeKeyLines();
    read(head + joined({"Notes per measure=12", "Beats per measure=3", "Note Value=8", "Tempo=55"}));
    EXPECT_EQ(setup.TxBeats, 12);
    EXPECT_EQ(score.NotesPerMeasure, 12);
    EXPECT_EQ(setup.TxtMeter, 3);
    EXPECT_EQ(setup.NoteX, 8);
    EXPECT_EQ(score.Tempo, 100);
    read(head + joined({"Notes per measure=0", "Beats per measure=3", "Note Value=8", "Tempo=55"}));
    EXPECT_EQ(score.NotesPerMeasure, 0);
    EXPECT_EQ(score.Tempo, 55);
}

TEST_F(SngFileTest, TheKeySearchLooksAtAsManyLinesAsThereAreNotes) {
    const std::string head = beforeKeyLines();
    read(head + repeated("", 59) + joined({"Tempo=55"}));
    EXPECT_EQ(score.Tempo, 55);
    read(head + repeated("", 60) + joined({"Tempo=56"}));
    EXPECT_EQ(score.Tempo, 55);
}

TEST_F(SngFileTest, AMeterValueOutOfRangeIsLeftOut) {
    read(beforeKeyLines() + joined({"Notes per measure=40000", "Tempo=-99999"}));
    EXPECT_EQ(setup.TxBeats, 16);
    EXPECT_EQ(score.NotesPerMeasure, 16);
    EXPECT_EQ(score.Tempo, 100);
}

TEST_F(SngFileTest, FieldsAreReadByTheirLeadingNumber) {
    read("60,,  61 ,6x,1e2,2.5,40000,-40000,32767,-32768,32768,\"9\",00000005,+4,-0,123456\r\n");
    const std::int16_t wanted[] = {60, 0, 61, 6, 100, 2, -1, -1, 32767, -32768, -1, 0, 5, 4, 0, -1};
    for (int position = 0; position < static_cast<int>(std::size(wanted)); ++position)
        EXPECT_EQ(score.NoteCell.at(0, position), wanted[position]) << position;
}

TEST_F(SngFileTest, RepeatedFieldsAreReadAsTheyStand) {
    for (const std::string field : {"0", "-1", "7", "64", "127", "1060", "-999", "12345"})
        for (int times = 1; times <= 40; ++times)
            for (const std::string end : {"", ",", ",6", "0", "\r\n", ",\r\n", ",70000\r\n"}) {
                std::string row = field;
                for (int time = 1; time < times; ++time)
                    row += "," + field;
                Score read(33);
                const std::string text = row + end;
                SngLines lines(text);
                const std::size_t fields = lines.row(read.NoteCell.row(0));
                // The same text, a field at a time.
                std::vector<std::string> texts(static_cast<std::size_t>(times), field);
                if (end.starts_with(','))
                    texts.push_back(end.substr(1));
                else
                    texts.back() += end;
                ASSERT_EQ(fields, std::min<std::size_t>(texts.size(), 34)) << row + end;
                for (std::size_t i = 0; i < fields; ++i) {
                    const auto value = parseInt16(texts[i]);
                    ASSERT_EQ(read.NoteCell.at(0, static_cast<int>(i)), value.value_or(kEmptyCell))
                        << row + end << ", field " << i;
                }
            }
}

TEST_F(SngFileTest, ATrailingCommaIsABlankFieldAndAnEmptyLineHasNone) {
    for (const auto text : {"5,\r\n", "5,"}) {
        read(text);
        EXPECT_EQ(score.NoteCell.at(0, 0), 5);
        EXPECT_EQ(score.NoteCell.at(0, 1), 0);
        EXPECT_EQ(score.NoteCell.at(0, 2), -1);
    }
    read("\r\n24\r\n7");
    EXPECT_EQ(score.NoteCell.at(0, 0), -1);
    EXPECT_EQ(score.NoteInstrument.at(0, 0), 24);
    EXPECT_EQ(score.NoteCell.at(1, 0), 7);
}

TEST_F(SngFileTest, EveryLineEndIsUnderstood) {
    const std::string crlf = serializePoliFile(
        [] {
            std::minstd_rand random(3);
            return randomScore(random, 60);
        }(),
        setup);
    Score wanted(60);
    parseSng(crlf, SngReader::OpenPoliFile, wanted, setup);
    for (const char end : {'\n', '\r'}) {
        std::string text = crlf;
        std::erase(text, end == '\n' ? '\r' : '\n');
        Score got(60);
        parseSng(text, SngReader::OpenPoliFile, got, setup);
        expectSameScore(got, wanted);
    }
}

TEST_F(SngFileTest, ARowLongerThanTheArrayLosesItsExcess) {
    Score small(3);
    parseSng("1,2,3,4,5,6\r\n7,8,9,10,11,12\r\n50", SngReader::OpenPoliFile, small, setup);
    EXPECT_EQ(small.NoteCell.at(0, 3), 4);
    EXPECT_EQ(small.NoteInstrument.at(0, 3), 10);
    EXPECT_EQ(small.NoteCell.at(1, 0), 50);
    EXPECT_EQ(small.NoteCell.at(1, 1), -1);
}

TEST_F(SngFileTest, PercussionInstrumentsAreRememberedAsTheirCodes) {
    read(repeated("-1", 17) + joined({"128,0,130", "-1", "-1", "-1", "135"}));
    EXPECT_EQ(score.BeatMemo[1][1], 128);
    EXPECT_EQ(score.BeatMemo[1][2], 0);
    EXPECT_EQ(score.BeatMemo[1][3], 130);
    EXPECT_EQ(score.BeatMemo[3][1], 135);
}

TEST_F(SngFileTest, ACodeOfOneOrMoreMarksAChannelWhichOnlyAMutedOneKeepsWithoutANoteBeyondPositionZero) {
    score.ChannelMuted[1] = score.ChannelMuted[2] = true;
    read("60\r\n0\r\n60\r\n0\r\n0\r\n0\r\n60\r\n0\r\n");
    EXPECT_TRUE(score.ChannelInUse[1]);
    EXPECT_FALSE(score.ChannelInUse[2]);
    EXPECT_FALSE(score.ChannelInUse[3]);
}

TEST_F(SngFileTest, ReadingFindsTheEndOfTheSongAndLeavesTopChannelAlone) {
    score.TopChannel = 5;
    read("60,1060,-1,61,-1\r\n0\r\n");
    EXPECT_EQ(score.SongEnd, 4);
    EXPECT_EQ(score.TopChannel, 5);
}

TEST_F(SngFileTest, AnUnreadableFileLeavesTheScoreAsItWas) {
    std::minstd_rand random(5);
    score = randomScore(random, 60);
    const Score before = score;
    EXPECT_FALSE(OpenPoliFile(path, score, setup));
    EXPECT_FALSE(OpenFile(path, score, setup));
    EXPECT_FALSE(OpenPoliFile2(path, score, setup));
    EXPECT_FALSE(OpenSegment(folder.path().toStdString(), score, setup));
    expectSameScore(score, before);
}

TEST_F(SngFileTest, AFileIsOpenedByTheReaderNamed) {
    ASSERT_EQ(replaceFile(path, noteRows() + " 500 "), "");
    EXPECT_TRUE(OpenFile(path, score, setup));
    EXPECT_EQ(score.Tempo, 400);
    EXPECT_TRUE(OpenSegment(path, score, setup));
    EXPECT_EQ(score.Tempo, 500);
    EXPECT_TRUE(OpenPoliFile2(path, score, setup));
    EXPECT_EQ(score.Tempo, 400);
    EXPECT_TRUE(OpenPoliFile(path, score, setup));
    EXPECT_EQ(score.ChannelInstrument[0], 500);
}

TEST_F(SngFileTest, SavingWritesTheCurrentFileAndDoesNothingWithoutOne) {
    EXPECT_EQ(SavePoliFile(score, setup), "");
    score.currentFile = path.string();
    EXPECT_EQ(SavePoliFile(score, setup), "");
    EXPECT_EQ(readWholeFile(path), serializePoliFile(score, setup));
    score.currentFile = (path / "below a file").string();
    EXPECT_NE(SavePoliFile(score, setup), "");
}

TEST_F(SngFileTest, ARecordingIsWrittenInTheSecondForm) {
    const std::int16_t cells[] = {60, 1060, -1};
    std::string wanted = joined({"60,1060,-1", "5,5,5"});
    for (int channel = 1; channel <= 12; ++channel)
        wanted += joined({"-1", "5"});
    wanted += joined({" 70 ", "5,5,5,5,5,5,5,5,5,5,5,5,5", "Polyphonics"}) + repeated("0,0,0,0", 9);
    wanted += joined({"Volume"}) + repeated("127,127,127", 13);
    wanted += joined({"Modulation_Change"}) + repeated("0,0,0", 13);
    wanted += joined({"Pan_Change"}) + repeated("64,64,64", 13);
    wanted += joined({"Reverb_Change"}) + repeated("0,0,0", 13);
    wanted += joined({"Chorus_Change"}) + repeated("0,0,0", 13);
    const std::string text = serializeRecording(cells, 5, 70);
    EXPECT_EQ(text, wanted);
    read(text, SngReader::OpenPoliFile2);
    EXPECT_EQ(score.Tempo, 70);
    EXPECT_EQ(score.NoteCell.at(0, 1), 1060);
    EXPECT_EQ(score.ChannelInstrument[12], 5);
    EXPECT_NE(serializeRecording(cells, 5, -3).find("\r\n-3 \r\n"), std::string::npos);
    EXPECT_TRUE(serializeRecording({}, 5, 70).starts_with("\r\n\r\n-1\r\n5\r\n"));
}

TEST_F(SngFileTest, TheLongestNoteRowTellsHowLargeAScoreMustBe) {
    EXPECT_EQ(longestRow(""), 0u);
    EXPECT_EQ(longestRow("1"), 1u);
    EXPECT_EQ(longestRow("1,2\n1,2,3\n1,2,3,4\r\n9\r-1\n"), 4u);
    EXPECT_EQ(longestRow(repeated("1", 24) + joined({"1,2,3", "1,2,3,4,5,6", "1,2,3,4,5,6,7"})), 3u);
    EXPECT_EQ(longestRow(std::string(199'999, ',')), 200'000u);
}

TEST_F(SngFileTest, TwoHundredThousandPositionsComeBack) {
    constexpr int kMany = 200'000;
    Score large(kMany);
    large.NoteCell.set(12, kMany, 60);
    large.Volume.set(12, kMany, 3);
    const std::string text = serializePoliFile(large, setup);
    EXPECT_EQ(longestRow(text), kMany + 1u);
    Score loaded(kMany);
    parseSng(text, SngReader::OpenPoliFile, loaded, setup);
    EXPECT_EQ(loaded.NoteCell, large.NoteCell);
    EXPECT_EQ(loaded.Volume, large.Volume);
    EXPECT_EQ(loaded.SongEnd, kMany + 1);
}

TEST_F(SngFileTest, BytesThatAreNoScoreAreReadInLinearTimeAndDoNoHarm) {
    const std::string ends(3'000'000, '\r');
    const std::string digits(3'000'000, '9');
    const std::string commas(3'000'000, ',');
    std::string keys = beforeKeyLines();
    while (keys.size() < 3'000'000)
        keys += "Notes per measure";
    const auto start = std::chrono::steady_clock::now();
    for (const std::string& text : {ends, digits, commas, keys, std::string(3'000'000, '\0')}) {
        read(text);
        EXPECT_LE(longestRow(text), 3'000'001u);
        EXPECT_EQ(score.NoteCell.positions(), 61);
    }
    // Seconds where each byte is looked at a few times, hours where each line searches the rest.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}
