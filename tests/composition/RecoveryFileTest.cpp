// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/RecoveryFile.h"

#include "WorkspaceFixture.h"
#include "base/Files.h"
#include "score/SngFile.h"

#include <chrono>
#include <fstream>

using namespace velmora;
namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::SizeIs;
using Kept = RecoveryFile::Kept;

namespace {
class RecoveryFileTest : public WorkspaceFixture {
protected:
    std::string text() { return serializePoliFile(score(), workspace().setup); }
    Kept keep() { return keep(file); }
    Kept keep(RecoveryFile& to) {
        const Kept kept = to.keep(score(), workspace().setup);
        to.finish();
        return kept;
    }
    /// What the next start finds.
    std::vector<LeftScore> left() { return RecoveryFile(folder).left(); }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> names;
        if (fs::exists(folder))
            for (const auto& entry : fs::directory_iterator(folder))
                names.push_back(entry.path().filename().string());
        return names;
    }
    void write(const std::string& name, std::string_view bytes) {
        fs::create_directories(folder);
        std::ofstream(folder / name, std::ios::binary) << bytes;
    }

    const fs::path folder = folders.recovery();
    RecoveryFile file{folder};
};
} // namespace

TEST_F(RecoveryFileTest, WhatWasKeptIsLeftWithTheNameOfItsFile) {
    putNotes(score(), 3, 60, 7);
    score().Volume.set(3, 14, 99);
    score().currentFile = "/home/me/a tune.sng";
    EXPECT_EQ(keep(), Kept::Begun);
    const auto found = left();
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].score, text());
    EXPECT_EQ(found[0].currentFile, "/home/me/a tune.sng");
}

TEST_F(RecoveryFileTest, AScoreThatFillsItsLastPositionIsKeptWhole) {
    score().resizeNotes(40);
    score().NoteCell.set(12, 40, 5);
    score().Chorus_Change.set(12, 40, 9);
    score().Polyphonics.set(1, 40, 3);
    keep();
    EXPECT_EQ(left().at(0).score, text());
}

TEST_F(RecoveryFileTest, EveryChangeIsNoticedAndOnlyAChange) {
    putNotes(score(), 0, 60, 7);
    keep();
    EXPECT_EQ(keep(), Kept::Unchanged);
    const std::vector<std::function<void()>> changes{
        [this] { score().NoteCell.set(7, 3, 0); },
        [this] { score().NoteInstrument.set(0, 0, 99); },
        [this] { score().Polyphonics.set(8, 2, 1); },
        [this] { score().Volume.set(0, 1, 0); },
        [this] { score().Modulation_Change.set(0, 1, 1); },
        [this] { score().Pan_Change.set(12, 1, 1); },
        [this] { score().Reverb_Change.set(0, 14, 1); },
        [this] { score().Chorus_Change.set(0, 14, 1); },
        [this] { score().ChannelInstrument[12] = 150; },
        [this] { score().Tempo = 77; },
        [this] { workspace().setup.TxBeats = 3; },
        [this] { workspace().setup.TxtMeter = 3; },
        [this] { workspace().setup.NoteX = 8; },
        [this] { score().currentFile = "another.sng"; },
        [this] { putNotes(score(), 0, 60, 20); },
        [this] { putNotes(score(), 0, 61, 20); },
        [this] { score().ClearThisArray(0); },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        changes[i]();
        EXPECT_EQ(keep(), Kept::Begun) << i;
        EXPECT_EQ(left().at(0).score, text()) << i;
        EXPECT_EQ(keep(), Kept::Unchanged) << i;
    }
}

TEST_F(RecoveryFileTest, AScoreWithoutNotesNeedsNoFile) {
    EXPECT_EQ(keep(), Kept::Unchanged);
    EXPECT_FALSE(fs::exists(folder));
    putNotes(score(), 0, 60, 7);
    keep();
    EXPECT_TRUE(fs::exists(folder));
    score().ClearNoteArrays();
    keep();
    EXPECT_FALSE(fs::exists(folder));
    putNotes(score(), 0, 60, 7);
    EXPECT_EQ(keep(), Kept::Begun) << "the same notes again";
    EXPECT_THAT(left(), SizeIs(1));
}

TEST_F(RecoveryFileTest, AProperEndLeavesNothing) {
    putNotes(score(), 0, 60, 7);
    file.keep(score(), workspace().setup); // still being written
    file.remove();
    EXPECT_FALSE(fs::exists(folder));
}

TEST_F(RecoveryFileTest, RestoringBringsTheScoreBackHoweverLong) {
    score().resizeNotes(3000);
    putNotes(score(), 2, 60, 1500);
    score().currentFile = "/not/there.sng";
    workspace().setup.TxtMeter = 3;
    keep();
    const std::string before = text();
    store("NumNotes", "200");
    Workspace next(settings, folders);
    restore(left().at(0), next);
    EXPECT_EQ(serializePoliFile(next.score, next.setup), before);
    EXPECT_EQ(next.score.currentFile, "/not/there.sng");
    EXPECT_GE(next.score.NumNotes, 3000);
    EXPECT_EQ(next.score.SongEnd, 3000);
}

