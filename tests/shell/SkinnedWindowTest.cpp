// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/SkinnedWindow.h"

#include "WindowFixture.h"
#include "shell/CommandButton.h"
#include "shell/HelpWindow.h"
#include "shell/WindowGeometry.h"
#include "shell/openerF.h"

#include <QtWidgets>

using namespace velmora;
using testing::ElementsAre;

namespace {
QString numbered(const char* name, int index) {
    return QStringLiteral("%1(%2)").arg(name).arg(index);
}
/// "Winedge(3)" as the fixture's `part` wants it.
QWidget& piece(const QWidget& window, const char* name, int index) {
    return *window.findChild<QWidget*>(numbered(name, index));
}
constexpr std::array kTitleButtons{"imgTitleClose", "imgTitleMaxRestore", "imgTitleMinimize", "imgTitleHelp"};
} // namespace

class SkinnedWindowTest : public WindowFixture {
protected:
    SkinnedWindowTest() {
        window.attachTips(tips);
        window.setGeometry(100, 100, 300, 200);
        open(window);
    }
    TestWindow window{*skins};
};

TEST_F(SkinnedWindowTest, HasAllNamedParts) {
    for (const char* name : {"Ibak1", "Ibak2", "Ibak5", "lblTitle", "fpic", "imgTitleClose",
                             "imgTitleMaxRestore", "imgTitleMinimize", "imgTitleHelp"})
        EXPECT_NE(window.findChild<QWidget*>(name), nullptr) << name;
    for (int i = 0; i < 8; ++i)
        for (const char* name : {"Winedge", "Resizer"})
            EXPECT_NE(window.findChild<QWidget*>(numbered(name, i)), nullptr) << name << i;
}

TEST_F(SkinnedWindowTest, ATitleStandsInOneLineWhateverTheNameOfTheFile) {
    const auto titled = [&](const char* title) {
        window.setWindowTitle(title);
        return part<QWidget>(window, "lblTitle").grab().toImage();
    };
    EXPECT_EQ(titled("Velmora - two\nlines.sng"), titled("Velmora - two lines.sng"));
}

TEST_F(SkinnedWindowTest, PartsTellWhatTheyDo) {
    struct Row {
        const char* name;
        const char* words;
    };
    for (const Row& row :
         {Row{"imgTitleClose", "Exit"}, Row{"imgTitleMaxRestore", "Maximize"},
          Row{"imgTitleMinimize", "Minimize"}, Row{"imgTitleHelp", "Help"}, Row{"Winedge(0)", "Move"},
          Row{"Winedge(7)", "Move"}, Row{"Resizer(0)", "Resize"}, Row{"Resizer(7)", "Resize"}}) {
        const QWidget& named = part(window, row.name);
        EXPECT_EQ(named.accessibleName(), row.words) << row.name;
        ASSERT_NE(tips.toolTip(named), nullptr) << row.name;
        EXPECT_EQ(tips.toolTip(named)->title, row.words) << row.name;
    }
}

TEST_F(SkinnedWindowTest, TitleButtonsStandInTheirOrderFromTheRight) {
    int right = window.width() - window.look().skin().edgeWidth - 4;
    for (const char* name : kTitleButtons) {
        const QRect place = part(window, name).geometry();
        EXPECT_EQ(place, QRect(right - 22, 5, 22, 18)) << name;
        right -= 24;
    }
}

TEST_F(SkinnedWindowTest, AWindowHasOnlyTheButtonsItAsksFor) {
    openerF opener(*skins, tips);
    EXPECT_NE(opener.findChild<QWidget*>("imgTitleClose"), nullptr);
    for (const char* name : {"imgTitleMaxRestore", "imgTitleMinimize", "imgTitleHelp"})
        EXPECT_EQ(opener.findChild<QWidget*>(name), nullptr) << name;
}

