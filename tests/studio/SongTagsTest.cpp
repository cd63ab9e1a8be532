// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/SongTags.h"

#include "tests/studio/SoundBytes.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::soundbytes;

namespace {
/// @param sevenBits as version 4 writes lengths
std::string frame(std::string_view name, std::string_view content, bool sevenBits = false) {
    const std::size_t length = content.size();
    ByteWriter out(true);
    out.raw(name);
    if (name.size() == 3)
        return out.number(length, 3).raw(content).text;
    if (sevenBits)
        out.number((length >> 7 & 0x7FU) << 8 | (length & 0x7FU), 4);
    else
        out.number(length, 4);
    return out.number(0, 2).raw(content).text;
}
SongTags read(const std::string& bytes) {
    Held held(bytes);
    ByteWindow window(held.source);
    SongTags tags;
    readId3v2(window, 0, tags);
    return tags;
}
SongTags readFrames(const std::string& frames, int version = 3, unsigned flags = 0) {
    return read(id3Head(frames.size(), version, flags) + frames);
}
constexpr char kLatin1[] = "\0J\xF6rg";
constexpr char kUtf8[] = "\3J\xC3\xB6rg";
const std::string kUtf16("\1\xFF\xFEJ\0\xF6\0r\0g\0\0\0", 13);
const std::string kUtf16Big("\2\0J\0\xF6\0r\0g", 9);
} // namespace

TEST(SongTagsTest, EachWayOfWritingATextIsRead) {
    for (const std::string& text : {std::string(kLatin1, 5), std::string(kUtf8), kUtf16, kUtf16Big}) {
        EXPECT_EQ(readFrames(frame("TIT2", text)).title, "Jörg");
        EXPECT_EQ(readFrames(frame("TPE1", text)).artist, "Jörg");
        EXPECT_EQ(readFrames(frame("TT2", text) + frame("TP1", text), 2).artist, "Jörg");
        EXPECT_EQ(readFrames(frame("TIT2", text, true), 4).title, "Jörg");
    }
}

TEST(SongTagsTest, CharactersOfEveryLengthAreKept) {
    EXPECT_EQ(readFrames(frame("TIT2", "\3a ä ☃ 𝄞")).title, "a ä ☃ 𝄞");
    EXPECT_EQ(readFrames(frame("TIT2", std::string("\1\xFE\xFF\xD8\x34\xDD\x1E\xDC\x00\0z", 11))).title,
              "𝄞\uFFFDz");
}

TEST(SongTagsTest, ATextIsOneLineWithoutBlanksAround) {
    EXPECT_EQ(readFrames(frame("TIT2", "\3 \tone\ntwo  ")).title, "one two");
    EXPECT_EQ(readFrames(frame("TIT2", std::string("\3one\0two", 8))).title, "one");
}

TEST(SongTagsTest, APictureOfAnySizeMayStandInFront) {
    const std::string picture(300'000, '\xFF');
    EXPECT_EQ(readFrames(frame("APIC", picture) + frame("TIT2", "\3Tune")).title, "Tune");
}

TEST(SongTagsTest, LengthsOfVersionFourAreReadInBothWays) {
    const std::string text = "\3" + std::string(200, 't');
    for (const bool sevenBits : {false, true}) {
        const SongTags tags =
            readFrames(frame("TIT2", text, sevenBits) + frame("TPE1", "\3Who", sevenBits), 4);
        EXPECT_EQ(tags.title.size(), 200U);
        EXPECT_EQ(tags.artist, "Who");
    }
}

TEST(SongTagsTest, UnsynchronisedTagsAndExtendedHeadsAreRead) {
    std::string bytes = frame("TIT2", std::string("\1\xFF\xFEJ\0", 5));
    bytes.insert(bytes.find('\xFF') + 1, 1, '\0');
    EXPECT_EQ(readFrames(bytes, 3, 0x80).title, "J");
    const std::string extended = ByteWriter(true).number(6, 4).number(0, 6).text;
    EXPECT_EQ(readFrames(extended + frame("TIT2", "\3Tune"), 3, 0x40).title, "Tune");
    const std::string extended4 = ByteWriter(true).number(6, 4).number(0x0100, 2).text;
    EXPECT_EQ(readFrames(extended4 + frame("TIT2", "\3Tune", true), 4, 0x40).title, "Tune");
}

TEST(SongTagsTest, WhatTheTagHasNotIsLeft) {
    SongTags tags{"Own", ""};
    Held held(id3Head(17) + frame("TPE1", "\3Artist"));
    ByteWindow window(held.source);
    readId3v2(window, 0, tags);
    EXPECT_EQ(tags.title, "Own");
    EXPECT_EQ(tags.artist, "Artist");
}

TEST(SongTagsTest, TheLengthOfATagIsThatOfItsBytes) {
    const auto lengthOf = [](const std::string& bytes) {
        Held held(bytes);
        ByteWindow window(held.source);
        return id3v2Length(window, 0);
    };
    EXPECT_EQ(lengthOf(id3Head(300) + std::string(400, 'x')), 310U);
    EXPECT_EQ(lengthOf(id3Head(300, 4, 0x10) + std::string(400, 'x')), 320U);
    EXPECT_EQ(lengthOf(id3Head(300) + std::string(299, 'x')), 0U) << "it claims more than is there";
    EXPECT_EQ(lengthOf("ID3\3\0\0\x80\0\0\0" + std::string(300, 'x')), 0U);
    EXPECT_EQ(lengthOf("ID3"), 0U);
    EXPECT_EQ(lengthOf("RIFF"), 0U);
}

TEST(SongTagsTest, AFrameThatClaimsMoreThanTheTagEndsIt) {
    std::string frames = frame("TIT2", "\3Tune");
    frames[7] = '\x7F';
    const SongTags tags = readFrames(frames + frame("TPE1", "\3Who"));
    EXPECT_EQ(tags.title, "");
    EXPECT_EQ(tags.artist, "");
}

TEST(SongTagsTest, TheOldTagFillsWhatIsMissing) {
    std::string tag = "TAG" + std::string(125, '\0');
    tag.replace(3, 5, "Title");
    tag.replace(33, 4, "J\xF6rg");
    SongTags tags{"Own", ""};
    readId3v1({reinterpret_cast<const std::uint8_t*>(tag.data()), tag.size()}, tags);
    EXPECT_EQ(tags.title, "Own");
    EXPECT_EQ(tags.artist, "Jörg");
}
