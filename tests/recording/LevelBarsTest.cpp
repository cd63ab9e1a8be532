// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/LevelBars.h"

#include "shell/Appearance.h"
#include "shell/SkinPainter.h"

#include <QtTest>
#include <QtWidgets>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr QSize kSize(18, 80);

struct Counted : LevelBars {
    using LevelBars::LevelBars;
    int paints = 0;
    QRegion painted;

protected:
    void paintEvent(QPaintEvent* event) override {
        ++paints;
        painted = event->region();
        LevelBars::paintEvent(event);
    }
};

class LevelBarsTest : public testing::Test {
protected:
    LevelBarsTest() {
        bars.resize(kSize);
        bars.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&bars));
        settle();
    }
    int settle() {
        QApplication::processEvents();
        return std::exchange(bars.paints, 0);
    }
    QColor at(int x, int y) { return bars.grab().toImage().pixelColor(x, y); }
    [[nodiscard]] QColor accent() const { return toQColor(look.skin().accent); }
    [[nodiscard]] QColor red() const { return toQColor(recordRed(look.skin())); }

    Appearance look;
    Counted bars{look, nullptr};
};
constexpr int kLeft = 5;
constexpr int kRight = 13;
constexpr int kFoot = 77;
constexpr int kLamp = 4;
} // namespace

TEST_F(LevelBarsTest, ABarReachesFromSixtyDecibelsToFullScale) {
    EXPECT_EQ(LevelBars::shareOf(0), 0);
    EXPECT_EQ(LevelBars::shareOf(-1), 0);
    EXPECT_EQ(LevelBars::shareOf(0.0005F), 0) << "below";
    EXPECT_NEAR(LevelBars::shareOf(0.1F), 2.0 / 3, 1e-6);
    EXPECT_EQ(LevelBars::shareOf(1), 1);
    EXPECT_EQ(LevelBars::shareOf(4), 1) << "beyond";
    EXPECT_EQ(LevelBars::shareOf(std::numeric_limits<float>::quiet_NaN()), 0);
}

TEST_F(LevelBarsTest, EachSideHasItsBar) {
    bars.showLevels({.peak = {1, 0.03F}});
    EXPECT_EQ(at(kLeft, kFoot), accent());
    EXPECT_EQ(at(kLeft, 20), accent());
    EXPECT_EQ(at(kRight, kFoot), accent());
    EXPECT_NE(at(kRight, 20), accent());
}

TEST_F(LevelBarsTest, TheHighestIsHeld) {
    bars.showLevels({.peak = {0.1F, 0}, .held = {1, 0}});
    EXPECT_EQ(at(kLeft, 10), toQColor(look.skin().text));
}

TEST_F(LevelBarsTest, TheLampOfASideIsLitByAClip) {
    EXPECT_NE(at(kRight, kLamp), red());
    bars.showLevels({.peak = {1, 1}, .clipped = {false, true}});
    EXPECT_NE(at(kLeft, kLamp), red());
    EXPECT_EQ(at(kRight, kLamp), red());
    EXPECT_EQ(bars.accessibleDescription(), "Too loud: the recording is clipped");
    bars.clear();
    EXPECT_NE(at(kRight, kLamp), red());
    EXPECT_TRUE(bars.accessibleDescription().isEmpty());
}

TEST_F(LevelBarsTest, WhatLooksTheSameIsNotPaintedAgain) {
    bars.showLevels({.peak = {0.5F, 0.5F}});
    EXPECT_EQ(settle(), 1);
    bars.showLevels({.peak = {0.501F, 0.5F}});
    EXPECT_EQ(settle(), 0);
    bars.showLevels({.peak = {0.8F, 0.5F}});
    EXPECT_EQ(settle(), 1);
}

TEST_F(LevelBarsTest, OnlyTheRowsThatChangedArePaintedAgain) {
    bars.showLevels({.peak = {0.5F, 0.5F}, .held = {0.9F, 0.9F}});
    settle();
    const QImage before = bars.grab().toImage();
    settle();
    bars.showLevels({.peak = {0.4F, 0.5F}, .held = {0.9F, 0.9F}});
    EXPECT_EQ(settle(), 1);
    const QRegion painted = bars.painted;
    EXPECT_LT(painted.boundingRect().height(), 10);
    EXPECT_LT(painted.boundingRect().right(), kRight);
    const QImage after = bars.grab().toImage();
    int differ = 0;
    for (int y = 0; y < kSize.height(); ++y)
        for (int x = 0; x < kSize.width(); ++x)
            if (before.pixel(x, y) != after.pixel(x, y)) {
                ++differ;
                EXPECT_TRUE(painted.contains(QPoint(x, y))) << x << ", " << y;
            }
    EXPECT_GT(differ, 0);
}

TEST_F(LevelBarsTest, WhereAHeldLineWasIsPaintedAgain) {
    bars.showLevels({.peak = {0.1F, 0}, .held = {1, 0}});
    settle();
    bars.showLevels({.peak = {0.1F, 0}, .held = {0.5F, 0}, .clipped = {true, false}});
    EXPECT_EQ(settle(), 1);
    EXPECT_TRUE(bars.painted.contains(QPoint(kLeft, 10))) << "where the line was";
    EXPECT_TRUE(bars.painted.contains(QPoint(kLeft, 17))) << "where it is";
    EXPECT_TRUE(bars.painted.contains(QPoint(kLeft, kLamp))) << "the lamp";
    EXPECT_FALSE(bars.painted.contains(QPoint(kLeft, kFoot)));
}
