// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/DemoMedia.h"

#include "base/Files.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>

using namespace velmora;
namespace fs = std::filesystem;

namespace {
struct DemoMediaTest : testing::Test {
    QTemporaryDir temporary;
    fs::path home = temporary.path().toStdString();
    ProgramFolders folders{home};
    fs::path media = folders.media();
    fs::path packed = demosFolder().value_or("");

    [[nodiscard]] static std::size_t count(const fs::path& folder) {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
    }
};
} // namespace

TEST_F(DemoMediaTest, EveryPieceComesWithTheProgramAndIsCopiedByteForByte) {
    ASSERT_EQ(placeDemoMedia(folders, packed), "");
    for (const auto name : kDemoMedia) {
        const auto original = readWholeFile(packed / name);
        ASSERT_TRUE(original && !original->empty()) << name;
        EXPECT_EQ(readWholeFile(media / name), original) << name;
    }
    EXPECT_EQ(count(media), kDemoMedia.size());
}

TEST_F(DemoMediaTest, TheLessonsFourPiecesAreAmongThem) {
    for (const std::string_view name : {"104a.sng", "104b.sng", "333.mid", "301.sng"})
        EXPECT_NE(std::ranges::find(kDemoMedia, name), kDemoMedia.end()) << name;
}

TEST_F(DemoMediaTest, WhatIsThereAlreadyStays) {
    fs::create_directory(media);
    ASSERT_EQ(replaceFile(media / "104a.sng", "mine"), "");
    EXPECT_EQ(placeDemoMedia(folders, packed), "");
    EXPECT_EQ(readWholeFile(media / "104a.sng"), "mine");
    EXPECT_EQ(count(media), kDemoMedia.size());
}

TEST_F(DemoMediaTest, ALinkThatLeadsNowhereIsNotWrittenThrough) {
    fs::create_directory(media);
    fs::create_symlink(home / "elsewhere", media / "301.sng");
    EXPECT_EQ(placeDemoMedia(folders, packed), "");
    EXPECT_FALSE(fs::exists(home / "elsewhere"));
    EXPECT_TRUE(fs::is_symlink(media / "301.sng"));
}

TEST_F(DemoMediaTest, AMissingPieceIsReportedAndTheOthersArePlaced) {
    fs::copy(packed, home / "packed");
    fs::remove(home / "packed/104b.sng");
    EXPECT_NE(placeDemoMedia(folders, home / "packed").find("104b.sng"), std::string::npos);
    EXPECT_EQ(count(media), kDemoMedia.size() - 1);
}

TEST_F(DemoMediaTest, AFileInTheWayOfTheFolderIsReportedAndStays) {
    ASSERT_EQ(replaceFile(media, "x"), "");
    EXPECT_NE(placeDemoMedia(folders, packed), "");
    removeDemoMedia(folders, packed);
    EXPECT_EQ(readWholeFile(media), "x");
}

TEST_F(DemoMediaTest, RemovalTakesThePiecesAndTheFolder) {
    ASSERT_EQ(placeDemoMedia(folders, packed), "");
    fs::remove(media / "333.mid");
    removeDemoMedia(folders, packed);
    EXPECT_FALSE(fs::exists(media));
    removeDemoMedia(folders, packed);
    EXPECT_TRUE(fs::exists(home));
}

TEST_F(DemoMediaTest, RemovalLeavesEverythingElse) {
    ASSERT_EQ(placeDemoMedia(folders, packed), "");
    ASSERT_EQ(replaceFile(media / "mine.sng", "x"), "");
    fs::create_directory(media / "march.sng");
    removeDemoMedia(folders, packed);
    EXPECT_EQ(count(media), 2u);
    EXPECT_EQ(readWholeFile(media / "mine.sng"), "x");
}

TEST_F(DemoMediaTest, APieceThatTheUserChangedIsNeverRemoved) {
    ASSERT_EQ(placeDemoMedia(folders, packed), "");
    const std::string changed = readWholeFile(media / "104a.sng").value() + ",";
    ASSERT_EQ(replaceFile(media / "104a.sng", changed), "");
    ASSERT_EQ(replaceFile(media / "301.sng", ""), "");
    removeDemoMedia(folders, packed);
    EXPECT_EQ(readWholeFile(media / "104a.sng"), changed);
    EXPECT_EQ(count(media), 1u);
}

TEST_F(DemoMediaTest, NothingIsRemovedThatCannotBeCompared) {
    ASSERT_EQ(placeDemoMedia(folders, packed), "");
    removeDemoMedia(folders, home / "no such folder");
    EXPECT_EQ(count(media), kDemoMedia.size());
}

TEST_F(DemoMediaTest, AFolderThatIsALinkToThePackedPiecesCostsNoneOfThem) {
    fs::copy(packed, home / "packed");
    const std::size_t before = count(home / "packed");
    fs::create_symlink(home / "packed", media);
    EXPECT_EQ(placeDemoMedia(folders, home / "packed"), "");
    removeDemoMedia(folders, home / "packed");
    EXPECT_EQ(count(home / "packed"), before);
}

TEST_F(DemoMediaTest, EveryScoreThatComesWithTheProgramHasATitle) {
    const std::vector<Demo> demos = demosIn(packed);
    ASSERT_FALSE(demos.empty());
    EXPECT_EQ(demos.front().title, "Canon in D (Pachelbel)");
    std::size_t scores = 0;
    for (const auto& entry : fs::directory_iterator(packed))
        scores += entry.path().extension() == ".sng" ? 1 : 0;
    EXPECT_EQ(demos.size(), scores);
    for (const Demo& demo : demos) {
        EXPECT_TRUE(fs::is_regular_file(demo.file)) << demo.file;
        EXPECT_NE(demo.title, demo.file.stem().string());
    }
}

TEST_F(DemoMediaTest, AScoreThatSomeoneHasAddedGoesByItsName) {
    for (const char* name : {"zebra.sng", "march.sng", "ape.sng", "README.md", "333.mid"})
        ASSERT_EQ(replaceFile(home / name, "60"), "");
    std::vector<std::string> titles;
    for (const Demo& demo : demosIn(home))
        titles.push_back(demo.title);
    EXPECT_EQ(titles, (std::vector<std::string>{"The British Grenadiers", "ape", "zebra"}));
    EXPECT_TRUE(demosIn(home / "missing").empty());
}
