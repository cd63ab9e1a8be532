// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/SongDocument.h"

#include "base/Files.h"
#include "notation/LyricsExtras.h"
#include "tests/composition/WorkspaceFixture.h"
#include "tests/support/FullDisk.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::notation;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {
constexpr int kTrebleRow = 60;
constexpr int kBassRow = 84;

class SongDocumentTest : public WorkspaceFixture {
protected:
    SongDocument& song() {
        if (!song_)
            song_ = std::make_unique<SongDocument>(workspace(), folders.home());
        return *song_;
    }
    void forget() { song_.reset(); }
    /// Quarters for so many measures of sixteen.
    void putBars(int channel, int row, int bars) {
        putNotes(score(), channel, row, bars * 4, 4);
        score().ChannelInUse[channel] = true;
    }
    void place(int page, const std::string& text, double left = 40, double top = 300) {
        LyricsItem item;
        item.page = page;
        item.left = left;
        item.top = item.y = top;
        item.text = text;
        song().place(std::move(item));
    }
    std::vector<std::string> textsOf(int page) {
        std::vector<std::string> texts;
        for (const LyricsItem& item : song().sheets().itemsOf(page))
            texts.push_back(item.text);
        return texts;
    }
    std::vector<std::string> drawnTexts(int page) {
        std::vector<std::string> texts;
        for (const Mark& mark : song().sheets().drawn(page).marks)
            if (const auto* text = std::get_if<TextMark>(&mark.shape))
                texts.push_back(text->text);
        return texts;
    }
    std::filesystem::path file(const char* name) { return folders.home() / name; }

private:
    std::unique_ptr<SongDocument> song_;
};

class CarefulSongTest : public SongDocumentTest {
protected:
    CarefulSongTest() { beCareful(); }
};
} // namespace

TEST_F(SongDocumentTest, TheFirstBlankPageIsPage1OfAnUntitledScore) {
    EXPECT_EQ(song().AddPage(), 1);
    EXPECT_EQ(song().caption(1), " Untitled Score -           Page 1");
    EXPECT_EQ(song().AddPage(), 2);
    EXPECT_EQ(song().caption(2), " Untitled Score -           Page 2");
    EXPECT_THAT(song().sheets().engraved().pages.at(0).marks, Not(IsEmpty())) << "it is ruled";
}

TEST_F(SongDocumentTest, ABlankPageOfATitledScoreHasTheTitle) {
    song().setup.title = "Morning Walk";
    song().AddPage();
    EXPECT_EQ(song().caption(1), "Morning Walk         Page 1");
}

TEST_F(SongDocumentTest, AnEmptyTitleIsWrittenAsUntitledAndATitleWithACapitalOnThePageOnly) {
    putBars(0, kTrebleRow, 2);
    song().WriteFromNotes();
    EXPECT_THAT(drawnTexts(1), testing::Contains("Untitled Score"));
    song().setup.title = "morning walk";
    song().WriteFromNotes();
    EXPECT_THAT(drawnTexts(1), testing::Contains("Morning walk"));
    EXPECT_EQ(song().setup.title, "morning walk");
}

TEST_F(SongDocumentTest, WritingChoosesTheStavesOnlyWithNewScore) {
    putBars(0, kTrebleRow, 2);
    putBars(2, kBassRow, 2);
    song().WriteFromNotes();
    EXPECT_TRUE(song().setup.staves.chkChannel[0]);
    EXPECT_TRUE(song().setup.staves.chkChannel[2]);
    EXPECT_TRUE(song().setup.staves.ChkNotetype[2]);

    song().setup.newScore = false;
    song().tick(0, false);
    song().setup.staves.ChkNotetype[2] = false;
    const StaffChoice chosen = song().setup.staves;
    song().WriteFromNotes();
    EXPECT_EQ(song().setup.staves, chosen);
    song().setup.newScore = true;
    song().RewriteFromNotes();
    EXPECT_EQ(song().setup.staves, chosen) << "rewriting leaves them alone";
    song().WriteFromNotes();
    EXPECT_NE(song().setup.staves, chosen);
}

