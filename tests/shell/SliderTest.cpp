// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/Slider.h"

#include "WindowFixture.h"
#include "shell/ControlPainter.h"
#include "shell/SkinPainter.h"

#include <QAccessible>
#include <QShortcut>
#include <QWheelEvent>

using namespace velmora;

namespace {
/// A slider of 0 to 127 whose pointer has 254 pixels of way: two a value.
class SliderTest : public WindowFixture {
protected:
    SliderTest() {
        slider.setRange(0, 127);
        slider.resize(266, 20);
        slider.onDrag = [this](int value) { values.push_back(value); };
        slider.onRelease = [this] { ++releases; };
        slider.show();
    }
    ~SliderTest() override { // no button stays pressed for the next test
        for (const auto button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton})
            QTest::mouseRelease(&slider, button);
    }
    void press(int x, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(&slider, button, {}, QPoint(x, 10));
    }
    void move(int x) { QTest::mouseMove(&slider, QPoint(x, 10)); }
    void release(int x) { QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(x, 10)); }
    void key(Qt::Key which) { QTest::keyClick(&slider, which); }
    void wheel(int eighths) {
        QWheelEvent event(QPointF(10, 10), slider.mapToGlobal(QPointF(10, 10)), {}, QPoint(0, eighths),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&slider, &event);
    }
    QColor pixel(Slider& of, int x, int y) {
        QImage picture(of.size(), QImage::Format_RGB32);
        of.render(&picture);
        return picture.pixelColor(x, y);
    }

    Slider slider{skins->look(), Qt::Horizontal, nullptr};
    std::vector<int> values;
    int releases = 0;
};
} // namespace

TEST_F(SliderTest, APressOnTheBarBringsThePointerThere) {
    press(6 + 101);
    EXPECT_THAT(values, testing::ElementsAre(50)); // the whole part of 50.5
    EXPECT_EQ(slider.pointer().center().x(), 6 + 100);
    EXPECT_EQ(releases, 0);
}

TEST_F(SliderTest, ThePointerFollowsTheMouseWithinTheBar) {
    press(6);
    move(6 + 60);
    move(400);
    move(-50);
    release(-50);
    EXPECT_THAT(values, testing::ElementsAre(30, 127, 0));
    EXPECT_EQ(releases, 1);
}

TEST_F(SliderTest, AfterTheReleaseTheMouseMovesNothing) {
    press(6);
    release(6);
    move(100);
    EXPECT_EQ(slider.value(), 0);
}

TEST_F(SliderTest, OnlyTheLeftButtonActs) {
    press(100, Qt::RightButton);
    move(120);
    QTest::mouseRelease(&slider, Qt::RightButton, {}, QPoint(120, 10));
    press(100, Qt::MiddleButton);
    EXPECT_TRUE(values.empty());
    EXPECT_EQ(releases, 0);
}

TEST_F(SliderTest, APressOnThePointerChangesNothing) {
    slider.setValue(33);
    const int middle = static_cast<int>(slider.pointer().center().x());
    press(middle + 5);
    move(middle + 5);
    EXPECT_TRUE(values.empty());
    move(middle + 5 + 20);
    EXPECT_THAT(values, testing::ElementsAre(43));
}

TEST_F(SliderTest, AHandThatRestsOnThePointerKeepsItsValue) {
    slider.resize(112, 20); // fewer places than values: the pointer's own place means 49
    slider.setValue(50);
    const int middle = static_cast<int>(slider.pointer().center().x());
    press(middle);
    move(middle);
    release(middle);
    EXPECT_EQ(slider.value(), 50);
}

TEST_F(SliderTest, CodeThatSetsTheValueTellsNobody) {
    slider.setValue(64);
    EXPECT_EQ(slider.value(), 64);
    EXPECT_TRUE(values.empty());
}

TEST_F(SliderTest, ARangeThatTheValueMustGiveWayToTellsNobody) {
    slider.setValue(64);
    slider.setRange(0, 50);
    EXPECT_EQ(slider.value(), 50);
    EXPECT_TRUE(values.empty());
}

TEST_F(SliderTest, AScreenReaderCountsAsTheUser) {
    QAccessibleInterface* said = QAccessible::queryAccessibleInterface(&slider);
    ASSERT_TRUE(said && said->valueInterface());
    said->valueInterface()->setCurrentValue(12);
    EXPECT_THAT(values, testing::ElementsAre(12));
    EXPECT_EQ(said->valueInterface()->currentValue().toInt(), 12);
    EXPECT_EQ(said->valueInterface()->maximumValue().toInt(), 127);
}

