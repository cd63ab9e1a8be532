// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/ScoreFiles.h"

#include "WorkspaceFixture.h"
#include "score/MidiFile.h"
#include "score/SngFile.h"
#include "tests/support/ScriptedDialogs.h"

#include <fstream>

using namespace velmora;
namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {
class ScoreFilesTest : public WorkspaceFixture {
protected:
    ScoreFilesTest() {
        fs::create_directories(other);
        score().ChannelInstrument[0] = 30;
    }
    static std::string contentOf(const fs::path& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static void write(const fs::path& file, std::string_view bytes) {
        std::ofstream(file, std::ios::binary) << bytes;
    }
    /// A score file of some notes on channel 0.
    fs::path aScore(int notes, int row = 50) {
        Score made(20000);
        putNotes(made, 0, row, notes, 1);
        const fs::path file = this->other / (std::to_string(notes) + ".sng");
        write(file, serializePoliFile(made, workspace().setup));
        return file;
    }
    std::string songs() { return folders.songs().string(); }

    const fs::path other = folders.home() / "other";
    ScriptedDialogs dialogs;
    ScoreFiles files{workspace(), dialogs, settings, folders.songs()};
};

constexpr const char* kOpenFilter = "Score Files (*.sng) |*.sng|";
constexpr const char* kSaveFilter = "Velmora Score(*.sng)|*.sng|Midi(*.mid)|*.mid";
} // namespace

TEST_F(ScoreFilesTest, TheDialogsHaveTheirTitlesFiltersAndFirstFolder) {
    putNotes(score(), 0, 60, 2);
    files.open();
    files.saveAs();
    EXPECT_THAT(dialogs.asked,
                ElementsAre(ScriptedDialogs::Asked{"open", "Open Score File", kOpenFilter, songs()},
                            ScriptedDialogs::Asked{"save", "Save music file", kSaveFilter, songs()}));
}

TEST_F(ScoreFilesTest, TheNextDialogBeginsInTheFolderOfTheLastFile) {
    dialogs.answers = {{aScore(4).string(), 1}};
    ASSERT_TRUE(files.open().done);
    files.open();
    EXPECT_EQ(dialogs.asked.back().start, other.string());
    workspace().clear();
    putNotes(score(), 0, 60, 2);
    dialogs.answers = {{(folders.home() / "new").string(), 1}};
    ASSERT_TRUE(files.saveAs().done);
    files.open();
    EXPECT_EQ(dialogs.asked.back().start, folders.home().string());
}

TEST_F(ScoreFilesTest, SavingBeginsAtTheOpenScore) {
    const fs::path file = aScore(4);
    files.open(file);
    files.saveAs();
    EXPECT_EQ(dialogs.asked.back().start, file.string());
}

TEST_F(ScoreFilesTest, ACancelChangesNothingAndSaysNothing) {
    putNotes(score(), 0, 60, 2);
    const ChannelGrid cells = score().NoteCell;
    for (const auto& outcome : {files.open(), files.saveAs()}) {
        EXPECT_FALSE(outcome.done);
        EXPECT_EQ(outcome.words, "");
        EXPECT_FALSE(outcome.opened);
    }
    EXPECT_EQ(dialogs.asked.size(), 2U);
    EXPECT_EQ(score().NoteCell, cells);
    EXPECT_EQ(score().currentFile, "");
}

TEST_F(ScoreFilesTest, AnOpenedScoreTakesTheOldOnesPlaceUntilUndo) {
    putNotes(score(), 1, 60, 7);
    const ChannelGrid before = score().NoteCell;
    dialogs.answers = {{"  " + aScore(4).string() + std::string(1, '\0'), 1}};
    const auto outcome = files.open();
    ASSERT_TRUE(outcome.done);
    EXPECT_EQ(outcome.words, "");
    EXPECT_TRUE(outcome.opened);
    EXPECT_EQ(score().SongEnd, 4);
    EXPECT_EQ(score().currentFile, (other / "4.sng").string());
    ASSERT_TRUE(workspace().undoLast());
    EXPECT_EQ(score().NoteCell, before);
    EXPECT_EQ(score().currentFile, "");
}

TEST_F(ScoreFilesTest, WhatCantBeReadOrIsNoTextLeavesTheOldScore) {
    putNotes(score(), 1, 60, 7);
    const ChannelGrid before = score().NoteCell;
    write(other / "binary.sng", std::string("60,60\0\r\n", 8));
    fs::create_directory(other / "folder.sng");
    struct Row {
        const char* name;
        const char* said;
    };
    for (const Row& row : {Row{"missing.sng", "can't be read"}, Row{"folder.sng", "can't be read"},
                           Row{"binary.sng", "isn't text"}}) {
        const auto outcome = files.open(other / row.name);
        EXPECT_FALSE(outcome.done) << row.name;
        EXPECT_THAT(outcome.words, HasSubstr(row.said));
        EXPECT_THAT(outcome.words, HasSubstr((other / row.name).string()));
        EXPECT_EQ(score().NoteCell, before) << row.name;
        EXPECT_EQ(score().currentFile, "");
    }
    EXPECT_FALSE(workspace().undoLast()) << "nothing was replaced";
}

TEST_F(ScoreFilesTest, ARecordingInTheSecondFormOpensWithItsTempoAndItsFirstNote) {
    const std::vector<std::int16_t> cells{60, 1060, 62};
    for (const char* mark : {"", "\xEF\xBB\xBF"}) {
        write(other / "recorded.sng", mark + serializeRecording(cells, 24, 70));
        const auto outcome = files.open(other / "recorded.sng");
        EXPECT_TRUE(outcome.done);
        EXPECT_EQ(outcome.words, "");
        EXPECT_EQ(score().NoteCell.valueOr(0, 0, -1), 60);
        EXPECT_EQ(score().Tempo, 70);
        EXPECT_EQ(score().ChannelInstrument[0], 24);
        EXPECT_EQ(score().Volume.valueOr(0, 1, -1), 127);
        EXPECT_EQ(score().Pan_Change.valueOr(0, 1, -1), 64);
    }
}

TEST_F(ScoreFilesTest, AScoreThatIsTooLongIsOpenedAndSaid) {
    EXPECT_EQ(files.open(aScore(1001)).words, "") << "the last position counts";
    const auto outcome = files.open(aScore(1002));
    EXPECT_TRUE(outcome.done);
    EXPECT_THAT(outcome.words, HasSubstr("1002 notes long"));
    EXPECT_THAT(outcome.words, HasSubstr("first 1001"));
    EXPECT_EQ(score().SongEnd, 1001);
}

TEST_F(ScoreFilesTest, WhatDoesntLookLikeAScoreIsOpenedAndSaid) {
    putNotes(score(), 0, 60, 2);
    for (const char* text : {"", "a letter to a friend\n"}) {
        const fs::path file = other / "letter.sng";
        write(file, text);
        const auto outcome = files.open(file);
        EXPECT_TRUE(outcome.done);
        EXPECT_THAT(outcome.words, HasSubstr(file.string() + "\" doesn't look like a score"));
        workspace().undoLast();
        EXPECT_EQ(score().NoteCell.valueOr(0, 1, -1), 1060);
    }
}

TEST_F(ScoreFilesTest, ReadingAndWritingAreBusyAndAskingIsNot) {
    std::vector<bool> busy;
    files.onBusy = [&](bool now) { busy.push_back(now); };
    files.open();
    EXPECT_THAT(busy, ElementsAre()) << "cancelled";
    files.open(aScore(3));
    EXPECT_THAT(busy, ElementsAre(true, false));
    dialogs.answers = {{(other / "saved").string(), 1}, {(other / "exported").string(), 2}};
    files.saveAs();
    EXPECT_THAT(busy, ElementsAre(true, false, true, false));
    files.saveAs();
    EXPECT_THAT(busy, ElementsAre(true, false, true, false, true, false));
}

TEST_F(ScoreFilesTest, TheFilterDecidesFormatAndExtension) {
    struct Row {
        const char* typed;
        int filter;
        const char* file;
        const char* begins;
    };
    for (const Row& row : {Row{"a", 1, "a.sng", "60,1060"}, Row{"b.SNG", 1, "b.SNG", "60,1060"},
                           Row{"c.mid", 1, "c.mid.sng", "60,"}, Row{"d", 0, "d.sng", "60,1060"},
                           Row{"e", 2, "e.mid", "MThd"}, Row{"f.MID", 2, "f.MID", "MThd"},
                           Row{"g.sng", 2, "g.sng.mid", "MThd"}, Row{"  h ", 1, "h.sng", "60,"}}) {
        workspace().clear();
        putNotes(score(), 0, 60, 2);
        const std::string typed =
            row.typed[0] == ' ' ? "  " + (other / "h").string() + " " : (other / row.typed).string();
        dialogs.answers = {{typed, row.filter}};
        const auto outcome = files.saveAs();
        EXPECT_TRUE(outcome.done) << row.typed;
        EXPECT_EQ(outcome.words, "");
        EXPECT_TRUE(contentOf(other / row.file).starts_with(row.begins)) << row.file;
    }
}

TEST_F(ScoreFilesTest, SavingMakesTheFileTheOpenScore) {
    putNotes(score(), 0, 60, 2);
    dialogs.answers = {{(other / "mine").string(), 1}};
    ASSERT_TRUE(files.saveAs().done);
    EXPECT_EQ(score().currentFile, (other / "mine.sng").string());
    EXPECT_EQ(contentOf(other / "mine.sng"), serializePoliFile(score(), workspace().setup));
}

TEST_F(ScoreFilesTest, AFailedSaveKeepsTheOldFileAndItsName) {
    const fs::path file = aScore(4);
    const std::string before = contentOf(file);
    files.open(file);
    fs::create_directory(other / "inTheWay.sng");
    dialogs.answers = {{(other / "inTheWay").string(), 1}};
    const auto outcome = files.saveAs();
    EXPECT_FALSE(outcome.done);
    EXPECT_THAT(outcome.words, HasSubstr("inTheWay.sng"));
    EXPECT_THAT(outcome.words, HasSubstr("Try another folder or another name."));
    EXPECT_EQ(score().currentFile, file.string());
    EXPECT_EQ(contentOf(file), before);
    EXPECT_TRUE(fs::is_directory(other / "inTheWay.sng"));
}

TEST_F(ScoreFilesTest, AFailedExportIsSaid) {
    putNotes(score(), 0, 60, 2);
    fs::create_directory(other / "inTheWay.mid");
    dialogs.answers = {{(other / "inTheWay").string(), 2}};
    const auto outcome = files.saveAs();
    EXPECT_FALSE(outcome.done);
    EXPECT_THAT(outcome.words, HasSubstr("inTheWay.mid"));
    EXPECT_THAT(outcome.words, HasSubstr("Try another folder or another name."));
}

TEST_F(ScoreFilesTest, AnExportLeavesTheScoreInMemoryAsItWas) {
    // Chords are spread over the channels from TopChannel on: with a score just opened, over its second
    // voice.
    const fs::path file = aScore(4);
    files.open(file);
    putNotes(score(), 1, 64, 6);
    putNotes(score(), 2, 67, 6);
    score().Polyphonics.set(1, 0, 1);
    ASSERT_EQ(score().TopChannel, 1);
    const Score before = score();
    const int step = workspace().chords.ChordStep1;
    dialogs.answers = {{(other / "tune").string(), 2}};
    ASSERT_TRUE(files.saveAs().done);
    EXPECT_EQ(score().NoteCell, before.NoteCell);
    EXPECT_EQ(score().NoteInstrument, before.NoteInstrument);
    EXPECT_EQ(score().Polyphonics, before.Polyphonics);
    EXPECT_EQ(score().SongEnd, before.SongEnd);
    EXPECT_EQ(score().TopChannel, 1);
    EXPECT_EQ(score().currentFile, file.string()) << "an export is no save";
    EXPECT_EQ(workspace().chords.ChordStep1, step);
}

TEST_F(ScoreFilesTest, TheSizeOfALargeExportIsRemembered) {
    putNotes(score(), 0, 60, 2);
    dialogs.answers = {{(other / "small").string(), 2}};
    ASSERT_TRUE(files.saveAs().done);
    EXPECT_EQ(settings.GetSetting("Settings", "NumBytes", "none"), "none");
    for (int channel = 0; channel < 8; ++channel)
        putNotes(score(), channel, 60, 1000, 1);
    dialogs.answers = {{(other / "large").string(), 2}};
    ASSERT_TRUE(files.saveAs().done);
    std::int32_t expected = 10000;
    Score copy = score();
    ChordSteps steps;
    static_cast<void>(buildMidiFile(copy, steps, expected));
    ASSERT_NE(expected, 10000);
    EXPECT_EQ(settings.GetSetting("Settings", "NumBytes", "none"), std::to_string(expected));
}

TEST_F(ScoreFilesTest, AScoreWithoutNotesAsksNothing) {
    const auto outcome = files.saveAs();
    EXPECT_FALSE(outcome.done);
    EXPECT_EQ(outcome.words, "");
    EXPECT_TRUE(dialogs.asked.empty());
}

namespace {
/// In careful manners.
class CarefulFilesTest : public ScoreFilesTest {
protected:
    CarefulFilesTest() { workspace().setManners(Manners::careful()); }
    void draw(int notes, int row = 60) {
        const Edit edit(workspace(), Change::Cells);
        workspace().keepForUndo("a step");
        putNotes(score(), 0, row, notes);
    }
};
} // namespace

TEST_F(CarefulFilesTest, SaveWritesToTheScoresOwnFileAndAsksNothing) {
    const fs::path file = aScore(4);
    files.open(file);
    draw(6);
    ASSERT_TRUE(workspace().isUnsaved());
    const auto outcome = files.save();
    EXPECT_TRUE(outcome.done);
    EXPECT_EQ(outcome.words, "");
    EXPECT_TRUE(dialogs.asked.empty());
    EXPECT_EQ(contentOf(file), serializePoliFile(score(), workspace().setup));
    EXPECT_FALSE(workspace().isUnsaved());
}

TEST_F(CarefulFilesTest, SaveAsksForANameWhereThereIsNone) {
    draw(6);
    EXPECT_FALSE(files.save().done) << "cancelled";
    EXPECT_TRUE(workspace().isUnsaved());
    dialogs.answers = {{(other / "mine").string(), 1}};
    EXPECT_TRUE(files.save().done);
    EXPECT_EQ(dialogs.asked.size(), 2U);
    EXPECT_EQ(score().currentFile, (other / "mine.sng").string());
    EXPECT_FALSE(workspace().isUnsaved());
}

TEST_F(CarefulFilesTest, SaveAsAsksAlways) {
    files.open(aScore(4));
    dialogs.answers = {{(other / "second").string(), 1}};
    EXPECT_TRUE(files.saveAs().done);
    EXPECT_EQ(dialogs.asked.size(), 1U);
    EXPECT_EQ(score().currentFile, (other / "second.sng").string());
}

TEST_F(CarefulFilesTest, AnOlderFormIsWrittenOverInTheNewest) {
    const std::vector<std::int16_t> cells{60, 1060, 62};
    const fs::path file = other / "recorded.sng";
    write(file, serializeRecording(cells, 24, 70));
    files.open(file);
    EXPECT_FALSE(workspace().isUnsaved());
    draw(6);
    ASSERT_TRUE(files.save().done);
    EXPECT_EQ(contentOf(file), serializePoliFile(score(), workspace().setup));
}

TEST_F(CarefulFilesTest, AFailedSaveLeavesTheScoreUnsavedAndTheFileAsItWas) {
    const fs::path file = aScore(4);
    files.open(file);
    draw(6);
    fs::remove(file);
    fs::create_directory(file);
    const auto outcome = files.save();
    EXPECT_FALSE(outcome.done);
    EXPECT_THAT(outcome.words, HasSubstr("4.sng"));
    EXPECT_TRUE(workspace().isUnsaved());
    EXPECT_EQ(score().currentFile, file.string());
}

TEST_F(CarefulFilesTest, AnExportSavesNothing) {
    draw(6);
    dialogs.answers = {{(other / "tune").string(), 2}};
    EXPECT_TRUE(files.saveAs().done);
    EXPECT_TRUE(workspace().isUnsaved());
}

TEST_F(CarefulFilesTest, AnEmptiedScoreIsSavedToItsOwnFileAndANewEmptyOneIsNot) {
    const fs::path file = aScore(4);
    EXPECT_FALSE(files.canSave());
    files.open(file);
    {
        const Edit edit(workspace(), Change::Cells);
        workspace().keepForUndo("a step");
        score().ClearNoteArrays();
    }
    EXPECT_TRUE(files.canSave());
    EXPECT_TRUE(files.save().done);
    EXPECT_TRUE(contentOf(file).starts_with("-1\r\n"));
}

TEST_F(CarefulFilesTest, TheScoreGrowsToHoldALongFileAndThatIsSaid) {
    const fs::path file = aScore(2400);
    const auto outcome = files.open(file);
    EXPECT_TRUE(outcome.done);
    EXPECT_EQ(outcome.words, "");
    EXPECT_EQ(outcome.note, "The score is now 2,400 notes long, so that it holds all of 2400.sng");
    EXPECT_EQ(score().SongEnd, 2400);
    EXPECT_EQ(files.open(aScore(900)).note, "");
}

TEST_F(CarefulFilesTest, WhatNoScoreCanHoldIsSaidAndSafeFromSaving) {
    Score made(kMostNotes + 20);
    putNotes(made, 0, 50, kMostNotes + 10, 1);
    const fs::path file = other / "endless.sng";
    write(file, serializePoliFile(made, workspace().setup));
    const auto outcome = files.open(file);
    EXPECT_TRUE(outcome.done);
    EXPECT_EQ(outcome.note, "");
    EXPECT_THAT(outcome.words,
                HasSubstr("is 200,010 notes long, and the longest that there can be has 200,001"));
    EXPECT_EQ(score().currentFile, "");
    files.save();
    EXPECT_EQ(dialogs.asked.size(), 1U) << "asks for a name";
}

TEST_F(CarefulFilesTest, WhatIsNoScoreDoesNotBecomeTheScoresOwnFile) {
    const fs::path file = other / "letter.sng";
    write(file, "a letter to a friend\n");
    EXPECT_THAT(files.open(file).words, HasSubstr("doesn't look like a score"));
    draw(6);
    files.save();
    EXPECT_EQ(dialogs.asked.size(), 1U) << "asks for a name";
    EXPECT_EQ(contentOf(file), "a letter to a friend\n");
}

TEST_F(ScoreFilesTest, InClassicMannersSaveAlwaysAsksForAName) {
    files.open(aScore(4));
    files.save();
    EXPECT_EQ(dialogs.asked.size(), 1U);
    EXPECT_EQ(dialogs.asked.back().title, "Save music file");
    EXPECT_EQ(score().TopChannel, 1);
}

TEST_F(ScoreFilesTest, ADemoIsNobodysFileInEitherManner) {
    for (const bool classic : {true, false}) {
        workspace().setManners(Manners::of(classic));
        const fs::path file = aScore(4);
        const std::string before = contentOf(file);
        const auto outcome = files.openDemo(file, "A piece");
        EXPECT_TRUE(outcome.opened);
        EXPECT_EQ(outcome.note, "A demo: A piece");
        EXPECT_EQ(score().SongEnd, 4);
        EXPECT_EQ(score().currentFile, "");
        EXPECT_FALSE(workspace().isUnsaved());
        EXPECT_TRUE(files.recent().empty());
        dialogs.asked.clear();
        files.save();
        EXPECT_EQ(dialogs.asked.size(), 1U) << "asks for a name";
        EXPECT_EQ(contentOf(file), before);
    }
}

TEST_F(ScoreFilesTest, ADemoInTheFirstFormHasItsTempo) {
    const fs::path demos = demosFolder().value_or("");
    ASSERT_TRUE(files.openDemo(demos / "301.sng", "Oh! Susanna").done);
    EXPECT_NE(score().Tempo, 100);
    const std::int16_t tempo = score().Tempo;
    Score expected;
    SetupState setup;
    ASSERT_TRUE(OpenFile(demos / "301.sng", expected, setup));
    EXPECT_EQ(tempo, expected.Tempo);
    EXPECT_EQ(score().ChannelInstrument, expected.ChannelInstrument);
}

TEST_F(ScoreFilesTest, WhatWasOpenedOrSavedIsAmongTheRecentFiles) {
    const fs::path first = aScore(3);
    const fs::path second = aScore(4);
    files.open(first);
    files.open(second);
    files.open(other / "missing.sng");
    EXPECT_THAT(files.recent(), ElementsAre(second, first));
    dialogs.answers = {{(other / "saved").string(), 1}, {(other / "exported").string(), 2}};
    files.saveAs();
    files.saveAs();
    EXPECT_THAT(files.recent(), ElementsAre(other / "saved.sng", second, first));
    EXPECT_TRUE(files.openRecent(first).done);
    EXPECT_EQ(score().SongEnd, 3);
    EXPECT_THAT(files.recent(), ElementsAre(first, other / "saved.sng", second));
}

TEST_F(ScoreFilesTest, ARecentFileThatIsGoneIsSaidAndLeavesTheList) {
    const fs::path first = aScore(3);
    const fs::path second = aScore(4);
    files.open(first);
    files.open(second);
    fs::remove(first);
    const auto outcome = files.openRecent(first);
    EXPECT_FALSE(outcome.done);
    EXPECT_THAT(outcome.words, HasSubstr(first.string() + "\" is not there any more"));
    EXPECT_THAT(files.recent(), ElementsAre(second));
    EXPECT_EQ(score().SongEnd, 4) << "what is open stays";
}

TEST_F(ScoreFilesTest, TheQuestionSaysWhatIsUnsaved) {
    EXPECT_EQ(unsavedQuestion(workspace()), "The score is in no file yet.\n\nDo you want to save it first?");
    score().currentFile = "/home/me/a tune.sng";
    EXPECT_EQ(unsavedQuestion(workspace()),
              "\"a tune.sng\" has changes that are not saved.\n\nDo you want to save it first?");
}
