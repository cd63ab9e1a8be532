// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Files.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sys/resource.h>

using namespace velmora;

namespace {
struct FilesTest : testing::Test {
    QTemporaryDir folder;
    std::filesystem::path path = folder.filePath("a score.sng").toStdString();
};
} // namespace

TEST_F(FilesTest, WhatIsWrittenIsReadBack) {
    using namespace std::string_view_literals;
    EXPECT_EQ(replaceFile(path, "one\0two"sv), "");
    EXPECT_EQ(readWholeFile(path), "one\0two"sv);
    EXPECT_EQ(replaceFile(path, "3"), "");
    EXPECT_EQ(readWholeFile(path), "3");
}

TEST_F(FilesTest, AFailedReplacementSaysWhyAndLeavesNothingBehind) {
    EXPECT_NE(replaceFile(path / "below a file that is not there", "x"), "");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path().toStdString()));
}

TEST_F(FilesTest, AFolderOrAnAbsentFileCannotBeRead) {
    EXPECT_EQ(readWholeFile(folder.path().toStdString()), std::nullopt);
    EXPECT_EQ(readWholeFile(path), std::nullopt);
    EXPECT_EQ(readWholeFile("/dev/zero"), std::nullopt);
}

TEST_F(FilesTest, AFullDiskCostsNotTheOldFileHoweverShortTheNewOne) {
    ASSERT_EQ(replaceFile(path, "old"), "");
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit none{0, limit.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &none);
    const std::string reason = replaceFile(path, "new");
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, handler);
    EXPECT_NE(reason, "");
    EXPECT_EQ(readWholeFile(path), "old");
}
