// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/DialogNames.h"

#include <QDir>
#include <QTemporaryDir>

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;

namespace fs = std::filesystem;

namespace {
std::vector<std::string> converted(std::string_view filterText) {
    std::vector<std::string> texts;
    for (const QString& text : nameFilters(splitFilters(filterText)))
        texts.push_back(text.toStdString());
    return texts;
}
const std::vector<FileFilter> kScores{{"Score", "*.sng"}, {"Midi", "*.mid"}};
} // namespace

TEST(DialogNamesTest, PatternsStandInTheLastBracketInBothCases) {
    EXPECT_THAT(converted("Score Files (*.sng) |*.sng|"), ElementsAre("Score Files (*.sng) (*.sng *.SNG)"));
    EXPECT_THAT(converted("Velmora Score(*.sng)|*.sng|Midi(*.mid)|*.mid"),
                ElementsAre("Velmora Score(*.sng)(*.sng *.SNG)", "Midi(*.mid)(*.mid *.MID)"));
    EXPECT_THAT(converted("Mixed|*.SnG"), ElementsAre("Mixed(*.SnG *.sng *.SNG)"));
}

TEST(DialogNamesTest, SeveralPatternsLoseTheirSemicolonsAndBlanks) {
    EXPECT_THAT(converted("Both|*.wav; *.mp3;;*mp3"), ElementsAre("Both(*.wav *.WAV *.mp3 *.MP3 *mp3 *MP3)"));
    EXPECT_THAT(converted("None|;"), ElementsAre("None(*)"));
    EXPECT_THAT(converted("All|*"), ElementsAre("All(*)"));
}

TEST(DialogNamesTest, ABlankLabelReadsAsItsPattern) {
    EXPECT_THAT(converted("  |*.sng"), ElementsAre("*.sng (*.sng *.SNG)"));
}

TEST(DialogNamesTest, TwinsDifferInBlanksOnly) {
    EXPECT_THAT(converted("A|*.a|A|*.a|A|*.b"), ElementsAre("A(*.a *.A)", "A (*.a *.A)", "A(*.b *.B)"));
}

TEST(DialogNamesTest, WhatABracketCannotHoldIsAnyOneCharacter) {
    EXPECT_THAT(converted("Odd|*(1).s\xC3\xA4ng"), ElementsAre("Odd(*?1?.s?ng *?1?.S?NG)"));
}

TEST(DialogNamesTest, TheExtensionIsThatOfTheFirstPlainPattern) {
    EXPECT_EQ(extensionOf({"", "*.sng"}), ".sng");
    EXPECT_EQ(extensionOf({"", "*.MID"}), ".mid");
    EXPECT_EQ(extensionOf({"", "*mp3;*.wav;*.sng"}), ".wav");
    EXPECT_EQ(extensionOf({"", "*.tar.gz"}), ".tar.gz");
    EXPECT_EQ(extensionOf({"", "*.*"}), "");
    EXPECT_EQ(extensionOf({"", "*.mp?"}), "");
    EXPECT_EQ(extensionOf({"", "*"}), "");
    EXPECT_EQ(extensionOf({"", "*."}), "");
}

TEST(DialogNamesTest, OnlyANameWithoutAnExtensionGetsOne) {
    EXPECT_EQ(withExtensionIfNone("/a.b/tune", ".sng"), "/a.b/tune.sng");
    EXPECT_EQ(withExtensionIfNone("/a/tune.mid", ".sng"), "/a/tune.mid");
    EXPECT_EQ(withExtensionIfNone("/a/.tune", ".sng"), "/a/.tune.sng");
    EXPECT_EQ(withExtensionIfNone("/a/tune", ""), "/a/tune");
    EXPECT_EQ(withPoint("key"), ".key");
    EXPECT_EQ(withPoint(".key"), ".key");
    EXPECT_EQ(withPoint(""), "");
}

TEST(DialogNamesTest, AStartIsAFolderOrAFileInOne) {
    const QTemporaryDir dir;
    const fs::path folder = dir.path().toStdString();
    const auto at = [](const fs::path& path) { return startPlace(path.string(), kScores); };
    std::ofstream(folder / "there.txt").put('x');
    fs::create_directory(folder / "folder.sng");

    EXPECT_EQ(at(folder).folder, folder);
    EXPECT_EQ(at(folder).name, "");
    EXPECT_EQ(at(folder / "there.txt").folder, folder);
    EXPECT_EQ(at(folder / "there.txt").name, "there.txt");
    EXPECT_EQ(at(folder / "new.MID").name, "new.MID");
    EXPECT_EQ(at(folder / "folder.sng").name, "") << "an existing folder, whatever its name";
    EXPECT_EQ(at(folder / "gone.d").name, "") << "a folder that is gone";
    EXPECT_EQ(at(folder / "gone.d").folder, folder / "gone.d");
    EXPECT_EQ(at("audio.mid").name, "audio.mid");
    EXPECT_EQ(at("").folder, "");
}

TEST(DialogNamesTest, AMissingFolderStandsForItsNearestParent) {
    const QTemporaryDir dir;
    const fs::path folder = dir.path().toStdString();
    fs::create_directory(folder / "caf\xE9");

    EXPECT_EQ(nearestFolder(folder), dir.path());
    EXPECT_EQ(nearestFolder(folder / "no" / "such"), dir.path());
    EXPECT_EQ(nearestFolder(folder / "caf\xE9"), dir.path()) << "Qt can't name it";
    fs::remove(folder / "caf\xE9");
    EXPECT_EQ(nearestFolder("/no/such/folder"), "/");
    EXPECT_EQ(QDir(nearestFolder("")).canonicalPath(), QDir::current().canonicalPath());
}

TEST(DialogNamesTest, AnyBytesComeBackFromTheirText) {
    EXPECT_EQ(textOfBytes("caf\xC3\xA9"), "caf\u00E9");
    std::string all;
    for (int byte = 1; byte < 256; ++byte)
        all += static_cast<char>(byte);
    // Half a character at the end, one from outside the first plane, and one that looks like our own mapping.
    for (const std::string& bytes :
         {all, std::string("a\xE2\x82"), std::string("\xF0\x9D\x84\x9E"), std::string("\xEF\x9E\x80")})
        EXPECT_EQ(bytesOfText(textOfBytes(bytes)), bytes);
    EXPECT_EQ(bytesOfText(textOfBytes("caf\xE9.sng").replace(".sng", ".mid")), "caf\xE9.mid");
    EXPECT_TRUE(isPlainText("caf\xC3\xA9"));
    EXPECT_FALSE(isPlainText("caf\xE9"));
}
