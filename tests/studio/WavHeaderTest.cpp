// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/WavHeader.h"

#include "tests/studio/SoundBytes.h"

#include <gmock/gmock.h>

#include <chrono>

using namespace velmora;
using namespace velmora::soundbytes;
using testing::HasSubstr;

namespace {
WavHeader read(const std::string& bytes) {
    Held held(bytes);
    return readWavHeader(held.source);
}
const std::string kSound = sixteenBits({1, -1, 2, -2, 3, -3, 4, -4}); ///< four frames
} // namespace

TEST(WavHeaderTest, APlainFileTellsWhereItsFramesAre) {
    const WavHeader header = read(Wav().format().chunk("data", kSound).bytes());
    EXPECT_EQ(header.problem, "");
    EXPECT_EQ(header.rate, 44100);
    EXPECT_EQ(header.channels, 2);
    EXPECT_EQ(header.bits, 16);
    EXPECT_EQ(header.encoding, WavEncoding::Plain);
    EXPECT_EQ(header.soundAt, 44U);
    EXPECT_EQ(header.frames, 4U);
}

TEST(WavHeaderTest, EachEncodingIsKnownPlainAndExtensible) {
    struct Row {
        int code;
        int bits;
        WavEncoding encoding;
    };
    for (const Row& row :
         {Row{1, 8, WavEncoding::Plain}, Row{1, 16, WavEncoding::Plain}, Row{1, 24, WavEncoding::Plain},
          Row{1, 32, WavEncoding::Plain}, Row{3, 32, WavEncoding::Float}, Row{3, 64, WavEncoding::Float},
          Row{6, 8, WavEncoding::ALaw}, Row{7, 8, WavEncoding::MuLaw}}) {
        for (const char* kind : {"RIFF", "RIFX", "RF64"}) {
            for (const bool isExtensible : {false, true}) {
                Wav wav{.kind = kind};
                wav.format({.code = row.code, .channels = 1, .bits = row.bits, .isExtensible = isExtensible});
                wav.chunk("data", std::string(48, 'x'));
                const WavHeader header = read(wav.bytes());
                EXPECT_EQ(header.problem, "") << kind << row.code << ' ' << row.bits << isExtensible;
                EXPECT_EQ(header.encoding, row.encoding);
                EXPECT_EQ(header.bits, row.bits);
                EXPECT_EQ(header.frames, 48U / static_cast<unsigned>(row.bits / 8));
                EXPECT_EQ(header.isBigEndian, kind == std::string("RIFX"));
            }
        }
    }
}

TEST(WavHeaderTest, ChunksOfAnyKindMayStandAnywhere) {
    Wav wav;
    wav.chunk("JUNK", std::string(28, 'j')).chunk("odd ", "123").format().chunk("fact", "abcd");
    wav.chunk("odd2", "x").chunk("data", kSound).chunk("LIST", "adtl").chunk("last", "y");
    const WavHeader header = read(wav.bytes());
    EXPECT_EQ(header.problem, "");
    EXPECT_EQ(header.frames, 4U);
    EXPECT_EQ(wav.bytes().substr(header.soundAt, 4), kSound.substr(0, 4));
}

TEST(WavHeaderTest, TheFormatMayStandBehindTheSoundAlsoAnOddOne) {
    for (const std::size_t length : {16U, 15U}) {
        const WavHeader header =
            read(Wav().chunk("data", kSound.substr(0, length)).format({.channels = 1}).bytes());
        EXPECT_EQ(header.problem, "");
        EXPECT_EQ(header.channels, 1);
        EXPECT_EQ(header.frames, length / 2);
    }
}

TEST(WavHeaderTest, OfTwoFormatsTheFirstCounts) {
    const WavHeader header =
        read(Wav().format({.channels = 1}).format({.channels = 2}).chunk("data", kSound).bytes());
    EXPECT_EQ(header.channels, 1);
    EXPECT_EQ(header.frames, 8U);
}

TEST(WavHeaderTest, AMissingByteOfFillingUpIsForgiven) {
    std::string bytes = Wav().chunk("note", "odd").format().chunk("data", kSound).bytes();
    bytes.erase(bytes.find("fmt ") - 1, 1);
    EXPECT_EQ(read(bytes).frames, 4U);
}

TEST(WavHeaderTest, LengthsBeyondTheEndMeanTheEnd) {
    for (const std::int64_t told :
         {std::int64_t{17}, std::int64_t{1000}, std::int64_t{0x7FFFF000}, std::int64_t{0xFFFFFFFF}}) {
        for (const std::int64_t whole :
             {std::int64_t{-1}, std::int64_t{0}, std::int64_t{8}, std::int64_t{0xFFFFFFFF}}) {
            const WavHeader header = read(Wav().format().chunk("data", kSound, told).bytes(whole));
            EXPECT_EQ(header.problem, "");
            EXPECT_EQ(header.frames, 4U) << told << ' ' << whole;
        }
    }
}

TEST(WavHeaderTest, WhatAKilledRecorderLeavesIsReadToItsEnd) {
    struct Row {
        std::int64_t sound;
        std::int64_t whole;
    };
    for (const Row& row : {Row{0, 36}, Row{0, 0}, Row{0, 8}, Row{0, 0xFFFFFFFF}, Row{0xFFFFFFFF, 0xFFFFFFFF},
                           Row{0x7FFFF000, 0x7FFFF024}, Row{0xFFFFFFFF, 0}}) {
        const WavHeader header = read(Wav().format().chunk("data", kSound, row.sound).bytes(row.whole));
        EXPECT_EQ(header.problem, "");
        EXPECT_EQ(header.frames, 4U) << row.sound << ' ' << row.whole;
        EXPECT_EQ(header.soundAt, 44U);
    }
}

