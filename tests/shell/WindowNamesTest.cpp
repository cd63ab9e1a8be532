// SPDX-License-Identifier: GPL-2.0-or-later
// What a screen reader says of the windows' buttons.
#include "WindowFixture.h"
#include "golden/GoldenWindows.h"
#include "shell/HelpWindow.h"
#include "shell/openerF.h"
#include "tableau/form1.h"

#include <QtWidgets>

using namespace velmora;

namespace {
/// The name that is said: Qt takes the text of a button that has no other.
std::string nameOf(QWidget& widget) {
    const QAccessibleInterface* said = QAccessible::queryAccessibleInterface(&widget);
    return said ? said->text(QAccessible::Name).toStdString() : std::string();
}
void expectNames(const QWidget& window) {
    const auto buttons = window.findChildren<QAbstractButton*>();
    EXPECT_FALSE(buttons.isEmpty());
    for (QAbstractButton* button : buttons)
        EXPECT_NE(nameOf(*button), "")
            << window.objectName().toStdString() << ": " << button->objectName().toStdString();
}
} // namespace

TEST(WindowNamesTest, EveryButtonOfTheComposingWindowHasAName) {
    GoldenProgram program(1);
    Application application = program.application();
    const form1 window(application);
    expectNames(window);
}

TEST(WindowNamesTest, EveryButtonOfTheStartWindowHasAName) {
    GoldenProgram program(1);
    const openerF window(*program.skins, program.tips);
    expectNames(window);
}

TEST(WindowNamesTest, EveryButtonOfTheHelpWindowHasAName) {
    GoldenProgram program(1);
    const HelpWindow window(*program.skins, program.tips, HelpLibrary());
    expectNames(window);
}
