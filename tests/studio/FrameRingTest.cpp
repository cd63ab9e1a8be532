// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/FrameRing.h"

#include <gmock/gmock.h>

#include <array>
#include <numeric>
#include <thread>

using namespace velmora;

namespace {
std::vector<float> counting(float from, std::size_t frames) {
    std::vector<float> values(2 * frames);
    std::iota(values.begin(), values.end(), from);
    return values;
}
std::vector<float> allOf(FrameRing& ring) {
    std::vector<float> all;
    std::array<float, 6> piece{};
    while (const std::size_t count = ring.pop(piece))
        all.insert(all.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
    return all;
}
} // namespace

TEST(FrameRingTest, WhatGoesInComesOutAlsoAcrossTheEndOfTheRing) {
    FrameRing ring(16);
    std::vector<float> in;
    std::vector<float> out;
    for (std::size_t frames : {3U, 16U, 0U, 7U, 11U, 1U, 15U}) {
        const auto block = counting(static_cast<float>(in.size()), frames);
        ring.push(block);
        in.insert(in.end(), block.begin(), block.end());
        const auto popped = allOf(ring);
        out.insert(out.end(), popped.begin(), popped.end());
    }
    EXPECT_EQ(out, in);
    EXPECT_EQ(ring.lost(), 0);
}

TEST(FrameRingTest, WhatFindsNoRoomIsCountedAndComesOutAsSilenceInItsPlace) {
    FrameRing ring(8);
    ring.push(counting(1, 6));
    ring.push(counting(100, 3)); // no room
    ring.push(counting(200, 5)); // nor here
    ring.push(counting(20, 2));
    EXPECT_EQ(ring.lost(), 8);
    std::vector<float> expected = counting(1, 6);
    expected.insert(expected.end(), 16, 0.0F);
    const auto last = counting(20, 2);
    expected.insert(expected.end(), last.begin(), last.end());
    EXPECT_EQ(allOf(ring), expected);
    ring.push(counting(5, 2));
    EXPECT_EQ(allOf(ring), counting(5, 2));
}

TEST(FrameRingTest, WhatWasLostLastIsSilenceOnceItIsSettled) {
    FrameRing ring(4);
    ring.push(counting(1, 4));
    ring.push(counting(50, 3));
    EXPECT_EQ(allOf(ring), counting(1, 4));
    ring.settle();
    EXPECT_EQ(allOf(ring), std::vector<float>(6, 0.0F));
    ring.settle();
    EXPECT_TRUE(allOf(ring).empty());
}

TEST(FrameRingTest, TwoThreadsMeetInItAndTheTimeStaysTrue) {
    constexpr int kBlocks = 20'000;
    constexpr std::size_t kFrames = 5;
    FrameRing ring(64);
    std::atomic<bool> isThrough{false};
    std::thread pusher([&] {
        for (int i = 0; i < kBlocks; ++i)
            ring.push(counting(static_cast<float>(10 * i + 1), kFrames));
        ring.settle();
        isThrough = true;
    });
    std::vector<float> out;
    for (bool last = false; !last;) {
        last = isThrough;
        const auto popped = allOf(ring);
        out.insert(out.end(), popped.begin(), popped.end());
    }
    pusher.join();
    ASSERT_EQ(out.size(), 2 * kFrames * kBlocks);
    std::int64_t silent = 0;
    for (std::size_t i = 0; i < out.size(); ++i) {
        if (out[i] == 0)
            ++silent;
        else
            ASSERT_EQ(out[i], static_cast<float>(i + 1)) << i;
    }
    EXPECT_EQ(silent, 2 * ring.lost());
}