TEST(WavHeaderTest, AKilledRecordersLongLengthsAreReadToTheEndAsWell) {
    for (const std::uint64_t told : {std::uint64_t{0}, ~std::uint64_t{0}}) {
        Wav wav{.kind = "RF64"};
        wav.chunk("ds64", ByteWriter().number(told, 8).number(told, 8).number(told, 8).number(0, 4).text);
        wav.format().chunk("data", kSound, 0xFFFFFFFF);
        EXPECT_EQ(read(wav.bytes(0xFFFFFFFF)).frames, 4U) << told;
    }
}

TEST(WavHeaderTest, AnEmptySoundWithChunksBehindItStaysEmpty) {
    const Wav wav = Wav().format().chunk("data", "").chunk("LIST", "INFO");
    EXPECT_THAT(read(wav.bytes()).problem, HasSubstr("no sound"));
}

TEST(WavHeaderTest, LongLengthsCountWhereThe32BitsAreAllOnes) {
    Wav wav{.kind = "RF64"};
    wav.chunk("ds64", ByteWriter().number(200, 8).number(8, 8).number(2, 8).number(0, 4).text);
    wav.format().chunk("data", kSound, 0xFFFFFFFF);
    EXPECT_EQ(read(wav.bytes(0xFFFFFFFF)).frames, 2U);
    wav.kind = "RIFF"; // there all ones are a length that lies
    EXPECT_EQ(read(wav.bytes()).frames, 4U);
}

TEST(WavHeaderTest, AnIncompleteLastFrameIsDropped) {
    for (const std::size_t extra : {1U, 2U, 3U})
        EXPECT_EQ(read(Wav().format().chunk("data", kSound + std::string(extra, 'x')).bytes()).frames, 4U);
}

TEST(WavHeaderTest, AlignmentAndBytesASecondAreWorkedOut) {
    for (const int alignment : {0, 1, 3, 4, 65535}) {
        const WavHeader header =
            read(Wav().format({.alignment = alignment, .bytesPerSecond = 7}).chunk("data", kSound).bytes());
        EXPECT_EQ(header.problem, "");
        EXPECT_EQ(header.frameBytes(), 4U);
        EXPECT_EQ(header.frames, 4U);
    }
}

TEST(WavHeaderTest, WhatCannotBeReadIsRefusedInWords) {
    const auto problemOf = [](const WavFormat& format) {
        return read(Wav().format(format).chunk("data", kSound).bytes()).problem;
    };
    EXPECT_THAT(problemOf({.channels = 0}), HasSubstr("no channel"));
    EXPECT_THAT(problemOf({.rate = 0}), HasSubstr("rate of 0"));
    EXPECT_THAT(problemOf({.rate = 4'000'000'000}), HasSubstr("rate of 4000000000"));
    EXPECT_THAT(problemOf({.bits = 0}), HasSubstr("0 bits"));
    EXPECT_THAT(problemOf({.bits = 40}), HasSubstr("40 bits"));
    EXPECT_THAT(problemOf({.code = 3, .bits = 16}), HasSubstr("16 bits"));
    EXPECT_THAT(problemOf({.code = 85}), HasSubstr("(85)"));
    EXPECT_THAT(problemOf({.code = 0xFFFE}), HasSubstr("encoded"));
    EXPECT_THAT(read(Wav().chunk("data", kSound).bytes()).problem, HasSubstr("fmt "));
    EXPECT_THAT(read(Wav().chunk("fmt ", "short").chunk("data", kSound).bytes()).problem, HasSubstr("fmt "));
    EXPECT_THAT(read(Wav().format().bytes()).problem, HasSubstr("no sound"));
    EXPECT_THAT(read(Wav().format().chunk("data", "abc").bytes()).problem, HasSubstr("no sound"));
    EXPECT_THAT(read("RIFF....AVI ").problem, HasSubstr("no WAV"));
    EXPECT_THAT(read("").problem, HasSubstr("no WAV"));
}

TEST(WavHeaderTest, EveryCutOfAFileIsReadOrRefused) {
    const std::string whole = Wav().chunk("JUNK", "odd").format().chunk("data", kSound).bytes();
    const std::size_t soundAt = whole.size() - kSound.size();
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const WavHeader header = read(whole.substr(0, length));
        EXPECT_EQ(header.problem.empty(), length >= soundAt + 4) << length;
        EXPECT_EQ(header.frames, length < soundAt ? 0 : (length - soundAt) / 4) << length;
    }
}

TEST(WavHeaderTest, TitleAndArtistAreInItsListOrItsTag) {
    std::string list("INFO");
    list += ByteWriter().raw("INAM").number(5, 4).raw("Tune\n").number(0, 1).text;
    list += ByteWriter().raw("IART").number(4, 4).raw("J\xF6rg").text;
    const WavHeader header = read(Wav().format().chunk("LIST", list).chunk("data", kSound).bytes());
    EXPECT_EQ(header.tags.title, "Tune");
    EXPECT_EQ(header.tags.artist, "Jörg");

    const std::string frame =
        ByteWriter(true).raw("TIT2").number(6, 4).number(0, 2).number(3, 1).raw("Other").text;
    const Wav tagged = Wav().format().chunk("data", kSound).chunk("id3 ", id3Head(frame.size()) + frame);
    EXPECT_EQ(read(tagged.bytes()).tags.title, "Other");
}

TEST(WavHeaderTest, MillionsOfEmptyChunksTakeNoLongerThanTheirBytes) {
    Wav wav;
    for (int i = 0; i < 2'000'000; ++i)
        wav.chunks += std::string_view("junk\0\0\0\0", 8);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(read(wav.format().chunk("data", kSound).bytes()).frames, 4U);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(5));
}
