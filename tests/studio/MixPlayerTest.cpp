// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/MixPlayer.h"

#include "sound/AudioDriver.h"
#include "tests/studio/TestMixes.h"

#include <gmock/gmock.h>

#include <chrono>
#include <random>

using namespace velmora;
using namespace velmora::testmixes;

namespace {

/// Each frame of the mix another value, within 16 bits; never 0.
float valueOf(std::int64_t frame) {
    return static_cast<float>(frame * 7919 % 30'000 + 1) / 32768;
}

std::vector<float> frames(std::int64_t from, std::int64_t to) {
    std::vector<float> samples;
    for (std::int64_t frame = from; frame < to; ++frame)
        samples.insert(samples.end(), {valueOf(frame), -valueOf(frame)});
    return samples;
}
std::vector<float> silence(std::int64_t count) {
    return std::vector<float>(2 * static_cast<std::size_t>(count));
}
std::vector<float> operator+(std::vector<float> a, const std::vector<float>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

/// Numbered frames.
struct NumberedFrames : FrameSource {
    explicit NumberedFrames(std::int64_t frames, int ownRate = kAudioRate)
        : count(frames)
        , told(frames)
        , own(ownRate) {}

    [[nodiscard]] int rate() const override { return own; }
    [[nodiscard]] std::int64_t length() const override { return told * own / kAudioRate; }
    void seek(std::int64_t frame) override {
        at = frame * kAudioRate / own;
        words.clear();
        ++seeks;
    }
    std::size_t read(std::span<float> interleaved, const std::stop_token& /*cancel*/) override {
        std::this_thread::sleep_for(delay);
        const std::int64_t wanted = static_cast<std::int64_t>(interleaved.size() / 2);
        const std::int64_t got = std::min(wanted, std::max<std::int64_t>(count - at, 0));
        const std::vector<float> sound = frames(at, at + got);
        std::ranges::copy(sound, interleaved.begin());
        at += got;
        if (got < wanted) {
            if (failsAtEnd)
                words = "the disk is on fire";
            told = failsAtEnd ? told : count;
        }
        return static_cast<std::size_t>(got);
    }
    [[nodiscard]] std::string problem() const override { return words; }

    std::int64_t count; ///< of the mix
    std::int64_t told;
    int own;
    std::int64_t at = 0;
    int seeks = 0;
    bool failsAtEnd = false;
    std::chrono::microseconds delay{0};
    std::string words;
};

struct MixPlayerTest : testing::Test {
    HeardMix mix;
    NumberedFrames* source = nullptr; ///< the player's
    std::unique_ptr<MixPlayer> player;

    void open(std::int64_t count, int rate = kAudioRate) {
        auto numbered = std::make_unique<NumberedFrames>(count, rate);
        source = numbered.get();
        player = std::make_unique<MixPlayer>(std::move(numbered), mix);
    }
};

struct LiveMixPlayerTest : testing::Test {
    HastyMix mix;

    std::unique_ptr<MixPlayer> open(std::int64_t count, std::chrono::microseconds delay = {}) {
        auto numbered = std::make_unique<NumberedFrames>(count);
        numbered->delay = delay;
        return std::make_unique<MixPlayer>(std::move(numbered), mix);
    }
    void expectCleanAudioThread() {
        EXPECT_EQ(mix.memoryCalls, 0U);
        EXPECT_EQ(mix.locks, 0U);
    }
};

bool standsStill(const MixPlayer& player) {
    return player.mode() == MediaMode::Stopped;
}

} // namespace

TEST_F(MixPlayerTest, ARangeSoundsFrameForFrameAndThenNothing) {
    open(100'000);
    EXPECT_EQ(player->mode(), MediaMode::Stopped);
    ASSERT_TRUE(player->play(300, 70'300));
    EXPECT_EQ(player->mode(), MediaMode::Playing);
    mix.advance(80'000);
    EXPECT_TRUE(mix.heard() == frames(300, 70'300) + silence(10'000));
    EXPECT_EQ(player->mode(), MediaMode::Stopped);
    EXPECT_EQ(player->position(), 70'300);
}

TEST_F(MixPlayerTest, AllOfItEndsAtItsLength) {
    open(4'096); // as many as are read at once
    ASSERT_TRUE(player->play(0, player->length()));
    mix.advance(5'000);
    EXPECT_EQ(player->position(), 4'096);
    EXPECT_EQ(player->problem(), "");
    ASSERT_TRUE(player->play(0, 1'000'000)) << "again, to beyond the end";
    mix.advance(5'000);
    EXPECT_TRUE(mix.heard() == frames(0, 4'096) + silence(904) + frames(0, 4'096) + silence(904));
}

TEST_F(MixPlayerTest, RangesThatFollowEachOtherAreReadInOneGo) {
    open(100'000);
    for (const std::int64_t to : {1'000, 1'024, 30'000}) {
        const std::int64_t from = player->position();
        ASSERT_TRUE(player->play(from, to));
        mix.advance(to - from);
        EXPECT_EQ(player->position(), to);
    }
    EXPECT_TRUE(mix.heard() == frames(0, 30'000));
    EXPECT_EQ(source->seeks, 0);
}

TEST_F(MixPlayerTest, ThePositionIsThatOfTheNextFrame) {
    open(100'000);
    ASSERT_TRUE(player->play(500, 100'000));
    EXPECT_EQ(player->position(), 500);
    mix.advance(1'234);
    EXPECT_EQ(player->position(), 1'734);
}

TEST_F(MixPlayerTest, WhatHasAnotherRateCountsInItsOwn) {
    open(40'000, kAudioRate / 2);
    EXPECT_EQ(player->rate(), 22'050);
    EXPECT_EQ(player->length(), 20'000);
    ASSERT_TRUE(player->play(1'000, 3'000));
    mix.advance(1'000);
    EXPECT_EQ(player->position(), 1'500);
    mix.advance(4'000);
    EXPECT_EQ(player->position(), 3'000);
    EXPECT_TRUE(mix.heard() == frames(2'000, 6'000) + silence(1'000));
}

TEST_F(MixPlayerTest, APauseIsSilentAndLosesNothing) {
    open(100'000);
    ASSERT_TRUE(player->play(0, 100'000));
    mix.advance(1'000);
    ASSERT_TRUE(player->pause());
    EXPECT_EQ(player->mode(), MediaMode::Paused);
    mix.advance(3'000);
    EXPECT_EQ(player->position(), 1'000);
    ASSERT_TRUE(player->resume());
    EXPECT_EQ(player->mode(), MediaMode::Playing);
    mix.advance(2'000);
    mix.advance(1'000);
    EXPECT_TRUE(mix.heard() == frames(0, 1'000) + silence(3'000) + frames(1'000, 4'000));
}

TEST_F(MixPlayerTest, AStopLeavesItWhereItWas) {
    open(100'000);
    ASSERT_TRUE(player->play(0, 100'000));
    mix.advance(1'000);
    ASSERT_TRUE(player->stop());
    EXPECT_EQ(player->mode(), MediaMode::Stopped);
    mix.advance(500);
    EXPECT_EQ(player->position(), 1'000);
    ASSERT_TRUE(player->play(player->position(), 1'500));
    mix.advance(1'000);
    EXPECT_TRUE(mix.heard() == frames(0, 1'000) + silence(500) + frames(1'000, 1'500) + silence(500));
}

TEST_F(MixPlayerTest, WhatFindsNothingToDoFails) {
    open(1'000);
    EXPECT_FALSE(player->pause());
    EXPECT_FALSE(player->resume());
    EXPECT_FALSE(player->stop());
    ASSERT_TRUE(player->play(0, 1'000));
    EXPECT_FALSE(player->resume());
    ASSERT_TRUE(player->pause());
    EXPECT_FALSE(player->pause());
    ASSERT_TRUE(player->stop()) << "also out of a pause";
    EXPECT_FALSE(player->stop());
    EXPECT_FALSE(player->resume());
    ASSERT_TRUE(player->play(0, 10));
    mix.advance(100);
    EXPECT_FALSE(player->pause()) << "it is through";
    EXPECT_FALSE(player->stop());
}

TEST_F(MixPlayerTest, RangesOfNothingAreRefused) {
    open(1'000);
    EXPECT_FALSE(player->play(10, 10));
    EXPECT_FALSE(player->play(10, 9));
    EXPECT_FALSE(player->play(1'000, 2'000));
    EXPECT_EQ(player->mode(), MediaMode::Stopped);
    EXPECT_TRUE(player->play(999, 2'000));
}

TEST_F(MixPlayerTest, ALengthThatComesOutLaterIsPlayedToItsEnd) {
    auto numbered = std::make_unique<NumberedFrames>(9'000);
    numbered->told = 5'000;
    player = std::make_unique<MixPlayer>(std::move(numbered), mix);
    EXPECT_EQ(player->length(), 5'000);
    ASSERT_TRUE(player->play(0, 5'000));
    mix.advance(10'000);
    EXPECT_TRUE(mix.heard() == frames(0, 9'000) + silence(1'000));
    EXPECT_EQ(player->length(), 9'000);
    EXPECT_EQ(player->position(), 9'000);
}

TEST_F(MixPlayerTest, ASourceThatFailsIsToldAndStandsWhereItStopped) {
    open(9'000);
    source->count = 5'000;
    source->failsAtEnd = true;
    ASSERT_TRUE(player->play(0, 9'000));
    mix.advance(10'000);
    EXPECT_EQ(player->mode(), MediaMode::Stopped);
    EXPECT_EQ(player->problem(), "the disk is on fire");
    EXPECT_EQ(player->position(), 5'000);
    source->count = 9'000;
    source->failsAtEnd = false;
    ASSERT_TRUE(player->play(5'000, 9'000)) << "it may be well again";
    EXPECT_EQ(player->problem(), "");
    mix.advance(4'500);
    EXPECT_TRUE(mix.heard() == frames(0, 5'000) + silence(5'000) + frames(5'000, 9'000) + silence(500));
}

TEST_F(MixPlayerTest, TwoSoundTogether) {
    open(1'000);
    MixPlayer other(std::make_unique<NumberedFrames>(500), mix);
    ASSERT_TRUE(player->play(0, 1'000));
    ASSERT_TRUE(other.play(0, 1));
    mix.advance(2);
    EXPECT_EQ(mix.heard(), (std::vector{2 * valueOf(0), -2 * valueOf(0), valueOf(1), -valueOf(1)}));
}

TEST_F(MixPlayerTest, TooManyAreRefusedInWords) {
    std::vector<std::unique_ptr<MixPlayer>> players;
    for (int i = 0; i < 33; ++i)
        players.push_back(std::make_unique<MixPlayer>(std::make_unique<NumberedFrames>(100), mix));
    for (int i = 0; i < 32; ++i)
        EXPECT_TRUE(players[static_cast<std::size_t>(i)]->play(0, 100)) << i;
    EXPECT_FALSE(players.back()->play(0, 100));
    EXPECT_EQ(players.back()->mode(), MediaMode::Stopped);
    EXPECT_THAT(players.back()->problem(), testing::HasSubstr("Too many"));
    players.front().reset();
    EXPECT_TRUE(players.back()->play(0, 100));
}

TEST_F(LiveMixPlayerTest, AllSoundsFrameForFrameThoughAudioThreadAndDiskNeverMeet) {
    const auto player = open(200'000);
    ASSERT_TRUE(player->play(0, 200'000));
    ASSERT_TRUE(within(10, [&] { return standsStill(*player); }));
    EXPECT_EQ(player->position(), 200'000);
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // what the limiter holds
    EXPECT_TRUE(mix.heard() == frames(0, 200'000));
    EXPECT_TRUE(mix.isSilent());
    expectCleanAudioThread();
}

TEST_F(LiveMixPlayerTest, WhatIsNotThereInTimeIsSilenceAndComesLater) {
    const auto player = open(50'000, std::chrono::milliseconds(30)); // 4,096 frames each
    ASSERT_TRUE(player->play(0, 50'000));
    ASSERT_TRUE(within(10, [&] { return standsStill(*player); }));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_TRUE(mix.heard() == frames(0, 50'000));
    EXPECT_GT(mix.samples().size(), 2U * 60'000) << "it was never late, so this shows nothing";
    expectCleanAudioThread();
}

TEST(LiveMixPlayerPauseTest, BreakingOffEndsInSilenceWithoutAJump) {
    struct Loud : NumberedFrames {
        using NumberedFrames::NumberedFrames;
        std::size_t read(std::span<float> interleaved, const std::stop_token& /*cancel*/) override {
            std::ranges::fill(interleaved, 0.75F);
            return interleaved.size() / 2;
        }
    };
    HastyMix mix(
        std::chrono::milliseconds(20)); // slow enough for the reading thread, so that nothing is late
    MixPlayer player(std::make_unique<Loud>(10'000'000), mix);
    ASSERT_TRUE(player.play(0, 10'000'000));
    ASSERT_TRUE(within(5, [&] { return player.position() > 10'000; }));
    ASSERT_TRUE(player.pause());
    const std::int64_t stood = player.position();
    const std::int64_t rendered = mix.frames();
    ASSERT_TRUE(within(5, [&] { return mix.frames() > rendered + 4'000; }));
    EXPECT_EQ(player.position(), stood);
    const std::vector<float>& samples = mix.samples();
    float fall = 0;
    for (std::size_t i = 2; i < samples.size(); i += 2)
        fall = std::max(fall, samples[i - 2] - samples[i]);
    EXPECT_GT(fall, 0);
    EXPECT_LT(fall, 0.01F);
    EXPECT_EQ(samples.back(), 0);
    EXPECT_EQ(std::ranges::count(samples, 0.75F), 2 * stood) << "each frame as it is, and none lost";
    EXPECT_TRUE(mix.isSilent());
    EXPECT_EQ(mix.memoryCalls, 0U);
    EXPECT_EQ(mix.locks, 0U);
}

TEST_F(LiveMixPlayerTest, AnotherPlaceIsHeardFromItsFirstFrameOn) {
    const auto player = open(1'000'000);
    ASSERT_TRUE(player->play(0, 300));
    ASSERT_TRUE(within(5, [&] { return standsStill(*player); }));
    ASSERT_TRUE(player->play(500'000, 500'300));
    ASSERT_TRUE(within(5, [&] { return standsStill(*player); }));
    ASSERT_TRUE(player->play(500'300, 500'400));
    ASSERT_TRUE(within(5, [&] { return standsStill(*player); }));
    EXPECT_EQ(player->position(), 500'400);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_TRUE(mix.heard() == frames(0, 300) + frames(500'000, 500'400));
    expectCleanAudioThread();
}

TEST_F(LiveMixPlayerTest, AnythingMayComeAtAnyTime) {
    std::minstd_rand random(5);
    std::vector<std::unique_ptr<MixPlayer>> players;
    for (int i = 0; i < 3; ++i)
        players.push_back(open(100'000));
    for (int step = 0; step < 300; ++step) {
        auto& player = players[random() % 3];
        const auto from = static_cast<std::int64_t>(random() % 100'000);
        switch (random() % 8) {
        case 0:
            player = open(100'000, std::chrono::microseconds(random() % 300));
            break;
        case 1:
            if (player->pause()) {
                EXPECT_NE(player->mode(), MediaMode::Playing);
            }
            break;
        case 2:
            if (player->resume()) {
                EXPECT_NE(player->mode(), MediaMode::Paused);
            }
            break;
        case 3:
            (void)player->stop();
            EXPECT_EQ(player->mode(), MediaMode::Stopped);
            break;
        default:
            EXPECT_TRUE(player->play(from, from + 1 + static_cast<std::int64_t>(random() % 20'000)));
        }
        EXPECT_LE(player->position(), player->length());
        EXPECT_EQ(player->problem(), "");
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 2'000));
    }
    players.clear();
    expectCleanAudioThread();
}
