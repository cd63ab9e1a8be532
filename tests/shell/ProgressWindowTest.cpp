// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/ProgressWindow.h"

#include "WindowFixture.h"

#include <QAbstractButton>
#include <QLabel>
#include <QProgressBar>

using namespace velmora;

namespace {
class ProgressWindowTest : public WindowFixture {
protected:
    void SetUp() override {
        owner.setGeometry(40, 30, 700, 500);
        open(owner);
        window.onCancel = [this] { ++cancels; };
        window.open();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    [[nodiscard]] QString words() const { return part<QLabel>(window, "words").text(); }

    TestWindow owner{*skins};
    ProgressWindow window{*skins, tips, &owner, "Export as MP3", "Writing \"tune.mp3\""};
    int cancels = 0;
};
} // namespace

TEST_F(ProgressWindowTest, ItSaysWhatIsDoneAndHowFarItIs) {
    EXPECT_EQ(window.windowTitle(), "Export as MP3");
    EXPECT_EQ(words(), "Writing \"tune.mp3\"");
    window.showShare(0.43);
    EXPECT_EQ(part<QProgressBar>(window, "progress").text(), "43%");
    EXPECT_EQ(window.geometry().center(), owner.geometry().center());
}

TEST_F(ProgressWindowTest, TheWindowBelowGoesOn) {
    EXPECT_EQ(window.windowModality(), Qt::NonModal);
}

TEST_F(ProgressWindowTest, EscCloseAndTheButtonCancel) {
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(cancels, 1);
    EXPECT_FALSE(window.isVisible());
    window.open();
    part<QAbstractButton>(window, "cancel").click();
    EXPECT_EQ(cancels, 2);
    window.open();
    part<QAbstractButton>(window, "imgTitleClose").click();
    EXPECT_EQ(cancels, 3);
}

TEST_F(ProgressWindowTest, AfterTheEndItOnlySaysWhatCameOfIt) {
    window.finish("\"tune.mp3\" is written");
    EXPECT_EQ(words(), "\"tune.mp3\" is written");
    EXPECT_EQ(part<QAbstractButton>(window, "cancel").text(), "OK");
    EXPECT_EQ(part<QProgressBar>(window, "progress").text(), "100%");
    window.showShare(0.5);
    EXPECT_EQ(part<QProgressBar>(window, "progress").text(), "100%") << "what comes late is no longer so";
    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(cancels, 0);
}

TEST_F(ProgressWindowTest, SpaceWhichPlaysBelowDoesNotCancel) {
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
    EXPECT_EQ(cancels, 0);
    EXPECT_TRUE(window.isVisible());
}

TEST_F(ProgressWindowTest, AHandThatDrawsKeepsItsWindow) {
    window.close();
    QTest::mousePress(&owner, Qt::LeftButton, {}, {60, 60});
    window.open();
    EXPECT_TRUE(window.testAttribute(Qt::WA_ShowWithoutActivating));
    QTest::mouseRelease(&owner, Qt::LeftButton, {}, {60, 60});
    window.close();
    window.open();
    EXPECT_FALSE(window.testAttribute(Qt::WA_ShowWithoutActivating));
}

TEST_F(ProgressWindowTest, LongNamesAreBrokenAndKeptInside) {
    window.finish("\"" + QString(300, 'm') + ".mp3\" is written");
    const auto& label = part<QLabel>(window, "words");
    for (const QString& line : label.text().split('\n'))
        EXPECT_LE(label.fontMetrics().horizontalAdvance(line), label.width());
    EXPECT_LE(label.text().count('\n'), 2);
    EXPECT_TRUE(label.accessibleName().contains(QString(300, 'm')));
}

TEST_F(ProgressWindowTest, AScreenReaderIsToldWhatGoesOn) {
    EXPECT_EQ(part<QProgressBar>(window, "progress").accessibleName(), "Progress");
    EXPECT_EQ(part<QAbstractButton>(window, "cancel").accessibleDescription(), "Writing \"tune.mp3\"");
    EXPECT_EQ(window.focusWidget(), &part<QProgressBar>(window, "progress"));
    EXPECT_TRUE(tips.toolTip(part<QAbstractButton>(window, "cancel")));
}

TEST(TimeLeft, IsToldInWordsOnceItCanBeGuessed) {
    EXPECT_EQ(timeLeft(0.5, 0.5), "");
    EXPECT_EQ(timeLeft(10, 0.01), "");
    EXPECT_EQ(timeLeft(10, 1), "");
    EXPECT_EQ(timeLeft(9, 0.9), "A few seconds left");
    EXPECT_EQ(timeLeft(10, 0.5), "About 10 seconds left");
    EXPECT_EQ(timeLeft(10, 0.14), "About a minute left");
    EXPECT_EQ(timeLeft(60, 0.25), "About 3 minutes left");
}