TEST_F(RecoveryFileTest, AScoreThatStandsSavedIsNotLeft) {
    putNotes(score(), 0, 60, 7);
    score().currentFile = (folders.home() / "saved.sng").string();
    ASSERT_EQ(SavePoliFile(score(), workspace().setup), "");
    keep();
    EXPECT_THAT(left(), IsEmpty());
    EXPECT_FALSE(fs::exists(folder));
    keep();
    score().Tempo = 77;
    keep();
    EXPECT_THAT(left(), SizeIs(1));
}

TEST_F(RecoveryFileTest, WhatIsNotWholeIsPutAside) {
    putNotes(score(), 0, 60, 7);
    const std::string whole = recoveryText(text(), "/a file.sng");
    ASSERT_TRUE(parseRecovery(whole));
    write("score-1.sng", "");
    write("score-2.sng", text());
    write("score-3.sng", whole.substr(0, whole.size() - 1));
    std::string changed = whole;
    changed[0] ^= 1;
    write("score-4.sng", changed);
    write("score-5.sng", text() + "Recovery=");
    fs::create_directory(folder / "score-6.sng");
    EXPECT_THAT(left(), IsEmpty());
    EXPECT_THAT(names(), testing::UnorderedElementsAre("score-1.sng.damaged", "score-2.sng.damaged",
                                                       "score-3.sng.damaged", "score-4.sng.damaged",
                                                       "score-5.sng.damaged", "score-6.sng.damaged"));
}

TEST_F(RecoveryFileTest, AnyNameOfAFileComesBack) {
    for (const std::string name : {"", "/a\r\nRecovery=0123456789abcdef /b.sng", "/Tempo=5", " /blank "}) {
        const auto found = parseRecovery(recoveryText("-1\r\n", name));
        ASSERT_TRUE(found) << name;
        EXPECT_EQ(found->currentFile, name);
        EXPECT_EQ(found->score, "-1\r\n");
    }
}

TEST_F(RecoveryFileTest, AScoreThatWaitsForAnAnswerIsNotWrittenOver) {
    putNotes(score(), 0, 60, 7);
    keep();
    fs::last_write_time(folder / "score-1.sng", fs::file_time_type::clock::now() - std::chrono::hours(1));
    RecoveryFile second(folder);
    score().Tempo = 50;
    keep(second);
    EXPECT_THAT(left(), SizeIs(2));
    EXPECT_EQ(left()[0].score, text()) << "the newest first";
    second.remove();
    EXPECT_THAT(left(), SizeIs(1));
}

TEST_F(RecoveryFileTest, AScoreThatIsBroughtBackStaysUntilTheNextOneIsWritten) {
    putNotes(score(), 0, 60, 7);
    keep();
    RecoveryFile second(folder);
    second.adopt(second.left().at(0));
    EXPECT_THAT(left(), SizeIs(1));
    score().Tempo = 50;
    keep(second);
    ASSERT_THAT(left(), SizeIs(1));
    EXPECT_EQ(left()[0].score, text());
    second.remove();
    EXPECT_FALSE(fs::exists(folder));
}

TEST_F(RecoveryFileTest, AScoreThatIsDroppedIsGone) {
    putNotes(score(), 0, 60, 7);
    keep();
    RecoveryFile second(folder);
    second.drop(second.left().at(0));
    EXPECT_FALSE(fs::exists(folder));
}

TEST_F(RecoveryFileTest, AScoreThatStandsInItsFileInAnOlderFormIsNotOffered) {
    const std::vector<std::int16_t> cells{60, 1060, 62};
    const std::string recording = serializeRecording(cells, 24, 70);
    const fs::path own = folders.home() / "recorded.sng";
    ASSERT_EQ(replaceFile(own, recording), "");
    parseSng(recording, SngReader::OpenPoliFile2, score(), workspace().setup);
    score().currentFile = own.string();
    keep();
    ASSERT_EQ(names().size(), 1U);
    EXPECT_THAT(left(), IsEmpty());
    EXPECT_TRUE(names().empty());
}

TEST_F(RecoveryFileTest, WithoutAPlaceToWriteItTriesAgain) {
    putNotes(score(), 0, 60, 7);
    std::ofstream(folder) << "a file in the way";
    EXPECT_EQ(keep(), Kept::Begun);
    EXPECT_EQ(keep(), Kept::Begun);
    EXPECT_THAT(left(), IsEmpty());
    fs::remove(folder);
    EXPECT_EQ(keep(), Kept::Begun);
    EXPECT_EQ(keep(), Kept::Unchanged);
    EXPECT_THAT(left(), SizeIs(1));
}

TEST_F(RecoveryFileTest, WhatAKillLeftHalfWrittenIsCleanedUp) {
    write(".velmora-a1B2c3", "60,60");
    EXPECT_THAT(left(), IsEmpty());
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(RecoveryFileTest, ARecoveredScoreIsUnsaved) {
    putNotes(score(), 3, 60, 7);
    const std::string kept = text();
    for (const char* name : {"", "/home/me/tune.sng"}) {
        Workspace fresh(settings, folders);
        restore({{}, kept, name}, fresh);
        EXPECT_TRUE(fresh.isUnsaved()) << name;
    }
}
