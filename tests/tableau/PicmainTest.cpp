// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/Picmain.h"

#include "shell/Appearance.h"
#include "shell/ExToolTip.h"
#include "tableau/ViewGeometry.h"
#include "tableau/ViewScroll.h"
#include "tests/composition/WorkspaceFixture.h"

#include <QLabel>
#include <QTest>
#include <QWheelEvent>

using namespace velmora;
using Surface = Picmain::Surface;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
const QColor kCell(237, 237, 237);
const QColor kMeasure(68, 204, 255);
const QColor kLine(255, 192, 192);

class PicmainTest : public WorkspaceFixture {
protected:
    PicmainTest() { layOut({}); }
    void layOut(const FormParts& parts) {
        layout = formLayout({1366, 768}, parts);
        origin = {0, layout.pic3.top() - 1};
        area.setGeometry(0, 0, 1366, layout.textLine.top() - origin.y());
        resizeView(view(), 1366, area.height(), score().NumNotes);
        area.layOut(layout, origin);
        area.followView();
        area.drawAll();
        area.show();
    }
    ViewState& view() { return workspace().view; }
    TableauBox& box(Surface which) { return *static_cast<TableauBox*>(area.surface(which)); }
    QColor pixel(Surface which, int x, int y) { return box(which).picture().pixelColor(x, y); }
    ViewScroll& bar(const char* name) { return *area.findChild<ViewScroll*>(name); }
    void turn(QPoint angle, Qt::KeyboardModifiers keys = {}) {
        QWheelEvent event(QPointF(400, 300), area.mapToGlobal(QPointF(400, 300)), {}, angle, Qt::NoButton,
                          keys, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&area, &event);
    }

    ExToolTip tips{settings};
    Appearance look;
    FormLayout layout;
    QPoint origin;
    Picmain area{look, tips, workspace(), nullptr};
};
} // namespace

TEST_F(PicmainTest, TheBarsShowColumnsAndTheScoresMeasures) {
    for (const int measure : {16, 12}) {
        score().NotesPerMeasure = static_cast<std::int16_t>(measure);
        area.drawAll();
        for (const Surface which : {Surface::Pic3, Surface::Pic2a}) {
            EXPECT_EQ(pixel(which, 12, 5), kCell);
            EXPECT_EQ(pixel(which, 13, 5), QColor(Qt::white));
            EXPECT_EQ(pixel(which, 12 * measure, 5), kMeasure);
            EXPECT_EQ(pixel(which, 12 * (measure + 1), 5), kCell);
        }
    }
}

TEST_F(PicmainTest, ARightPressBesideTheTableauxTellsWhereItWas) {
    std::vector<Surface> met;
    area.onRightPress = [&](Surface which, QPoint) { met.push_back(which); };
    QTest::mousePress(&area, Qt::RightButton, {}, layout.guide.center() - origin);
    QTest::mousePress(&area, Qt::RightButton, {}, QPoint(20, 10));
    QTest::mousePress(&area, Qt::LeftButton, {}, QPoint(20, 10));
    EXPECT_THAT(met, ElementsAre(Surface::Guide, Surface::None));
}

TEST_F(PicmainTest, WhereBeatboxIsHiddenMusicBoxTakesItsRoom) {
    layOut({.percussion = false});
    EXPECT_FALSE(area.surface(Surface::Beatbox)->isVisible());
    EXPECT_EQ(area.musicBoxTop(), 236);
    EXPECT_FALSE(area.findChild<QWidget*>("Label9")->isVisible()) << "there is no gap to drag";
    area.DrawBeatArray();
    area.GetColumn(3);
    area.drawPlayLine(3);
    area.PutColumn();
}

TEST_F(PicmainTest, PlayingGreysTheTableauxAndTheScrollBars) {
    for (const bool editable : {false, true}) {
        area.setEditable(editable);
        for (const Surface which : {Surface::MusicBox, Surface::Beatbox})
            EXPECT_EQ(area.surface(which)->isEnabled(), editable);
        EXPECT_EQ(bar("HScroll1").isEnabled(), editable);
        EXPECT_EQ(bar("VScroll1").isEnabled(), editable);
        EXPECT_TRUE(area.surface(Surface::Pic2a)->isEnabled());
    }
}

