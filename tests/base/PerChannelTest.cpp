// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/PerChannel.h"

#include <gtest/gtest.h>

#include <limits>
#include <span>
#include <string>
#include <thread>

using namespace velmora;

namespace {
constexpr int kNoChannels[] = {-1, 13, 16, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};

TEST(PerChannelTest, EachChannelKeepsItsOwnValue) {
    PerChannel<int, 13> values;
    for (int channel = 0; channel < 13; ++channel)
        values[channel] = channel * channel;
    for (int channel = 0; channel < 13; ++channel)
        EXPECT_EQ(values[channel], channel * channel);
}

TEST(PerChannelTest, AChannelHoldsTheTypesOwnValueUntilItIsSet) {
    EXPECT_EQ(PerChannel<int>()[15], 0);
    EXPECT_EQ((PerChannel<int*, 8>()[7]), nullptr);
    EXPECT_EQ(PerChannel<std::string>()[3], "");
}

TEST(PerChannelTest, WhatIsWrittenOutsideChangesNoChannelAndIsForgotten) {
    PerChannel<int, 13> values;
    values.fill(7);
    const PerChannel<int, 13> before = values;
    for (const int channel : kNoChannels) {
        values[channel] = 99;
        EXPECT_EQ(values[channel], 0) << channel;
    }
    EXPECT_EQ(values, before);
}

TEST(PerChannelTest, WhatIsReadOutsideIsTheTypesOwnValue) {
    PerChannel<std::string, 13> values;
    values.fill("a name");
    for (const int channel : kNoChannels) {
        values[channel] = "nowhere";
        EXPECT_EQ(std::as_const(values)[channel], "") << channel;
    }
}

TEST(PerChannelTest, AnotherThreadsWritesOutsideAreNotSeen) {
    PerChannel<int> values;
    int& here = values[16];
    here = 1;
    std::thread([&] { values[16] = 2; }).join();
    EXPECT_EQ(here, 1);
}

TEST(PerChannelTest, ChannelsAreThoseFromZeroToTheLast) {
    using Melody = PerChannel<bool, 8>;
    EXPECT_TRUE(Melody::contains(0));
    EXPECT_TRUE(Melody::contains(7));
    EXPECT_FALSE(Melody::contains(8));
    EXPECT_FALSE(Melody::contains(-1));
    EXPECT_FALSE(Melody::contains(std::numeric_limits<int>::min()));
    EXPECT_EQ(Melody::size(), 8U);
}

TEST(PerChannelTest, TwoAreEqualIfEveryChannelIs) {
    PerChannel<int> one{1, 2, 3};
    const PerChannel<int> other{1, 2, 3};
    EXPECT_EQ(one, other);
    one[15] = 1;
    EXPECT_NE(one, other);
}

TEST(PerChannelTest, AWalkMeetsEveryChannelInOrder) {
    PerChannel<int, 3> values{4, 5, 6};
    std::string met;
    for (int& value : values)
        met += std::to_string(value++);
    EXPECT_EQ(met, "456");
    EXPECT_EQ(values, (PerChannel<int, 3>{5, 6, 7}));
}

TEST(PerChannelTest, ItsChannelsLieSideBySide) {
    PerChannel<int> values;
    const std::span<int> row(values);
    ASSERT_EQ(row.size(), 16U);
    row[5] = 9;
    EXPECT_EQ(values[5], 9);
}

TEST(PerChannelTest, ATableOfChannelsIsReadWhileCompiling) {
    static constexpr PerChannel<int, 3> kTable{7, 8, 9};
    static_assert(kTable[2] == 9);
    EXPECT_EQ(kTable[3], 0);
}
} // namespace
