// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/SettingsStore.h"

#include "base/Files.h"
#include "tests/support/FullDisk.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <thread>

using namespace velmora;
using namespace std::string_literals;
namespace fs = std::filesystem;

namespace {
struct SettingsStoreTest : testing::Test {
    QTemporaryDir temporary;
    fs::path folder = temporary.path().toStdString();
    fs::path path = folder / "velmora" / "settings";

    void writeFile(std::string_view text) const {
        fs::create_directories(path.parent_path());
        ASSERT_EQ(replaceFile(path, text), "");
    }
};

} // namespace

TEST_F(SettingsStoreTest, AMissingKeyGivesTheFallback) {
    const SettingsFile store(path);
    EXPECT_EQ(store.GetSetting("Settings", "NumNotes", "1000"), "1000");
    EXPECT_FALSE(fs::exists(path)) << "reading makes no file";
}

TEST_F(SettingsStoreTest, WhatIsSavedIsThereAtOnceAndInTheNextRun) {
    SettingsFile store(path);
    store.SaveSetting("Settings", "form1 top", "200");
    store.SaveSetting("Settings", "form1 top", "215.5");
    EXPECT_EQ(store.GetSetting("Settings", "form1 top", ""), "215.5");
    EXPECT_EQ(SettingsFile(path).GetSetting("Settings", "form1 top", ""), "215.5");
}

TEST_F(SettingsStoreTest, KeysThatDifferInCaseOrSectionAreDifferent) {
    SettingsFile store(path);
    store.SaveSetting("Settings", "form1 width", "1");
    store.SaveSetting("Settings", "form1 Width", "2");
    store.SaveSetting("ScoreSettings", "form1 Width", "3");
    const SettingsFile next(path);
    EXPECT_EQ(next.GetSetting("Settings", "form1 width", ""), "1");
    EXPECT_EQ(next.GetSetting("Settings", "form1 Width", ""), "2");
    EXPECT_EQ(next.GetSetting("ScoreSettings", "form1 Width", ""), "3");
    EXPECT_EQ(next.GetSetting("settings", "form1 Width", "none"), "none");
}

TEST_F(SettingsStoreTest, AnyTextIsKeptAsItIs) {
    const std::string odd[] = {"",          " ",      "  two  ", "a=b",         "=",           "\\",
                               "C:\\41",    "a\nb\r", "\t tab",  "zero\0byte"s, "# no remark", "Grüße, 音楽",
                               "\xff\x80x", "[x]/y"};
    SettingsFile store(path);
    for (const std::string& text : odd) {
        store.SaveSetting("Settings", "text", text);
        store.SaveSetting(text, text, "here");
        const SettingsFile next(path);
        EXPECT_EQ(next.GetSetting("Settings", "text", "none"), text);
        EXPECT_EQ(next.GetSetting(text, text, "none"), "here") << text;
    }
}

TEST_F(SettingsStoreTest, TheFileIsForPeopleToRead) {
    const std::string text = formatSettings({{{"Settings", "form1 top"}, "200"},
                                             {{"Settings", "keyfile"}, "/home/me/my=keys.key "},
                                             {{"ScoreSettings", "BarWidth"}, "6"}});
    EXPECT_EQ(text.substr(text.find('\n') + 1), "ScoreSettings/BarWidth=6\n"
                                                "Settings/form1 top=200\n"
                                                "Settings/keyfile=/home/me/my=keys.key\\20\n");
}

TEST_F(SettingsStoreTest, BlanksAndLineEndsOfAnEditorDoNotCount) {
    writeFile("  Settings / form1 top =  200 \r\n\n#Settings/x=1\nSettings/y=2");
    const SettingsFile store(path);
    EXPECT_EQ(store.GetSetting("Settings", "form1 top", ""), "200");
    EXPECT_EQ(store.GetSetting("#Settings", "x", "none"), "none");
    EXPECT_EQ(store.GetSetting("Settings", "y", ""), "2");
}

