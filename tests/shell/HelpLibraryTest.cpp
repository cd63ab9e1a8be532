// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/HelpLibrary.h"

#include <QTemporaryDir>

#include <filesystem>
#include <fstream>
#include <random>

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

namespace {
class HelpLibraryTest : public testing::Test {
protected:
    void write(const std::string& file, std::string_view text) const {
        std::ofstream(folder() / file, std::ios::binary) << text;
    }
    [[nodiscard]] std::filesystem::path folder() const { return directory_.path().toStdString(); }
    [[nodiscard]] HelpLibrary library() const { return HelpLibrary(folder()); }

private:
    QTemporaryDir directory_;
};

std::vector<std::string> names(const HelpLibrary& library) {
    std::vector<std::string> found;
    for (const auto& page : library.pages())
        found.push_back(page.name);
    return found;
}
std::vector<std::string> found(const HelpLibrary& library, std::string_view query) {
    std::vector<std::string> pages;
    for (const auto& hit : library.search(query))
        pages.push_back(hit.page->name);
    return pages;
}
} // namespace

TEST_F(HelpLibraryTest, APageIsKnownByItsFileAndTitledByItsFirstHeading) {
    write("playing.md", "<!-- a comment\nof two lines -->\n# Playing *loud*\n\nText.\n\n## More\n");
    const auto all = library();
    const HelpPage* page = all.find("playing");
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->title, "Playing loud");
    EXPECT_EQ(page->plain, "Text. More:");
    EXPECT_THAT(page->markdown, Not(HasSubstr("comment")));
    EXPECT_EQ(all.find("pausing"), nullptr);
}

TEST_F(HelpLibraryTest, APageWithoutAHeadingIsTitledByItsName) {
    write("odd.md", "#no heading, since the blank is missing\n");
    write("empty.md", "");
    EXPECT_EQ(library().find("odd")->title, "odd");
    EXPECT_EQ(library().find("empty")->title, "empty");
}

TEST_F(HelpLibraryTest, PlainTextIsWhatOneWouldReadAloud) {
    write(
        "a.md",
        "# A\n- **Press** [the button](b.md), `now`\n\n| Key | Act |\n|---|:-:|\n| F1 | [help](c.md) |\r\n");
    EXPECT_EQ(library().find("a")->plain, "Press the button, now F1, help;");
}

TEST_F(HelpLibraryTest, PlainTextPartsWhatStandsInLinesOfTheirOwn) {
    write("a.md", "# A\nOne\ntwo.\n\n## Why?\n- three\n  four\n- five\n\n## Six\nseven");
    EXPECT_EQ(library().find("a")->plain, "One two. Why? three four; five; Six: seven");
}

TEST_F(HelpLibraryTest, PagesStandInTheOrderInWhichHomeLinksToThem) {
    write("index.md", "# Contents\n[c](c.md) [elsewhere](https://example.org/a.md) [b](b.md#part) [c](c.md)");
    for (const auto* file : {"a.md", "b.md", "c.md"})
        write(file, "# same title");
    EXPECT_THAT(names(library()), ElementsAre("index", "c", "b", "a"));
}

TEST_F(HelpLibraryTest, AMissingFolderIsAnEmptyLibrary) {
    const HelpLibrary none(folder() / "nowhere");
    EXPECT_THAT(none.pages(), IsEmpty());
    EXPECT_THAT(none.search("anything"), IsEmpty());
    EXPECT_EQ(none.folder(), folder() / "nowhere");
    EXPECT_THAT(HelpLibrary().pages(), IsEmpty());
    write("file.md", "# F");
    EXPECT_THAT(HelpLibrary(folder() / "file.md").pages(), IsEmpty());
}

TEST_F(HelpLibraryTest, OnlySmallTextFilesArePages) {
    write("good.md", "# Good");
    write("other.txt", "# Other");
    write("binary.md", std::string_view("# Bin\0ary", 9));
    write("huge.md", std::string(HelpLibrary::kLargestPage + 1, 'a'));
    std::filesystem::create_directory(folder() / "folder.md");
    std::filesystem::create_symlink("nowhere", folder() / "broken.md");
    EXPECT_THAT(names(library()), ElementsAre("good"));
}

TEST_F(HelpLibraryTest, EveryWordMustOccurAndCaseIsIndifferent) {
    write("both.md", "# One\nPress PLAY, then Pause.");
    write("one.md", "# Two\nPress play.");
    EXPECT_THAT(found(library(), "pause plAy"), ElementsAre("both"));
    EXPECT_THAT(found(library(), "  press,  PLAY "), ElementsAre("both", "one"));
    EXPECT_THAT(found(library(), "play stop"), IsEmpty());
    EXPECT_THAT(found(library(), " ,.- "), IsEmpty());
}

