// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Files.h"

#include "tests/support/FullDisk.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>

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

TEST_F(FilesTest, ATextIsReadWhole) {
    std::string text = "60,1060\r\n\t\v\f\x1A caf\xC3\xA9 \xE9\n";
    text += std::string(200'000, '7');
    ASSERT_EQ(replaceFile(path, text), "");
    const TextFile file = readTextFile(path);
    EXPECT_EQ(file.problem, TextProblem::None);
    EXPECT_EQ(file.text, text);
    ASSERT_EQ(replaceFile(path, ""), "");
    EXPECT_EQ(readTextFile(path).problem, TextProblem::None);
}

TEST_F(FilesTest, WhatIsNoTextIsToldFromWhatCannotBeRead) {
    using namespace std::string_view_literals;
    const std::string lines(100'000, '1');
    for (const std::string& bytes : {std::string("60,\0"sv), std::string("MThd\0\0\0\6"sv), lines + '\0'}) {
        ASSERT_EQ(replaceFile(path, bytes), "");
        EXPECT_EQ(readTextFile(path).problem, TextProblem::NotText);
        EXPECT_EQ(readTextFile(path).text, "");
    }
    std::filesystem::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(readTextFile(path).problem, TextProblem::Unreadable);
    EXPECT_EQ(readTextFile("/dev/zero").problem, TextProblem::Unreadable);
    EXPECT_EQ(readTextFile(folder.path().toStdString()).problem, TextProblem::Unreadable);
    EXPECT_EQ(readTextFile(path / "missing").problem, TextProblem::Unreadable);
}

TEST_F(FilesTest, AHugeFileThatIsNoTextTakesNoMemory) {
    const auto peak = [] {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss; // KiB
    };
    ASSERT_EQ(replaceFile(path, ""), "");
    std::filesystem::resize_file(path, 1000U << 20); // of nothing but a hole
    const auto before = peak();
    EXPECT_EQ(readTextFile(path).problem, TextProblem::NotText);
    EXPECT_LT(peak() - before, 64 * 1024);
}

TEST_F(FilesTest, AFullDiskCostsNotTheOldFileHoweverShortTheNewOne) {
    ASSERT_EQ(replaceFile(path, "old"), "");
    {
        const FullDisk disk(0);
        EXPECT_NE(replaceFile(path, "new"), "");
    }
    EXPECT_EQ(readWholeFile(path), "old");
}
