// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/WavReader.h"

#include "studio/DiscSound.h"
#include "studio/WavFile.h"
#include "tests/studio/SoundBytes.h"
#include "tests/studio/TestSinks.h"

#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <limits>

using namespace velmora;
using namespace velmora::soundbytes;
using testing::ElementsAre;

namespace {
std::vector<float> readAll(SoundReader& reader, std::size_t framesAtATime = 1000) {
    std::vector<float> all;
    std::vector<float> block(framesAtATime * static_cast<std::size_t>(reader.info().channels));
    while (const std::size_t frames = reader.read(block))
        all.insert(all.end(), block.begin(),
                   block.begin() + static_cast<std::ptrdiff_t>(
                                       frames * static_cast<std::size_t>(reader.info().channels)));
    return all;
}

std::unique_ptr<WavReader> opened(const std::string& bytes) {
    auto source = std::make_unique<OwnBytes>(bytes);
    WavHeader header = readWavHeader(*source);
    EXPECT_EQ(header.problem, "");
    return std::make_unique<WavReader>(std::move(source), std::move(header));
}

std::vector<float> decoded(const WavFormat& format, const std::string& sound, const char* kind = "RIFF") {
    return readAll(*opened(Wav{.kind = kind}.format(format).chunk("data", sound).bytes()));
}

std::vector<int> nearest(const std::vector<float>& samples) {
    std::vector<std::int16_t> rounded(samples.size());
    toSixteenBits(samples, rounded.data());
    return {rounded.begin(), rounded.end()};
}

std::string numbers(const std::vector<std::int64_t>& values, int bytes, bool bigEndian = false) {
    ByteWriter out(bigEndian);
    for (const std::int64_t value : values)
        out.number(static_cast<std::uint64_t>(value), bytes);
    return out.text;
}
} // namespace

TEST(WavReaderTest, EachSixteenBitValueIsItself) {
    std::vector<int> values;
    for (int value = -32768; value <= 32767; ++value)
        values.push_back(value);
    for (const bool isBig : {false, true}) {
        const auto samples = decoded({.channels = 1}, sixteenBits(values, isBig), isBig ? "RIFX" : "RIFF");
        EXPECT_EQ(nearest(samples), values);
        EXPECT_EQ(samples.front(), -1.0F);
        EXPECT_EQ(samples[32769], 1.0F / 32768);
    }
}

TEST(WavReaderTest, EightBitsHaveTheirMiddleAt128) {
    EXPECT_THAT(nearest(decoded({.channels = 1, .bits = 8}, std::string("\0\x7F\x80\x81\xFF", 5))),
                ElementsAre(-32768, -256, 0, 256, 127 * 256));
}

TEST(WavReaderTest, WiderSamplesBecomeTheNearestSixteenBits) {
    for (const bool isBig : {false, true}) {
        const char* kind = isBig ? "RIFX" : "RIFF";
        EXPECT_THAT(nearest(decoded(
                        {.channels = 1, .bits = 24},
                        numbers({0, 127, 129, -127, -129, 0x7FFFFF, -0x800000, 256 * 5}, 3, isBig), kind)),
                    ElementsAre(0, 0, 1, 0, -1, 32767, -32768, 5));
        EXPECT_THAT(nearest(decoded(
                        {.channels = 1, .bits = 32},
                        numbers({0, 0x7FFF, 0x8001, -0x8001, 0x7FFFFFFF, -0x80000000LL}, 4, isBig), kind)),
                    ElementsAre(0, 0, 1, -1, 32767, -32768));
    }
}

TEST(WavReaderTest, ThirtyTwoBitsAreNeverRoundedTwice) {
    // Beside the middle of two 16-bit values, where a float holds 24 bits of them alone.
    std::vector<std::int64_t> values;
    std::vector<int> expected;
    for (const std::int64_t whole : {20000, 20001, -20001, -20000, 32000, 31999}) {
        for (const std::int64_t aside : {-63, -1, 1, 63}) {
            values.push_back(whole * 65536 + 32768 + aside);
            expected.push_back(static_cast<int>(whole + (aside > 0 ? 1 : 0)));
        }
    }
    EXPECT_EQ(nearest(decoded({.channels = 1, .bits = 32}, numbers(values, 4))), expected);

    std::vector<std::int64_t> doubles;
    for (const std::int64_t value : values)
        doubles.push_back(std::bit_cast<std::int64_t>(static_cast<double>(value) / 2147483648.0));
    EXPECT_EQ(nearest(decoded({.code = 3, .channels = 1, .bits = 64}, numbers(doubles, 8))), expected);
}

TEST(WavReaderTest, FloatsStayWhatTheyAre) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    std::vector<std::int64_t> bits;
    std::vector<std::int64_t> doubles;
    for (const float value :
         {0.1F, -3.5F, kInfinity, -kInfinity, std::numeric_limits<float>::quiet_NaN(), -0.25F}) {
        bits.push_back(std::bit_cast<std::int32_t>(value));
        doubles.push_back(std::bit_cast<std::int64_t>(static_cast<double>(value)));
    }
    for (const bool isBig : {false, true}) {
        const char* kind = isBig ? "RIFX" : "RIFF";
        EXPECT_THAT(decoded({.code = 3, .channels = 1, .bits = 32}, numbers(bits, 4, isBig), kind),
                    ElementsAre(0.1F, -3.5F, 1, -1, 0, -0.25F));
        EXPECT_THAT(decoded({.code = 3, .channels = 1, .bits = 64}, numbers(doubles, 8, isBig), kind),
                    ElementsAre(0.1F, -3.5F, 1, -1, 0, -0.25F));
    }
}

