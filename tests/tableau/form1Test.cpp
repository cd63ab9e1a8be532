// SPDX-License-Identifier: GPL-2.0-or-later
// What the window shows of the score, keys and focus, and its sizes.
#include "tableau/form1.h"

#include "composition/RecoveryFile.h"
#include "form1Fixture.h"
#include "score/SngFile.h"
#include "shell/SkinPainter.h"
#include "tableau/ViewGeometry.h"

#include <QLabel>
#include <QScrollBar>

#include <fstream>

using namespace velmora;

namespace {
class form1Test : public form1Fixture {
protected:
    bool isInside(const QWidget& part) {
        return window().rect().contains(QRect(part.mapTo(&window(), QPoint()), part.size()));
    }
    void expectNothingCut() {
        for (const QWidget* part : window().findChildren<QWidget*>()) {
            if (part->isWindow() || !part->isVisible() || part->visibleRegion().isEmpty())
                continue;
            EXPECT_TRUE(isInside(*part)) << part->objectName().toStdString() << " at " << window().width();
        }
        for (const auto* button : window().findChildren<QAbstractButton*>()) {
            const auto* part = dynamic_cast<const CommandButton*>(button);
            if (!part || !part->isVisible())
                continue;
            EXPECT_TRUE(isInside(*part)) << part->objectName().toStdString() << " at " << window().width();
            const bool small = part->form() == ButtonForm::IconOverText;
            const int icon = part->form() == ButtonForm::IconAndText ? 28 : 0;
            if (part->form() == ButtonForm::Icon || part->form() == ButtonForm::Tab)
                continue;
            const int words = QFontMetrics(textFont(small ? 10 : 12)).horizontalAdvance(part->text());
            EXPECT_GE(part->width(), words + icon) << part->objectName().toStdString();
        }
    }
};
} // namespace

TEST_F(form1Test, TheReadOutsTellAboutAnEmptyScore) {
    shown();
    EXPECT_EQ(text("LblNote"), "1");
    EXPECT_EQ(text("LblNoteName"), " -");
    EXPECT_EQ(text("Label7"), "-");
    EXPECT_EQ(text("LblVol"), "127");
    EXPECT_EQ(text("LblInst"), nameOfCode(24));
    EXPECT_EQ(text("LblTrk"), "1");
    EXPECT_EQ(text("LblNumnotes"), "0 Notes");
    EXPECT_EQ(text("PrintTopBar"), topBarText(score(), workspace().setup));
    EXPECT_EQ(window().windowTitle(), "Velmora");
}

TEST_F(form1Test, ASquareMakesItsChannelTheActiveOne) {
    shown();
    for (const int channel : {1, 7, 8, 12, 0}) {
        QTest::mouseClick(&square(channel), Qt::LeftButton);
        EXPECT_EQ(score().ActiveChannel, channel);
        EXPECT_TRUE(square(channel).isChecked());
        EXPECT_EQ(text("LblTrk"), std::to_string(channel + 1));
        EXPECT_EQ(text("LblInst"), nameOfCode(channel < 8 ? 24 : 128));
    }
    EXPECT_EQ(score().TopChannel, 7);
}

TEST_F(form1Test, AnOpenedScoreIsNamedAndCounted) {
    putNotes(score(), 2, 60, 5);
    const auto file = folders.home() / "Waltz in Ä.sng";
    score().currentFile = file.string();
    ASSERT_EQ(SavePoliFile(score(), workspace().setup), "");
    score().ClearAll();
    shown().openScore(file);
    EXPECT_EQ(window().windowTitle().toStdString(), "Velmora - Waltz in Ä.sng");
    EXPECT_EQ(text("LblNumnotes"), "10 Notes");
    window().OpenforUndo();
    EXPECT_EQ(window().windowTitle(), "Velmora");
    EXPECT_EQ(text("LblNumnotes"), "0 Notes");
}

TEST_F(form1Test, AnOpenedScoreShowsItsFirstNotesHoweverLowTheyLie) {
    putNotes(score(), 2, 120, 5);
    const auto file = folders.home() / "deep.sng";
    const std::string text = serializePoliFile(score(), workspace().setup);
    std::ofstream(file) << text;
    score().ClearAll();
    shown();
    const std::vector<std::function<void()>> ways{
        [&] { window().openScore(file); },
        [&] { window().bringBack({.file = {}, .score = text, .currentFile = {}}); },
    };
    for (const auto& open : ways) {
        ViewState& view = workspace().view;
        view.ViewTopRow = 10;
        open();
        EXPECT_LT((121 - view.ViewTopRow) * view.Line_Height, child("MusicBox").height());
        EXPECT_EQ(child<QScrollBar>("VScroll1").value(), rowValue(view));
        view.ViewTopRow = 10;
        window().ClearAll();
        window().OpenforUndo();
        EXPECT_EQ(score().SongEnd, 10);
        EXPECT_EQ(view.ViewTopRow, 10) << "clearing and undo keep what the user looks at";
    }
}