TEST_F(SkinnedWindowTest, AResizeLaysTheFrameOut) {
    for (const QSize size : {QSize(500, 320), QSize(260, 120)}) {
        window.resize(size);
        EXPECT_EQ(part(window, "Ibak1").width() + part(window, "Ibak2").width(), size.width());
        EXPECT_EQ(part(window, "Ibak5").geometry(),
                  QRect(0, kTitleHeight, size.width(), size.height() - kTitleHeight));
        EXPECT_EQ(part(window, "imgTitleClose").geometry().right(),
                  size.width() - window.look().skin().edgeWidth - 5);
        EXPECT_LE(part(window, "lblTitle").geometry().right(),
                  part(window, "imgTitleHelp").geometry().left());
        for (int i = 0; i < 8; ++i)
            EXPECT_EQ(piece(window, "Resizer", i).geometry(),
                      framePiece(kFrameEdges[static_cast<std::size_t>(i)], size, 4, 8))
                << i;
    }
}

TEST_F(SkinnedWindowTest, EveryPartOfTheTitleMovesTheWindow) {
    for (const char* name : {"Ibak1", "lblTitle", "fpic"}) {
        window.move(100, 100);
        drag(part(window, name), {40, 30});
        EXPECT_EQ(window.pos(), QPoint(140, 130)) << name;
    }
    // The right half of the title lies under the text; its own place is free at the foot of it.
    window.move(100, 100);
    drag(part(window, "Ibak2"), {-20, 10});
    EXPECT_EQ(window.pos(), QPoint(80, 110));
}

TEST_F(SkinnedWindowTest, AnEdgeMovesTheWindow) {
    drag(part(window, "Winedge(0)"), {-40, 30});
    EXPECT_EQ(window.pos(), QPoint(60, 130));
    EXPECT_EQ(window.moves, 1);
}

TEST_F(SkinnedWindowTest, ATitleButtonDoesNotMoveTheWindow) {
    drag(part(window, "imgTitleHelp"), {40, 30});
    EXPECT_EQ(window.pos(), QPoint(100, 100));
}

TEST_F(SkinnedWindowTest, AWindowDraggedAboveTheScreenStandsAtItsTop) {
    drag(part(window, "lblTitle"), {10, -180});
    EXPECT_EQ(window.pos(), QPoint(110, 0));
    EXPECT_EQ(window.moves, 1);
}

TEST_F(SkinnedWindowTest, APressWithoutADragLeavesTheWindow) {
    drag(part(window, "lblTitle"), {0, 0});
    EXPECT_EQ(window.pos(), QPoint(100, 100));
    EXPECT_EQ(window.moves, 0);
}

TEST_F(SkinnedWindowTest, EachGripResizesItsSideOrCorner) {
    const QRect frame(100, 100, 300, 200);
    for (int i = 0; i < 8; ++i) {
        window.setGeometry(frame);
        const Qt::Edges edges = kFrameEdges[static_cast<std::size_t>(i)];
        drag(piece(window, "Resizer", i), {12, 16});
        EXPECT_EQ(window.geometry(), resizedFrame(frame, edges, {12, 16}, window.minimumSize())) << i;
        EXPECT_NE(window.geometry(), frame) << i;
    }
}

TEST_F(SkinnedWindowTest, AGripStopsAtTheLeastSize) {
    window.setGeometry(100, 100, 300, 200);
    drag(part(window, "Resizer(7)"), {-400, -400});
    EXPECT_EQ(window.size(), window.minimumSize());
    window.setGeometry(100, 100, 300, 200);
    drag(part(window, "Resizer(4)"), {400, 400});
    EXPECT_EQ(window.geometry().bottomRight(), QPoint(399, 299));
    EXPECT_EQ(window.size(), window.minimumSize());
}

TEST_F(SkinnedWindowTest, AWindowOfFixedSizeHasNoGrips) {
    openerF opener(*skins, tips);
    open(opener);
    for (int i = 0; i < 8; ++i)
        EXPECT_FALSE(piece(opener, "Resizer", i).isVisible()) << i;
}