TEST_F(SongDocumentTest, WhatIsWrittenIsShownAndNothingElseOfTheScoreChanges) {
    putBars(0, kTrebleRow, 2);
    putBars(3, kTrebleRow, 2);
    for (const int channel : {0, 1, 3})
        score().ChannelShown[channel] = false;
    const std::string before(workspace().undoStep());
    song().WriteFromNotes();
    EXPECT_TRUE(score().ChannelShown[0]);
    EXPECT_TRUE(score().ChannelShown[3]);
    EXPECT_FALSE(score().ChannelShown[1]);
    EXPECT_EQ(workspace().undoStep(), before) << "looking is no step of undo";
}

TEST_F(SongDocumentTest, WithoutAMeasureNothingIsWrittenAndNothingIsLost) {
    putBars(0, kTrebleRow, 2);
    song().WriteFromNotes();
    place(1, "la");
    score().NotesPerMeasure = 0;
    const auto outcome = song().WriteFromNotes();
    EXPECT_FALSE(outcome.done);
    EXPECT_THAT(outcome.words, HasSubstr("measure"));
    EXPECT_EQ(song().count(), 1);
    EXPECT_THAT(textsOf(1), ElementsAre("la"));
    EXPECT_FALSE(song().RewriteFromNotes().done);
}

TEST_F(SongDocumentTest, MeasuresOfOnePositionAndOf512CanBeWritten) {
    putBars(0, kTrebleRow, 4);
    for (const int measure : {1, 512}) {
        score().NotesPerMeasure = static_cast<std::int16_t>(measure);
        EXPECT_TRUE(song().WriteFromNotes().done);
        EXPECT_GE(song().count(), 1);
    }
}

TEST_F(SongDocumentTest, WritingAnewTakesTextsAwayInClassicMannersAndRewritingKeepsThem) {
    putBars(0, kTrebleRow, 2);
    song().WriteFromNotes();
    place(1, "words");
    song().RewriteFromNotes();
    EXPECT_THAT(textsOf(1), ElementsAre("words"));
    EXPECT_TRUE(std::filesystem::exists(file("default.lyr"))) << "the temporary store stays";
    song().WriteFromNotes();
    EXPECT_THAT(textsOf(1), IsEmpty());
}

TEST_F(CarefulSongTest, TextsStayWhenTheScoreIsWrittenAnewAndAreKeptInTheDefaultFile) {
    song().setup.classicPage = true;
    putBars(0, kTrebleRow, 2);
    song().WriteFromNotes();
    place(1, "words");
    song().WriteFromNotes();
    EXPECT_THAT(textsOf(1), ElementsAre("words"));
    EXPECT_THAT(readWholeFile(file("default.lyr")).value_or(""), HasSubstr("Text= words"));
    EXPECT_THAT(readWholeFile(file("default.lyr")).value_or(""), Not(HasSubstr("Title=")));
}

TEST_F(SongDocumentTest, ATextOfPage2StaysThereAtTheSamePixelsThoughTheMusicMoves) {
    putBars(0, kTrebleRow, 60);
    song().WriteFromNotes();
    ASSERT_GE(song().count(), 2);
    place(2, "here", 123, 456);
    song().setup.BarWidth = 120;
    song().RewriteFromNotes();
    ASSERT_THAT(song().sheets().itemsOf(2), SizeIs(1));
    EXPECT_EQ(song().sheets().itemsOf(2)[0].left, 123);
    EXPECT_EQ(song().sheets().itemsOf(2)[0].top, 456);
    EXPECT_THAT(drawnTexts(2), testing::Contains("here"));
}

TEST_F(SongDocumentTest, ATextOfAPageThatIsGoneWaitsForItAndIsSaved) {
    putBars(0, kTrebleRow, 60);
    song().WriteFromNotes();
    const int last = song().count();
    ASSERT_GE(last, 2);
    place(last, "far");
    song().setup.end = 16;
    song().RewriteFromNotes();
    ASSERT_EQ(song().count(), 1);
    EXPECT_TRUE(song().SaveLyrics(file("a.lyr"), 0, 0).done);
    EXPECT_THAT(readWholeFile(file("a.lyr")).value_or(""), HasSubstr("Text= far"));
    song().setup.end = -1;
    song().RewriteFromNotes();
    EXPECT_THAT(drawnTexts(last), testing::Contains("far"));
}

