// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/MenuStrip.h"

#include "WindowFixture.h"
#include "shell/Frmmenu.h"

#include <QtWidgets>

using namespace velmora;

class MenuStripTest : public WindowFixture {
protected:
    MenuStripTest() {
        for (const char* item : {"mnuOpen", "mnuExit", "mnuCut", "mnuEdit", "mnuHelpfile"})
            menu.bind(window, item, [this, item] { chosen.emplace_back(item); });
        window.resize(400, 300);
        strip.setGeometry(0, 0, 400, 24);
        open(window);
    }
    /// The popup that stands, by its name.
    static std::string shown() {
        const QWidget* popup = QApplication::activePopupWidget();
        return popup ? popup->objectName().toStdString() : std::string();
    }
    static void key(Qt::Key key) {
        QWidget* popup = QApplication::activePopupWidget();
        QTest::keyClick(popup ? popup : QApplication::focusWidget(), key);
    }

    /// Closes what is open. Tests have no window manager that would give the window the keyboard back.
    void escape() {
        key(Qt::Key_Escape);
        QApplication::processEvents();
        window.activateWindow();
        QApplication::processEvents();
    }

    static constexpr std::array kLabels{
        MenuStrip::Label{3, "File", "mnupopup6"},
        MenuStrip::Label{2, "Edit", "mnupopup7"},
        MenuStrip::Label{1, "Tools", "mnupopup9"},
        MenuStrip::Label{0, "Help", "mnupopup10"},
    };
    std::vector<std::string> chosen;
    Frmmenu menu;
    TestWindow window{*skins};
    MenuStrip strip{menu, kLabels, window.Ibak5()};
};

TEST_F(MenuStripTest, LabelsStandFromLeftToRightUnderTheirNames) {
    std::vector<std::string> seen;
    int left = -1;
    for (QAction* label : strip.actions()) {
        seen.push_back(label->objectName().toStdString() + " " + label->iconText().toStdString());
        EXPECT_GT(strip.actionGeometry(label).left(), left);
        left = strip.actionGeometry(label).left();
    }
    EXPECT_THAT(seen, testing::ElementsAre("Lmnu(3) File", "Lmnu(2) Edit", "Lmnu(1) Tools", "Lmnu(0) Help"));
}

TEST_F(MenuStripTest, ALabelIsItsTextAndTwentyWideAndTwentyHigh) {
    for (QAction* label : strip.actions()) {
        const QRect place = strip.actionGeometry(label);
        EXPECT_EQ(place.width(), strip.fontMetrics().horizontalAdvance(label->iconText()) + 20);
        EXPECT_EQ(place.height(), 20);
    }
}

TEST_F(MenuStripTest, EachLabelOpensItsPopupAtItsLowerLeftCorner) {
    for (const MenuStrip::Label& label : kLabels) {
        strip.Lmnu_Click(label.index);
        ASSERT_EQ(shown(), label.popup);
        const auto* action = strip.activeAction();
        ASSERT_NE(action, nullptr);
        const QRect place = strip.actionGeometry(const_cast<QAction*>(action));
        const QWidget* popup = QApplication::activePopupWidget();
        EXPECT_EQ(popup->x(), strip.mapToGlobal(place.bottomLeft()).x());
        EXPECT_GE(popup->y(), strip.mapToGlobal(place.bottomLeft()).y());
        EXPECT_LE(popup->y(), strip.mapToGlobal(QPoint(0, strip.height())).y() + 2);
        key(Qt::Key_Escape);
        EXPECT_EQ(shown(), "");
    }
}

TEST_F(MenuStripTest, AnIndexWithoutALabelOpensNothing) {
    strip.Lmnu_Click(7);
    EXPECT_EQ(shown(), "");
}

TEST_F(MenuStripTest, F10OpensTheFirst) {
    QTest::keyClick(&window, Qt::Key_F10);
    EXPECT_EQ(shown(), "mnupopup6");
    key(Qt::Key_Escape);
}

TEST_F(MenuStripTest, AltAloneOpensTheFirstAndWithALetterNone) {
    QTest::keyPress(&window, Qt::Key_Alt);
    QTest::keyClick(&window, Qt::Key_X, Qt::AltModifier);
    QTest::keyRelease(&window, Qt::Key_Alt);
    EXPECT_EQ(shown(), "");
    QTest::keyPress(&window, Qt::Key_Alt);
    EXPECT_EQ(shown(), "");
    QTest::keyRelease(&window, Qt::Key_Alt);
    EXPECT_EQ(shown(), "mnupopup6");
    key(Qt::Key_Escape);
}

