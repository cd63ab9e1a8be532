// SPDX-License-Identifier: GPL-2.0-or-later
// Rows become higher and lower by the wheel and by keys.
#include "composition/SetupRules.h"
#include "form1Fixture.h"
#include "setup/frmsetup.h"
#include "tableau/Picmain.h"

#include <QLineEdit>
#include <QWheelEvent>

using namespace velmora;

namespace {
class form1ZoomTest : public form1Fixture {
protected:
    form1ZoomTest() { store("Percussion", "-1"); }

    ViewState& view() { return workspace().view; }
    void turn(int angle, int y, Qt::KeyboardModifiers keys = Qt::ControlModifier) {
        // To the parent that takes it: what a test sends goes up no further.
        QWidget& area = child("Picmain");
        const QPointF at = child("MusicBox").mapTo(&area, QPointF(300, y));
        QWheelEvent event(at, area.mapToGlobal(at), {}, {0, angle}, Qt::NoButton, keys, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(&area, &event);
    }
    void mouse(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons down) {
        QWidget& paper = child("MusicBox");
        QMouseEvent event(type, at, paper.mapToGlobal(QPointF(at)), button, down, Qt::NoModifier);
        QApplication::sendEvent(&paper, &event);
    }
    int rowAt(int y) { return view().ViewTopRow + y / view().Line_Height; }
    QImage picture() { return static_cast<TableauBox&>(child("MusicBox")).picture().copy(); }
};
} // namespace

TEST_F(form1ZoomTest, TheRowUnderThePointerStaysUnderIt) {
    shown();
    view().ViewTopRow = 50;
    const int row = rowAt(150);
    for (int height = 9; height <= 24; ++height) {
        turn(120, 150);
        EXPECT_EQ(view().Line_Height, height);
        EXPECT_EQ(rowAt(150), row) << height;
    }
    turn(120, 150);
    EXPECT_EQ(view().Line_Height, 24);
    for (int height = 23; height >= 8; --height) {
        turn(-120, 150);
        EXPECT_EQ(rowAt(150), row) << height;
    }
    turn(-120 * 9, 150);
    EXPECT_EQ(view().Line_Height, 5);
}

TEST_F(form1ZoomTest, ANotchPaintsEachPaperOnce) {
    shown();
    const int melody = window().paintings(Box::MusicBox);
    const int percussion = window().paintings(Box::Beatbox);
    turn(120, 150);
    turn(240, 150); // two notches that came together
    QApplication::processEvents();
    EXPECT_EQ(view().Line_Height, 11);
    EXPECT_EQ(window().paintings(Box::MusicBox) - melody, 2);
    EXPECT_EQ(window().paintings(Box::Beatbox) - percussion, 2);
}

TEST_F(form1ZoomTest, TheColumnsStayThoughTheViewGoesPastTheEnd) {
    shown();
    view().ViewFirstColumn = 980;
    view().ViewLastColumn = 990;
    turn(120, 150);
    EXPECT_EQ(view().ViewFirstColumn, 980);
    EXPECT_EQ(view().ViewLastColumn, 990);
}

TEST_F(form1ZoomTest, TheSetupToolbarAndTheSettingFollow) {
    shown();
    frmsetup toolbar(desk(), &window());
    toolbar.open(Windows::Focus::Leave);
    turn(240, 150);
    EXPECT_EQ(toolbar.findChild<QLineEdit*>("Text3")->text(), "10");
    EXPECT_EQ(stored("Line_Height"), "10");
}

TEST_F(form1ZoomTest, KeysDoTheSameAroundTheMiddle) {
    shown();
    view().ViewTopRow = 50;
    const int middle = child("MusicBox").height() / 2;
    const int row = rowAt(middle);
    QTest::keyClick(&child("Picmain"), Qt::Key_Plus, Qt::ControlModifier);
    QTest::keyClick(&child("Picmain"), Qt::Key_Equal, Qt::ControlModifier);
    EXPECT_EQ(view().Line_Height, 10);
    EXPECT_EQ(rowAt(middle), row);
    QTest::keyClick(&child("Picmain"), Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(view().Line_Height, 9);
    QTest::keyClick(&child("Picmain"), Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(view().Line_Height, 8);
}

TEST_F(form1ZoomTest, InTheMiddleOfAStrokeNothingChanges) {
    shown();
    mouse(QEvent::MouseButtonPress, {29, 84}, Qt::LeftButton, Qt::LeftButton);
    mouse(QEvent::MouseMove, {53, 84}, Qt::NoButton, Qt::LeftButton);
    const QImage drawing = picture();
    turn(120, 150);
    QTest::keyClick(&child("Picmain"), Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(view().Line_Height, 8);
    EXPECT_EQ(picture(), drawing);
    mouse(QEvent::MouseButtonRelease, {53, 84}, Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(score().NoteCell.valueOr(0, 2, -9), view().ViewTopRow + 10);
    turn(120, 150);
    EXPECT_EQ(view().Line_Height, 9);
}

TEST_F(form1ZoomTest, ARowHeightThatComesInAStrokeLeavesAWholePicture) {
    shown();
    mouse(QEvent::MouseButtonPress, {29, 84}, Qt::LeftButton, Qt::LeftButton);
    mouse(QEvent::MouseMove, {53, 84}, Qt::NoButton, Qt::LeftButton);
    Text3_Change(workspace(), 20);
    mouse(QEvent::MouseMove, {77, 300}, Qt::NoButton, Qt::LeftButton);
    Text3_Change(workspace(), 4);
    mouse(QEvent::MouseButtonRelease, {77, 84}, Qt::LeftButton, Qt::NoButton);
    const QImage after = picture();
    child<Picmain>("Picmain").drawAll();
    EXPECT_EQ(picture(), after) << "nothing of the rubber band is left";
    EXPECT_GE(score().lastFilledPosition(0, score().NumNotes), 2);
}

TEST_F(form1ZoomTest, RowsMayChangeAtEveryStepOfPlaying) {
    for (const bool careful : {false, true}) {
        if (careful)
            workspace().setManners(Manners::careful());
        putNotes(score(), 0, 60, 40);
        shown();
        std::vector<int> heights;
        loop.waits = 0;
        loop.onWait = [&](int waits) {
            if (waits > 60)
                return;
            if (waits % 3 == 0)
                turn(waits % 2 == 0 ? 240 : -120, 10 * waits);
            else
                Text3_Change(workspace(), static_cast<std::int16_t>(4 + waits % 37));
            heights.push_back(view().Line_Height);
        };
        window().Cmd2_Click(3);
        loop.onWait = {};
        EXPECT_GT(heights.size(), 20U);
        const QImage after = picture();
        child<Picmain>("Picmain").drawAll();
        EXPECT_EQ(picture(), after) << "no play line is left";
    }
}

TEST_F(form1ZoomTest, AHugeScoreIsZoomedToo) {
    store("NumNotes", "200000");
    shown();
    for (int column = 0; column < 200'000; column += 7)
        score().NoteCell.set(0, column, static_cast<std::int16_t>(column % 128));
    announce(workspace(), Change::File);
    view().ViewFirstColumn = 199'900;
    for (int i = 0; i < 40; ++i)
        turn(i < 20 ? 120 : -120, 399);
    EXPECT_EQ(view().Line_Height, 5);
}
