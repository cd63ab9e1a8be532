// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/Waveform.h"

#include "shell/Appearance.h"
#include "shell/SkinPainter.h"

#include <QtTest>
#include <QtWidgets>

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;

namespace {
class WaveformTest : public testing::Test {
protected:
    WaveformTest() {
        wave.resize(212, 60); // so that a hundredth is two pixels
        wave.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&wave));
        wave.onPlay = [this](double share) { played.push_back(share); };
    }
    [[nodiscard]] QPoint at(double share) const { return {qRound(wave.xAt(share)), 30}; }
    void drag(double from, double to) {
        QTest::mousePress(&wave, Qt::LeftButton, {}, at(from));
        QTest::mouseMove(&wave, at(to));
        QTest::mouseRelease(&wave, Qt::LeftButton, {}, at(to));
    }
    QColor colour(double share, int y) { return wave.grab().toImage().pixelColor(at(share).x(), y); }

    Appearance look;
    Waveform wave{look, nullptr};
    std::vector<double> played;
};
} // namespace

TEST_F(WaveformTest, ASoundIsDrawnAsHighAsItIsLoud) {
    std::vector<WaveColumn> columns(100);
    for (std::size_t i = 50; i < 100; ++i)
        columns[i] = {.lowest = {-0.5F, -1}, .highest = {1, 0.5F}};
    wave.setColumns(columns);
    const QColor accent = toQColor(look.skin().accent);
    EXPECT_EQ(colour(0.75, 6), accent);
    EXPECT_EQ(colour(0.75, 54), accent) << "of both sides the lower one";
    EXPECT_NE(colour(0.25, 6), accent);
    EXPECT_EQ(colour(0.25, 30), accent) << "silence is a line";
}

TEST_F(WaveformTest, APressPlaysFromThere) {
    QTest::mouseClick(&wave, Qt::LeftButton, {}, at(0.25));
    EXPECT_THAT(played, ElementsAre(testing::DoubleNear(0.25, 0.005)));
}

TEST_F(WaveformTest, MarksAreDraggedAndNeverPassEachOther) {
    drag(0, 0.3);
    EXPECT_NEAR(wave.begin(), 0.3, 0.005);
    drag(1, 0.6);
    EXPECT_NEAR(wave.end(), 0.6, 0.005);
    drag(0.3, 0.9);
    EXPECT_LT(wave.begin(), wave.end());
    EXPECT_NEAR(wave.end(), 0.6, 0.005);
    EXPECT_TRUE(played.empty()) << "a mark is no place to play from";
}

TEST_F(WaveformTest, WhatIsPartedOffIsPale) {
    wave.setColumns({{.lowest = {-1, -1}, .highest = {1, 1}}});
    wave.setMarks(0.5, 1);
    EXPECT_EQ(colour(0.75, 10), toQColor(look.skin().accent));
    EXPECT_NE(colour(0.25, 10), toQColor(look.skin().accent));
}

TEST_F(WaveformTest, KeysMoveTheMarksAndPlay) {
    QTest::keyClick(&wave, Qt::Key_Right);
    QTest::keyClick(&wave, Qt::Key_Right, Qt::ControlModifier);
    EXPECT_NEAR(wave.begin(), 0.011, 1e-9);
    QTest::keyClick(&wave, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_NEAR(wave.end(), 0.99, 1e-9);
    QTest::keyClick(&wave, Qt::Key_Return);
    EXPECT_THAT(played, ElementsAre(wave.begin()));
    QTest::keyClick(&wave, Qt::Key_Home);
    QTest::keyClick(&wave, Qt::Key_End, Qt::ShiftModifier);
    EXPECT_EQ(wave.begin(), 0);
    EXPECT_EQ(wave.end(), 1);
}

TEST_F(WaveformTest, WhereItPlaysIsALine) {
    wave.setPosition(0.5);
    EXPECT_EQ(colour(0.5, 20), toQColor(recordRed(look.skin())));
    wave.setPosition(-1);
    EXPECT_NE(colour(0.5, 20), toQColor(recordRed(look.skin())));
}
