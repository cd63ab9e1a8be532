// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/EditorPage.h"

#include "PagesFixture.h"

using namespace velmora;

namespace {
class EditorPageTest : public PagesFixture {
protected:
    void opened() { open(ToolPanel::Editor); }
};
} // namespace

TEST_F(EditorPageTest, NumbersAreTyped) {
    opened();
    type("Txtspc", "4");
    type("Txtnotes", "64");
    type("Txtbeats", "16");
    type("Txtrepeat", "12");
    EXPECT_EQ(edit().Txtspc, 4);
    EXPECT_EQ(edit().TotalNotes, 64);
    EXPECT_EQ(edit().CycleBeats, 16);
    EXPECT_EQ(edit().CycleNotes, 12);
}

TEST_F(EditorPageTest, BadNumbersOfSpacesReadAsZero) {
    opened();
    for (const char* text : {"7", "-7", "abc", "", "  "}) {
        edit().Txtspc = 3;
        panel().refresh();
        part<QLineEdit>("Txtspc").clear();
        type("Txtspc", text);
        key("spcArrows", Qt::Key_Return);
        EXPECT_EQ(shownIn("Txtspc"), std::to_string(edit().Txtspc)) << text;
    }
    type("Txtspc", "-7");
    EXPECT_EQ(edit().Txtspc, 0);
    type("Txtspc", "abc");
    EXPECT_EQ(edit().Txtspc, 0);
}

TEST_F(EditorPageTest, TheNotesNeverPassTheirCycle) {
    opened();
    type("Txtbeats", "6");
    type("Txtrepeat", "8");
    EXPECT_EQ(shownIn("Txtrepeat"), "6");
    key("beatsArrows", Qt::Key_Down);
    EXPECT_EQ(shownIn("Txtbeats"), "5");
    EXPECT_EQ(shownIn("Txtrepeat"), "5");
}

TEST_F(EditorPageTest, EachBoxSetsItsOwnFlag) {
    opened();
    tick("Check5");
    EXPECT_TRUE(edit().Check5);
    EXPECT_FALSE(edit().Check3);
    tick("Check3");
    tick("Check2");
    tick("Check5");
    EXPECT_TRUE(edit().Check3);
    EXPECT_TRUE(edit().Check2);
    EXPECT_FALSE(edit().Check5);
}

TEST_F(EditorPageTest, ABoxThatTabHasReachedKeepsSpaceToItself) {
    putNotes(score(), 0, 60, 2);
    opened();
    part("Check5").setFocus(Qt::TabFocusReason);
    port.sent.clear();
    key("Check5", Qt::Key_Space);
    EXPECT_TRUE(edit().Check5);
    EXPECT_TRUE(port.notes().empty()) << "nothing played";
}

TEST_F(EditorPageTest, InCarefulMannerTheCycleIsThatOfTheWorkedExampleUntilItIsGiven) {
    store("Classic", "0");
    opened();
    for (const auto& [field, greyed] :
         {std::pair{"Txtnotes", "60"}, {"Txtbeats", "12"}, {"Txtrepeat", "8"}}) {
        EXPECT_EQ(shownIn(field), "") << field;
        EXPECT_EQ(part<QLineEdit>(field).placeholderText(), greyed) << field;
    }
    EXPECT_EQ(shownIn("Txtspc"), "0");
    key("beatsArrows", Qt::Key_Down);
    EXPECT_EQ(shownIn("Txtbeats"), "11");
}
