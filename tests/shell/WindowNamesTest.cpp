// SPDX-License-Identifier: GPL-2.0-or-later
// What a screen reader says of the windows' buttons.
#include "WindowFixture.h"
#include "golden/GoldenWindows.h"
#include "parts/FrmInst.h"
#include "recording/Record.h"
#include "recording/frmLog.h"
#include "setup/frmsetup.h"
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
/// Calls @p see with whatever of a window a screen reader comes to.
void walk(QAccessibleInterface& part, const std::function<void(QAccessibleInterface&)>& see) {
    if (part.state().invisible)
        return;
    see(part);
    for (int i = 0; i < part.childCount(); ++i)
        if (QAccessibleInterface* child = part.child(i))
            walk(*child, see);
}
/// A list is named by its caption: its own name is what is chosen in it.
bool isNamed(const QAccessibleInterface& part) {
    return part.role() == QAccessible::ComboBox ? !part.relations(QAccessible::Label).empty()
                                                : !part.text(QAccessible::Name).isEmpty();
}
/// What a key can reach has a name and says what it is for.
void expectWords(QWidget& window) {
    int seen = 0;
    walk(*QAccessible::queryAccessibleInterface(&window), [&](QAccessibleInterface& part) {
        const auto* widget = qobject_cast<QWidget*>(part.object());
        // The line in a number field is reached as that field.
        if (!part.state().focusable || !widget || widget == &window || widget->focusProxy())
            return;
        ++seen;
        const std::string name = widget->objectName().toStdString();
        EXPECT_TRUE(isNamed(part)) << name;
        EXPECT_FALSE(part.text(QAccessible::Description).isEmpty()) << name;
        EXPECT_NE(part.role(), QAccessible::NoRole) << name;
    });
    EXPECT_GT(seen, 0);
}
} // namespace

TEST(WindowNamesTest, EveryControlOfTheComposingWindowSaysWhatItIs) {
    GoldenProgram program(1);
    form1 window(program.desk());
    window.resize(1366, 768);
    window.show();
    for (const int page : {17, 18, 19}) {
        window.Lb1_Click(page);
        expectWords(window);
    }
}

TEST(WindowNamesTest, EveryControlOfTheSetupToolbarSaysWhatItIs) {
    GoldenProgram program(1);
    frmsetup window(program.desk(), nullptr);
    window.show();
    for (int panel = 0; panel < 6; ++panel) {
        window.Lmnu_Click(panel);
        expectWords(window);
    }
}

TEST(WindowNamesTest, EveryControlOfTheRecordingStudioSaysWhatItIs) {
    GoldenProgram program(1);
    Record window(program.desk(), nullptr);
    window.show();
    expectWords(window);
    expectNames(window);
    window.showTake(true);
    expectWords(window);
    frmLog log(program.desk(), nullptr);
    log.show();
    expectWords(log);
    expectNames(log);
}

TEST(WindowNamesTest, EveryControlOfTheSmallWindowsSaysWhatItIs) {
    GoldenProgram program(1);
    openerF opener(program.skins, program.tips);
    opener.show();
    expectWords(opener);
    FrmInst picker(program.desk(), nullptr);
    picker.show();
    expectWords(picker);
    HelpWindow help(program.skins, program.tips, program.settings, HelpLibrary());
    help.show();
    expectWords(help);
}

TEST(WindowNamesTest, FieldsAndTheirSlidersAreNamedByTheirCaptions) {
    GoldenProgram program(1);
    form1 window(program.desk());
    for (const auto& [caption, controls] :
         {std::pair("Start at X", std::array{"vcrStart", "txtStart", "IStart1"}),
          std::pair("Cycle Length", std::array{"VSrep", "TxtRep", "IRepeat"})})
        for (const char* control : controls)
            EXPECT_EQ(nameOf(*window.findChild<QWidget*>(control)), caption) << control;
}

TEST(WindowNamesTest, EveryButtonOfTheComposingWindowHasAName) {
    GoldenProgram program(1);
    const form1 window(program.desk());
    expectNames(window);
}

TEST(WindowNamesTest, EveryButtonOfTheStartWindowHasAName) {
    GoldenProgram program(1);
    const openerF window(program.skins, program.tips);
    expectNames(window);
}

TEST(WindowNamesTest, EveryButtonOfTheHelpWindowHasAName) {
    GoldenProgram program(1);
    const HelpWindow window(program.skins, program.tips, program.settings, HelpLibrary());
    expectNames(window);
}

TEST(WindowNamesTest, TheHelpWindowHasTheProgramsTipsAndNoneOfThePlatform) {
    GoldenProgram program(1);
    const HelpWindow window(program.skins, program.tips, program.settings, HelpLibrary());
    for (const auto* control : window.findChildren<QWidget*>())
        EXPECT_TRUE(control->toolTip().isEmpty()) << control->objectName().toStdString();
    for (const char* name : {"txtHelpSearch", "btnHelpBack", "btnHelpForward", "btnHelpHome"}) {
        const auto* control = window.findChild<QWidget*>(name);
        ASSERT_TRUE(control) << name;
        const Tip* tip = program.tips.toolTip(*control);
        ASSERT_TRUE(tip) << name;
        EXPECT_FALSE(tip->text.isEmpty()) << name;
    }
}