TEST_F(HelpLibraryTest, AWordIsFoundByItsBeginningAndNotByItsMiddle) {
    write("a.md", "# A\nThe percussion; Ctrl+O opens.");
    EXPECT_THAT(found(library(), "perc"), ElementsAre("a"));
    EXPECT_THAT(found(library(), "cussion"), IsEmpty());
    EXPECT_THAT(found(library(), "ctrl+o"), ElementsAre("a"));
    EXPECT_THAT(found(library(), "ctrl+p"), IsEmpty());
}

TEST_F(HelpLibraryTest, TitlesComeBeforeTextAndManyBeforeFew) {
    write("few.md", "# A\nskin");
    write("many.md", "# B\nskin skins skin");
    write("titled.md", "# Skins\nnothing else");
    const auto all = library();
    EXPECT_THAT(found(all, "skin"), ElementsAre("titled", "many", "few"));
    const auto hits = all.search("skin");
    EXPECT_EQ(hits[0].titleWords, 1);
    EXPECT_EQ(hits[1].count, 3);
}

TEST_F(HelpLibraryTest, AnExcerptShowsWhereTheWordStands) {
    std::string text = "# A\n";
    for (int i = 0; i < 40; ++i)
        text += "before ";
    text += "needle ";
    for (int i = 0; i < 40; ++i)
        text += "after ";
    write("a.md", text);
    const auto all = library();
    const auto excerpt = all.search("needle").at(0).excerpt;
    EXPECT_THAT(excerpt, StartsWith("…before"));
    EXPECT_THAT(excerpt, HasSubstr("before needle after"));
    EXPECT_THAT(excerpt, EndsWith("after…"));
    EXPECT_LT(excerpt.size(), 130U);
}

TEST_F(HelpLibraryTest, AnExcerptOfATitleHitIsTheBeginningAndShortTextIsWhole) {
    write("a.md", "# Needle\nAll of the text.");
    const auto all = library();
    EXPECT_EQ(all.search("needle").at(0).excerpt, "All of the text.");
}

TEST_F(HelpLibraryTest, AnExcerptCutsNoCharacterInTwo) {
    std::string text = "# A\nneedle ";
    for (int i = 0; i < 300; ++i)
        text += "é";
    write("a.md", text);
    const auto all = library();
    const auto excerpt = all.search("needle").at(0).excerpt;
    EXPECT_THAT(excerpt, EndsWith("é…"));
}

TEST_F(HelpLibraryTest, RubbishIsReadAndSearchedWithoutHarm) {
    std::mt19937 random(7);
    constexpr std::string_view kAlphabet = "#[]()|-!<>*`\n \t\xc3\xa9\xff"
                                           "aB";
    for (int file = 0; file < 40; ++file) {
        std::string text;
        for (int i = 0; i < 3000; ++i)
            text += kAlphabet[random() % kAlphabet.size()];
        write("r" + std::to_string(file) + ".md", text);
    }
    const auto all = library();
    EXPECT_THAT(all.pages(), SizeIs(40));
    for (const auto* query : {"a", "ab \xff", "\xc3", "+", "\xc3\xa9"})
        for (const auto& hit : all.search(query))
            EXPECT_GE(hit.count, 1);
}

TEST_F(HelpLibraryTest, LinksThatNeverEndCostLinearTime) {
    std::string text;
    while (text.size() < HelpLibrary::kLargestPage - 4)
        text += "](";
    write("index.md", text);
    EXPECT_THAT(linkTargets(library().find("index")->markdown), IsEmpty());
}

TEST(HelpLinkTest, TargetsAreTakenAsWritten) {
    EXPECT_THAT(linkTargets("[a](b.md) [c]( d ) [e](f\n) [g](h#i)"), ElementsAre("b.md", " d ", "h#i"));
}

TEST(HelpLinkTest, OnlyPagesOfTheFolderAreLinkedPages) {
    EXPECT_EQ(linkedPage("playing.md"), "playing");
    EXPECT_EQ(linkedPage("playing.md#pause"), "playing");
    EXPECT_EQ(linkedPage("https://example.org/playing.md"), "");
    EXPECT_EQ(linkedPage("../playing.md"), "");
    EXPECT_EQ(linkedPage("picture.png"), "");
    EXPECT_EQ(linkedPage(""), "");
}