TEST_F(CarefulSongTest, ATextOfAPageThatIsGoneWaitsThroughWritingAnewToo) {
    song().setup.classicPage = true;
    putBars(0, kTrebleRow, 200);
    song().WriteFromNotes();
    const int last = song().count();
    ASSERT_GE(last, 2);
    place(last, "far");
    song().setup.end = 16;
    song().WriteFromNotes();
    ASSERT_EQ(song().count(), 1);
    EXPECT_TRUE(song().SaveLyrics(file("a.lyr"), 0, 0).done);
    EXPECT_THAT(readWholeFile(file("a.lyr")).value_or(""), HasSubstr("Text= far"));
    song().setup.end = -1;
    song().WriteFromNotes();
    EXPECT_THAT(drawnTexts(last), testing::Contains("far"));
}

TEST_F(SongDocumentTest, AFullDiskCostsNoTextsAndNoOldFile) {
    putBars(0, kTrebleRow, 2);
    song().WriteFromNotes();
    place(1, "   words");
    song().setup.title = "Kept";
    ASSERT_EQ(replaceFile(file("a.lyr"), "old"), "");
    ASSERT_EQ(replaceFile(file("default.lyr"), "old"), "");
    {
        const FullDisk disk(8);
        EXPECT_THAT(song().RewriteFromNotes().words, HasSubstr("default.lyr"));
        const auto saved = song().SaveLyrics(file("a.lyr"), 0, 0);
        EXPECT_FALSE(saved.done);
        EXPECT_THAT(saved.words, HasSubstr("a.lyr"));
    }
    EXPECT_THAT(textsOf(1), ElementsAre("   words"));
    EXPECT_TRUE(song().isUnsaved());
    EXPECT_TRUE(song().lyricsFile().empty());
    EXPECT_EQ(readWholeFile(file("a.lyr")), "old");
    EXPECT_EQ(readWholeFile(file("default.lyr")), "old");
}

TEST_F(CarefulSongTest, AFullDiskCostsNoTextsEither) {
    putBars(0, kTrebleRow, 2);
    song().WriteFromNotes();
    place(1, "words");
    {
        const FullDisk disk(8);
        for (const auto& outcome : {song().WriteFromNotes(), song().RewriteFromNotes()}) {
            EXPECT_TRUE(outcome.done) << "the pages are written all the same";
            EXPECT_THAT(outcome.words, HasSubstr("default.lyr"));
        }
    }
    EXPECT_THAT(textsOf(1), ElementsAre("words"));
    EXPECT_FALSE(std::filesystem::exists(file("default.lyr")));
}

TEST_F(SongDocumentTest, ALongestScoreIsWrittenByBothReadings) {
    score().resizeNotes(kMostNotes);
    constexpr int kLength = 64;
    putNotes(score(), 0, kTrebleRow, kMostNotes / kLength, kLength);
    score().ChannelInUse[0] = true;
    for (const bool classic : {true, false})
        for (const int measure : {16, 512}) {
            song().setup.classicPage = classic;
            score().NotesPerMeasure = static_cast<std::int16_t>(measure);
            EXPECT_TRUE(song().WriteFromNotes().done);
            const int bars = (kMostNotes + measure - 1) / measure;
            EXPECT_THAT(song().pageInWords(1), HasSubstr(std::to_string(bars) + " bars"));
        }
}

TEST_F(SongDocumentTest, APageThatWasClosedKeepsItsPlace) {
    for (int i = 0; i < 3; ++i)
        song().AddPage();
    song().closePage(2);
    EXPECT_THAT(song().openPages(), ElementsAre(1, 3));
    EXPECT_EQ(song().count(), 3);
    EXPECT_EQ(song().AddPage(), 4);
    song().closePage(7);
    song().closePage(0);
    EXPECT_THAT(song().openPages(), ElementsAre(1, 3, 4));
}