TEST_F(SliderTest, KeysStepPageAndGoToTheEnds) {
    slider.setValue(50);
    key(Qt::Key_Right);
    key(Qt::Key_Up);
    key(Qt::Key_Left);
    key(Qt::Key_PageUp);
    key(Qt::Key_PageDown);
    key(Qt::Key_End);
    key(Qt::Key_Home);
    EXPECT_THAT(values, testing::ElementsAre(51, 52, 51, 61, 51, 127, 0));
    EXPECT_EQ(releases, 7);
}

TEST_F(SliderTest, AKeyAtTheEndTellsNobody) {
    slider.setValue(127);
    key(Qt::Key_Right);
    EXPECT_TRUE(values.empty());
    EXPECT_EQ(releases, 0);
}

TEST_F(SliderTest, ItsKeysGoBeforeTheWindowsShortcuts) {
    QWidget window;
    auto* inside = new Slider(skins->look(), Qt::Horizontal, &window);
    inside->setValue(50);
    int presses = 0;
    QObject::connect(new QShortcut(Qt::Key_Home, &window), &QShortcut::activated, [&] { ++presses; });
    open(window);
    inside->setFocus();
    QTest::keyClick(inside, Qt::Key_Home);
    EXPECT_EQ(inside->value(), 0);
    EXPECT_EQ(presses, 0);
}

TEST_F(SliderTest, TheWheelSteps) {
    slider.setValue(50);
    wheel(120);
    ASSERT_EQ(values.size(), 1U);
    EXPECT_GT(values[0], 50);
    wheel(-120);
    EXPECT_EQ(slider.value(), 50);
}

TEST_F(SliderTest, DisabledItTakesNoPress) {
    slider.setEnabled(false);
    press(100);
    EXPECT_TRUE(values.empty());
    EXPECT_FALSE(slider.isSliderDown());
}

TEST_F(SliderTest, DisabledInTheUsersHandItLetsGo) {
    press(100);
    slider.setEnabled(false);
    EXPECT_FALSE(slider.isSliderDown());
}

TEST_F(SliderTest, AnUprightOneRisesFromItsFoot) {
    Slider upright(skins->look(), Qt::Vertical, nullptr);
    upright.setRange(0, 100);
    upright.resize(20, 112);
    EXPECT_EQ(upright.pointer(), QRectF(0, 100, 20, 12));
    upright.setValue(100);
    EXPECT_EQ(upright.pointer(), QRectF(0, 0, 20, 12));
    QTest::mousePress(&upright, Qt::LeftButton, {}, QPoint(10, 112 - 6 - 40));
    EXPECT_EQ(upright.value(), 40);
}

TEST_F(SliderTest, AnUprightOneCountsItsWholePartFromTheTop) {
    Slider upright(skins->look(), Qt::Vertical, nullptr);
    upright.setRange(0, 127);
    upright.resize(20, 52);
    QTest::mousePress(&upright, Qt::LeftButton, {}, QPoint(10, 6 + 15));
    EXPECT_EQ(upright.value(), 127 - 47); // 47.6
    QTest::mouseRelease(&upright, Qt::LeftButton, {}, QPoint(10, 6 + 15));
}

TEST_F(SliderTest, AClickMeansItsHalfWhereThatIsAsked) {
    std::vector<int> halves;
    slider.onHalf = [&](int direction) { halves.push_back(direction); };
    slider.setValue(20);
    for (const int x : {130, 136, 46}) { // the last is on the pointer
        press(x);
        release(x);
    }
    EXPECT_THAT(halves, testing::ElementsAre(-1, 1, -1));
    EXPECT_EQ(slider.value(), 20);
}

TEST_F(SliderTest, ADragOfThePointerIsNoClickOfAHalf) {
    int halves = 0;
    slider.onHalf = [&](int /*direction*/) { ++halves; };
    press(6);
    move(6 + 60);
    release(6 + 60);
    EXPECT_EQ(slider.value(), 30);
    EXPECT_EQ(halves, 0);
}

TEST_F(SliderTest, TheBarIsFilledFromItsRestToThePointer) {
    const QColor accent = toQColor(skins->look().skin().accent);
    slider.setValue(60);
    EXPECT_EQ(pixel(slider, 40, 9), accent);
    EXPECT_NE(pixel(slider, 200, 9), accent);
    slider.setRest(100);
    EXPECT_NE(pixel(slider, 40, 9), accent);
    EXPECT_EQ(pixel(slider, 170, 9), accent);
}

TEST_F(SliderTest, ARestBetweenTheEndsHasATick) {
    const QColor ink = toQColor(skins->look().skin().text);
    EXPECT_NE(pixel(slider, 6 + 128, 4), ink);
    slider.setRest(64);
    EXPECT_EQ(pixel(slider, 6 + 128, 4), ink);
}

TEST_F(SliderTest, DisabledItPalesItsFill) {
    slider.setValue(60);
    slider.setEnabled(false);
    EXPECT_NE(pixel(slider, 40, 9), toQColor(skins->look().skin().accent));
}
