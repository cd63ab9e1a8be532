// SPDX-License-Identifier: GPL-2.0-or-later
// What the keyboard reaches in the windows that are used for composing, and how it comes back.
#include "form1Fixture.h"
#include "setup/frmsetup.h"
#include "shell/MenuStrip.h"
#include "tableau/Picmain.h"

#include <QFocusFrame>

#include <iostream>

using namespace velmora;

namespace {
class form1KeysTest : public form1Fixture {
protected:
    /// Everything that @p key meets from where the focus is, until it is there again.
    static std::vector<const QWidget*> round(QWidget& window, Qt::Key key, Qt::KeyboardModifiers held = {}) {
        constexpr std::size_t kMost = 300;
        std::vector<const QWidget*> met;
        const QWidget* const first = QApplication::focusWidget();
        do {
            const QWidget* before = QApplication::focusWidget();
            QTest::keyClick(before ? const_cast<QWidget*>(before) : &window, key, held);
            const QWidget* now = QApplication::focusWidget();
            if (!now || now == before || met.size() == kMost) {
                ADD_FAILURE() << "stuck at " << (before ? before->objectName().toStdString() : "nothing");
                break;
            }
            met.push_back(now);
        } while (met.back() != first);
        return met;
    }
    /// That Tab meets everything once and comes round, and that Shift+Tab goes the same way back.
    static std::size_t expectNoTrap(QWidget& window) {
        std::vector<const QWidget*> there = round(window, Qt::Key_Tab);
        std::vector<const QWidget*> back = round(window, Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(std::set(there.begin(), there.end()).size(), there.size());
        if (there.empty() || back.empty())
            return 0;
        there.pop_back(); // both end where they began
        back.pop_back();
        std::reverse(back.begin(), back.end());
        EXPECT_EQ(there, back);
        for (const QWidget* met : there)
            EXPECT_TRUE(met->isVisible() && met->isEnabled()) << met->objectName().toStdString();
        return there.size() + 1;
    }
};
} // namespace

TEST_F(form1KeysTest, TabGoesRoundTheComposingWindowAndIsCaughtNowhere) {
    putNotes(score(), 0, 60, 2);
    for (const int width : {1366, 1024, 900})
        for (const int page : {17, 18, 19}) {
            shown().resize(width, 768);
            window().Lb1_Click(page);
            child("Picmain").setFocus();
            const std::size_t reached = expectNoTrap(window());
            EXPECT_GT(reached, 40U);
            std::cout << "form1, " << width << " wide, Lb1(" << page << "): " << reached
                      << " things reached by Tab\n";
        }
}

TEST_F(form1KeysTest, TabGoesRoundTheSetupToolbarAndIsCaughtNowhere) {
    frmsetup toolbar(desk(), nullptr);
    toolbar.open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&toolbar));
    for (int panel = 0; panel < 6; ++panel) {
        toolbar.Lmnu_Click(panel);
        const std::size_t reached = expectNoTrap(toolbar);
        EXPECT_GT(reached, 3U);
        std::cout << "frmsetup, panel " << panel << ": " << reached << " things reached by Tab\n";
    }
    toolbar.setFolded(true);
    EXPECT_EQ(expectNoTrap(toolbar), 2U) << "the tab and the button that unfolds";
}

TEST_F(form1KeysTest, AfterAMenuTabGoesOnFromWhereItWas) {
    putNotes(score(), 0, 60, 2);
    shown();
    for (const auto& [key, held] : {std::pair(Qt::Key_F10, Qt::KeyboardModifiers()),
                                    std::pair(Qt::Key_E, Qt::KeyboardModifiers(Qt::AltModifier))}) {
        child("Picmain").setFocus();
        QTest::keyClick(&window(), key, held);
        QWidget* popup = QApplication::activePopupWidget();
        ASSERT_NE(popup, nullptr);
        QTest::keyClick(popup, Qt::Key_Escape);
        QApplication::processEvents();
        window().activateWindow(); // tests have no window manager that would do so
        QApplication::processEvents();
        EXPECT_EQ(QApplication::focusWidget(), &child("Picmain"));
        EXPECT_EQ(child<MenuStrip>("toolbMenu").activeAction(), nullptr);
        expectNoTrap(window());
    }
}

TEST_F(form1KeysTest, OfTheTableauThePaperHasTheRingAndAPressTakesItAway) {
    putNotes(score(), 0, 60, 2);
    shown();
    const auto* ring = window().findChild<QFocusFrame*>();
    child("Picmain").setFocus();
    EXPECT_EQ(ring->widget(), nullptr) << "no key has moved the focus yet";
    const QImage plain = window().grab().toImage();
    QTest::keyClick(&window(), Qt::Key_Tab);
    QTest::keyClick(&window(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(ring->widget(), &child("MusicBox"));
    EXPECT_NE(window().grab().toImage(), plain);
    QTest::mouseClick(&child("textLine"), Qt::LeftButton, {}, {200, 12});
    EXPECT_EQ(ring->widget(), nullptr);
    EXPECT_EQ(window().grab().toImage(), plain) << "no line is left anywhere";
}

TEST_F(form1KeysTest, TheTwoButtonsOfTheModeAreBothPressedOrNeither) {
    shown();
    for (const Mouse mode : {Mouse::Draw, Mouse::Select, Mouse::Draw}) {
        window().setMouseMode(mode);
        EXPECT_EQ(button("Cmd2", 10).isChecked(), mode == Mouse::Draw);
        EXPECT_EQ(button("Lb1", 24).isChecked(), mode == Mouse::Draw);
    }
}
