// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/PerformanceSound.h"

#include "../sound/TestSound.h"
#include "sound/ShortMessage.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::testsound;

namespace {
constexpr int kOrgan = 16;
constexpr int kA4 = 69;

std::vector<float> sounded(const std::vector<TimedMessage>& messages, std::int64_t from = 0) {
    const auto engine = makeEngine();
    PerformanceSound sound(*engine, messages, kRate, from);
    EXPECT_EQ(sound.frame(), from);
    std::vector<float> samples;
    for (auto stretch = sound.next(); !stretch.empty(); stretch = sound.next()) {
        samples.insert(samples.end(), stretch.begin(), stretch.end());
        EXPECT_EQ(sound.frame(), from + static_cast<std::int64_t>(samples.size() / 2));
    }
    EXPECT_TRUE(sound.next().empty()) << "the end is the end";
    return samples;
}

std::vector<TimedMessage> organAt(double seconds) {
    return {{0, shortmessage::programChange(0, kOrgan)},
            {seconds, shortmessage::noteOn(0, kA4, 127)},
            {seconds + 0.5, shortmessage::noteOff(0, kA4)}};
}
} // namespace

TEST(PerformanceSoundTest, APlaceInTheMidstSoundsAtItsOwnMoment) {
    for (const std::int64_t from : {44'100, 44'101, 44'163, 44'160}) {
        const std::vector<float> sound = sounded(organAt(1.5), from);
        const auto before = static_cast<std::size_t>(66'150 / 64 * 64 - from);
        EXPECT_LT(peak(std::span(sound).first(2 * before)), kSilence);
        EXPECT_GT(peak(std::span(sound).subspan(2 * before, 2 * 200)), kSilence);
        EXPECT_EQ(
            strongest(std::span(sound).subspan(2 * before, 2 * 20'000), {415.3, 427.5, 440.0, 452.9, 466.2}),
            440.0);
    }
}

TEST(PerformanceSoundTest, WhatWasChosenBeforeAPlaceHoldsThere) {
    using namespace shortmessage;
    const std::vector<TimedMessage> chosen{
        {0, programChange(0, 11)},        {0.1, controller(0, 101, 0)}, {0.1, controller(0, 100, 0)},
        {0.1, controller(0, 6, 7)}, // a fifth of bend
        {0.2, pack(0xE0, 0, 0x7F, 0x7F)}, {0.3, controller(0, 7, 90)},  {0.4, programChange(0, kOrgan)},
        {0.5, noteOn(0, 50, 127)},        {0.6, noteOff(0, 50)}};
    std::vector<TimedMessage> music = chosen;
    music.push_back({2, noteOn(0, kA4, 127)});
    music.push_back({3, noteOff(0, kA4)});
    const std::vector<float> sound = sounded(music, 44'100);
    EXPECT_LT(peak(std::span(sound).first(2 * 44'000)), kSilence) << "a note from before was begun";
    EXPECT_EQ(
        strongest(std::span(sound).subspan(2 * 45'000, 2 * 30'000), {440.0, 493.9, 622.3, 659.3, 698.5}),
        659.3);

    // Sample for sample what the same choices give that are made at that very place.
    std::vector<TimedMessage> there{{0, programChange(0, kOrgan)},
                                    {0, controller(0, 101, 0)},
                                    {0, controller(0, 100, 0)},
                                    {0, controller(0, 6, 7)},
                                    {0, pack(0xE0, 0, 0x7F, 0x7F)},
                                    {0, controller(0, 7, 90)},
                                    {2 - 44'096 / 44'100.0, noteOn(0, kA4, 127)},
                                    {3 - 44'096 / 44'100.0, noteOff(0, kA4)}};
    const std::vector<float> same = sounded(there);
    ASSERT_GT(same.size(), 8U);
    EXPECT_TRUE(std::equal(sound.begin(), sound.end(), same.begin() + 8, same.end()))
        << "44,100 is four frames into its grid block";
}

TEST(PerformanceSoundTest, APlaceBehindTheLastMessageIsAShortSilence) {
    const std::vector<float> sound = sounded(organAt(0), 200'000);
    EXPECT_LT(sound.size(), 2U * 20'000);
    EXPECT_LT(peak(sound), kSilence);
}

TEST(PerformanceSoundTest, ItEndsWhereItIsAskedTo) {
    const auto engine = makeEngine();
    const std::vector<TimedMessage> music = organAt(1'000);
    PerformanceSound sound(*engine, music, kRate);
    std::stop_source stop;
    EXPECT_FALSE(sound.next(stop.get_token()).empty());
    stop.request_stop();
    EXPECT_TRUE(sound.next(stop.get_token()).empty());
    EXPECT_LT(sound.frame(), 10'000);
}
