// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/modLAME.h"

#include "tests/studio/TestSinks.h"

#include <gmock/gmock.h>

#include <limits>

using namespace velmora;
using namespace velmora::testsinks;
using testing::HasSubstr;

namespace {
struct Opened {
    explicit Opened(const EncoderRecord& record = {})
        : code(beInitStream(record, samples, outputSize, stream)) {
        output.resize(outputSize);
    }
    std::uint32_t samples = 0;
    std::uint32_t outputSize = 0;
    LameStream stream;
    int code;
    std::vector<unsigned char> output;
    std::uint32_t written = 0;
};

/// The whole road: blocks, the rest, the info frame in its place.
template<typename Value>
std::string encoded(const EncoderRecord& record, std::span<const Value> sound) {
    Opened opened(record);
    EXPECT_EQ(opened.code, 0);
    std::string mp3;
    const auto keep = [&] {
        mp3.append(reinterpret_cast<const char*>(opened.output.data()), opened.written);
    };
    while (!sound.empty()) {
        const auto block = sound.first(std::min<std::size_t>(sound.size(), opened.samples));
        EXPECT_EQ(beEncodeChunk(opened.stream, block, opened.output, opened.written), 0);
        keep();
        sound = sound.subspan(block.size());
    }
    EXPECT_EQ(beDeinitStream(opened.stream, opened.output, opened.written), 0);
    keep();
    const std::size_t info = infoFrame(opened.stream, opened.output);
    mp3.replace(0, info, reinterpret_cast<const char*>(opened.output.data()), info);
    EXPECT_EQ(beCloseStream(opened.stream), 0);
    return mp3;
}

std::vector<std::int16_t> steps(std::span<const float> sound) {
    std::vector<std::int16_t> values;
    for (const float value : sound)
        values.push_back(static_cast<std::int16_t>(std::lround(value * 32768)));
    return values;
}
} // namespace

TEST(modLAMETest, TheRecordIsOfTheLongKindAndHasTheDefaultsOfTheProgram) {
    const EncoderRecord record;
    EXPECT_EQ(record.dwConfig, 256U);
    EXPECT_EQ(record.dwStructVersion, 1U);
    EXPECT_EQ(record.dwStructSize, 331U);
    EXPECT_EQ(record.dwReSampleRate, 0U);
    EXPECT_EQ(record.dwBitrate, 224U);
    EXPECT_EQ(record.dwMaxBitrate, 0U);
    EXPECT_EQ(record.nPreset, 10000);
    EXPECT_EQ(record.dwMpegVersion, 1U);
    EXPECT_EQ(record.dwPsyModel, 0U);
    EXPECT_EQ(record.dwEmphasis, 0U);
    EXPECT_EQ(record.bOriginal, -1);
    EXPECT_EQ(record.nVbrMethod, -1);
}

TEST(modLAMETest, ACodeHasItsText) {
    constexpr std::array kTexts{"No Error",        "Invalid format", "Invalid format parameters",
                                "No more handles", "Invalid handle", "Buffer too small"};
    for (int code = 0; code < static_cast<int>(kTexts.size()); ++code)
        EXPECT_EQ(beErrorText(code), kTexts[static_cast<std::size_t>(code)]);
    EXPECT_EQ(beErrorText(6), "");
    EXPECT_EQ(beErrorText(-1), "");
}

TEST(modLAMETest, ABlockIsAFrameAndItsOutputFits) {
    struct Row {
        std::uint32_t rate;
        std::int32_t mode;
        std::uint32_t samples;
    };
    for (const Row& row : {Row{44100, kJointStereo, 2304},
                           {44100, kMono, 1152},
                           {22050, kJointStereo, 1152},
                           {22050, kMono, 576},
                           {48000, kJointStereo, 2304}}) {
        const Opened opened({.dwSampleRate = row.rate, .nMode = row.mode, .dwBitrate = 128});
        EXPECT_EQ(opened.code, 0);
        EXPECT_EQ(opened.samples, row.samples) << row.rate;
        EXPECT_GE(opened.outputSize, 7200U);
    }
}

TEST(modLAMETest, ARecordOfAnotherKindIsAnInvalidFormat) {
    for (const EncoderRecord& record : {EncoderRecord{.dwConfig = 0}, EncoderRecord{.dwStructVersion = 2},
                                        EncoderRecord{.dwStructSize = 330}}) {
        const Opened opened(record);
        EXPECT_EQ(opened.code, 1);
        EXPECT_EQ(opened.samples, 0U);
        EXPECT_EQ(opened.outputSize, 0U);
    }
}

TEST(modLAMETest, WhatTheTablesLackIsAnInvalidParameter) {
    for (const EncoderRecord& record :
         {EncoderRecord{.dwSampleRate = 11025}, EncoderRecord{.dwSampleRate = 0}, EncoderRecord{.nMode = 0},
          EncoderRecord{.nMode = 2}, EncoderRecord{.dwBitrate = 129}, EncoderRecord{.dwBitrate = 0},
          EncoderRecord{.dwSampleRate = 22050, .dwBitrate = 224}, EncoderRecord{.dwReSampleRate = 22050},
          EncoderRecord{.nPreset = 4}, EncoderRecord{.dwEmphasis = 1}, EncoderRecord{.nVbrMethod = 4}})
        EXPECT_EQ(Opened(record).code, 2);
}