TEST_F(SongDocumentTest, ASixthStaffIsRefused) {
    for (int box = 0; box < 5; ++box)
        EXPECT_TRUE(song().tick(box, true));
    EXPECT_FALSE(song().tick(9, true));
    EXPECT_EQ(song().setup.staves.StaffCount(), 5);
    EXPECT_FALSE(song().changeStaves(StaffClef::Percussion, 1));
    EXPECT_TRUE(song().tick(0, false));
    EXPECT_TRUE(song().tick(9, true));
}

TEST_F(SongDocumentTest, OneMoreStaffTakesTheNextChannelWithNotes) {
    putBars(3, kTrebleRow, 1);
    score().ChannelInUse[0] = false;
    EXPECT_TRUE(song().changeStaves(StaffClef::Bass, 1));
    EXPECT_TRUE(song().setup.staves.chkChannel[3]);
    EXPECT_TRUE(song().setup.staves.ChkNotetype[3]);
    EXPECT_TRUE(song().changeStaves(StaffClef::Bass, 0));
    EXPECT_EQ(song().setup.staves.StaffCount(), 0);
    EXPECT_FALSE(song().changeStaves(StaffClef::Treble, -1));
}

TEST_F(SongDocumentTest, OneStaffAloneCanBeWritten) {
    putBars(0, kTrebleRow, 2);
    putBars(1, kTrebleRow, 2);
    song().WriteFromNotes();
    const std::size_t both = song().sheets().engraved().pages.at(0).marks.size();
    song().allChannels = false;
    song().staff = 2;
    song().RewriteFromNotes();
    EXPECT_LT(song().sheets().engraved().pages.at(0).marks.size(), both);
    EXPECT_EQ(song().setup.staves.StaffCount(), 2) << "the choice stays";
}