TEST_F(form1Test, AScoreThatCantBeOpenedIsSaid) {
    shown();
    std::string said;
    driver.in<QWidget>([&](QWidget& box) {
        said = wordsOf(box).toStdString();
        pressIn(box, "ok");
    });
    window().openScore(folders.home() / "missing.sng");
    EXPECT_THAT(said, testing::HasSubstr("missing.sng"));
}

TEST_F(form1Test, WithoutNotesSavingAsksNothingAndSaysWhy) {
    shown().Cmd2_Click(2);
    EXPECT_TRUE(dialogs.asked.empty());
    EXPECT_NE(text("toolText").find("no notes yet"), std::string::npos);
}

TEST_F(form1Test, ClearingAndUndoAreSeen) {
    putNotes(score(), 4, 60, 5);
    shown();
    window().ClearAll();
    EXPECT_EQ(text("LblNumnotes"), "0 Notes");
    window().OpenforUndo();
    EXPECT_EQ(text("LblNumnotes"), "10 Notes");
}

TEST_F(form1Test, HelpHasThePageOfTheWindowAndTheMenusTheIndex) {
    shown();
    QTest::keyClick(&window(), Qt::Key_F1);
    QTest::mouseClick(&child("imgTitleHelp"), Qt::LeftButton);
    menu.item("mnuHelpfile").trigger();
    EXPECT_THAT(windows.pages, testing::ElementsAre("composing-window", "composing-window", "index"));
}

TEST_F(form1Test, TabGoesThroughTheStripsFromTopToBottomAndFromLeftToRight) {
    putNotes(score(), 0, 60, 2);
    for (const int width : {1366, 1024, 900}) {
        shown().resize(width, 768);
        const std::vector<const QWidget*> strips{&child("buttonBar"), &child("toolPanel"),
                                                 &child("channelStrip"), &child("Picmain"),
                                                 &child("textLine")};
        const auto stripOf = [&](const QWidget* part) {
            while (part && std::find(strips.begin(), strips.end(), part) == strips.end())
                part = part->parentWidget();
            return std::find(strips.begin(), strips.end(), part) - strips.begin();
        };
        child("Picmain").setFocus();
        std::ptrdiff_t strip = stripOf(&child("Picmain"));
        int x = -1;
        std::set<const QWidget*> met;
        // From the Tableau through the text line, and round to the Tableau.
        do {
            QTest::keyClick(&window(), Qt::Key_Tab);
            const QWidget* now = QApplication::focusWidget();
            const std::string name = now->objectName().toStdString() + " at " + std::to_string(width);
            ASSERT_TRUE(met.insert(now).second) << name;
            if (stripOf(now) != strip) {
                EXPECT_EQ(stripOf(now), (strip + 1) % std::ssize(strips)) << name;
                strip = stripOf(now);
                x = -1;
            }
            const int left = now->mapTo(&window(), QPoint()).x();
            if (strip == 0 || strip == 4) {
                EXPECT_GT(left, x) << name;
            }
            x = left;
        } while (QApplication::focusWidget() != &child("Picmain"));
    }
}

TEST_F(form1Test, NoSquareIsCutByItsStrip) {
    shown();
    const QRect strip = child("channelStrip").rect();
    for (const int channel : {0, 1, 12})
        EXPECT_TRUE(strip.contains(square(channel).geometry())) << channel;
}

TEST_F(form1Test, SpacePressesTheButtonThatTabHasReached) {
    putNotes(score(), 0, 60, 2);
    shown();
    QWidget* reached = nullptr;
    for (int i = 0; i < 60 && reached != &button("Lb1", 9); ++i) {
        QTest::keyClick(&window(), Qt::Key_Tab);
        reached = QApplication::focusWidget();
    }
    ASSERT_EQ(reached, &button("Lb1", 9));
    port.sent.clear();
    QTest::keyClick(reached, Qt::Key_Space);
    EXPECT_FALSE(child("Beatbox").isVisible()) << "pressed";
    EXPECT_TRUE(port.notes().empty()) << "nothing played";
}