TEST_F(PicmainTest, ScrollingMovesTheViewAndPaintsItAnew) {
    score().NoteCell.set(0, 30, 60);
    score().NoteInstrument.set(0, 30, 24);
    area.drawAll();
    EXPECT_EQ(pixel(Surface::MusicBox, 30 * 12 + 9, (60 - 42) * 8 + 5), QColor(255, 0, 0));
    int told = 0;
    area.onScrolled = [&] { ++told; };
    area.advanceScroll(10);
    EXPECT_EQ(view().ViewFirstColumn, 10);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(pixel(Surface::MusicBox, 20 * 12 + 9, (60 - 42) * 8 + 5), QColor(255, 0, 0));
    area.advanceRows(2);
    EXPECT_EQ(view().ViewTopRow, 44);
    EXPECT_EQ(pixel(Surface::MusicBox, 20 * 12 + 9, (60 - 44) * 8 + 5), QColor(255, 0, 0));
}

TEST_F(PicmainTest, TheScrollBarsFollowTheViewWithoutActingOnIt) {
    view().ViewFirstColumn = 40;
    view().ViewTopRow = 50;
    int told = 0;
    area.onScrolled = [&] { ++told; };
    area.followView();
    EXPECT_EQ(told, 0);
    EXPECT_EQ(bar("HScroll1").value(), 40 + view().ViewHalfColumns());
    EXPECT_EQ(bar("VScroll1").value(), 50 + view().ViewHalfRows() - 1);
    EXPECT_EQ(view().ViewFirstColumn, 40);
}

TEST_F(PicmainTest, TheWheelScrollsRowsAndWithShiftColumns) {
    turn({0, -120});
    EXPECT_EQ(view().ViewTopRow, 45);
    turn({0, 120});
    EXPECT_EQ(view().ViewTopRow, 42);
    turn({0, -240}, Qt::ShiftModifier);
    EXPECT_EQ(view().ViewFirstColumn, 8);
    turn({120, 0});
    EXPECT_EQ(view().ViewFirstColumn, 4) << "a touchpad turns across by itself";
}

TEST_F(PicmainTest, SmallTurnsOfATouchpadAddUp) {
    for (int i = 0; i < 40; ++i)
        turn({0, -3});
    EXPECT_EQ(view().ViewTopRow, 45);
}

TEST_F(PicmainTest, WithCtrlTheWheelTellsWholeNotchesAndWhere) {
    std::vector<std::pair<int, int>> told;
    area.onZoom = [&](int notches, int y) { told.emplace_back(notches, y); };
    const int y = 300 - box(Surface::MusicBox).y();
    turn({0, 120}, Qt::ControlModifier);
    turn({0, -360}, Qt::ControlModifier);
    EXPECT_THAT(told, ElementsAre(std::pair(1, y), std::pair(-3, y)));
    told.clear();
    for (int i = 0; i < 15; ++i) // a fine wheel
        turn({0, 8}, Qt::ControlModifier);
    EXPECT_THAT(told, ElementsAre(std::pair(1, y)));
    turn({0, 100}, Qt::ControlModifier);
    turn({0, -100}, Qt::ControlModifier);
    EXPECT_THAT(told, testing::SizeIs(1)) << "who turns back begins anew";
    turn({0, -20}, Qt::ControlModifier);
    EXPECT_THAT(told, testing::SizeIs(2));
    EXPECT_EQ(view().ViewTopRow, 42) << "nothing is scrolled";
}