TEST_F(SettingsStoreTest, ADamagedLineCostsThatLineOnly) {
    writeFile(
        "Settings/a=1\nSettings/b\nSett=x/c=2\nSettings/d=\\4\nSettings/e=\\zz\n\0\xff\n=\n/\nSettings/f=6\n"s);
    EXPECT_EQ(parseSettings(*readWholeFile(path)),
              (SettingsMap{{{"Settings", "a"}, "1"}, {{"Settings", "f"}, "6"}}));
}

TEST_F(SettingsStoreTest, AKeyOfANewerVersionSurvivesASave) {
    writeFile("Future/colour of notes=blue\n");
    SettingsFile(path).SaveSetting("Settings", "NumNotes", "500");
    EXPECT_EQ(SettingsFile(path).GetSetting("Future", "colour of notes", ""), "blue");
}

TEST_F(SettingsStoreTest, TwoProcessesKeepEachOthersKeys) {
    SettingsFile one(path);
    SettingsFile other(path);
    one.SaveSetting("Settings", "a", "1");
    other.SaveSetting("Settings", "b", "2");
    one.SaveSetting("Settings", "c", "3");
    EXPECT_EQ(parseSettings(*readWholeFile(path)).size(), 3u);
    EXPECT_EQ(one.GetSetting("Settings", "b", ""), "2");
}

TEST_F(SettingsStoreTest, SavesAtTheSameMomentLoseNothing) {
    constexpr int kSaves = 25;
    const auto saveMany = [&](const std::string& name) {
        SettingsFile store(path);
        for (int i = 0; i < kSaves; ++i)
            store.SaveSetting(name, std::to_string(i), "x");
    };
    std::thread other(saveMany, "other");
    saveMany("one");
    other.join();
    EXPECT_EQ(parseSettings(*readWholeFile(path)).size(), 2u * kSaves);
}

TEST_F(SettingsStoreTest, AFailedSaveLeavesTheOldFileAndIsMadeGoodByTheNext) {
    SettingsFile store(path);
    store.SaveSetting("Settings", "a", "old");
    const auto before = readWholeFile(path);
    const std::string longText(50000, 'x');
    {
        const FullDisk full(0);
        store.SaveSetting("Settings", "a", longText);
    }
    EXPECT_EQ(readWholeFile(path), before);
    EXPECT_EQ(store.GetSetting("Settings", "a", ""), longText);
    store.SaveSetting("Settings", "b", "2");
    EXPECT_EQ(SettingsFile(path).GetSetting("Settings", "a", ""), longText);
    EXPECT_EQ(SettingsFile(path).GetSetting("Settings", "b", ""), "2");
}

TEST_F(SettingsStoreTest, WhereNoFileCanBeTheValuesLastAsLongAsTheStore) {
    fs::create_directories(path); // a folder stands in the file's place
    SettingsFile store(path);
    store.SaveSetting("Settings", "a", "1");
    EXPECT_EQ(store.GetSetting("Settings", "a", ""), "1");
    EXPECT_TRUE(fs::is_empty(path));
    SettingsFile below(path / "x" / "settings");
    ASSERT_EQ(replaceFile(path / "x", "a file where a folder should be"), "");
    below.SaveSetting("Settings", "b", "2");
    EXPECT_EQ(below.GetSetting("Settings", "b", ""), "2");
}

TEST_F(SettingsStoreTest, SavingTheValueThatIsThereWritesNothing) {
    SettingsFile store(path);
    store.SaveSetting("Settings", "a", "1");
    const FullDisk full(0);
    store.SaveSetting("Settings", "a", "1");
    EXPECT_EQ(readWholeFile(path), formatSettings({{{"Settings", "a"}, "1"}}));
}

TEST_F(SettingsStoreTest, ABatchIsReadAtOnceAndWrittenWhenItEnds) {
    SettingsFile store(path);
    {
        SettingsBatch batch(store);
        batch.SaveSetting("Settings", "a", "1");
        batch.SaveSetting("Settings", "b", "2");
        EXPECT_EQ(batch.GetSetting("Settings", "a", ""), "1");
        EXPECT_FALSE(fs::exists(path));
    }
    EXPECT_EQ(readWholeFile(path), formatSettings({{{"Settings", "a"}, "1"}, {{"Settings", "b"}, "2"}}));
}
