// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/HelpView.h"

#include <QTest>
#include <QtWidgets>

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;

namespace {
class HelpViewTest : public testing::Test {
protected:
    HelpViewTest() {
        std::string longText;
        for (int i = 0; i < 200; ++i)
            longText += "line of text\n\n";
        write("index.md", "# Contents\n\n- [Playing](playing.md)\n- [Skins](skins.md)\n");
        write("playing.md",
              "# Playing\n\nSee [Skins](skins.md) or [out](https://example.org/).\n\n## Pause\n\n" +
                  longText);
        write("skins.md", "# Skins\n\nA suit of colours.\n\n### Small\n\n| a | b |\n|---|---|\n| c | d |\n");
        view_ = std::make_unique<HelpView>(HelpLibrary(folder()));
        view_->resize(800, 500);
        view_->show();
        view_->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(view_.get()));
    }
    void write(const char* file, const std::string& text) const { std::ofstream(folder() / file) << text; }
    [[nodiscard]] std::filesystem::path folder() const { return directory_.path().toStdString(); }
    template<typename Control>
    [[nodiscard]] Control& control(const char* name) const {
        auto* found = view_->findChild<Control*>(name);
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    [[nodiscard]] QTextBrowser& text() const { return control<QTextBrowser>("txtHelpPage"); }
    [[nodiscard]] QListWidget& list() const { return control<QListWidget>("lstHelpPages"); }
    [[nodiscard]] QLineEdit& search() const { return control<QLineEdit>("txtHelpSearch"); }
    [[nodiscard]] std::vector<std::string> listed() const {
        std::vector<std::string> titles;
        for (int row = 0; row < list().count(); ++row)
            titles.push_back(list().item(row)->text().toStdString());
        return titles;
    }
    [[nodiscard]] std::string page() const { return view_->page().toStdString(); }
    void follow(const char* link) const { emit text().anchorClicked(QUrl(link)); }
    void press(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) const {
        QTest::keyClick(QApplication::focusWidget(), key, with);
    }

    QTemporaryDir directory_;
    std::unique_ptr<HelpView> view_;
};

/// The format of the text that begins with @p words.
QTextCharFormat formatOf(const QTextBrowser& browser, const char* words) {
    return browser.document()->find(words).charFormat();
}
} // namespace

TEST_F(HelpViewTest, ItOpensWithTheFirstPageAndListsAll) {
    EXPECT_EQ(page(), "index");
    EXPECT_THAT(listed(), ElementsAre("Contents", "Playing", "Skins"));
    EXPECT_EQ(list().currentRow(), 0);
    EXPECT_TRUE(text().toPlainText().startsWith("Contents"));
}

TEST_F(HelpViewTest, AWindowsHelpButtonShowsThePageOfItsName) {
    EXPECT_TRUE(view_->showPage("skins"));
    EXPECT_EQ(page(), "skins");
    EXPECT_EQ(list().currentRow(), 2);
    EXPECT_FALSE(view_->showPage("no-such-page"));
    EXPECT_EQ(page(), "index");
}

TEST_F(HelpViewTest, BackAndForwardWalkTheWayOneCame) {
    auto& back = control<QPushButton>("btnHelpBack");
    auto& forward = control<QPushButton>("btnHelpForward");
    EXPECT_FALSE(back.isEnabled() || forward.isEnabled());
    view_->showPage("playing");
    view_->showPage("skins");
    back.click();
    EXPECT_EQ(page(), "playing");
    EXPECT_TRUE(back.isEnabled() && forward.isEnabled());
    forward.click();
    EXPECT_EQ(page(), "skins");
    back.click();
    control<QPushButton>("btnHelpHome").click();
    EXPECT_EQ(page(), "index");
    EXPECT_FALSE(forward.isEnabled()) << "a new way leads nowhere forward";
}

TEST_F(HelpViewTest, BackFindsAPageWhereItWasLeft) {
    view_->showPage("playing");
    text().verticalScrollBar()->setValue(300);
    view_->showPage("skins");
    EXPECT_EQ(text().verticalScrollBar()->value(), 0);
    view_->goBack();
    EXPECT_EQ(text().verticalScrollBar()->value(), 300);
}

TEST_F(HelpViewTest, ThePageThatIsShownIsNotVisitedAgain) {
    view_->showPage("index");
    view_->showPage("index");
    EXPECT_FALSE(control<QPushButton>("btnHelpBack").isEnabled());
}

TEST_F(HelpViewTest, LinksLeadToPagesAndNowhereElse) {
    follow("playing.md");
    EXPECT_EQ(page(), "playing");
    for (const char* link : {"https://example.org/", "file:///etc/passwd", "missing.md", ""}) {
        follow(link);
        EXPECT_EQ(page(), "playing") << link;
    }
    EXPECT_FALSE(text().openLinks() || text().openExternalLinks());
}

TEST_F(HelpViewTest, ALinkIsFollowedByTheMouse) {
    view_->showPage("playing");
    const QTextCursor link = text().document()->find("Skins");
    QTest::mouseClick(text().viewport(), Qt::LeftButton, {}, text().cursorRect(link).center() - QPoint(4, 0));
    EXPECT_EQ(page(), "skins");
}

TEST_F(HelpViewTest, ASearchListsWhatItFindsAndEnterShowsTheFirst) {
    QTest::keyClicks(&search(), "suit");
    EXPECT_THAT(listed(), ElementsAre("Skins"));
    press(Qt::Key_Return);
    EXPECT_EQ(page(), "skins");
    EXPECT_EQ(list().currentRow(), 0);
}

