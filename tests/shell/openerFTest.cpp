// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/openerF.h"

#include "WindowFixture.h"

#include <QtWidgets>

using namespace velmora;

class openerFTest : public WindowFixture {
protected:
    openerFTest() {
        window.onStart = [this] { ++starts; };
        window.onExit = [this] { ++exits; };
        open(window);
    }
    [[nodiscard]] QAbstractButton& startProgram() const { return part<QAbstractButton>(window, "Command2"); }
    [[nodiscard]] QAbstractButton& exitButton() const { return part<QAbstractButton>(window, "Command1"); }

    int starts = 0;
    int exits = 0;
    openerF window{*skins, tips};
};

TEST_F(openerFTest, CaptionsAreAsFixed) {
    EXPECT_EQ(window.windowTitle(), "Velmora ");
    EXPECT_EQ(startProgram().text(), "Start Program");
    EXPECT_EQ(exitButton().text(), "Exit");
    EXPECT_EQ(part<QLabel>(window, "Label4").text(), "Integrated Notation Interface   ");
}

TEST_F(openerFTest, ItIsOfOneSizeAndItsButtonsKeepTheMargin) {
    EXPECT_EQ(window.size(), QSize(480, 300));
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    const QRect start(startProgram().mapTo(&window, QPoint()), startProgram().size());
    const QRect exit(exitButton().mapTo(&window, QPoint()), exitButton().size());
    EXPECT_EQ(exit.left() - start.right() - 1, 8);
    EXPECT_EQ(window.width() - exit.right() - 1, 16);
    EXPECT_EQ(window.height() - exit.bottom() - 1, 16);
    EXPECT_EQ(start.height(), 32);
}

TEST_F(openerFTest, TheRingIsAroundStartProgramFromTheBeginning) {
    const auto* ring = window.findChild<QFocusFrame*>();
    ASSERT_NE(ring, nullptr);
    EXPECT_EQ(ring->widget(), &startProgram());
    EXPECT_TRUE(ring->isVisible());
}

TEST_F(openerFTest, TheRingComesBackWithTheWindow) {
    QWidget other;
    open(other);
    open(window);
    EXPECT_EQ(window.findChild<QFocusFrame*>()->widget(), &startProgram());
}

TEST_F(openerFTest, StartProgramStartsAndHides) {
    startProgram().click();
    EXPECT_EQ(starts, 1);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(exits, 0);
}

TEST_F(openerFTest, ADoublePressStartsOnce) {
    QTest::mouseClick(&startProgram(), Qt::LeftButton);
    QTest::mouseClick(&startProgram(), Qt::LeftButton);
    window.Command2_Click();
    EXPECT_EQ(starts, 1);
}

TEST_F(openerFTest, EnterStarts) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(starts, 1);
}

TEST_F(openerFTest, EnterOnExitExits) {
    QTest::keyClick(&window, Qt::Key_Tab);
    ASSERT_TRUE(exitButton().hasFocus());
    QTest::keyClick(&exitButton(), Qt::Key_Enter);
    EXPECT_EQ(starts, 0);
    EXPECT_EQ(exits, 1);
}

TEST_F(openerFTest, SpacePressesTheButtonThatHasTheFocus) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_EQ(starts, 1);
}

TEST_F(openerFTest, EscExitAndTheTitleButtonEndTheProgram) {
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(exits, 1);
    window.show();
    exitButton().click();
    EXPECT_EQ(exits, 2);
    window.show();
    part<QAbstractButton>(window, "imgTitleClose").click();
    EXPECT_EQ(exits, 3);
    EXPECT_EQ(starts, 0);
}

TEST_F(openerFTest, ClosingAfterTheStartDoesNotEndTheProgram) {
    window.Command2_Click();
    window.close();
    EXPECT_EQ(exits, 0);
}
