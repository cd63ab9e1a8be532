// SPDX-License-Identifier: GPL-2.0-or-later
#include "TipFixture.h"

#include <QLineEdit>
#include <QMenu>
#include <QScreen>
#include <QTest>
#include <QWindow>

using namespace velmora;

namespace {
/// The mouse moves as the platform reports it, so that Qt decides whom it tells.
class TipTrackingTest : public TipFixture {
protected:
    TipTrackingTest() {
        window.show();
        window.activateWindow();
        QCoreApplication::processEvents();
        moveTo(kGround);
    }
    void moveTo(QPoint place) {
        QTest::mouseMove(window.windowHandle(), place);
        QCoreApplication::processEvents();
    }
    void send(QEvent::Type type) {
        QEvent event(type);
        QCoreApplication::sendEvent(&window, &event);
    }
    bool isShown() const { return tips.tipWindow().isVisible(); }
};
} // namespace

TEST_F(TipTrackingTest, ATipComesWhenTheMouseHasRestedOnItsControl) {
    moveTo(kPlay);
    EXPECT_EQ(tips.content().title, "Play");
    EXPECT_FALSE(rest(kPlay, 15));
    EXPECT_TRUE(rest(kPlay));
}

TEST_F(TipTrackingTest, BareGroundHasNoTip) {
    EXPECT_FALSE(rest(kGround, 100));
}

TEST_F(TipTrackingTest, ADisabledControlShowsItsTip) {
    play.setEnabled(false);
    moveTo(kPlay);
    EXPECT_TRUE(rest(kPlay));
    EXPECT_EQ(tips.content().title, "Play");
}

TEST_F(TipTrackingTest, ARepeatForTheSameControlIsIgnored) {
    moveTo(kPlay);
    rest(kPlay);
    ASSERT_TRUE(isShown());
    moveTo(kPlay + QPoint(10, 5));
    EXPECT_TRUE(isShown());
}

TEST_F(TipTrackingTest, AnotherControlTakesTheTipAwayAndBringsItsOwn) {
    moveTo(kPlay);
    rest(kPlay);
    moveTo(kStop);
    EXPECT_FALSE(isShown());
    EXPECT_TRUE(rest(kStop));
    EXPECT_EQ(tips.content().title, "Stop");
}

TEST_F(TipTrackingTest, AMoveOffTheControlHidesTheTipAndComingBackShowsItAgain) {
    moveTo(kPlay);
    rest(kPlay);
    moveTo(kGround);
    EXPECT_FALSE(isShown());
    EXPECT_FALSE(rest(kGround));
    moveTo(kPlay);
    EXPECT_TRUE(rest(kPlay));
}

TEST_F(TipTrackingTest, ATipThatWentByItselfStaysAwayFromItsControl) {
    moveTo(kPlay);
    rest(kPlay);
    EXPECT_TRUE(rest(kPlay, 199));
    EXPECT_FALSE(rest(kPlay, 1));
    moveTo(kPlay + QPoint(3, 0));
    EXPECT_FALSE(rest(kPlay + QPoint(3, 0), 100));
}

TEST_F(TipTrackingTest, APressHidesTheTipAndItDoesNotComeAgain) {
    moveTo(kPlay);
    rest(kPlay);
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, kPlay);
    EXPECT_FALSE(isShown());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, kPlay);
    EXPECT_FALSE(rest(kPlay, 100));
}

TEST_F(TipTrackingTest, APressOnADisabledControlHidesItsTip) {
    play.setEnabled(false);
    moveTo(kPlay);
    ASSERT_TRUE(rest(kPlay));
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, kPlay);
    EXPECT_FALSE(isShown());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, kPlay);
}

TEST_F(TipTrackingTest, AKeyHidesTheTip) {
    moveTo(kPlay);
    rest(kPlay);
    QTest::keyClick(&window, Qt::Key_A);
    EXPECT_FALSE(isShown());
}

TEST_F(TipTrackingTest, AStrokeWithAButtonDownAsksForNoTip) {
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, kGround);
    moveTo(kPlay);
    EXPECT_FALSE(rest(kPlay, 100));
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, kPlay);
}

TEST_F(TipTrackingTest, AStrokeThatTheWindowHearsOfAnewAsksForNoTip) {
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, kGround);
    QEnterEvent enter(kPlay, kPlay, window.mapToGlobal(kPlay));
    QCoreApplication::sendEvent(&window, &enter);
    EXPECT_FALSE(rest(kPlay, 100));
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, kPlay);
    QCoreApplication::sendEvent(&window, &enter);
    EXPECT_TRUE(rest(kPlay));
}