TEST_F(SkinnedWindowTest, ADoubleClickOnTheTitleMaximizesAndRestores) {
    QWidget& title = part(window, "lblTitle");
    QAbstractButton& button = part<QAbstractButton>(window, "imgTitleMaxRestore");
    mouse(title, QEvent::MouseButtonDblClick, title.mapToGlobal(title.rect().center()));
    EXPECT_TRUE(window.isMaximized());
    EXPECT_EQ(button.accessibleName(), "Restore");
    EXPECT_EQ(tips.toolTip(button)->title, "Restore");
    EXPECT_FALSE(part(window, "Resizer(0)").isVisible());
    mouse(title, QEvent::MouseButtonDblClick, title.mapToGlobal(title.rect().center()));
    EXPECT_FALSE(window.isMaximized());
    EXPECT_EQ(tips.toolTip(button)->title, "Maximize");
}

TEST_F(SkinnedWindowTest, ADoubleClickBelowTheTitleDoesNotMaximize) {
    QWidget& ground = *window.Ibak5();
    window.moveBy(ground);
    for (QWidget* met : {&ground, &part(window, "Winedge(0)")}) {
        mouse(*met, QEvent::MouseButtonDblClick, met->mapToGlobal(met->rect().center()));
        EXPECT_FALSE(window.isMaximized()) << qPrintable(met->objectName());
    }
}