TEST_F(PicmainTest, ATouchpadThatTellsPixelsZoomsLikewise) {
    std::vector<int> told;
    area.onZoom = [&](int notches, int /*y*/) { told.push_back(notches); };
    const auto roll = [&](int pixels, Qt::ScrollPhase phase) {
        QWheelEvent event(QPointF(400, 300), area.mapToGlobal(QPointF(400, 300)), {0, pixels}, {},
                          Qt::NoButton, Qt::ControlModifier, phase, false);
        QApplication::sendEvent(&area, &event);
    };
    for (int i = 0; i < 10; ++i)
        roll(4, Qt::ScrollUpdate);
    EXPECT_THAT(told, ElementsAre(1));
    roll(400, Qt::ScrollMomentum);
    EXPECT_THAT(told, ElementsAre(1)) << "the fingers have gone";
}

TEST_F(PicmainTest, WhilePlayingTheWheelAndTheKeysScrollNothing) {
    area.setEditable(false);
    turn({0, -120});
    QTest::keyClick(&area, Qt::Key_Right);
    EXPECT_EQ(view().ViewTopRow, 42);
    EXPECT_EQ(view().ViewFirstColumn, 0);
}

TEST_F(PicmainTest, ArrowsScrollByOneAndPagesByAView) {
    struct Row {
        Qt::Key key;
        int column, row;
    };
    for (const Row& step :
         {Row{Qt::Key_Right, 1, 42}, Row{Qt::Key_Down, 1, 43}, Row{Qt::Key_Up, 1, 42},
          Row{Qt::Key_Left, 0, 42}, Row{Qt::Key_PageDown, 108, 42}, Row{Qt::Key_PageUp, 0, 42}}) {
        QTest::keyClick(&area, step.key);
        EXPECT_EQ(view().ViewFirstColumn, step.column) << step.key;
        EXPECT_EQ(view().ViewTopRow, step.row) << step.key;
    }
}

TEST_F(PicmainTest, TheRubberBandComesAndGoesAndThePictureIsAsBefore) {
    putNotes(score(), 0, 60, 5);
    for (const Box which : {Box::MusicBox, Box::Beatbox}) {
        area.drawAll();
        TableauBox& on = box(which == Box::MusicBox ? Surface::MusicBox : Surface::Beatbox);
        const QImage before = on.picture().copy();
        area.GetRow(which, 2);
        area.drawBand(which, 2, 1, 9);
        EXPECT_NE(on.picture(), before);
        area.PutRow(which, 2);
        EXPECT_EQ(on.picture(), before);
    }
}

TEST_F(PicmainTest, TheSelectionComesAndGoesLikewise) {
    const QImage before = box(Surface::MusicBox).picture().copy();
    area.GetBox();
    area.drawSelectEdge(3);
    area.drawSelectDrag(3, 7);
    EXPECT_NE(box(Surface::MusicBox).picture(), before);
    area.PutBox();
    EXPECT_EQ(box(Surface::MusicBox).picture(), before);
}

TEST_F(PicmainTest, ThePlayLineStandsOnBothBoxesAndLeavesThemAsTheyWere) {
    putNotes(score(), 0, 60, 5);
    area.drawAll();
    const QImage melody = box(Surface::MusicBox).picture().copy();
    const QImage beat = box(Surface::Beatbox).picture().copy();
    area.GetColumn(4);
    area.drawPlayLine(4);
    for (const Surface which : {Surface::MusicBox, Surface::Beatbox})
        EXPECT_EQ(pixel(which, 48, 30), kLine);
    area.PutColumn();
    EXPECT_EQ(box(Surface::MusicBox).picture(), melody);
    EXPECT_EQ(box(Surface::Beatbox).picture(), beat);
}

