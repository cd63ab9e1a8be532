// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/frmLog.h"

#include "studio/Studio.h"
#include "tests/support/TestDesk.h"

#include <QtTest>
#include <QtWidgets>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
class frmLogTest : public testing::Test, protected TestDesk {
protected:
    frmLog& opened() {
        if (!window_)
            window_ = std::make_unique<frmLog>(desk(), nullptr);
        window_->open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
        return *window_;
    }
    QPlainTextEdit& box() { return *opened().findChild<QPlainTextEdit*>("log"); }
    std::string shown() { return box().toPlainText().toStdString(); }

private:
    std::unique_ptr<frmLog> window_;
};
} // namespace

TEST_F(frmLogTest, ItShowsTheLogAndFollowsIt) {
    studio().state.Text2 = "10:15:02  Recording\n";
    EXPECT_EQ(shown(), "10:15:02  Recording\n");
    studio().state.Text2 += "10:15:09  Recording Stopped!\n";
    EXPECT_TRUE(QTest::qWaitFor([this] { return shown().ends_with("Stopped!\n"); }));
    EXPECT_EQ(shown(), studio().state.Text2);
}

TEST_F(frmLogTest, TheUserStaysWhereHeReads) {
    for (int i = 0; i < 200; ++i)
        studio().state.Text2 += "line " + std::to_string(i) + "\n";
    opened().refresh();
    QScrollBar& bar = *box().verticalScrollBar();
    EXPECT_EQ(bar.value(), bar.maximum());
    bar.setValue(10);
    studio().state.Text2 += "another\n";
    opened().refresh();
    EXPECT_EQ(bar.value(), 10);
    bar.setValue(bar.maximum());
    studio().state.Text2 += "one more\n";
    opened().refresh();
    EXPECT_EQ(bar.value(), bar.maximum());
}

TEST_F(frmLogTest, ItIsForReading) {
    studio().state.Text2 = "10:15:02  Recording\n";
    QTest::keyClicks(&box(), "x");
    EXPECT_EQ(shown(), "10:15:02  Recording\n");
}

TEST_F(frmLogTest, CopyTakesAllOfIt) {
    studio().state.Text2 = "one\ntwo\n";
    QTest::mouseClick(opened().findChild<QWidget*>("copy"), Qt::LeftButton);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "one\ntwo\n");
}

TEST_F(frmLogTest, CloseAndEscCloseIt) {
    QTest::mouseClick(opened().findChild<QWidget*>("close"), Qt::LeftButton);
    EXPECT_FALSE(box().window()->isHidden()) << "it comes up again";
    QTest::keyClick(&opened(), Qt::Key_Escape);
    EXPECT_EQ(QApplication::activeWindow(), nullptr);
}

TEST_F(frmLogTest, TheChiefActStandsAtTheLowerRight) {
    frmLog& window = opened();
    window.resize(700, 500);
    const QWidget& close = *window.findChild<QWidget*>("close");
    EXPECT_EQ(close.geometry().right(), 700 - 13);
    EXPECT_EQ(close.height(), 32);
}