TEST_F(TipTrackingTest, LeavingTheWindowEndsTheTipAndTheWaitForOne) {
    moveTo(kPlay);
    rest(kPlay);
    EXPECT_FALSE(rest({-50, -50}, 1));
    EXPECT_FALSE(rest(kPlay, 100)); // ticks that have ended stay so
    moveTo(kPlay);
    rest(kPlay, 10);
    send(QEvent::Leave);
    EXPECT_FALSE(rest(kPlay, 100));
}

TEST_F(TipTrackingTest, ActivationTakesTheTipAwayAndTheNextMoveBringsItAgain) {
    moveTo(kPlay);
    rest(kPlay);
    send(QEvent::WindowActivate);
    EXPECT_FALSE(isShown());
    EXPECT_EQ(tips.Alive(), -1);
    EXPECT_FALSE(rest(kPlay, 100));
    moveTo(kPlay + QPoint(1, 0));
    EXPECT_TRUE(rest(kPlay + QPoint(1, 0)));
}

TEST_F(TipTrackingTest, NewWordsForTheControlUnderTheMouseShowAtTheNextMove) {
    moveTo(kPlay);
    rest(kPlay);
    tips.SetToolTip(play, {"Play", "Play notes from Start", "play"}); // no change
    EXPECT_TRUE(isShown());
    tips.SetToolTip(play, {"Pause", "", "pause"});
    EXPECT_FALSE(isShown());
    moveTo(kPlay + QPoint(1, 0));
    EXPECT_TRUE(rest(kPlay + QPoint(1, 0)));
    EXPECT_EQ(tips.content().title, "Pause");
}

TEST_F(TipTrackingTest, AChildWithoutWordsShowsThoseOfItsControl) {
    QLineEdit edit(&play);
    edit.setGeometry(20, 10, 60, 30);
    edit.show();
    moveTo(kPlay);
    EXPECT_TRUE(rest(kPlay));
    EXPECT_EQ(tips.content().title, "Play");
}

TEST_F(TipTrackingTest, AnOpenMenuKeepsTipsAway) {
    moveTo(kPlay);
    QMenu menu;
    menu.addAction("Cut");
    menu.popup({900, 500});
    EXPECT_FALSE(rest(kPlay, 100));
}

TEST_F(TipTrackingTest, AWindowThatWasNotAttachedShowsNoTips) {
    QWidget other;
    other.setGeometry(500, 100, 100, 50);
    QPushButton button(&other);
    button.resize(100, 50);
    tips.SetToolTip(button, {"Other", "", ""});
    other.show();
    QTest::mouseMove(other.windowHandle(), {50, 25});
    QCoreApplication::processEvents();
    EXPECT_EQ(tips.content().title, "");
    tips.Attach(other);
    QTest::mouseMove(other.windowHandle(), {51, 25});
    QCoreApplication::processEvents();
    EXPECT_EQ(tips.content().title, "Other");
}

TEST_F(TipTrackingTest, TheEndOfTheWindowEndsItsTip) {
    auto other = std::make_unique<QWidget>();
    other->setGeometry(500, 100, 100, 50);
    tips.Attach(*other);
    tips.SetToolTip(*other, {"Other", "", ""});
    other->show();
    QCoreApplication::processEvents();
    QTest::mouseMove(other->windowHandle(), {50, 25});
    QCoreApplication::processEvents();
    for (int i = 0; i < 20; ++i)
        tips.tick(other->mapToGlobal(QPoint(50, 25)));
    ASSERT_TRUE(isShown());
    other.reset();
    EXPECT_FALSE(isShown());
    EXPECT_EQ(tips.Alive(), 0);
    tips.ConfigureToolTip();
    tips.ShowToolTip(window, "text", "title", {}, {});
    EXPECT_EQ(tips.Alive(), -1);
}

TEST_F(TipTrackingTest, ATipNearTheCornerOfTheScreenIsWhollyOnIt) {
    const QRect screen = window.screen()->geometry();
    window.move(screen.bottomRight() - QPoint(99, 49)); // the first button ends where the screen does
    QCoreApplication::processEvents();
    for (const char* style : {"0", "1", "2"}) {
        settings.SaveSetting("Settings", "ToolText type", style);
        moveTo(kStop); // off the button, and back
        moveTo({95, 45});
        ASSERT_TRUE(rest({95, 45})) << style;
        EXPECT_TRUE(screen.contains(tips.tipWindow().geometry())) << style;
    }
}

TEST_F(TipTrackingTest, ATipDoesNotTakeTheWindowsActivity) {
    ASSERT_TRUE(window.isActiveWindow());
    moveTo(kPlay);
    ASSERT_TRUE(rest(kPlay));
    EXPECT_TRUE(window.isActiveWindow());
    EXPECT_FALSE(tips.tipWindow().isActiveWindow());
}
