// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Id3Tag.h"

#include "tests/studio/TestSinks.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::testsinks;
using namespace std::string_literals;
using testing::HasSubstr;

TEST(Id3TagTest, NothingToTellIsNoTag) {
    EXPECT_EQ(id3Bytes({}), "");
}

TEST(Id3TagTest, ATextIsUtf16WithTheOrderOfItsBytes) {
    EXPECT_EQ(id3Bytes({.title = "Ab"}),
              "ID3\3\0\0\0\0\0\x11"s + "TIT2\0\0\0\x07\0\0\1\xFF\xFE"s + "A\0b\0"s);
    EXPECT_EQ(id3Bytes({.artist = "\xC3\xA9"}),
              "ID3\3\0\0\0\0\0\x0F"s + "TPE1\0\0\0\x05\0\0\1\xFF\xFE\xE9\0"s);
    EXPECT_THAT(id3Bytes({.title = "\xF0\x9D\x84\x9E"}), HasSubstr("\1\xFF\xFE\x34\xD8\x1E\xDD"s))
        << "a clef";
}

TEST(Id3TagTest, LengthsOfTheTagHaveSevenBitsAByte) {
    const std::string tag = id3Bytes({.cover = "\xFF\xD8\xFF"s + std::string(300, 'x')});
    // 10 of the frame, 1 encoding, 11 type, 1 kind, 1 blank description, 303 bytes
    EXPECT_EQ(tag.substr(6, 4), "\0\0\2\x47"s);
    EXPECT_EQ(tag.substr(10, 8), "APIC\0\0\1\x3D"s);
    EXPECT_EQ(tag.substr(20, 14), "\0image/jpeg\0\3\0"s);
}

TEST(Id3TagTest, AnotherProgramReadsAnyTitle) {
    const QTemporaryDir temporary;
    const std::filesystem::path path = std::filesystem::path(temporary.path().toStdString()) / "t.mp3";
    // A stream of silence behind it, as the lame command makes it.
    ASSERT_EQ(ask("head -c 44100 /dev/zero | lame --quiet -r -s 44.1 - '" + path.string() + "'").exitCode, 0);
    const std::string sound = bytesOf(path);
    const std::string title = "Für Elise, 月光 и Ария \U0001D11E";
    std::ofstream(path, std::ios::binary)
        << id3Bytes({.title = title, .artist = "Ж", .cover = "\x89PNG\r\n\x1A\nnot much"}) << sound;
    const Witness told = ask("LC_ALL=C.UTF-8 mpg123 -t '" + path.string() + "'");
    EXPECT_EQ(told.exitCode, 0);
    EXPECT_THAT(told.output, HasSubstr(title));
    EXPECT_THAT(told.output, HasSubstr("Ж"));
}

TEST(Id3TagTest, OnlyPicturesOfTheTwoKindsAreCovers) {
    const QTemporaryDir temporary;
    const std::filesystem::path folder = temporary.path().toStdString();
    EXPECT_EQ(readCover({}).bytes + readCover({}).error, "");
    std::ofstream(folder / "text.png") << "hello";
    EXPECT_THAT(readCover(folder / "text.png").error,
                AllOf(HasSubstr("text.png"), HasSubstr("no JPEG or PNG")));
    EXPECT_THAT(readCover(folder / "none.jpg").error,
                AllOf(HasSubstr("none.jpg"), HasSubstr("can't be read")));
    EXPECT_THAT(readCover(folder).error, HasSubstr("can't be read"));
    const std::string png = "\x89PNG\r\n\x1A\n";
    std::ofstream(folder / "a", std::ios::binary) << png;
    EXPECT_EQ(readCover(folder / "a").bytes, png);
    std::ofstream(folder / "large", std::ios::binary) << png;
    std::filesystem::resize_file(folder / "large", (std::uintmax_t{16} << 20) + 1);
    EXPECT_THAT(readCover(folder / "large").error, HasSubstr("larger than 16 MiB"));
}
