// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ViewScroll.h"

#include "shell/Appearance.h"
#include "shell/SkinStyle.h"
#include "tableau/ViewGeometry.h"

#include <QTest>

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
class Bar : public ViewScroll {
public:
    using ViewScroll::repeatAction;
    using ViewScroll::ViewScroll;
};

/// A bar of 440 pixels: a rail of 400 between its arrows.
class ViewScrollTest : public testing::Test {
protected:
    ViewScrollTest() {
        bar.setStyle(&style);
        bar.resize(440, 16);
        bar.onScroll = [this](int value) { scrolled.push_back(value); };
        bar.follow({50, 250, 200}, 50);
        bar.show();
    }
    void drag(int from, int to) {
        QTest::mousePress(&bar, Qt::LeftButton, {}, {20 + from, 8});
        QMouseEvent event(QEvent::MouseMove, QPointF(20 + to, 8), bar.mapToGlobal(QPointF(20 + to, 8)),
                          Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&bar, &event);
        QTest::mouseRelease(&bar, Qt::LeftButton, {}, {20 + to, 8});
    }

    Appearance look;
    SkinStyle style{look};
    Bar bar{Qt::Horizontal, "HScroll1", nullptr};
    std::vector<int> scrolled;
};
} // namespace

TEST_F(ViewScrollTest, FollowingTheViewScrollsNothing) {
    bar.follow({10, 500, 20}, 300);
    EXPECT_THAT(scrolled, IsEmpty());
    EXPECT_EQ(bar.value(), 300);
    bar.setValue(301);
    EXPECT_THAT(scrolled, ElementsAre(301));
}

TEST_F(ViewScrollTest, APressOnTheRailBringsTheThumbThere) {
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {20 + 300, 8});
    EXPECT_THAT(scrolled, ElementsAre(250)) << "which is as far as it goes";
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {20 + 100, 8});
    EXPECT_EQ(bar.value(), 50 + 100);
}

TEST_F(ViewScrollTest, TheThumbIsDraggedWhereItWasGripped) {
    drag(60, 160); // it is 200 long and begins at 0
    EXPECT_EQ(bar.value(), 50 + 100);
}

TEST_F(ViewScrollTest, TheRailsOwnRuleComesFirst) {
    std::vector<std::pair<int, int>> asked;
    bar.valueAt = [&](int place, int length) {
        asked.emplace_back(place, length);
        return 77;
    };
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {20 + 300, 8});
    EXPECT_THAT(asked, ElementsAre(std::pair(300, 400)));
    EXPECT_EQ(bar.value(), 77);
}

TEST_F(ViewScrollTest, ADragWhoseReleaseIsLostEndsAndTheArrowsDoNotRunAway) {
    QTest::mousePress(&bar, Qt::LeftButton, {}, {20 + 60, 8});
    bar.setEnabled(false); // playing has begun, and the release goes to nobody
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, {20 + 60, 8});
    bar.setEnabled(true);
    const int value = bar.value();
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {430, 8});
    EXPECT_EQ(bar.value(), value + 1);
    EXPECT_EQ(bar.repeatAction(), QAbstractSlider::SliderNoAction) << "it would go on by itself";
}

TEST_F(ViewScrollTest, TheArrowsStepByOne) {
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {430, 8});
    EXPECT_EQ(bar.value(), 51);
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {10, 8});
    EXPECT_EQ(bar.value(), 50);
}

TEST_F(ViewScrollTest, TheRightButtonOpensNothingAndMovesNothing) {
    QTest::mouseClick(&bar, Qt::RightButton, {}, {20 + 300, 8});
    EXPECT_THAT(scrolled, IsEmpty());
    EXPECT_EQ(bar.contextMenuPolicy(), Qt::NoContextMenu);
}