TEST_F(PicmainTest, InCarefulMannersThePlayLineIsSeenInEverySkinAndLeavesThePictureAsItWas) {
    workspace().setManners(Manners::careful());
    putNotes(score(), 0, 60, 5);
    for (int skin = 1; skin <= kSkinCount; ++skin) {
        look.skinType = skin;
        area.drawAll();
        const QImage melody = box(Surface::MusicBox).picture().copy();
        const QImage beat = box(Surface::Beatbox).picture().copy();
        for (const int column : {0, 4, 107}) {
            area.GetColumn(column);
            area.drawPlayLine(column);
            for (const Surface which : {Surface::MusicBox, Surface::Beatbox})
                for (const int x : {12 * column, 12 * column + 1}) {
                    EXPECT_EQ(pixel(which, x, 30), QColor(176, 0, 80)) << "skin " << skin;
                    EXPECT_EQ(pixel(which, x, box(which).height() - 1), QColor(176, 0, 80));
                }
            area.PutColumn();
            EXPECT_EQ(box(Surface::MusicBox).picture(), melody);
            EXPECT_EQ(box(Surface::Beatbox).picture(), beat);
        }
    }
}

TEST_F(PicmainTest, ThePlayLineStandsOnAPaintedPictureThoughTheScreenIsAnother) {
    for (const Surface which : {Surface::MusicBox, Surface::Beatbox})
        box(which).resize(box(which).size() - QSize(1, 1)); // as unfit as one of another scale
    area.GetColumn(5);
    area.drawPlayLine(5);
    for (const Surface which : {Surface::MusicBox, Surface::Beatbox}) {
        EXPECT_EQ(pixel(which, 60, 30), kLine);
        EXPECT_EQ(pixel(which, 36, 2), kCell);
    }
    area.PutColumn();
    for (const Surface which : {Surface::MusicBox, Surface::Beatbox})
        EXPECT_EQ(pixel(which, 60, 2), kCell);
}

TEST_F(PicmainTest, APaintingForgetsTheLineThatStoodThere) {
    area.GetColumn(4);
    area.drawPlayLine(4);
    area.DrawNoteArray();
    const QImage fresh = box(Surface::MusicBox).picture().copy();
    area.PutColumn();
    EXPECT_EQ(box(Surface::MusicBox).picture(), fresh);
    EXPECT_NE(pixel(Surface::MusicBox, 48, 30), kLine);
}

TEST_F(PicmainTest, WhatWasDrawnOverIsGoneAfterTheNextPainting) {
    const QImage before = box(Surface::MusicBox).picture().copy();
    area.drawPressBall(3, 3);
    area.drawBand(Box::MusicBox, 5, 2, 20);
    area.drawSelectEdge(30);
    view().SelectStart = 2;
    view().SelectEnd = 6;
    area.blendSelectStrip();
    view().SelectStart = view().SelectEnd = -1;
    area.DrawNoteArray();
    EXPECT_EQ(box(Surface::MusicBox).picture(), before);
}

TEST_F(PicmainTest, TheHintIsALabelAndNoPartOfThePainting) {
    const QImage before = box(Surface::MusicBox).picture().copy();
    auto& hint = *area.findChild<QLabel*>("hint");
    EXPECT_FALSE(hint.isVisible());
    area.showHint(true);
    EXPECT_TRUE(hint.isVisible());
    EXPECT_TRUE(area.surface(Surface::MusicBox)->rect().contains(hint.geometry()));
    EXPECT_EQ(box(Surface::MusicBox).picture(), before);
    EXPECT_TRUE(hint.testAttribute(Qt::WA_TransparentForMouseEvents)) << "one draws through it";
}

TEST_F(PicmainTest, DraggingTheGapTellsTheHeightOfBeatbox) {
    std::vector<int> heights;
    area.onSplit = [&](int height) { heights.push_back(height); };
    QWidget& grip = *area.findChild<QWidget*>("Label9");
    QTest::mousePress(&grip, Qt::LeftButton, {}, {100, 4});
    QMouseEvent move(QEvent::MouseMove, QPointF(100, 34), grip.mapToGlobal(QPointF(100, 34)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&grip, &move);
    QTest::mouseRelease(&grip, Qt::LeftButton, {}, {100, 34});
    ASSERT_EQ(heights.size(), 1U);
    EXPECT_NEAR(heights[0], layout.beatbox.height() + 30, 3);
}
