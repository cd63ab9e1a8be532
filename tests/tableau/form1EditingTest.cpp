// SPDX-License-Identifier: GPL-2.0-or-later
// The editing commands, by every way that leads to them, and undo.
#include "form1Fixture.h"

#include <QLabel>

using namespace velmora;
using testing::ElementsAre;

namespace {
class form1EditingTest : public form1Fixture {
protected:
    form1EditingTest() {
        putNotes(score(), 0, 60, 4, 2); // positions 0 to 7
        workspace().edit.ChannelPicked.fill(true);
        workspace().edit.CycleNotes = 3;
    }
    void select(int from, int to) {
        ViewState& view = workspace().view;
        view.SelectStart = view.PlayMark = from;
        view.SelectEnd = to;
    }
    std::vector<int> cells(int count) {
        std::vector<int> found;
        for (int position = 0; position < count; ++position)
            found.push_back(score().NoteCell.valueOr(0, position, -9));
        return found;
    }
    bool canUndo() { return button("Lb1", 4).isEnabled(); }
};
} // namespace

TEST_F(form1EditingTest, CopyAndPasteByTheBarLeaveTheMouseAsItIs) {
    shown();
    select(0, 3);
    window().Cmd2_Click(11);
    EXPECT_EQ(workspace().view.SelectStart, -1);
    EXPECT_EQ(workspace().view.MouseMode, Mouse::Draw);
    workspace().view.PlayMark = 20;
    window().Cmd2_Click(13);
    EXPECT_THAT((std::vector<int>{score().NoteCell.valueOr(0, 20, -9), score().NoteCell.valueOr(0, 21, -9)}),
                ElementsAre(60, 1060));
    EXPECT_EQ(text("LblNumnotes"), "24 Notes");
    EXPECT_EQ(workspace().view.PlayMark, 20);
}

TEST_F(form1EditingTest, TheScoreEditorsButtonsSelectFirstAndItsPastesClearTheMarks) {
    shown();
    select(0, 3);
    window().Lb1_Click(25);
    EXPECT_EQ(workspace().view.MouseMode, Mouse::Select);
    workspace().view.PlayMark = 20;
    window().Lb1_Click(28);
    EXPECT_EQ(score().NoteCell.valueOr(0, 20, -9), 60);
    EXPECT_EQ(workspace().view.PlayMark, 0);
    EXPECT_EQ(workspace().view.SelectStart, -1);
}

TEST_F(form1EditingTest, TheMenusPastesAskForAPlace) {
    shown();
    select(0, 3);
    menu.item("mnuCut").trigger();
    EXPECT_EQ(workspace().view.MouseMode, Mouse::Select);
    menu.item("mnuPasteInsert").trigger();
    EXPECT_EQ(workspace().view.MouseMode, Mouse::Cursor);
}

TEST_F(form1EditingTest, KeysPressTheMenusItems) {
    shown();
    select(0, 3);
    QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(workspace().edit.SelectSpan, 3);
    workspace().view.PlayMark = 20;
    QTest::keyClick(&window(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(score().NoteCell.valueOr(0, 20, -9), 60);
    workspace().view.PlayMark = 0;
    QTest::keyClick(&window(), Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(score().NoteCell.valueOr(0, 24, -9), 60) << "moved on by four";
}

TEST_F(form1EditingTest, EveryCommandCanBeUndoneAndSaysWhatWouldBe) {
    struct Row {
        const char* array;
        int index;
    };
    shown();
    for (const Row& row : {Row{"Cmd2", 12}, Row{"Cmd2", 13}, Row{"Cmd2", 14}, Row{"Cmd2", 15},
                           Row{"Cmd2", 16}, Row{"Lb1", 22}, Row{"Lb1", 30}}) {
        select(0, 3);
        window().Cmd2_Click(11);
        select(2, 5);
        workspace().view.PlayMark = 5;
        workspace().edit.Txtspc = 2;
        workspace().edit.CycleBeats = 6;
        workspace().edit.TotalNotes = 24;
        workspace().edit.Check2 = workspace().edit.Check5 = true;
        const auto before = cells(40);
        QAbstractButton& pressed = button(row.array, row.index);
        pressed.click();
        EXPECT_NE(cells(40), before) << row.array << row.index;
        ASSERT_TRUE(canUndo()) << row.array << row.index;
        EXPECT_TRUE(menu.item("undo").isEnabled());
        EXPECT_NE(workspace().undoStep(), "");
        window().OpenforUndo();
        EXPECT_EQ(cells(40), before) << row.array << row.index;
        EXPECT_FALSE(canUndo());
        window().OpenforUndo();
        EXPECT_EQ(cells(40), before) << "a second undo does nothing";
    }
}

TEST_F(form1EditingTest, WithNothingSelectedCopyAndCutDoNothing) {
    shown();
    const auto before = cells(20);
    window().Cmd2_Click(11);
    window().Cmd2_Click(12);
    EXPECT_EQ(cells(20), before);
    EXPECT_FALSE(canUndo());
}

TEST_F(form1EditingTest, WithoutATickedChannelTheWindowSaysWhyNothingWasCopied) {
    workspace().edit.ChannelPicked.fill(false);
    shown();
    select(0, 3);
    window().Cmd2_Click(11);
    EXPECT_NE(text("toolText").find("No channel is ticked"), std::string::npos);
}

TEST_F(form1EditingTest, AStrokeEnablesUndo) {
    shown();
    EXPECT_FALSE(canUndo());
    QWidget& box = child("MusicBox");
    QTest::mousePress(&box, Qt::LeftButton, {}, QPoint(30 * 12 + 3, 100));
    QTest::mouseRelease(&box, Qt::LeftButton, {}, QPoint(30 * 12 + 3, 100));
    EXPECT_TRUE(canUndo());
    QTest::keyClick(&window(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(score().NoteCell.valueOr(0, 30, -9), -1);
    EXPECT_FALSE(canUndo());
}

TEST_F(form1EditingTest, AMessageStandsUntilItHoldsNoMore) {
    workspace().edit.ChannelPicked.fill(false);
    shown();
    select(0, 3);
    window().Cmd2_Click(11);
    ASSERT_NE(text("toolText"), "");
    workspace().edit.ChannelPicked[0] = true;
    select(0, 3);
    window().Cmd2_Click(11);
    EXPECT_EQ(text("toolText"), "");
}
