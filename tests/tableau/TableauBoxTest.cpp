// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/TableauBox.h"

#include <QTest>

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;

namespace {
/// What the box says, in words.
class TableauBoxTest : public testing::Test {
protected:
    TableauBoxTest() {
        box.resize(100, 60);
        const auto saying = [this](const char* what) {
            return [this, what](MouseButton button, int shift, int x, int y) {
                said.push_back(QStringLiteral("%1 %2 %3 %4 %5")
                                   .arg(QLatin1String(what))
                                   .arg(static_cast<int>(button))
                                   .arg(shift)
                                   .arg(x)
                                   .arg(y)
                                   .toStdString());
            };
        };
        box.mouse = {saying("down"), saying("move"), saying("up"), [this] { said.push_back("lost"); }, {}};
        box.show();
    }
    void send(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons down) {
        QMouseEvent event(type, at, box.mapToGlobal(QPointF(at)), button, down, Qt::NoModifier);
        QApplication::sendEvent(&box, &event);
    }

    TableauBox box{"MusicBox", "Melody Tableau", nullptr};
    std::vector<std::string> said;
};
} // namespace

TEST_F(TableauBoxTest, AStrokeIsToldInOrder) {
    send(QEvent::MouseButtonPress, {5, 6}, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseMove, {17, 6}, Qt::NoButton, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, {17, 7}, Qt::LeftButton, Qt::NoButton);
    EXPECT_THAT(said, ElementsAre("down 1 0 5 6", "move 1 0 17 6", "up 1 0 17 7"));
}

TEST_F(TableauBoxTest, AMoveWithoutAButtonIsToldToo) {
    send(QEvent::MouseMove, {17, 6}, Qt::NoButton, Qt::NoButton);
    EXPECT_THAT(said, ElementsAre("move 0 0 17 6"));
}

TEST_F(TableauBoxTest, ASecondButtonIsNoSecondStroke) {
    send(QEvent::MouseButtonPress, {5, 6}, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseButtonPress, {5, 6}, Qt::RightButton, Qt::LeftButton | Qt::RightButton);
    send(QEvent::MouseButtonRelease, {5, 6}, Qt::RightButton, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, {5, 6}, Qt::LeftButton, Qt::NoButton);
    EXPECT_THAT(said, ElementsAre("down 1 0 5 6", "up 1 0 5 6"));
}

TEST_F(TableauBoxTest, AReleaseThatAPopupTookIsLost) {
    send(QEvent::MouseButtonPress, {5, 6}, Qt::RightButton, Qt::RightButton);
    send(QEvent::MouseMove, {30, 6}, Qt::NoButton, Qt::NoButton);
    EXPECT_THAT(said, ElementsAre("down 2 0 5 6", "lost", "move 0 0 30 6"));
    said.clear();
    send(QEvent::MouseButtonPress, {5, 6}, Qt::RightButton, Qt::RightButton);
    send(QEvent::MouseButtonPress, {8, 6}, Qt::LeftButton, Qt::LeftButton);
    EXPECT_THAT(said, ElementsAre("down 2 0 5 6", "lost", "down 1 0 8 6"));
}

TEST_F(TableauBoxTest, AStrokeIsLostWithTheGrabTheWindowAndTheRightToDraw) {
    const auto lose = [this](const std::function<void()>& how) {
        said.clear();
        send(QEvent::MouseButtonPress, {5, 6}, Qt::LeftButton, Qt::LeftButton);
        how();
        how();
        return said;
    };
    const auto by = [this](QEvent::Type type) {
        return [this, type] {
            QEvent event(type);
            QApplication::sendEvent(&box, &event);
        };
    };
    for (const QEvent::Type type :
         {QEvent::UngrabMouse, QEvent::WindowDeactivate, QEvent::Leave, QEvent::Hide})
        EXPECT_THAT(lose(by(type)), ElementsAre("down 1 0 5 6", "lost")) << type;
    EXPECT_THAT(lose([this] { box.setEnabled(false); }), ElementsAre("down 1 0 5 6", "lost"));
}

TEST_F(TableauBoxTest, ItSaysWhereTheMouseRests) {
    box.mouse.over = [this](bool isOver) { said.push_back(isOver ? "over" : "away"); };
    QEnterEvent enter({5, 6}, {5, 6}, {5, 6});
    QApplication::sendEvent(&box, &enter);
    EXPECT_THAT(said, ElementsAre("over"));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&box, &leave);
    QEvent hide(QEvent::Hide);
    QApplication::sendEvent(&box, &hide);
    EXPECT_THAT(said, ElementsAre("over", "away", "away"));
}

TEST_F(TableauBoxTest, NothingIsLostWhereNothingIsHeld) {
    QEvent event(QEvent::WindowDeactivate);
    QApplication::sendEvent(&box, &event);
    EXPECT_TRUE(said.empty());
}

TEST_F(TableauBoxTest, ThePictureStaysAndIsRenewedWithTheSize) {
    int stale = 0;
    box.onStale = [&] {
        ++stale;
        box.picture().fill(Qt::blue);
    };
    box.picture().fill(Qt::red);
    EXPECT_EQ(box.grab().toImage().pixelColor(50, 30), QColor(Qt::red));
    EXPECT_EQ(stale, 0);
    box.resize(120, 60);
    EXPECT_EQ(box.grab().toImage().pixelColor(50, 30), QColor(Qt::blue));
    EXPECT_EQ(stale, 1);
}
