// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/PendingFile.h"

#include "tests/studio/TestSinks.h"
#include "tests/support/FullDisk.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <optional>

using namespace velmora;
using namespace velmora::testsinks;
using testing::HasSubstr;

namespace {
struct PendingFileTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();
    std::filesystem::path path = folder / "sound.wav";

    static std::span<const std::byte> bytes(std::string_view text) { return std::as_bytes(std::span(text)); }
    static mode_t permissions(const std::filesystem::path& file) {
        struct stat found {};
        stat(file.c_str(), &found);
        return found.st_mode & 0777U;
    }
};

} // namespace

TEST_F(PendingFileTest, TheFileIsThereOnceItIsCommittedAndNotBefore) {
    PendingFile file(path);
    EXPECT_EQ(file.open(), "");
    EXPECT_EQ(file.write(bytes("first, ")), "");
    EXPECT_EQ(file.write(bytes("second")), "");
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(file.commit(), "");
    EXPECT_EQ(bytesOf(path), "first, second");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST_F(PendingFileTest, WhereTheFileSystemCanDoThatNothingShowsBeforeTheEnd) {
    const int nameless = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    const std::size_t shown = nameless >= 0 ? 0 : 1;
    close(nameless);
    PendingFile file(path);
    EXPECT_EQ(file.open(), "");
    EXPECT_EQ(file.write(bytes("sound")), "");
    EXPECT_EQ(filesIn(folder), shown);
    EXPECT_EQ(file.commit(), "");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST_F(PendingFileTest, WhatIsNotCommittedLeavesTheOldFileAndNoTrace) {
    std::ofstream(path) << "old";
    {
        PendingFile file(path);
        EXPECT_EQ(file.open(), "");
        EXPECT_EQ(file.write(bytes("new")), "");
    }
    EXPECT_EQ(bytesOf(path), "old");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST_F(PendingFileTest, BytesCanBeOverwritten) {
    PendingFile file(path);
    EXPECT_EQ(file.open(), "");
    EXPECT_EQ(file.write(bytes("abcdef")), "");
    EXPECT_EQ(file.overwrite(1, bytes("XY")), "");
    EXPECT_EQ(file.write(bytes("g")), "");
    EXPECT_EQ(file.commit(), "");
    EXPECT_EQ(bytesOf(path), "aXYdefg");
}

TEST_F(PendingFileTest, ANewFileHasTheUsualPermissionsAndAnOldOneKeepsItsOwn) {
    const auto put = [this] {
        PendingFile file(path);
        const std::string error = file.open();
        return error.empty() ? file.commit() : error;
    };
    const mode_t mask = umask(027);
    EXPECT_EQ(put(), "");
    umask(mask);
    EXPECT_EQ(permissions(path), 0640U);
    chmod(path.c_str(), 0604);
    EXPECT_EQ(put(), "");
    EXPECT_EQ(permissions(path), 0604U);
}

TEST_F(PendingFileTest, ALinkStaysALink) {
    std::ofstream(folder / "target") << "old";
    std::filesystem::create_symlink("target", path);
    PendingFile file(path);
    EXPECT_EQ(file.open(), "");
    EXPECT_EQ(file.write(bytes("new")), "");
    EXPECT_EQ(file.commit(), "");
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_EQ(bytesOf(folder / "target"), "new");
}

TEST_F(PendingFileTest, ALinkToNothingStaysALinkAndItsTargetIsMade) {
    std::filesystem::create_directory(folder / "far");
    std::filesystem::create_symlink("far/second", folder / "first");
    std::filesystem::create_symlink("made", folder / "far/second");
    std::filesystem::create_symlink("first", path);
    PendingFile file(path);
    EXPECT_EQ(file.open(), "");
    EXPECT_EQ(file.write(bytes("new")), "");
    EXPECT_EQ(file.commit(), "");
    for (const auto& link : {path, folder / "first", folder / "far/second"})
        EXPECT_TRUE(std::filesystem::is_symlink(link)) << link;
    EXPECT_FALSE(std::filesystem::is_symlink(folder / "far/made"));
    EXPECT_EQ(bytesOf(folder / "far/made"), "new");
    EXPECT_EQ(filesIn(folder / "far"), 2U);
}

TEST_F(PendingFileTest, ALinkIntoAMissingFolderOrToItselfIsAnErrorAndStays) {
    std::filesystem::create_symlink("missing/sound", path);
    EXPECT_THAT(PendingFile(path).open(), AllOf(HasSubstr("sound.wav"), HasSubstr("No such file")));
    std::filesystem::create_symlink("round", folder / "round");
    EXPECT_THAT(PendingFile(folder / "round").open(), HasSubstr("Too many levels of symbolic links"));
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "round"));
}

TEST_F(PendingFileTest, AFolderThatIsNotThereIsAnErrorWithTheName) {
    PendingFile file(folder / "missing" / "sound.wav");
    EXPECT_THAT(file.open(), AllOf(HasSubstr("missing/sound.wav"), HasSubstr("No such file")));
    PendingFile directory(folder);
    EXPECT_THAT(directory.open(), HasSubstr("Is a directory"));
}

TEST_F(PendingFileTest, AFullDeviceIsAnErrorInWords) {
    PendingFile file("/dev/full");
    EXPECT_EQ(file.open(), "");
    EXPECT_EQ(file.write(bytes("x")), "Writing \"/dev/full\" failed: No space left on device.");
}

TEST_F(PendingFileTest, AFullDiskLeavesTheOldFileAndNoTrace) {
    std::ofstream(path) << "old";
    {
        PendingFile file(path);
        EXPECT_EQ(file.open(), "");
        const std::string much(10'000, 'x');
        const FullDisk disk(4096);
        EXPECT_THAT(file.write(bytes(much)), HasSubstr("File too large"));
    }
    EXPECT_EQ(bytesOf(path), "old");
    EXPECT_EQ(filesIn(folder), 1U);
}
