// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/Files.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <filesystem>

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