TEST_F(SkinnedWindowTest, TitleButtonsDoWhatTheySay) {
    int helped = 0;
    QAbstractButton& help = part<QAbstractButton>(window, "imgTitleHelp");
    EXPECT_FALSE(help.isEnabled()) << "a window without help";
    window.setHelp([&] { ++helped; });
    help.click();
    EXPECT_EQ(helped, 1);
    part<QAbstractButton>(window, "imgTitleMaxRestore").click();
    EXPECT_TRUE(window.isMaximized());
    part<QAbstractButton>(window, "imgTitleMaxRestore").click();
    EXPECT_FALSE(window.isMaximized());
    part<QAbstractButton>(window, "imgTitleMinimize").click();
    EXPECT_TRUE(window.isMinimized());
    window.showNormal();
    part<QAbstractButton>(window, "imgTitleClose").click();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(SkinnedWindowTest, WithoutTranslucencyTheCornersAreCutByAMask) {
    window.setAttribute(Qt::WA_TranslucentBackground, false);
    window.SetRegion();
    EXPECT_FALSE(window.mask().contains(QPoint(0, 0)));
    EXPECT_TRUE(window.mask().contains(QPoint(2, 2)));
    EXPECT_TRUE(window.mask().contains(QPoint(0, window.height() - 1))) << "the lower ones are square";
    skins->Skintype_Click(6);
    EXPECT_TRUE(window.mask().isEmpty()) << "a plain rectangle";
    skins->Skintype_Click(2);
    EXPECT_FALSE(window.mask().contains(QPoint(0, window.height() - 1)));
    window.resize(400, 240);
    EXPECT_EQ(window.mask().boundingRect(), QRect(0, 0, 400, 240));
    window.imgTitleMaxRestore_Click();
    EXPECT_TRUE(window.mask().isEmpty());
}

TEST_F(SkinnedWindowTest, TheMaskHasThePixelsWhoseMiddleLiesWithinTheOutline) {
    window.setAttribute(Qt::WA_TranslucentBackground, false);
    for (int number = 1; number <= kSkinCount; ++number) {
        skins->Skintype_Click(number);
        window.SetRegion();
        const QRegion shown = window.mask().isEmpty() ? QRegion(window.rect()) : window.mask();
        const QPainterPath outline = windowOutline(skinOf(number), window.size(), false);
        int differ = 0;
        for (int y = 0; y < window.height(); ++y)
            for (const int x : {0, 1, 2, 3, 4, 5, 6, window.width() / 2, window.width() - 7,
                                window.width() - 6, window.width() - 5, window.width() - 4,
                                window.width() - 3, window.width() - 2, window.width() - 1})
                differ += shown.contains(QPoint(x, y)) != outline.contains(QPointF(x + 0.5, y + 0.5));
        EXPECT_EQ(differ, 0) << number;
    }
}

TEST_F(SkinnedWindowTest, AllWindowsShareTheProgramsIcon) {
    HelpWindow help(*skins, tips, settings, HelpLibrary());
    EXPECT_FALSE(window.windowIcon().isNull());
    EXPECT_EQ(window.windowIcon().cacheKey(), help.windowIcon().cacheKey()) << "drawn once";
}

TEST_F(SkinnedWindowTest, AnotherSkinRepaintsEveryOpenWindow) {
    HelpWindow help(*skins, tips, settings, HelpLibrary());
    TestWindow second(*skins);
    second.resize(200, 120);
    const auto pictures = [&] {
        std::vector<QImage> list;
        for (QWidget* open : std::initializer_list<QWidget*>{&window, &second, &help})
            list.push_back(open->grab().toImage());
        return list;
    };
    open(help);
    open(second);
    for (int type = 2; type <= kSkinCount; ++type) {
        const auto before = pictures();
        window.paints = second.paints = 0;
        skins->Skintype_Click(type);
        QCoreApplication::processEvents();
        EXPECT_GT(window.paints, 0) << type;
        EXPECT_GT(second.paints, 0) << type;
        const auto after = pictures();
        for (std::size_t i = 0; i < after.size(); ++i)
            EXPECT_NE(before[i], after[i]) << "window " << i << ", skin " << type;
    }
}

TEST_F(SkinnedWindowTest, AnotherSkinLaysTheTitleOutForItsEdge) {
    skins->Skintype_Click(4);
    EXPECT_EQ(part(window, "imgTitleClose").geometry().right(), window.width() - 6 - 5);
    EXPECT_EQ(part(window, "Winedge(0)").width(), 6);
}

TEST_F(SkinnedWindowTest, AWindowOpenedLaterTakesTheStoredSkin) {
    skins->Skintype_Click(7);
    TestWindow later(*skins);
    EXPECT_EQ(later.look().skin().caption, "Win 98");
    const frmskins restarted(settings);
    EXPECT_EQ(restarted.look().skin().caption, "Win 98");
}

TEST_F(SkinnedWindowTest, AClosedWindowIsNotRepaintedAnyMore) {
    { const TestWindow gone(*skins); }
    skins->Skintype_Click(3); // must not reach the window that is gone
    EXPECT_EQ(window.look().skinType, 3);
}

TEST_F(SkinnedWindowTest, TheRingShowsOnlyAfterAKey) {
    CommandButton first(window.look(), ButtonForm::Text, window.Ibak5());
    CommandButton second(window.look(), ButtonForm::Text, window.Ibak5());
    first.setGeometry(20, 20, 80, 24);
    second.setGeometry(120, 20, 80, 24);
    first.show();
    second.show();
    const auto* ring = window.findChild<QFocusFrame*>();
    ASSERT_NE(ring, nullptr);
    first.setFocus();
    EXPECT_EQ(ring->widget(), nullptr);
    QTest::keyClick(&window, Qt::Key_Tab);
    EXPECT_EQ(ring->widget(), QApplication::focusWidget());
    EXPECT_TRUE(ring->widget() == &first || ring->widget() == &second);
}

TEST_F(SkinnedWindowTest, TheRingGoesWithAPressOfTheMouseUntilTheNextKey) {
    CommandButton first(window.look(), ButtonForm::Text, window.Ibak5());
    CommandButton second(window.look(), ButtonForm::Text, window.Ibak5());
    first.setGeometry(20, 20, 80, 24);
    second.setGeometry(120, 20, 80, 24);
    first.show();
    second.show();
    first.setFocus();
    QTest::keyClick(&window, Qt::Key_Tab);
    const auto* ring = window.findChild<QFocusFrame*>();
    ASSERT_NE(ring->widget(), nullptr);
    QTest::mouseClick(window.Ibak5(), Qt::LeftButton, {}, {5, 60});
    EXPECT_EQ(ring->widget(), nullptr);
    QTest::keyClick(&window, Qt::Key_Tab);
    EXPECT_EQ(ring->widget(), QApplication::focusWidget());
}
