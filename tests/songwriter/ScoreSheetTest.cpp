// SPDX-License-Identifier: GPL-2.0-or-later
#include "songwriter/ScoreSheet.h"

#include "songwriter/Commands.h"
#include "songwriter/TextHolder.h"
#include "tests/songwriter/MDIScoreFixture.h"

using namespace velmora;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {
/// How often a widget is painted.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

class ScoreSheetTest : public MDIScoreFixture {
protected:
    explicit ScoreSheetTest(int bars = 60) {
        settings.SaveSetting("Settings", "NumNotes", "40000");
        putBars(bars);
        press(songButton("write"));
        opened();
    }
    PageView& Pic1() { return front().Pic1(); }
    QWidget& T3() { return *front().findChild<QWidget*>("T3"); }
    QLineEdit& Text1() { return *front().findChild<QLineEdit*>("Text1"); }
    QScrollBar& VScroll1() { return *front().findChild<QScrollBar*>("VScroll1"); }
    void rightPress(QPoint at) { QTest::mouseClick(&Pic1(), Qt::RightButton, {}, at); }
};

class ManyPagesTest : public ScoreSheetTest {
protected:
    ManyPagesTest() : ScoreSheetTest(2000) {}
};
} // namespace

TEST_F(ScoreSheetTest, TheRightButtonBringsTheHolderWhereItIsPressed) {
    rightPress({100, 120});
    EXPECT_TRUE(T3().isVisible());
    EXPECT_TRUE(Text1().hasFocus());
    EXPECT_EQ(Text1().font().pixelSize(), 16) << "12 points";
    EXPECT_TRUE(Text1().font().bold()) << "as the title's";
    const QPoint before = T3().pos();
    rightPress({300, 50});
    EXPECT_EQ(T3().pos(), before) << "one that is visible stays";
}

TEST_F(ScoreSheetTest, EnterPutsTheTextOnThePageAndHidesTheHolder) {
    rightPress({100, 120});
    type("Hello");
    EXPECT_FALSE(T3().isVisible());
    EXPECT_EQ(Text1().text(), "");
    const auto items = song().sheets().itemsOf(1);
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0].text, "Hello");
    EXPECT_EQ(items[0].left, 100);
    EXPECT_EQ(items[0].top, 120);
    EXPECT_EQ(items[0].size, 12);
    EXPECT_EQ(items[0].font, "Times New Roman");
    rightPress({10, 10});
    type("  ");
    EXPECT_THAT(textsOf(1), ElementsAre("Hello")) << "blanks are no text";
}

TEST_F(ScoreSheetTest, EscapeLeavesWithoutAText) {
    rightPress({100, 120});
    QTest::keyClicks(&Text1(), "no");
    QTest::keyClick(&Text1(), Qt::Key_Escape);
    EXPECT_FALSE(T3().isVisible());
    EXPECT_THAT(textsOf(1), IsEmpty());
    EXPECT_TRUE(window().isVisible());
}

TEST_F(ScoreSheetTest, ATextOfAScrolledAndZoomedPageStandsWhereItWasPressed) {
    pages().setZoom(2);
    front().scrollTo({50, 400});
    rightPress({100, 120});
    type("Here");
    const auto items = song().sheets().itemsOf(1);
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0].left, 75);
    EXPECT_EQ(items[0].top, 260);
}

TEST_F(ScoreSheetTest, FontAndSizeAreThoseOfThePanel) {
    auto& size = control<QComboBox>("lstFontSize");
    EXPECT_EQ(size.count(), 7);
    EXPECT_EQ(control<QComboBox>("lstFontName").itemText(0), "Times New Roman");
    size.setCurrentText("24");
    emit size.activated(size.currentIndex());
    rightPress({100, 120});
    EXPECT_EQ(Text1().font().pixelSize(), 32);
    type("Large");
    EXPECT_EQ(song().sheets().itemsOf(1).at(0).size, 24);
}