TEST_F(SongDocumentTest, WritingCanBeCancelledAfterAPage) {
    score().resizeNotes(20'000);
    putBars(0, kTrebleRow, 600);
    int asked = 0;
    const auto outcome = song().WriteFromNotes([&](int) { return ++asked < 2; });
    EXPECT_FALSE(outcome.done);
    EXPECT_EQ(asked, 2);
    EXPECT_GE(song().count(), 1);
}

TEST_F(SongDocumentTest, FiveHundredPagesAreWritten) {
    score().resizeNotes(100'000);
    putBars(0, kTrebleRow, 6'000);
    song().setup.BarWidth = song().setup.HeaderHeight = 300;
    EXPECT_TRUE(song().WriteFromNotes().done);
    EXPECT_GE(song().count(), 500);
    EXPECT_THAT(song().caption(500), HasSubstr("Page 500"));
}

TEST_F(SongDocumentTest, WhatIsSavedComesBack) {
    song().setup.title = "Morning Walk";
    song().setup.composer = "A. Walker";
    song().setup.tempoWords = "Lively";
    setVersesLine("Twin-kle | How I", song().setup);
    song().setup.BarWidth = 90;
    song().setup.HeaderHeight = 40;
    song().setup.SpacerHeight = 70;
    song().setup.key = 7;
    song().setup.start = 32;
    song().AddPage();
    place(1, "la la");
    EXPECT_TRUE(song().isUnsaved());
    ASSERT_TRUE(song().SaveLyrics(file("walk"), 15360, 12270).done);
    EXPECT_FALSE(song().isUnsaved());
    EXPECT_EQ(song().lyricsFile(), file("walk.lyr")) << "the extension is appended";
    forget();

    ASSERT_TRUE(song().OpenLyrics(file("walk.lyr")).done);
    EXPECT_EQ(song().setup.title, "Morning Walk");
    EXPECT_EQ(song().setup.composer, "A. Walker");
    EXPECT_EQ(song().setup.tempoWords, "Lively");
    EXPECT_THAT(song().setup.verses, ElementsAre("Twin-kle", "How I"));
    EXPECT_EQ(song().setup.BarWidth, 90);
    EXPECT_EQ(song().setup.HeaderHeight, 40);
    EXPECT_EQ(song().setup.SpacerHeight, 70);
    EXPECT_EQ(song().setup.key, 7);
    EXPECT_EQ(song().setup.start, 32);
    EXPECT_EQ(song().frameWidth, 15360);
    EXPECT_EQ(song().sheetWidth, 12270);
    EXPECT_EQ(song().count(), 1) << "as many pages as its texts need";
    EXPECT_THAT(textsOf(1), ElementsAre("la la"));
}

TEST_F(SongDocumentTest, AFileWithItsTitleAloneChangesTheTitleAlone) {
    song().setup.BarWidth = 90;
    ASSERT_TRUE(replaceFile(file("t.lyr"), "Title=Hello\r\n").empty());
    ASSERT_TRUE(song().OpenLyrics(file("t.lyr")).done);
    EXPECT_EQ(song().setup.title, "Hello");
    EXPECT_EQ(song().setup.BarWidth, 90);
    EXPECT_EQ(song().count(), 0);
}

TEST_F(SongDocumentTest, OpeningLyricsWithNoSheetOpenOpensAsManyAsItNeeds) {
    ASSERT_TRUE(replaceFile(file("t.lyr"), " Page : 3 Left: 10 Top: 20 : Pic1.CurrentY= 20 Pic1.FontSize= 12 "
                                           "Pic1.FontName= Arial  Text= end\r\n")
                    .empty());
    ASSERT_TRUE(song().OpenLyrics(file("t.lyr")).done);
    EXPECT_EQ(song().count(), 3);
    EXPECT_THAT(drawnTexts(3), testing::Contains("end"));
}

TEST_F(SongDocumentTest, ATextOfAPageThatIsNotOpenIsSkippedAndKept) {
    song().AddPage();
    ASSERT_TRUE(replaceFile(file("t.lyr"), " Page : 3 Left: 10 Top: 20 : Pic1.CurrentY= 20 Pic1.FontSize= 12 "
                                           "Pic1.FontName= Arial  Text= end\r\n")
                    .empty());
    ASSERT_TRUE(song().OpenLyrics(file("t.lyr")).done);
    EXPECT_EQ(song().count(), 1);
    EXPECT_THAT(drawnTexts(1), Not(testing::Contains("end")));
    ASSERT_TRUE(song().SaveLyrics(file("t.lyr"), 0, 0).done);
    EXPECT_THAT(readWholeFile(file("t.lyr")).value_or(""), HasSubstr("Text= end"));
}

TEST_F(SongDocumentTest, AFileThatAsksForAMillionPagesOpensAThousand) {
    score().resizeNotes(kMostNotes);
    putBars(0, kTrebleRow, 10'000);
    ASSERT_TRUE(replaceFile(file("t.lyr"),
                            " Page : 1000000 Left: 10 Top: 20 : Pic1.CurrentY= 20 Pic1.FontSize= 12 "
                            "Pic1.FontName= Arial  Text= end\r\n")
                    .empty());
    int told = 0;
    song().onPages = [&told] { ++told; };
    ASSERT_TRUE(song().OpenLyrics(file("t.lyr")).done);
    EXPECT_EQ(song().count(), 1000);
    EXPECT_EQ(told, 1);
    EXPECT_THAT(textsOf(1'000'000), ElementsAre("end")) << "it waits";
}

TEST_F(SongDocumentTest, WordsOfTheCleanPageAreReadInAnyCodingAndAreNoOtherValues) {
    ASSERT_TRUE(
        replaceFile(file("t.lyr"), "Composer=J\xFCrgen Lbar=9\r\nWords=Label2= 3\r\nWords=\xE9t\xE9\r\n")
            .empty());
    ASSERT_TRUE(song().OpenLyrics(file("t.lyr")).done);
    EXPECT_EQ(song().setup.composer, "Jürgen Lbar=9");
    EXPECT_THAT(song().setup.verses, ElementsAre("Label2= 3", "été"));
    EXPECT_EQ(song().setup.BarWidth, 60);
    EXPECT_EQ(song().setup.HeaderHeight, 60);
}

TEST_F(SongDocumentTest, AFileThatIsNotThereOrCannotBeWrittenIsSaid) {
    song().setup.title = "Kept";
    EXPECT_THAT(song().OpenLyrics(file("none.lyr")).words, HasSubstr("none.lyr"));
    EXPECT_EQ(song().setup.title, "Kept");
    EXPECT_THAT(song().SaveLyrics(file("no/such/folder.lyr"), 0, 0).words, Not(IsEmpty()));
    EXPECT_FALSE(song().LoadDefaultLyrics().done) << "there is none yet";
}

TEST_F(SongDocumentTest, ValuesBeyondAllMeasureAreBrought) {
    ASSERT_TRUE(replaceFile(file("t.lyr"),
                            "Label3=1e300\r\nLbar= -7\r\nLabel2= nan\r\nCombo1.ListIndex= 99\r\n"
                            "text4=-5\r\n")
                    .empty());
    ASSERT_TRUE(song().OpenLyrics(file("t.lyr")).done);
    EXPECT_LE(song().setup.SpacerHeight, 300);
    EXPECT_GE(song().setup.BarWidth, 10);
    EXPECT_GE(song().setup.HeaderHeight, 10);
    EXPECT_LT(song().setup.key, 12);
    EXPECT_GE(song().setup.start, 0);
}

TEST_F(SongDocumentTest, LinesOfAPageCanBeEditedAsOneText) {
    song().AddPage();
    place(1, "one");
    place(1, "two");
    const std::string lines = song().linesOf(1);
    EXPECT_THAT(lines, HasSubstr("Text= one\r\n"));
    std::string edited = lines;
    edited.replace(edited.find("one"), 3, "uno");
    song().setLinesOf(1, edited + "\nno text's line\n");
    EXPECT_THAT(textsOf(1), ElementsAre("uno", "two"));
    std::string moved = song().linesOf(1);
    moved.replace(moved.find("Page : 1"), 8, "Page : 7");
    song().setLinesOf(1, moved);
    EXPECT_THAT(textsOf(1), ElementsAre("two"));
    EXPECT_THAT(textsOf(7), ElementsAre("uno")) << "a line that names another page goes there";
    song().setLinesOf(1, "");
    EXPECT_THAT(textsOf(1), IsEmpty());
}

TEST_F(SongDocumentTest, ATextIsFoundWhereItStands) {
    song().AddPage();
    place(1, "words", 100, 200);
    EXPECT_EQ(song().textAt(1, {105, 205}), 0);
    EXPECT_EQ(song().textAt(1, {95, 205}), -1);
    EXPECT_EQ(song().textAt(1, {105, 260}), -1);
    EXPECT_EQ(song().textAt(2, {105, 205}), -1);
}

TEST_F(SongDocumentTest, TheKeyIsFoundByItselfOnTheCleanPageAndIsCOnTheClassicOne) {
    EXPECT_EQ(song().setup.key, 0);
    forget();
    workspace().setManners(Manners::careful());
    EXPECT_EQ(song().setup.key, kAutomaticKey);
    EXPECT_FALSE(song().setup.classicPage);
    song().setup.classicPage = true;
    putBars(0, kTrebleRow, 2);
    EXPECT_TRUE(song().WriteFromNotes().done);
}

TEST(LyricsExtrasTest, VersesStandBetweenBars) {
    ScoreSetup setup;
    setVersesLine("  Twin-kle lit-tle star | | How I won-der", setup);
    EXPECT_THAT(setup.verses, ElementsAre("Twin-kle lit-tle star", "How I won-der"));
    EXPECT_EQ(versesLine(setup), "Twin-kle lit-tle star | How I won-der");
    setVersesLine("", setup);
    EXPECT_THAT(setup.verses, IsEmpty());
}

TEST(LyricsExtrasTest, AFileWithoutThemEmptiesThem) {
    ScoreSetup setup;
    setup.composer = "Somebody";
    setup.verses = {"la"};
    takeExtras("Title=x\nWords=", setup);
    EXPECT_EQ(setup.composer, "");
    EXPECT_THAT(setup.verses, ElementsAre(""));
}
