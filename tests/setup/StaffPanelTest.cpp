// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/StaffPanel.h"

#include "SetupFixture.h"

using namespace velmora;
using testing::ElementsAre;

using StaffPanelTest = SetupFixture;

TEST_F(StaffPanelTest, TheStaffBoxesAreKeptAtOnce) {
    opened(5);
    click(control("ChTreble"));
    click(control("ChBass"));
    click(control("Check1"));
    EXPECT_FALSE(workspace().setup.ChTreble);
    EXPECT_FALSE(workspace().setup.ChBass);
    EXPECT_FALSE(workspace().view.Show_Sharp_guides);
    EXPECT_EQ(stored("Show Treble staff"), "0");
    EXPECT_EQ(stored("Show Bass staff"), "0");
    EXPECT_EQ(stored("Show_Sharp_guides"), "0");
    EXPECT_THAT(watcher().told, ElementsAre(Change::Looks, Change::Looks, Change::Looks));
}

TEST_F(StaffPanelTest, TheLineSpacingLaysOutTheComposingWindow) {
    opened(5);
    type("Text3", "9");
    EXPECT_EQ(workspace().view.Line_Height, 9);
    EXPECT_EQ(stored("Line_Height"), "9");
    EXPECT_THAT(watcher().told, ElementsAre(Changes(Change::Looks)));
    QTest::keyClick(&control("VScroll3"), Qt::Key_Down);
    EXPECT_EQ(shownIn("Text3"), "8");
}

TEST_F(StaffPanelTest, ALineSpacingOfLettersIsTheLeast) {
    opened(5);
    type("Text3", "abc");
    EXPECT_EQ(workspace().view.Line_Height, 4);
    QTest::keyClick(&control("VScroll3"), Qt::Key_Down);
    EXPECT_EQ(workspace().view.Line_Height, 4);
    EXPECT_EQ(shownIn("Text3"), "4");
}
