// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Mp3Frames.h"

#include "studio/Mp3Labels.h"
#include "tests/studio/SoundBytes.h"

#include <gmock/gmock.h>

#include <random>

using namespace velmora;
using namespace velmora::soundbytes;
using testing::ElementsAre;

namespace {
std::optional<Mp3FrameHeader> header(const std::string& bytes) {
    return mp3FrameHeader({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}
std::optional<Mp3InfoFrame> infoOf(const std::string& frame) {
    return mp3InfoFrame({reinterpret_cast<const std::uint8_t*>(frame.data()), frame.size()}, *header(frame));
}
/// Where the frames of a file begin.
std::vector<std::uint64_t> placesIn(const std::string& bytes) {
    Held held(bytes);
    Mp3Frames frames(held.source);
    std::vector<std::uint64_t> places;
    while (const auto frame = frames.next())
        places.push_back(frame->at);
    EXPECT_EQ(frames.found(), !places.empty());
    return places;
}
int lostIn(const std::string& bytes) {
    Held held(bytes);
    Mp3Frames frames(held.source);
    int lost = 0;
    while (const auto frame = frames.next())
        lost += frame->isLost ? 1 : 0;
    return lost;
}
std::string stream(int frames) {
    std::string bytes;
    for (int i = 0; i < frames; ++i)
        bytes += mp3Frame(kFrameOf128);
    return bytes;
}
/// Bytes in which no frame begins.
std::string junk(std::size_t count) {
    std::mt19937 random(1);
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes += static_cast<char>(random() % 255);
    return bytes;
}
} // namespace

TEST(Mp3FramesTest, AHeaderTellsRateBitrateAndLengthOfItsFrame) {
    struct Row {
        unsigned version;
        unsigned bitrate;
        unsigned rate;
        unsigned mode;
        Mp3FrameHeader is;
    };
    for (const Row& row :
         {Row{3, 9, 0, 0, {44100, 128, 2, 417, 1152, 32}}, Row{3, 1, 1, 3, {48000, 32, 1, 96, 1152, 17}},
          Row{3, 14, 2, 1, {32000, 320, 2, 1440, 1152, 32}}, Row{2, 8, 0, 3, {22050, 64, 1, 208, 576, 9}},
          Row{2, 1, 1, 0, {24000, 8, 2, 24, 576, 17}}, Row{0, 14, 2, 2, {8000, 160, 2, 1440, 576, 17}}}) {
        const auto read = header(mp3Frame(4, row.bitrate, row.rate, row.mode, row.version));
        ASSERT_TRUE(read);
        EXPECT_EQ(read->rate, row.is.rate);
        EXPECT_EQ(read->bitrate, row.is.bitrate);
        EXPECT_EQ(read->channels, row.is.channels);
        EXPECT_EQ(read->bytes, row.is.bytes);
        EXPECT_EQ(read->samples, row.is.samples);
        EXPECT_EQ(read->sideBytes, row.is.sideBytes);
    }
    std::string padded = mp3Frame(4);
    padded[2] |= 2;
    EXPECT_EQ(header(padded)->bytes, 418);
}

TEST(Mp3FramesTest, WhatNoFrameBeginsWithIsRefused) {
    EXPECT_FALSE(header(mp3Frame(4, 15)));
    EXPECT_FALSE(header(mp3Frame(4, 0))) << "a length of its own choice";
    EXPECT_FALSE(header(mp3Frame(4, 9, 3)));
    EXPECT_FALSE(header(mp3Frame(4, 9, 0, 0, 1)));
    EXPECT_FALSE(header("\xFF\xFD\x90\x00")) << "Layer II";
    EXPECT_FALSE(header("\xFF\x7B\x90\x00"));
    EXPECT_FALSE(header("\xFF\xFB\x90\x02")) << "an emphasis that there isn't";
    EXPECT_FALSE(header("\xFF\xFB\x90"));
}

TEST(Mp3FramesTest, AllFramesAreFoundBehindTagsAndJunk) {
    for (const std::string& front :
         {std::string(), junk(10), junk(70'000), id3Head(5) + "12345",
          id3Head(200'000) + std::string(200'000, '\xFF'), id3Head(3) + "abc" + id3Head(4) + "defg",
          id3Head(100) + std::string(100, 'x') + junk(500)}) {
        const std::uint64_t at = front.size();
        EXPECT_THAT(placesIn(front + stream(3)), ElementsAre(at, at + kFrameOf128, at + 2 * kFrameOf128))
            << at;
    }
}

TEST(Mp3FramesTest, ATagThatClaimsMoreThanIsItsOwnHidesNothing) {
    const std::string lies = id3Head(5000) + stream(4) + std::string(4000, '\0');
    EXPECT_EQ(placesIn(lies).size(), 4U);
    EXPECT_EQ(placesIn(id3Head(50'000'000) + stream(4)).size(), 4U);
}

TEST(Mp3FramesTest, TagsBehindAreNoSound) {
    const std::string old = "TAG" + std::string(125, '\0');
    std::string foot = ByteWriter().raw("APETAGEX").number(2000, 4).number(32 + kFrameOf128, 4).text;
    foot += ByteWriter().number(1, 4).number(0, 4).number(0, 8).text;
    const std::string ape = mp3Frame(kFrameOf128) + foot; // looks like a frame, and is no sound
    EXPECT_EQ(placesIn(stream(3) + old).size(), 3U);
    EXPECT_EQ(placesIn(stream(3) + ape).size(), 3U);
    EXPECT_EQ(placesIn(stream(3) + ape + old).size(), 3U);
    EXPECT_EQ(placesIn(stream(3) + junk(1000)).size(), 3U);
}

TEST(Mp3FramesTest, ACutLastFrameIsDropped) {
    const std::string whole = stream(4);
    for (const std::size_t missing : {1U, 200U, 413U, 416U})
        EXPECT_EQ(placesIn(whole.substr(0, whole.size() - missing)).size(), 3U) << missing;
}

TEST(Mp3FramesTest, TheStreamGoesOnBehindDamageAtItsTime) {
    for (const std::string& damage : {std::string(2000, '\0'), std::string(2000, '\xFF'), junk(2000)}) {
        std::string damaged = stream(100);
        damaged.replace(40 * kFrameOf128 + 100, damage.size(), damage);
        EXPECT_EQ(placesIn(damaged).size(), 100U);
        EXPECT_EQ(lostIn(damaged), 5);
    }
    std::string missing = stream(100);
    missing.erase(40 * kFrameOf128 + 100, 2000);
    EXPECT_THAT(placesIn(missing).size(), testing::AllOf(testing::Ge(95U), testing::Le(96U)));
    std::string longer = stream(100);
    longer.insert(40 * kFrameOf128, junk(50'000));
    EXPECT_EQ(lostIn(longer), 0) << "nobody knows what it was";
    EXPECT_EQ(placesIn(longer).size(), 100U);
}

TEST(Mp3FramesTest, ALostFrameCanBeGoneBackTo) {
    std::string damaged = stream(100);
    damaged.replace(40 * kFrameOf128 + 100, 2000, 2000, '\0');
    const std::vector<std::uint64_t> places = placesIn(damaged);
    Held held(damaged);
    Mp3Frames frames(held.source);
    for (std::size_t i = 0; i < places.size(); ++i) {
        frames.moveTo(places[i]);
        for (std::size_t j = i; j < places.size(); ++j) {
            const auto frame = frames.next();
            ASSERT_TRUE(frame);
            ASSERT_NEAR(static_cast<double>(frame->at), static_cast<double>(places[j]),
                        frame->isLost ? 1 : 0);
        }
        EXPECT_FALSE(frames.next());
    }
}

TEST(Mp3FramesTest, AFileBehindAFileIsHeardAsWell) {
    const std::string both =
        stream(3) + "TAG" + std::string(125, '\0') + id3Head(9000) + std::string(9000, '\xFF') + stream(2);
    EXPECT_EQ(placesIn(both).size(), 5U);
    EXPECT_EQ(placesIn(stream(3) + mp3Frame(kFrameOf128, 9, 0, 3) + stream(1)).size(), 5U)
        << "mono in between";
}

TEST(Mp3FramesTest, WithoutTwoFramesThatFollowEachOtherThereIsNone) {
    EXPECT_THAT(placesIn(""), testing::IsEmpty());
    EXPECT_THAT(placesIn(stream(1)), testing::IsEmpty());
    EXPECT_THAT(placesIn(stream(1) + "x" + stream(1)), testing::IsEmpty());
    EXPECT_THAT(placesIn(stream(1) + mp3Frame(kFrameOf128, 9, 1)), testing::IsEmpty()) << "of another rate";
    EXPECT_THAT(placesIn(junk(300'000)), testing::IsEmpty());
    EXPECT_EQ(placesIn(stream(2)).size(), 2U);
}

TEST(Mp3FramesTest, PairsAreFoundWhereverTheyStand) {
    // Also across the pieces in which a file is looked through.
    for (std::size_t at = 32'768 - 1500; at < 32'768 + 10; at += 13)
        EXPECT_THAT(placesIn(junk(at) + stream(2)), ElementsAre(at, at + kFrameOf128));
}

TEST(Mp3FramesTest, HostileBytesAreLookedThroughOnce) {
    // Every fourth byte begins a frame that nothing follows.
    std::string bytes;
    while (bytes.size() < 8'000'000)
        bytes += std::string_view("\xFF\xFB\xE4\0\xFF\xFB\xD0\0", 8);
    const auto before = std::chrono::steady_clock::now();
    placesIn(bytes);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(8));
}

TEST(Mp3FramesTest, TheInfoFrameTellsFramesDelayAndPadding) {
    std::string frame = mp3Frame(kFrameOf128);
    EXPECT_FALSE(infoOf(frame));
    std::string info = ByteWriter(true).raw("Info").number(15, 4).number(123, 4).number(0, 4).text;
    info += std::string(100, '\0') + std::string(4, '\0') + "LAME3.100" + std::string(12, '\0');
    info += std::string_view("\x24\x05\x0C", 3); // 576, 1292
    frame.replace(36, info.size(), info);
    const auto read = infoOf(frame);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->frames, 123);
    EXPECT_EQ(read->delay, 576);
    EXPECT_EQ(read->padding, 1292);
    EXPECT_FALSE(infoOf(frame.substr(0, 170))->delay);

    frame.replace(36, 200, 200, '\0');
    frame.replace(36, 8, std::string_view("Xing\0\0\0\0", 8));
    EXPECT_EQ(infoOf(frame)->frames, 0);
    EXPECT_FALSE(infoOf(frame)->delay);
    frame.replace(36, 4, "VBRI");
    EXPECT_TRUE(infoOf(frame));
}

TEST(Mp3FramesTest, LabelsAreThoseOfTheFirstFrameBehindTags) {
    QTemporaryDir temporary;
    const std::filesystem::path path = temporary.path().toStdString() + "/a.mp3";
    struct Row {
        unsigned version, bitrate, rate, mode;
        std::size_t length;
        Mp3Labels labels;
    };
    for (const Row& row :
         {Row{3, 9, 0, 0, 417, {"44", "stereo", "128"}}, Row{3, 12, 1, 1, 672, {"48", "stereo", "224"}},
          Row{3, 1, 2, 3, 144, {"32", "mono", "32"}}, Row{2, 8, 0, 2, 208, {"22", "stereo", "64"}}}) {
        const std::string frame = mp3Frame(row.length, row.bitrate, row.rate, row.mode, row.version);
        for (const std::string& front :
             {std::string(), id3Head(5000) + std::string(5000, '\xFF'), junk(99)}) {
            writeFile(path, front + frame + frame);
            EXPECT_EQ(ReadMp3Header(path), row.labels);
        }
    }
    writeFile(path, junk(5000));
    EXPECT_FALSE(ReadMp3Header(path));
    EXPECT_FALSE(ReadMp3Header(path.string() + ".none"));
}