TEST_F(ScoreSheetTest, ThePageOfATextIsThatOfItsSheet) {
    pages().raisePage(2);
    rightPress({100, 120});
    type("second");
    EXPECT_THAT(textsOf(2), ElementsAre("second"));
    EXPECT_THAT(textsOf(1), IsEmpty());
    EXPECT_THAT(song().linesOf(2), HasSubstr("Page : 2 "));
}

TEST_F(ScoreSheetTest, ADragOfThePageMovesTheSheetAndOneOfTheHolderMovesThat) {
    const QPoint before = front().pos();
    QTest::mousePress(&Pic1(), Qt::LeftButton, {}, {50, 50});
    QTest::mouseMove(&Pic1(), {80, 40});
    QTest::mouseRelease(&Pic1(), Qt::LeftButton, {}, {80, 40});
    EXPECT_EQ(front().pos(), before + QPoint(30, -10));
    rightPress({100, 120});
    const QPoint holder = T3().pos();
    QTest::mousePress(&T3(), Qt::LeftButton, {}, {2, 2});
    QTest::mouseMove(&T3(), {22, 12});
    QTest::mouseRelease(&T3(), Qt::LeftButton, {}, {2, 2});
    EXPECT_EQ(T3().pos(), holder + QPoint(20, 10));
    EXPECT_EQ(front().pos(), before + QPoint(30, -10));
    QTest::keyClick(&Text1(), Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(T3().pos(), holder + QPoint(16, 10));
}

TEST_F(ScoreSheetTest, TheTitleStaysWhereItCanBeTakenAgain) {
    QTest::mousePress(&Pic1(), Qt::LeftButton, {}, {50, 50});
    QTest::mouseMove(&Pic1(), {-5000, -5000});
    EXPECT_GE(front().y(), 0);
    EXPECT_GT(front().geometry().right(), 0);
    QTest::mouseMove(&Pic1(), {9000, 9000});
    EXPECT_LT(front().y(), pages().height());
    EXPECT_LT(front().x(), pages().width());
    QTest::mouseRelease(&Pic1(), Qt::LeftButton, {}, {});
}

TEST_F(ScoreSheetTest, OtherButtonsDoNothing) {
    const QPoint before = front().pos();
    QTest::mouseClick(&Pic1(), Qt::MiddleButton, {}, {100, 120});
    EXPECT_FALSE(T3().isVisible());
    EXPECT_EQ(front().pos(), before);
}

TEST_F(ScoreSheetTest, ScrollingMovesThePictureAndMakesNone) {
    window().grab();
    const int made = Pic1().rasterised();
    EXPECT_GT(made, 0);
    for (int i = 1; i <= 20; ++i) {
        VScroll1().setValue(i * 20);
        EXPECT_EQ(Pic1().corner().y(), i * 20);
        Pic1().grab();
    }
    EXPECT_EQ(Pic1().rasterised(), made);
    rightPress({100, 120});
    type("new");
    Pic1().grab();
    EXPECT_EQ(Pic1().rasterised(), made + 1) << "other marks are another picture";
}

TEST_F(ManyPagesTest, AStepOfScrollingPaintsTheViewOnceAndNoOtherPage) {
    ASSERT_GT(song().count(), 2);
    QCoreApplication::processEvents();
    const auto rasterised = [this] {
        int all = 0;
        for (const int page : song().openPages())
            if (const ScoreSheet* sheet = pages().sheet(page))
                all += sheet->Pic1().rasterised();
        return all;
    };
    const int made = rasterised();
    PaintCounter ofView(Pic1());
    PaintCounter ofSheetBehind(*pages().sheet(2));
    PaintCounter ofPageBehind(pages().sheet(2)->Pic1());
    constexpr int kSteps = 20;
    for (int step = 1; step <= kSteps; ++step) {
        VScroll1().setValue(step * 10);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(ofView.count, kSteps);
    EXPECT_EQ(ofSheetBehind.count, 0);
    EXPECT_EQ(ofPageBehind.count, 0);
    EXPECT_EQ(rasterised(), made);
}

TEST_F(ScoreSheetTest, AScrolledPictureIsThatOfThePage) {
    const QImage top = Pic1().grab().toImage();
    VScroll1().setValue(100);
    const QImage scrolled = Pic1().grab().toImage();
    const QRect common(0, 100, top.width(), top.height() - 100);
    ASSERT_GT(common.height(), 50);
    EXPECT_EQ(top.copy(common), scrolled.copy(0, 0, common.width(), common.height()));
    EXPECT_NE(top, scrolled);
}

TEST_F(ScoreSheetTest, APageBehindOthersKeepsNoPicture) {
    window().grab();
    ScoreSheet& first = front();
    pages().raisePage(2);
    const int made = first.Pic1().rasterised();
    first.Pic1().grab();
    EXPECT_EQ(first.Pic1().rasterised(), made + 1);
}

TEST_F(ScoreSheetTest, KeysAndWheelScroll) {
    Pic1().setFocus();
    QTest::keyClick(&Pic1(), Qt::Key_Down);
    EXPECT_GT(VScroll1().value(), 0);
    QTest::keyClick(&Pic1(), Qt::Key_End);
    EXPECT_EQ(VScroll1().value(), VScroll1().maximum());
    QTest::keyClick(&Pic1(), Qt::Key_Home);
    EXPECT_EQ(VScroll1().value(), 0);
    QTest::keyClick(&Pic1(), Qt::Key_Menu);
    EXPECT_TRUE(T3().isVisible()) << "a text without the mouse";
}

TEST_F(ScoreSheetTest, ADoubleClickOnATextTypesItAnew) {
    rightPress({100, 120});
    type("Helo");
    QTest::mouseDClick(&Pic1(), Qt::LeftButton, {}, {105, 126});
    ASSERT_TRUE(T3().isVisible());
    EXPECT_EQ(Text1().text(), "Helo");
    type("Hello");
    EXPECT_THAT(textsOf(1), ElementsAre("Hello"));
    QTest::mouseDClick(&Pic1(), Qt::LeftButton, {}, {105, 126});
    type("");
    EXPECT_THAT(textsOf(1), IsEmpty());
}

TEST_F(ScoreSheetTest, EditTextShowsTheLinesAndEnterStoresThem) {
    rightPress({100, 120});
    type("one");
    item("mnuEditTextSW").trigger();
    auto& lines = *front().findChild<QPlainTextEdit*>("Text2");
    ASSERT_TRUE(lines.isVisible());
    EXPECT_THAT(lines.toPlainText().toStdString(), HasSubstr("Text= one"));
    lines.setPlainText(lines.toPlainText().replace("one", "two"));
    QTest::keyClick(&lines, Qt::Key_Return);
    EXPECT_FALSE(lines.isVisible());
    EXPECT_THAT(textsOf(1), ElementsAre("two"));
    item("mnuEditTextSW").trigger();
    lines.setPlainText("");
    QTest::keyClick(&lines, Qt::Key_Escape);
    EXPECT_THAT(textsOf(1), ElementsAre("two"));
}

TEST_F(ScoreSheetTest, ResetTextTakesThePagesTextsAwayAfterAQuestion) {
    rightPress({100, 120});
    type("one");
    driver.in<QWidget>([](QWidget& box) { pressIn(box, "no"); });
    item("mnuResetTextSW").trigger();
    EXPECT_THAT(textsOf(1), ElementsAre("one"));
    driver.in<QWidget>([](QWidget& box) { pressIn(box, "yes"); });
    item("mnuResetTextSW").trigger();
    EXPECT_THAT(textsOf(1), IsEmpty());
    item("mnuResetTextSW").trigger(); // nothing to ask
}

TEST_F(ScoreSheetTest, LineTextAndAddTextOpenTheHolder) {
    control<QAbstractButton>("Com1").click();
    EXPECT_TRUE(T3().isVisible());
    QTest::keyClick(&Text1(), Qt::Key_Escape);
    item("mnuAddTextSW").trigger();
    EXPECT_TRUE(T3().isVisible());
}

TEST_F(ScoreSheetTest, ADoubleClickOnTheTitleGivesThePageAllRoomAndTakesItBack) {
    const QRect before = front().geometry();
    QTest::mouseDClick(&front(), Qt::LeftButton, {}, {200, 10});
    EXPECT_EQ(front().geometry(), pages().rect());
    QTest::mouseDClick(&front(), Qt::LeftButton, {}, {200, 10});
    EXPECT_EQ(front().geometry(), before);
}

TEST_F(ManyPagesTest, OfManyPagesAFewHaveSheets) {
    ASSERT_GT(song().count(), 40);
    const auto sheets = [this] {
        int made = 0;
        for (const int page : song().openPages())
            made += pages().sheet(page) ? 1 : 0;
        return made;
    };
    EXPECT_EQ(sheets(), 4);
    for (int i = 0; i < 20; ++i)
        pages().step(1);
    EXPECT_EQ(pages().front(), 21);
    EXPECT_TRUE(front().isVisible());
    EXPECT_EQ(sheets(), 5) << "what is covered whole has gone";
    pages().step(-21);
    EXPECT_EQ(pages().front(), 20);
}

TEST_F(ManyPagesTest, APageComesBackAsItWasLeft) {
    pages().raisePage(6);
    VScroll1().setValue(120);
    pages().step(1);
    EXPECT_FALSE(pages().sheet(6));
    EXPECT_EQ(Pic1().corner().y(), 0);
    pages().step(-1);
    EXPECT_EQ(VScroll1().value(), 120);
    EXPECT_EQ(Pic1().corner().y(), 120);
}

TEST_F(ManyPagesTest, APageThatIsTypedOnOrWasMovedKeepsItsSheet) {
    pages().raisePage(6);
    rightPress({60, 60});
    pages().raisePage(7);
    EXPECT_TRUE(pages().sheet(6));
    QTest::mousePress(&Pic1(), Qt::LeftButton, {}, {100, 100});
    QTest::mouseMove(&Pic1(), {140, 130});
    QTest::mouseRelease(&Pic1(), Qt::LeftButton, {}, {140, 130});
    const QPoint moved = front().pos();
    pages().raisePage(8);
    EXPECT_TRUE(pages().sheet(7));
    pages().raisePage(7);
    EXPECT_EQ(front().pos(), moved);
}

TEST_F(ManyPagesTest, BehindPagesThatWereMovedAwayLieOthers) {
    EXPECT_FALSE(pages().sheet(5));
    pages().sheet(2)->setPlaced(true);
    EXPECT_TRUE(pages().sheet(5));
}

TEST_F(ScoreSheetTest, KeysScrollThePageThatHasComeBeforeTheOthers) {
    Pic1().setFocus();
    pages().step(1);
    EXPECT_TRUE(Pic1().hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_GT(Pic1().corner().y(), 0);
}

TEST_F(ScoreSheetTest, EscapeLeadsFromAFieldToThePage) {
    auto& title = control<QLineEdit>("Title");
    window().Lmnu_Click(1);
    menu.popup("mnuTextSW").close();
    title.setFocus();
    QTest::keyClick(&title, Qt::Key_Escape);
    EXPECT_TRUE(Pic1().hasFocus());
}

TEST_F(ManyPagesTest, TabLeadsToThePageBeforeTheOthersAlone) {
    Pic1().setFocus();
    pages().step(1);
    int views = 0;
    for (int i = 0; i < 100; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        if (QApplication::focusWidget()->objectName() != "Pic1")
            continue;
        EXPECT_EQ(QApplication::focusWidget(), &Pic1());
        ++views;
    }
    EXPECT_GT(views, 0);
}
