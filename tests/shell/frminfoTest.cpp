// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/frminfo.h"

#include "shell/ExToolTip.h"
#include "shell/dotips.h"
#include "tests/support/MemorySettings.h"

#include <QAbstractButton>
#include <QLabel>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

using namespace velmora;
using namespace std::chrono_literals;

namespace {
const QRect kScreen(0, 0, 1366, 768);

class frminfoTest : public testing::Test {
protected:
    frminfoTest() {
        composing.setWindowFlag(Qt::FramelessWindowHint);
        composing.setGeometry(100, 50, 600, 400);
    }

    QLabel& label() { return *info.findChild<QLabel*>("Label1"); }
    QTimer& timer() { return *info.findChild<QTimer*>("Timer1"); }
    QAbstractButton& cross() { return *info.findChild<QAbstractButton*>("closePicture"); }

    MemorySettings settings;
    ExToolTip tips{settings};
    QWidget composing;
    frminfo info{tips, &composing};
};
} // namespace

TEST(frminfoPlaceTest, ForTheTableauItStandsByTheWindowsLeftAndTheTableausTop) {
    // 100 pixels right of the window; 3500 twips are 233 pixels.
    EXPECT_EQ(tableauTipPlace(200, 300, {356, 120}, kScreen), QPoint(300, 533));
}

TEST(frminfoPlaceTest, ItIsPushedBackOntoTheScreen) {
    EXPECT_EQ(tableauTipPlace(1300, 700, {356, 120}, kScreen), QPoint(1366 - 356, 768 - 120));
    EXPECT_EQ(tableauTipPlace(-900, -900, {356, 120}, kScreen), QPoint(0, 0));
}

TEST(frminfoPlaceTest, ForAControlItStandsBelowOrWhereThatFailsAbove) {
    EXPECT_EQ(tipPlaceBeside({200, 100, 48, 20}, {356, 120}, kScreen), QPoint(200, 124));
    EXPECT_EQ(tipPlaceBeside({200, 700, 48, 20}, {356, 120}, kScreen), QPoint(200, 576));
    EXPECT_EQ(tipPlaceBeside({1300, 100, 48, 20}, {356, 120}, kScreen), QPoint(1010, 124));
}

TEST(frminfoPlaceTest, ItStandsLongerTheMoreThereIsToRead) {
    EXPECT_EQ(readingTime(QString()), 3s);
    EXPECT_EQ(readingTime(QString(100, 'x')), 10500ms);
}

TEST_F(frminfoTest, EveryTipFitsIntoItsLabel) {
    for (int index = 1; index <= kLongTipCount; ++index) {
        ASSERT_TRUE(info.setTip(index));
        EXPECT_GE(label().height(), label().heightForWidth(label().width())) << index;
        EXPECT_TRUE(info.rect().contains(label().geometry())) << index;
        EXPECT_FALSE(label().geometry().intersects(cross().geometry())) << index;
        EXPECT_EQ(label().text().toStdString(), dotips(index).text);
    }
}

TEST_F(frminfoTest, AnUnknownIndexLeavesItAsItIs) {
    info.setTip(3);
    info.showBeside(composing, 12);
    EXPECT_TRUE(info.isHidden());
    EXPECT_EQ(label().text().toStdString(), dotips(3).text);
}

TEST_F(frminfoTest, ItNeverTakesTheFocus) {
    composing.show();
    composing.activateWindow();
    info.showForTableau(composing, 30);
    EXPECT_TRUE(info.isVisible());
    EXPECT_TRUE(info.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(info.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(info.testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_EQ(cross().focusPolicy(), Qt::NoFocus);
    EXPECT_FALSE(info.isActiveWindow());
}

TEST_F(frminfoTest, ItShowsTheTableausTipInItsPlace) {
    info.showForTableau(composing, 30);
    EXPECT_EQ(info.pos(), tableauTipPlace(100, 30, info.size(), composing.screen()->availableGeometry()));
    EXPECT_EQ(label().text().toStdString(), dotips(1).text);
}

TEST_F(frminfoTest, TheTimerClosesItWithoutEndingTheMode) {
    bool ended = false;
    info.onDontShow = [&] { ended = true; };
    info.showBeside(composing, 6);
    EXPECT_EQ(timer().intervalAsDuration(), readingTime(label().text()));
    ASSERT_TRUE(timer().isActive());
    QTimerEvent due(timer().timerId());
    QCoreApplication::sendEvent(&timer(), &due);
    EXPECT_TRUE(info.isHidden());
    EXPECT_FALSE(timer().isActive());
    EXPECT_FALSE(ended);
}

TEST_F(frminfoTest, TheTimerWaitsWhileTheMouseIsOnTheText) {
    info.showBeside(composing, 6);
    QEnterEvent enter({5, 5}, {5, 5}, info.mapToGlobal(QPointF(5, 5)));
    QCoreApplication::sendEvent(&info, &enter);
    EXPECT_FALSE(timer().isActive());
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&info, &leave);
    EXPECT_TRUE(timer().isActive());
}

TEST_F(frminfoTest, TheCrossClosesItAndTellsTheOwner) {
    int ended = 0;
    info.onDontShow = [&] { ++ended; };
    info.showBeside(composing, 2);
    QTest::mouseClick(&cross(), Qt::LeftButton);
    EXPECT_EQ(ended, 1);
    EXPECT_TRUE(info.isHidden());
}

TEST_F(frminfoTest, TheCrossSaysWhatItDoes) {
    ASSERT_TRUE(tips.toolTip(cross()));
    EXPECT_EQ(tips.toolTip(cross())->text, "Don't show Tips");
    EXPECT_EQ(cross().accessibleName(), "Don't show Tips");
}

TEST_F(frminfoTest, ItHasTheColoursOfARectangularTip) {
    info.setTip(1);
    const QImage image = info.grab().toImage();
    EXPECT_EQ(image.pixelColor(0, 0), QColor(132, 120, 84));
    EXPECT_NEAR(image.pixelColor(4, 1).blue(), 236, 2);
    EXPECT_NEAR(image.pixelColor(4, info.height() - 2).blue(), 206, 2);
}