TEST_F(HelpViewTest, ASearchThatFindsNothingSaysSo) {
    search().setText("xylophone");
    EXPECT_THAT(listed(), ElementsAre("No page has all these words."));
    press(Qt::Key_Return);
    emit list().itemClicked(list().item(0));
    EXPECT_EQ(page(), "index");
}

TEST_F(HelpViewTest, EscClearsTheSearchBeforeItMayCloseTheWindow) {
    int closed = 0;
    QShortcut close(QKeySequence(Qt::Key_Escape), view_.get());
    QObject::connect(&close, &QShortcut::activated, view_.get(), [&closed] { ++closed; });
    search().setFocus();
    search().setText("suit");
    press(Qt::Key_Escape);
    EXPECT_EQ(search().text(), "");
    EXPECT_THAT(listed(), ElementsAre("Contents", "Playing", "Skins"));
    EXPECT_EQ(closed, 0);
    press(Qt::Key_Escape);
    EXPECT_EQ(closed, 1);
}

TEST_F(HelpViewTest, KeysWorkFromEveryPart) {
    view_->showPage("playing");
    for (QWidget* part :
         {static_cast<QWidget*>(&text()), static_cast<QWidget*>(&list()), static_cast<QWidget*>(&search()),
          static_cast<QWidget*>(&control<QPushButton>("btnHelpHome"))}) {
        part->setFocus();
        press(Qt::Key_Left, Qt::AltModifier);
        EXPECT_EQ(page(), "index") << part->objectName().toStdString();
        part->setFocus();
        press(Qt::Key_Right, Qt::AltModifier);
        EXPECT_EQ(page(), "playing") << part->objectName().toStdString();
    }
    text().setFocus();
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(search().hasFocus());
}

TEST_F(HelpViewTest, DownGoesFromTheSearchToTheListAndEnterShowsThePage) {
    search().setFocus();
    press(Qt::Key_Down);
    EXPECT_TRUE(list().hasFocus());
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(page(), "playing");
}

TEST_F(HelpViewTest, HeadingsHaveTheirThreeSizes) {
    view_->showPage("playing");
    EXPECT_EQ(formatOf(text(), "Playing").font().pixelSize(), 18);
    EXPECT_EQ(formatOf(text(), "Pause").font().pixelSize(), 14);
    view_->showPage("skins");
    EXPECT_EQ(formatOf(text(), "Small").font().pixelSize(), 12);
}

TEST_F(HelpViewTest, LinksFollowThePaletteEvenWhenItChanges) {
    QPalette palette = view_->palette();
    for (const QColor colour : {QColor(255, 190, 84), QColor(14, 92, 210)}) {
        palette.setColor(QPalette::Link, colour);
        view_->setPalette(palette);
        EXPECT_EQ(formatOf(text(), "Playing").foreground().color(), colour);
    }
}

TEST_F(HelpViewTest, HeadsOfTablesStandOnThePanelsColour) {
    QPalette palette = view_->palette();
    palette.setColor(QPalette::Window, QColor(50, 55, 60));
    view_->setPalette(palette);
    view_->showPage("skins");
    auto* table = qobject_cast<QTextTable*>(text().document()->rootFrame()->childFrames().value(0));
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->cellAt(0, 1).format().background().color(), QColor(50, 55, 60));
    EXPECT_EQ(table->cellAt(1, 1).format().background().style(), Qt::NoBrush);
}

TEST_F(HelpViewTest, AFoundRowHasRoomForItsExcerpt) {
    const int before = list().visualItemRect(list().item(2)).height();
    search().setText("suit");
    EXPECT_GE(list().visualItemRect(list().item(0)).height(), before + 20);
}

TEST_F(HelpViewTest, ALongFirstPageOpensAtItsTop) {
    write("index.md", "# Contents\n\n" + std::string(20000, 'a') + " [Playing](playing.md)");
    HelpView view{HelpLibrary(folder())};
    view.resize(800, 500);
    view.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    const auto* bar = view.findChild<QTextBrowser*>("txtHelpPage")->verticalScrollBar();
    EXPECT_GT(bar->maximum(), 0);
    EXPECT_EQ(bar->value(), 0);
}

TEST_F(HelpViewTest, TextKeepsAwayFromTheEdgesAndLinesStayShort) {
    view_->resize(1600, 500);
    const auto margins = text().document()->rootFrame()->frameFormat();
    EXPECT_NEAR(text().viewport()->width() - margins.leftMargin() - margins.rightMargin(), 640, 1);
    view_->resize(600, 500);
    EXPECT_EQ(text().document()->rootFrame()->frameFormat().rightMargin(), 16);
    EXPECT_FALSE(text().horizontalScrollBar()->isVisible());
}

TEST_F(HelpViewTest, EveryControlIsNamedForThoseWhoHearTheWindow) {
    for (const char* name :
         {"txtHelpSearch", "lstHelpPages", "txtHelpPage", "btnHelpBack", "btnHelpForward", "btnHelpHome"})
        EXPECT_FALSE(control<QWidget>(name).accessibleName().isEmpty()) << name;
}

TEST(HelpViewWithoutPagesTest, AMissingFolderIsToldPlainly) {
    HelpView view(HelpLibrary("/nowhere/help"));
    const auto* text = view.findChild<QTextBrowser*>("txtHelpPage");
    for (int again = 0; again < 2; ++again) {
        EXPECT_TRUE(text->toPlainText().contains("install Velmora again"));
        EXPECT_TRUE(text->toPlainText().contains("/nowhere/help"));
        EXPECT_FALSE(view.showPage("playing"));
    }
    EXPECT_FALSE(view.findChild<QLineEdit*>("txtHelpSearch")->isEnabled());
    EXPECT_TRUE(view.page().isEmpty());
}