TEST_F(MenuStripTest, ArrowsWalkBetweenTheMenusAndAround) {
    strip.Lmnu_Click(3);
    for (const char* popup : {"mnupopup7", "mnupopup9", "mnupopup10", "mnupopup6"}) {
        // The first row of "Tools" has a sub-menu, which the arrow would open.
        if (shown() == "mnupopup9")
            key(Qt::Key_Down);
        key(Qt::Key_Right);
        EXPECT_EQ(shown(), popup);
    }
    key(Qt::Key_Left);
    EXPECT_EQ(shown(), "mnupopup10");
    key(Qt::Key_Escape);
}

TEST_F(MenuStripTest, EnterChoosesTheReachedItem) {
    strip.Lmnu_Click(3);
    key(Qt::Key_Return);
    EXPECT_THAT(chosen, testing::ElementsAre("mnuOpen"));
    EXPECT_EQ(shown(), "");
}

TEST_F(MenuStripTest, AMousePressOpensAndAnItemIsChosen) {
    const QRect place = strip.actionGeometry(strip.actions().first());
    QTest::mousePress(&strip, Qt::LeftButton, {}, place.center());
    ASSERT_EQ(shown(), "mnupopup6");
    QMenu& popup = menu.popup("mnupopup6");
    QTest::mouseClick(&popup, Qt::LeftButton, {}, popup.actionGeometry(&menu.item("mnuExit")).center());
    EXPECT_THAT(chosen, testing::ElementsAre("mnuExit"));
}

TEST_F(MenuStripTest, AltWithTheFirstLetterOfALabelOpensItsMenu) {
    for (const auto& [letter, popup] :
         {std::pair(Qt::Key_F, "mnupopup6"), std::pair(Qt::Key_E, "mnupopup7"),
          std::pair(Qt::Key_T, "mnupopup9"), std::pair(Qt::Key_H, "mnupopup10")}) {
        QTest::keyClick(&window, letter, Qt::AltModifier);
        EXPECT_EQ(shown(), popup);
        escape();
    }
}

TEST_F(MenuStripTest, LettersAreUnderlinedWhileAltIsHeld) {
    const QImage plain = strip.grab().toImage();
    QTest::keyPress(&window, Qt::Key_Alt);
    EXPECT_TRUE(strip.showsLetters());
    const QImage underlined = strip.grab().toImage();
    EXPECT_NE(underlined, plain);
    QTest::keyClick(&window, Qt::Key_X, Qt::AltModifier); // so that nothing opens
    QTest::keyRelease(&window, Qt::Key_Alt);
    QApplication::processEvents();
    EXPECT_FALSE(strip.showsLetters());
    EXPECT_EQ(strip.grab().toImage(), plain);
}

TEST_F(MenuStripTest, AfterEscTheFocusIsWhereItWasAndNoLabelIsReached) {
    QLineEdit field(window.Ibak5());
    field.setGeometry(20, 60, 100, 24);
    field.show();
    const QImage plain = strip.grab().toImage();
    const auto openByKey = [&](Qt::Key key, Qt::KeyboardModifiers held) {
        QTest::keyClick(QApplication::focusWidget(), key, held);
    };
    for (const auto& [letter, held] : {std::pair(Qt::Key_F10, Qt::KeyboardModifiers()),
                                       std::pair(Qt::Key_E, Qt::KeyboardModifiers(Qt::AltModifier))}) {
        field.setFocus();
        openByKey(letter, held);
        ASSERT_NE(shown(), "");
        key(Qt::Key_Right);
        ASSERT_NE(shown(), "");
        escape();
        EXPECT_EQ(shown(), "");
        EXPECT_EQ(QApplication::focusWidget(), &field);
        EXPECT_EQ(strip.activeAction(), nullptr);
        EXPECT_EQ(strip.grab().toImage(), plain);
    }
}

TEST_F(MenuStripTest, AMenuThatTheMouseOpenedLeavesNoLabelReachedEither) {
    QLineEdit field(window.Ibak5());
    field.setGeometry(20, 60, 100, 24);
    field.show();
    field.setFocus();
    QTest::mousePress(&strip, Qt::LeftButton, {}, strip.actionGeometry(strip.actions().at(1)).center());
    ASSERT_EQ(shown(), "mnupopup7");
    escape();
    EXPECT_EQ(strip.activeAction(), nullptr);
    EXPECT_EQ(QApplication::focusWidget(), &field);
}