TEST(modLAMETest, EveryPresetOfTheTableIsTaken) {
    for (const EncoderQuality& quality : kEncoderQualities)
        EXPECT_EQ(Opened({.nPreset = quality.preset}).code, 0) << quality.text;
}

TEST(modLAMETest, AStreamThatIsNotOpenIsAnInvalidHandle) {
    LameStream stream;
    std::vector<unsigned char> output(20'000);
    std::uint32_t written = 1;
    const std::vector<float> sound(2304);
    EXPECT_EQ(beEncodeChunk(stream, std::span<const float>(sound), output, written), 4);
    EXPECT_EQ(written, 0U);
    EXPECT_EQ(beDeinitStream(stream, output, written), 4);
    EXPECT_EQ(beCloseStream(stream), 4);
    EXPECT_EQ(infoFrame(stream, output), 0U);
    Opened opened;
    EXPECT_EQ(beCloseStream(opened.stream), 0);
    EXPECT_EQ(beCloseStream(opened.stream), 4);
}

TEST(modLAMETest, AnOutputOfTooFewBytesIsToldBeforeAnythingIsEncoded) {
    Opened opened;
    const std::vector<std::int16_t> sound(opened.samples);
    opened.output.resize(7200);
    EXPECT_EQ(
        beEncodeChunk(opened.stream, std::span<const std::int16_t>(sound), opened.output, opened.written), 5);
    opened.output.resize(7199);
    EXPECT_EQ(beDeinitStream(opened.stream, opened.output, opened.written), 5);
}

TEST(modLAMETest, ABlockLargerThanAskedForIsRefused) {
    Opened opened;
    const std::vector<std::int16_t> sound(opened.samples + 2);
    EXPECT_EQ(
        beEncodeChunk(opened.stream, std::span<const std::int16_t>(sound), opened.output, opened.written), 2);
}

TEST(modLAMETest, ASoundOfNoBlockYieldsAFileAllTheSame) {
    const std::string mp3 = encoded<std::int16_t>({}, {});
    EXPECT_GT(mp3.size(), 0U);
}

TEST(modLAMETest, FloatsAndSixteenBitsOfTheSameSoundAreTheSameBytes) {
    const std::vector<std::int16_t> values = steps(sine(440, 20'000));
    std::vector<float> floats;
    for (const std::int16_t value : values)
        floats.push_back(static_cast<float>(value) / 32768.0F);
    for (const std::int32_t mode : {kJointStereo, kMono})
        EXPECT_TRUE(encoded<std::int16_t>({.nMode = mode}, values) ==
                    encoded<float>({.nMode = mode}, floats));
}

TEST(modLAMETest, WhatIsNoNumberIsSilenceAndWhatIsTooLoudFullScale) {
    std::vector<float> wild = sine(440, 20'000);
    std::vector<float> tame = wild;
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const auto put = [&](std::size_t place, float is, float counts) {
        wild[place] = is;
        tame[place] = counts;
    };
    put(3000, std::numeric_limits<float>::quiet_NaN(), 0);
    put(5000, kInfinity, 1);
    put(7001, -kInfinity, -1);
    put(9000, 1e30F, 1);
    EXPECT_TRUE(encoded<float>({}, wild) == encoded<float>({}, tame));
}

TEST(modLAMETest, AnotherProgramMakesTheSameFramesOfTheSameSettings) {
    // The stock command beside ours: all but the first frame, whose tag names options that the library has
    // not.
    const QTemporaryDir temporary;
    const std::filesystem::path folder = temporary.path().toStdString();
    const std::vector<std::int16_t> values = steps(sine(440, 60'000));
    std::ofstream(folder / "raw", std::ios::binary)
        .write(reinterpret_cast<const char*>(values.data()), static_cast<std::streamsize>(values.size() * 2));
    for (const int bitrate : {128, 224}) {
        const Witness lame =
            ask("lame --quiet -r -s 44.1 --signed --little-endian --bitwidth 16 -m j --noreplaygain -b " +
                std::to_string(bitrate) + " -q 2 '" + (folder / "raw").string() + "' '" +
                (folder / "mp3").string() + "'");
        ASSERT_EQ(lame.exitCode, 0) << lame.output;
        const std::string theirs = bytesOf(folder / "mp3");
        const std::string ours = encoded<std::int16_t>(
            {.dwBitrate = static_cast<std::uint32_t>(bitrate), .nPreset = 10000}, values);
        ASSERT_EQ(ours.size(), theirs.size());
        const std::size_t first = static_cast<std::size_t>(144 * bitrate * 1000 / 44100);
        EXPECT_TRUE(ours.substr(first) == theirs.substr(first)) << bitrate;
    }
}

TEST(modLAMETest, LowBitratesKeepTheRateThatWasAskedFor) {
    const std::vector<float> sound(44'100, 0.25F);
    const std::string mp3 = encoded<float>({.dwSampleRate = 44100, .nMode = kMono, .dwBitrate = 32}, sound);
    const auto third = static_cast<unsigned char>(mp3.at(2));
    EXPECT_EQ(third >> 2U & 3U, 0U) << "44,100 of MPEG 1";
    EXPECT_EQ(static_cast<unsigned char>(mp3.at(1)) & 0xFEU, 0xFAU) << "MPEG 1, layer III";
    EXPECT_EQ(mp3.size() % 104 < 104 ? mp3.substr(0, 200).find("Info") : 0, std::string::npos)
        << "a frame of 104 bytes has no room for the tag";
}
