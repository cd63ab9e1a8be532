// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/clsFileIo.h"

#include "tests/studio/TestSinks.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <limits>
#include <stdexcept>

using namespace velmora;
using namespace velmora::testsinks;

namespace {
constexpr int kDone = -1;
constexpr int kFailed = 0;

struct clsFileIoTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path path = std::filesystem::path(temporary.path().toStdString()) / "a file";
    clsFileIo file;

    [[nodiscard]] std::uint32_t numberAt(std::size_t place, int size) const {
        const std::string bytes = bytesOf(path);
        std::uint32_t value = 0;
        for (int i = size; i-- > 0;)
            value = value << 8U | static_cast<unsigned char>(bytes.at(place + static_cast<std::size_t>(i)));
        return value;
    }
};
} // namespace

TEST_F(clsFileIoTest, NothingOpenAnswersNoToEverything) {
    char byte = 0;
    EXPECT_EQ(file.CloseFile(), kFailed);
    EXPECT_EQ(file.WriteBytes(&byte, 1), kFailed);
    EXPECT_EQ(file.ReadBytes(&byte, 1), kFailed);
    EXPECT_EQ(file.FlushBuffers(), kFailed);
    EXPECT_EQ(file.writeWavHeader(0), kFailed);
    EXPECT_FALSE(file.isOpen());
}

TEST_F(clsFileIoTest, AFileIsMadeAndWritingBeginsAtItsFirstByte) {
    ASSERT_EQ(file.OpenFile(path), kDone);
    EXPECT_EQ(file.name(), path);
    EXPECT_EQ(file.WriteBytes("abcdef", 6), kDone);
    EXPECT_EQ(file.count(), 6U);
    EXPECT_EQ(file.CloseFile(), kDone);
    EXPECT_EQ(file.CloseFile(), kFailed);
    ASSERT_EQ(file.OpenFile(path), kDone);
    EXPECT_EQ(file.WriteBytes("XY", 2), kDone);
    EXPECT_EQ(file.CloseFile(), kDone);
    EXPECT_EQ(bytesOf(path), "XYcdef") << "what is in a file stays when it is opened";
}

TEST_F(clsFileIoTest, AReadTellsHowManyBytesThereWere) {
    std::ofstream(path) << "abc";
    ASSERT_EQ(file.OpenFile(path), kDone);
    std::array<char, 8> bytes{};
    EXPECT_EQ(file.ReadBytes(bytes.data(), 2), kDone);
    EXPECT_EQ(file.count(), 2U);
    EXPECT_EQ(file.ReadBytes(bytes.data(), 8), kDone);
    EXPECT_EQ(file.count(), 1U);
    EXPECT_EQ(file.ReadBytes(bytes.data(), 8), kDone) << "the end is no failure";
    EXPECT_EQ(file.count(), 0U);
}

TEST_F(clsFileIoTest, AHeaderOfNoSoundHas36And0) {
    ASSERT_EQ(file.OpenFile(path), kDone);
    EXPECT_EQ(file.writeWavHeader(0), kDone);
    EXPECT_EQ(bytesOf(path).size(), 44U);
    EXPECT_EQ(numberAt(4, 4), 36U);
    EXPECT_EQ(numberAt(40, 4), 0U);
}

TEST_F(clsFileIoTest, TheHeaderIsThatOfCdStereo) {
    ASSERT_EQ(file.OpenFile(path), kDone);
    EXPECT_EQ(file.writeWavHeader(352'800), kDone);
    const std::string bytes = bytesOf(path);
    EXPECT_EQ(bytes.substr(0, 4) + bytes.substr(8, 8) + bytes.substr(36, 4), "RIFFWAVEfmt data");
    struct Row {
        std::size_t place;
        int size;
        std::uint32_t value;
    };
    constexpr std::array<Row, 9> kRows{{{4, 4, 352'836},
                                        {16, 4, 16},
                                        {20, 2, 1},
                                        {22, 2, 2},
                                        {24, 4, 44'100},
                                        {28, 4, 176'400},
                                        {32, 2, 4},
                                        {34, 2, 16},
                                        {40, 4, 352'800}}};
    for (const Row& row : kRows)
        EXPECT_EQ(numberAt(row.place, row.size), row.value) << row.place;
}

TEST_F(clsFileIoTest, AnotherProgramReadsTheHeaderAndItsSound) {
    ASSERT_EQ(file.OpenFile(path), kDone);
    const std::vector<char> sound(4410 * 4, 1);
    EXPECT_EQ(file.writeWavHeader(static_cast<std::int32_t>(sound.size())), kDone);
    EXPECT_EQ(file.WriteBytes(sound.data(), sound.size()), kDone);
    EXPECT_EQ(file.CloseFile(), kDone);
    EXPECT_EQ(ask("soxi -t '" + path.string() + "'").output, "wav\n");
    EXPECT_EQ(ask("soxi -s '" + path.string() + "'").output, "4410\n");
}

TEST_F(clsFileIoTest, ALengthBeyond31BitsIsAnArithmeticError) {
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    ASSERT_EQ(file.OpenFile(path), kDone);
    EXPECT_THROW(file.writeWavHeader(kMost), std::overflow_error);
    EXPECT_THROW(file.writeWavHeader(kMost - 43), std::overflow_error);
    EXPECT_EQ(bytesOf(path), "");
    EXPECT_EQ(file.writeWavHeader(kMost - 44), kDone);
    EXPECT_EQ(numberAt(40, 4), 2'147'483'603U);
}

TEST_F(clsFileIoTest, AWriteOfNoBytesSucceeds) {
    ASSERT_EQ(file.OpenFile(path), kDone);
    EXPECT_EQ(file.WriteBytes(nullptr, 0), kDone);
    EXPECT_EQ(file.count(), 0U);
    EXPECT_EQ(file.FlushBuffers(), kDone);
}

TEST_F(clsFileIoTest, NothingIsShared) {
    ASSERT_EQ(file.OpenFile(path), kDone);
    clsFileIo second;
    EXPECT_EQ(second.OpenFile(path), kFailed);
    EXPECT_EQ(second.lastResult(), EWOULDBLOCK);
    EXPECT_FALSE(second.isOpen());
    file.CloseFile();
    EXPECT_EQ(second.OpenFile(path), kDone);
}

TEST_F(clsFileIoTest, WhatCannotBeOpenedOrWrittenIsAResultWithItsCode) {
    EXPECT_EQ(file.OpenFile(path / "below a file that isn't there"), kFailed);
    EXPECT_EQ(file.lastResult(), ENOENT);
    ASSERT_EQ(file.OpenFile("/dev/full"), kDone);
    EXPECT_EQ(file.WriteBytes("abc", 3), kFailed);
    EXPECT_EQ(file.lastResult(), ENOSPC);
}

TEST_F(clsFileIoTest, AFileOfAnotherOwnerStaysOpen) {
    const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(file.OpenFile(descriptor, path), kDone);
    EXPECT_EQ(file.WriteBytes("abc", 3), kDone);
    EXPECT_EQ(file.CloseFile(), kDone);
    EXPECT_EQ(write(descriptor, "d", 1), 1);
    close(descriptor);
    EXPECT_EQ(bytesOf(path), "abcd");
    EXPECT_EQ(file.OpenFile(-1, path), kFailed);
}
