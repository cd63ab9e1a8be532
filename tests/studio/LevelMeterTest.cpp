// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/LevelMeter.h"

#include <gmock/gmock.h>

#include <limits>

using namespace velmora;

namespace {
/// So many seconds of these values, in blocks.
void hear(LevelMeter& meter, float left, float right, double seconds) {
    std::vector<float> block;
    for (int i = 0; i < 441; ++i)
        block.insert(block.end(), {left, right});
    for (int i = 0; i < static_cast<int>(seconds * 100); ++i)
        meter.hear(block);
}
} // namespace

TEST(LevelMeterTest, EachSideShowsItsHighestValueAtOnce) {
    LevelMeter meter;
    meter.hear(std::vector<float>{0.1F, 0, -0.7F, 0.2F, 0.3F, -0.25F});
    EXPECT_EQ(meter.levels().peak, (std::array{0.7F, 0.25F}));
    EXPECT_EQ(meter.levels().held, (std::array{0.7F, 0.25F}));
    EXPECT_EQ(meter.levels().clipped, (std::array{false, false}));
}

TEST(LevelMeterTest, ItFallsBy20DecibelsASecondAndHoldsForASecondAndAHalf) {
    LevelMeter meter;
    hear(meter, 0.8F, 0.8F, 0.1);
    hear(meter, 0, 0, 1);
    EXPECT_NEAR(meter.levels().peak[0], 0.08, 0.001);
    EXPECT_EQ(meter.levels().held[0], 0.8F);
    hear(meter, 0, 0.01F, 0.6);
    EXPECT_LT(meter.levels().held[0], 0.1);
    hear(meter, 0, 0.01F, 4);
    EXPECT_NEAR(meter.levels().held[0], 0, 1e-3);
    EXPECT_NEAR(meter.levels().held[1], 0.01, 1e-3);
    hear(meter, 0, 0, 10);
    EXPECT_EQ(meter.levels().peak[0], 0);
}

TEST(LevelMeterTest, TheLampsLightAtTheLast16BitValueAndStayLitUntilTheyArePutOut) {
    LevelMeter meter;
    meter.hear(std::vector<float>{32766.0F / 32768, -32766.0F / 32768});
    EXPECT_EQ(meter.levels().clipped, (std::array{false, false}));
    meter.hear(std::vector<float>{0, -32767.0F / 32768});
    EXPECT_EQ(meter.levels().clipped, (std::array{false, true}));
    hear(meter, 0, 0, 3);
    EXPECT_EQ(meter.levels().clipped, (std::array{false, true}));
    meter.putOutLamps();
    EXPECT_EQ(meter.levels().clipped, (std::array{false, false}));
}

TEST(LevelMeterTest, WhatIsNoNumberIsSilent) {
    LevelMeter meter;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    meter.hear(std::vector<float>{nan, 0.5F, 0.25F, nan});
    EXPECT_EQ(meter.levels().peak, (std::array{0.25F, 0.5F}));
}
