// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/ProgramFolders.h"

#include "base/Files.h"
#include "tests/support/Environment.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>

using namespace velmora;
namespace fs = std::filesystem;

namespace {
struct ProgramFoldersTest : testing::Test {
    ProgramFoldersTest() {
        for (const char* name :
             {"VELMORA_HOME", "VELMORA_DATA", "VELMORA_SOUNDFONT", "XDG_DATA_HOME", "XDG_CONFIG_HOME"})
            environment.unset(name);
        environment.set("HOME", folder.string());
    }
    QTemporaryDir temporary;
    fs::path folder = temporary.path().toStdString();
    Environment environment;
};
} // namespace

TEST_F(ProgramFoldersTest, TheWorkStandsInTheUsersDataFolder) {
    EXPECT_EQ(ProgramFolders::ofUser().home(), folder / ".local/share/velmora");
    environment.set("XDG_DATA_HOME", "/data");
    EXPECT_EQ(ProgramFolders::ofUser().home(), "/data/velmora");
    environment.set("VELMORA_HOME", "/my work");
    EXPECT_EQ(ProgramFolders::ofUser().home(), "/my work");
    environment.set("VELMORA_HOME", "here");
    EXPECT_EQ(ProgramFolders::ofUser().home(), fs::current_path() / "here");
}

TEST_F(ProgramFoldersTest, SettingsStandInTheUsersConfigurationFolder) {
    EXPECT_EQ(settingsPath(), folder / ".config/velmora/settings");
    environment.set("XDG_CONFIG_HOME", "/configuration");
    EXPECT_EQ(settingsPath(), "/configuration/velmora/settings");
}

TEST_F(ProgramFoldersTest, ABlankOrRelativeBaseFolderCountsAsNotSet) {
    environment.set("XDG_DATA_HOME", "relative");
    environment.set("XDG_CONFIG_HOME", "");
    environment.set("VELMORA_HOME", "");
    EXPECT_EQ(ProgramFolders::ofUser().home(), folder / ".local/share/velmora");
    EXPECT_EQ(settingsPath(), folder / ".config/velmora/settings");
}

TEST_F(ProgramFoldersTest, FoldersAreMadeWhereMissing) {
    const ProgramFolders folders(folder / "a" / "b");
    EXPECT_FALSE(fs::exists(folders.home()));
    EXPECT_TRUE(folders.makeSongs());
    EXPECT_TRUE(folders.makeSongs());
    EXPECT_TRUE(fs::is_directory(folder / "a/b/Songs"));
    EXPECT_FALSE(fs::exists(folders.media()));
    EXPECT_TRUE(folders.makeMedia());
    EXPECT_TRUE(fs::is_directory(folder / "a/b/media"));
    EXPECT_EQ(folders.undoFile(), folder / "a/b/Songs/temp.sng");
}

TEST_F(ProgramFoldersTest, AFileInTheWayOfAFolderIsReported) {
    ASSERT_EQ(replaceFile(folder / "Songs", "x"), "");
    EXPECT_TRUE(ProgramFolders(folder).makeHome());
    EXPECT_FALSE(ProgramFolders(folder).makeSongs());
}

TEST_F(ProgramFoldersTest, AnInstalledExecutableLooksBesideItselfAndNotInTheSources) {
    const auto folders = shippedDataFolders("/opt/music/bin/velmora");
    ASSERT_EQ(folders.size(), 2u);
    EXPECT_EQ(folders[0], "/opt/music/share/velmora");
    EXPECT_TRUE(folders[1].is_absolute());
    EXPECT_EQ(folders[1].filename(), "velmora");
}

TEST_F(ProgramFoldersTest, AnExecutableOfTheBuildTreeLooksInTheSources) {
    const auto folders = shippedDataFolders(fs::read_symlink("/proc/self/exe"));
    ASSERT_EQ(folders.size(), 3u);
    EXPECT_TRUE(fs::exists(folders[1] / "demos/welcome.sng"));
    EXPECT_TRUE(fs::exists(folders[2] / "architecture.md"));
    EXPECT_EQ(demosFolder(), folders[1] / "demos");
}

TEST_F(ProgramFoldersTest, ShippedDataIsFoundWhereTheEnvironmentSaysBeforeAnywhereElse) {
    environment.set("VELMORA_DATA", folder.string());
    EXPECT_EQ(shippedFolder("no folder has this name"), std::nullopt);
    fs::create_directory(folder / "demos");
    EXPECT_EQ(demosFolder(), folder / "demos");
    fs::create_directory(folder / "help");
    EXPECT_EQ(helpFolder(), folder / "help");
}

TEST_F(ProgramFoldersTest, TheBestPackagedSoundFontIsTriedFirst) {
    const auto candidates = soundFontCandidates();
    const auto place = [&](const char* path) { return std::ranges::find(candidates, fs::path(path)); };
    EXPECT_EQ(candidates.front(), "/usr/share/sounds/sf2/FluidR3_GM.sf2");
    EXPECT_LT(place("/usr/share/sounds/sf2/TimGM6mb.sf2"), place("/usr/share/sounds/sf2/default-GM.sf2"));
    EXPECT_LT(place("/usr/share/soundfonts/default.sf2"), candidates.end());
    EXPECT_LT(place("/usr/share/soundfonts/default.sf3"), candidates.end());
}

TEST_F(ProgramFoldersTest, TheUsersSoundFontGoesBeforeThePackagedOnesIfItIsThere) {
    environment.set("VELMORA_SOUNDFONT", (folder / "mine.sf2").string());
    EXPECT_NE(findSoundFont(), folder / "mine.sf2");
    ASSERT_EQ(replaceFile(folder / "mine.sf2", "RIFF"), "");
    EXPECT_EQ(soundFontCandidates().front(), folder / "mine.sf2");
    EXPECT_EQ(findSoundFont(), folder / "mine.sf2");
}
