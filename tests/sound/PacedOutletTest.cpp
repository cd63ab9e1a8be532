// SPDX-License-Identifier: GPL-2.0-or-later
#include "sound/PacedOutlet.h"

#include "base/SteadyClock.h"
#include "sound/ShortMessage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <stdexcept>

using namespace velmora;
using namespace velmora::shortmessage;
using testing::ElementsAre;

namespace {
using Bytes = std::vector<unsigned char>;

/// A sink that records. Read it after its outlet has ended.
struct Record {
    std::vector<Bytes> messages;
    std::vector<double> moments;

    PacedOutlet::Sink sink() {
        return [this](std::span<const unsigned char> bytes) {
            messages.emplace_back(bytes.begin(), bytes.end());
            moments.push_back(steadySeconds());
        };
    }
};
} // namespace

TEST(PacedOutletTest, ProgramChangeAndChannelPressureAreTwoBytesAndAllElseIsThree) {
    Record record;
    {
        PacedOutlet outlet(record.sink());
        for (const std::uint32_t word : {noteOn(1, 60, 90), noteOff(1, 60), kDrumBank, pack(0xD0, 2, 5),
                                         controller(3, 7, 100), pack(0xE0, 4, 1, 64), pack(0xA0, 5, 60, 3)})
            EXPECT_TRUE(outlet.send(word));
    }
    EXPECT_THAT(record.messages,
                ElementsAre(Bytes{0x91, 60, 90}, Bytes{0x81, 60, 0}, Bytes{0xC9, 0}, Bytes{0xD2, 5},
                            Bytes{0xB3, 7, 100}, Bytes{0xE4, 1, 64}, Bytes{0xA5, 60, 3}));
}

TEST(PacedOutletTest, WhatWasSentBeforeTheEndGoesOutWholeAndInOrder) {
    Record record;
    {
        PacedOutlet outlet(record.sink());
        for (int i = 0; i < 1000; ++i)
            ASSERT_TRUE(outlet.send(noteOn(0, i % 128, 1 + i / 128)));
    }
    ASSERT_EQ(record.messages.size(), 1000U);
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(record.messages[i], (Bytes{0x90, static_cast<unsigned char>(i % 128),
                                             static_cast<unsigned char>(1 + i / 128)}));
}

TEST(PacedOutletTest, BeyondABurstMessagesKeepTheirPace) {
    Record record;
    {
        PacedOutlet outlet(record.sink(), {.burst = 10, .secondsEach = 0.002});
        for (int i = 0; i < 60; ++i)
            ASSERT_TRUE(outlet.send(noteOn(0, i, 90)));
    }
    ASSERT_EQ(record.moments.size(), 60U);
    // The pace holds over any stretch: after a burst no message may come before its time.
    for (int i = 10; i < 60; ++i)
        EXPECT_GE(record.moments[i] - record.moments[0], (i - 10) * 0.002) << i;
}

TEST(PacedOutletTest, AFullQueueDropsAndSaysSo) {
    std::promise<void> goOn;
    std::atomic<int> taken = 0;
    {
        PacedOutlet outlet(
            [&, wait = goOn.get_future().share()](std::span<const unsigned char>) {
                wait.wait();
                ++taken;
            },
            {.burst = 100000, .secondsEach = 0.000001});
        for (std::size_t i = 0; i < MidiOutlet::kQueueLength; ++i)
            ASSERT_TRUE(outlet.send(noteOff(0, 60)));
        EXPECT_EQ(outlet.room(), 0U);
        EXPECT_FALSE(outlet.send(noteOff(0, 60)));
        goOn.set_value();
    }
    EXPECT_EQ(taken, static_cast<int>(MidiOutlet::kQueueLength));
}

TEST(PacedOutletTest, ASinkThatThrowsLosesItsMessageAndNoOther) {
    int calls = 0;
    {
        PacedOutlet outlet([&](std::span<const unsigned char>) {
            if (++calls == 2)
                throw std::runtime_error("unplugged");
        });
        for (int i = 0; i < 5; ++i)
            ASSERT_TRUE(outlet.send(noteOff(0, i)));
    }
    EXPECT_EQ(calls, 5);
}