TEST(WavReaderTest, DoublesBeyondAFloatAreItsFarthest) {
    constexpr float kMost = std::numeric_limits<float>::max();
    const auto bits = [](double value) { return std::bit_cast<std::int64_t>(value); };
    EXPECT_THAT(decoded({.code = 3, .channels = 1, .bits = 64}, numbers({bits(1e300), bits(-1e300)}, 8)),
                ElementsAre(kMost, -kMost));
}

TEST(WavReaderTest, AnotherProgramExpandsTheLawsAlike) {
    QTemporaryDir temporary;
    const std::filesystem::path folder = temporary.path().toStdString();
    std::string codes;
    for (int code = 0; code < 256; ++code)
        codes += static_cast<char>(code);
    for (const int law : {6, 7}) {
        writeFile(folder / "law.wav",
                  Wav().format({.code = law, .channels = 1, .bits = 8}).chunk("data", codes).bytes());
        const auto witness = testsinks::ask("sox '" + (folder / "law.wav").string() + "' -t s16 '" +
                                            (folder / "law.raw").string() + "'");
        ASSERT_EQ(witness.exitCode, 0) << witness.output;
        const OpenedSound sound = openSound(folder / "law.wav");
        ASSERT_TRUE(sound.reader);
        EXPECT_EQ(sixteenBits(nearest(readAll(*sound.reader))), testsinks::bytesOf(folder / "law.raw"))
            << law;
    }
}

TEST(WavReaderTest, BlocksOfAnySizeAndPlacesThatAreSoughtGiveTheSameFrames) {
    std::vector<int> values;
    for (int i = 0; i < 60'000; ++i)
        values.push_back(i % 30'000 - 15'000);
    const auto reader = opened(Wav().format({.channels = 3}).chunk("data", sixteenBits(values)).bytes());
    EXPECT_EQ(reader->info().frames, 20'000);
    const std::vector<float> whole = readAll(*reader);
    EXPECT_EQ(whole.size(), values.size());
    for (const std::size_t block : {1U, 7U, 25'000U}) {
        reader->seek(0);
        EXPECT_EQ(readAll(*reader, block), whole);
    }
    for (const int frame : {1, 9'999, 19'999, 20'000}) {
        reader->seek(frame);
        EXPECT_EQ(readAll(*reader), std::vector<float>(whole.begin() + 3 * frame, whole.end()));
    }
}

TEST(WavReaderTest, AFrameMayBeWiderThanABlock) {
    constexpr int kChannels = 65535;
    const auto reader = opened(Wav()
                                   .format({.code = 3, .channels = kChannels, .bits = 64, .alignment = 0})
                                   .chunk("data", std::string(std::size_t{8} * kChannels * 2 + 5, '\0'))
                                   .bytes());
    EXPECT_EQ(reader->info().frames, 2);
    EXPECT_EQ(readAll(*reader, 1).size(), std::size_t{2} * kChannels);
}

TEST(WavReaderTest, AFileThatBecomesShorterEndsEarly) {
    QTemporaryDir temporary;
    const std::filesystem::path path = temporary.path().toStdString() + "/take.wav";
    writeFile(path, Wav().format().chunk("data", std::string(400'000, 'x')).bytes());
    const OpenedSound sound = openSound(path);
    ASSERT_TRUE(sound.reader);
    std::filesystem::resize_file(path, 44 + 40'002);
    EXPECT_EQ(readAll(*sound.reader).size(), 20'000U);
}

TEST(WavReaderTest, TheBytesOfADiscsSoundCanBeCopied) {
    QTemporaryDir temporary;
    const std::filesystem::path path = temporary.path().toStdString() + "/track.wav";
    const std::string sound = sixteenBits({1, 2, 3, 4, 5});
    writeFile(path, Wav().chunk("JUNK", "odd").format().chunk("data", sound).bytes());
    const auto there = discSound(path);
    ASSERT_TRUE(there);
    EXPECT_EQ(there->bytes, 8U);
    EXPECT_EQ(testsinks::bytesOf(path).substr(there->offset, there->bytes), sound.substr(0, 8));

    for (const WavFormat& other : {WavFormat{.channels = 1}, WavFormat{.rate = 48000}, WavFormat{.bits = 8},
                                   WavFormat{.code = 3, .bits = 32}}) {
        writeFile(path, Wav().format(other).chunk("data", std::string(64, 'x')).bytes());
        EXPECT_FALSE(discSound(path));
    }
    writeFile(path, Wav{.kind = "RIFX"}.format().chunk("data", sound).bytes());
    EXPECT_FALSE(discSound(path));
    EXPECT_FALSE(discSound(path.parent_path() / "none.wav"));
}
