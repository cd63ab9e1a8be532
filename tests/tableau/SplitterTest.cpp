// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/Splitter.h"

#include "shell/Appearance.h"

#include <QTest>

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;

namespace {
class SplitterTest : public testing::Test {
protected:
    SplitterTest() {
        area.resize(600, 500);
        splitter = new Splitter(look, &area);
        splitter->onRelease = [this](int top) { released.push_back(top); };
        splitter->layOut({48, 122, 500, 3});
        area.show();
    }
    QWidget& bar() { return *area.findChild<QWidget*>("P1"); }
    void drag(Qt::MouseButton button, int by) {
        QTest::mousePress(splitter, button, {}, {10, 4});
        QMouseEvent event(QEvent::MouseMove, QPointF(10, 4 + by), splitter->mapToGlobal(QPointF(10, 4 + by)),
                          Qt::NoButton, button, Qt::NoModifier);
        QApplication::sendEvent(splitter, &event);
        shown = bar().isVisible();
        at = bar().y();
        QTest::mouseRelease(splitter, button, {}, {10, 4 + by});
    }

    Appearance look;
    QWidget area;
    Splitter* splitter;
    std::vector<int> released;
    bool shown = false;
    int at = 0;
};
} // namespace

TEST_F(SplitterTest, ItIsAnAreaOfEightPixelsOverTheGap) {
    EXPECT_EQ(splitter->height(), 8);
    EXPECT_LE(splitter->y(), 122);
    EXPECT_GE(splitter->y() + 8, 125);
    EXPECT_FALSE(bar().isVisible());
}

TEST_F(SplitterTest, EitherButtonDragsTheBarAndLetsItGo) {
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
        drag(button, 60);
        EXPECT_TRUE(shown);
        EXPECT_EQ(at, splitter->y() + 64);
        EXPECT_FALSE(bar().isVisible());
    }
    EXPECT_THAT(released, ElementsAre(splitter->y() + 64, splitter->y() + 64));
}

TEST_F(SplitterTest, TheBarStaysInTheWindow) {
    drag(Qt::LeftButton, -4000);
    drag(Qt::LeftButton, 4000);
    EXPECT_THAT(released, ElementsAre(0, 400)) << "a hundred above the foot";
}

TEST_F(SplitterTest, ADragWhoseReleaseIsLostIsOver) {
    QTest::mousePress(splitter, Qt::RightButton, {}, {10, 4});
    splitter->layOut({}); // `Beatbox` is hidden meanwhile
    QTest::mouseRelease(&area, Qt::RightButton);
    splitter->layOut({48, 122, 500, 3});
    EXPECT_FALSE(bar().isVisible());
    drag(Qt::LeftButton, 60);
    EXPECT_TRUE(shown);
    EXPECT_THAT(released, ElementsAre(splitter->y() + 64));
}

TEST_F(SplitterTest, WhereThereIsNoGapThereIsNothingToDrag) {
    splitter->layOut({});
    EXPECT_FALSE(splitter->isVisible());
}
