// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/WavTwin.h"

#include "tests/studio/SoundBytes.h"
#include "tests/studio/TestSinks.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::soundbytes;
using testing::HasSubstr;
using testsinks::bytesOf;

namespace {
struct WavTwinTest : testing::Test {
    QTemporaryDir temporary;
    std::filesystem::path folder = temporary.path().toStdString();
    std::filesystem::path file = folder / "twin.wav";

    /// A twin of that model with these samples.
    std::string make(const std::string& model, std::uint64_t frames, std::span<const std::uint8_t> samples,
                     TwinSamples kind = TwinSamples::Same, std::uint64_t longest = WavTwin::kLongest) {
        Held held(model);
        const WavHeader header = readWavHeader(held.source);
        EXPECT_EQ(header.problem, "");
        WavTwin twin(held.source, header, file, frames, kind, longest);
        if (std::string error = twin.open(); !error.empty())
            return error;
        if (std::string error = twin.writeBytes(samples); !error.empty())
            return error;
        return twin.finish();
    }
    [[nodiscard]] WavHeader made() const {
        Held held(bytesOf(file));
        return readWavHeader(held.source);
    }
};
constexpr std::array<std::uint8_t, 8> kSound{1, 2, 3, 4, 5, 6, 7, 8};
} // namespace

TEST_F(WavTwinTest, APlainFileHasTheHeaderThatEveryoneReads) {
    const std::string model = Wav().format().chunk("data", sixteenBits({1, 2, 3, 4, 5, 6})).bytes();
    ASSERT_EQ(make(model, 2, kSound), "");
    const std::string bytes = bytesOf(file);
    EXPECT_EQ(bytes, Wav().format().chunk("data", "\1\2\3\4\5\6\7\10").bytes());
    EXPECT_EQ(bytes.size(), 44U + 8);
}

TEST_F(WavTwinTest, WhatTheFileTellsOfItselfComesAlongAndWhatTellsOfPlacesDoesNot) {
    const std::string told =
        "INFOINAM" + ByteWriter().number(5, 4).raw("Song\0\0").text + std::string(2, '\0');
    ASSERT_EQ(make(Wav()
                       .chunk("cue ", std::string(28, 'x'))
                       .format()
                       .chunk("data", sixteenBits({1, 2, 3, 4}))
                       .chunk("LIST", told)
                       .chunk("LIST", "adtlplaces")
                       .chunk("id3 ", id3Head(3) + "odd")
                       .bytes(),
                   2, kSound),
              "");
    EXPECT_EQ(made().tags.title, "Song");
    EXPECT_EQ(bytesOf(file), Wav()
                                 .format()
                                 .chunk("data", "\1\2\3\4\5\6\7\10")
                                 .chunk("LIST", told)
                                 .chunk("id3 ", id3Head(3) + "odd")
                                 .bytes());
}

TEST_F(WavTwinTest, NumbersThatFollowFromOthersArePutRight) {
    ASSERT_EQ(make(Wav().format({.alignment = 99, .bytesPerSecond = 1}).chunk("data", "12345678").bytes(), 2,
                   kSound),
              "");
    EXPECT_EQ(bytesOf(file), Wav().format().chunk("data", "\1\2\3\4\5\6\7\10").bytes());
}

TEST_F(WavTwinTest, WhatIsNotPlainTellsItsFramesBesides) {
    ASSERT_EQ(make(Wav().format({.code = 3, .channels = 1, .bits = 32}).chunk("data", "12345678").bytes(), 2,
                   kSound),
              "");
    EXPECT_EQ(bytesOf(file), Wav()
                                 .format({.code = 3, .channels = 1, .bits = 32})
                                 .chunk("fact", ByteWriter().number(2, 4).text)
                                 .chunk("data", "\1\2\3\4\5\6\7\10")
                                 .bytes());
}

TEST_F(WavTwinTest, LogarithmicSamplesThatAreToBeWrittenHaveSixteenBits) {
    for (const bool isExtensible : {false, true}) {
        for (const char* kind : {"RIFF", "RIFX"}) {
            const WavFormat old{.code = 7, .channels = 2, .bits = 8, .isExtensible = isExtensible};
            const std::string model = Wav{kind}.format(old).chunk("data", "12345678").bytes();
            ASSERT_EQ(make(model, 2, kSound, TwinSamples::Written), "");
            WavFormat now = old;
            now.code = 1;
            now.bits = 16;
            Wav wanted{kind};
            wanted.format(now);
            if (isExtensible)
                wanted.chunk("fact", ByteWriter(wanted.isBig()).number(2, 4).text);
            EXPECT_EQ(bytesOf(file), wanted.chunk("data", "\1\2\3\4\5\6\7\10").bytes()) << kind;
            ASSERT_EQ(make(model, 4, kSound), "") << "but not otherwise";
            EXPECT_EQ(made().encoding, WavEncoding::MuLaw);
            EXPECT_EQ(made().frames, 4U);
        }
    }
}

TEST_F(WavTwinTest, BeyondTheLongestItsLengthsHave64Bits) {
    const std::string model = Wav().format().chunk("data", "12345678").bytes();
    ASSERT_EQ(make(model, 2, kSound, TwinSamples::Same, 43), "");
    const std::string bytes = bytesOf(file);
    EXPECT_THAT(bytes, testing::StartsWith("RF64\xFF\xFF\xFF\xFFWAVE"
                                           "ds64"));
    Held held(bytes);
    EXPECT_EQ(readWavHeader(held.source).frames, 2U);
    EXPECT_EQ(bytes.substr(20, 8), ByteWriter().number(bytes.size() - 8, 8).text);
    EXPECT_EQ(bytes.substr(28, 8), ByteWriter().number(8, 8).text);
    EXPECT_EQ(testsinks::ask("soxi -s '" + file.string() + "'").output, "2\n");
    ASSERT_EQ(make(model, 2, kSound, TwinSamples::Same, 44), "");
    EXPECT_THAT(bytesOf(file), testing::StartsWith("RIFF"));
    EXPECT_THAT(
        make(Wav{"RIFX"}.format().chunk("data", "12345678").bytes(), 2, kSound, TwinSamples::Same, 43),
        HasSubstr("can't tell that length"));
}

TEST_F(WavTwinTest, WhatIsTooShortIsNoFile) {
    EXPECT_THAT(make(Wav().format().chunk("data", "12345678").bytes(), 3, kSound), HasSubstr("length"));
    EXPECT_FALSE(std::filesystem::exists(file));
}