TEST_F(form1Test, SpacePressesASquareThatTabHasReached) {
    putNotes(score(), 0, 60, 2);
    shown();
    square(3).setFocus(Qt::TabFocusReason);
    port.sent.clear();
    QTest::keyClick(&square(3), Qt::Key_Space);
    EXPECT_EQ(score().ActiveChannel, 3);
    EXPECT_TRUE(port.notes().empty()) << "nothing played";
    square(4).setFocus(Qt::TabFocusReason);
    QTest::keyClick(&square(4), Qt::Key_Return);
    EXPECT_EQ(score().ActiveChannel, 4);
}

TEST_F(form1Test, EveryButtonHasATipAndAName) {
    shown();
    for (const auto* one : window().findChildren<QAbstractButton*>()) {
        const std::string name = one->objectName().toStdString();
        if (name.starts_with("qt_")) // in a menu bar that is too narrow, which ours never is
            continue;
        EXPECT_NE(name, "");
        EXPECT_FALSE(one->accessibleName().isEmpty()) << name;
        const Tip* tip = tips.toolTip(*one);
        ASSERT_TRUE(tip) << name;
        EXPECT_FALSE(tip->title.isEmpty() && tip->text.isEmpty()) << name;
    }
}

TEST_F(form1Test, TheTipOfTheMaximizeButtonFollowsTheWindow) {
    shown();
    const QWidget& button = child("imgTitleMaxRestore");
    EXPECT_EQ(tips.toolTip(button)->title, "Maximize");
    window().showMaximized();
    QApplication::processEvents();
    EXPECT_EQ(tips.toolTip(button)->title, "Restore");
    EXPECT_EQ(button.accessibleName(), "Restore");
}

TEST_F(form1Test, NothingIsCutFromTheLeastSizeToALargeOneAndBack) {
    shown();
    EXPECT_EQ(window().minimumSize(), QSize(880, 520));
    for (const QSize size :
         {QSize(880, 520), QSize(891, 533), QSize(1024, 600), QSize(1233, 701), QSize(1366, 768),
          QSize(1920, 1080), QSize(1280, 720), QSize(999, 600), QSize(880, 520)}) {
        window().resize(size);
        QApplication::processEvents();
        ASSERT_EQ(window().size(), size);
        for (const int tab : {17, 18, 19}) {
            window().Lb1_Click(tab);
            expectNothingCut();
        }
    }
}

TEST_F(form1Test, ButtonsOfTheBarStandApartInEverySize) {
    shown();
    for (const int width : {880, 999, 1000, 1015, 1016, 1279, 1280, 1920}) {
        window().resize(width, 600);
        QApplication::processEvents();
        const auto buttons = child("buttonBar").findChildren<CommandButton*>();
        for (const CommandButton* one : buttons)
            for (const CommandButton* other : buttons)
                if (one < other && one->isVisible() && other->isVisible()) {
                    EXPECT_FALSE(one->geometry().intersects(other->geometry()))
                        << one->objectName().toStdString() << other->objectName().toStdString() << width;
                }
    }
}

TEST_F(form1Test, InASmallWindowTheStylesFoldBehindMore) {
    store("Notationstyle", "1");
    shown();
    EXPECT_FALSE(child("more").isVisible());
    window().resize(880, 520);
    QApplication::processEvents();
    auto& more = child<CommandButton>("more");
    ASSERT_TRUE(more.isVisible());
    for (int index = 9; index <= 12; ++index)
        EXPECT_FALSE(button("Lb1", index).isVisible()) << index;
    QTest::mouseClick(&more, Qt::LeftButton);
    auto* popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(popup);
    const auto rows = popup->actions();
    ASSERT_EQ(rows.size(), 4);
    const char* titles[]{"Percussion Tableau", "Colorful Line", "Traditional Notation", "Accidentals"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(rows[i]->text(), titles[i]);
        EXPECT_EQ(rows[i]->isChecked(), button("Lb1", 9 + i).isChecked()) << titles[i];
        EXPECT_EQ(rows[i]->isEnabled(), button("Lb1", 9 + i).isEnabled()) << titles[i];
    }
    rows[0]->trigger();
    popup->close();
    EXPECT_FALSE(settings::read(settings, settings::Percussion));
    EXPECT_FALSE(child("Beatbox").isVisible());
}
