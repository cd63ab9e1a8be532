// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/frmsetup.h"

#include "SetupFixture.h"
#include "shell/WindowGeometry.h"

#include <QAbstractSpinBox>
#include <QAccessible>
#include <QShortcut>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

using frmsetupTest = SetupFixture;

TEST_F(frmsetupTest, ItIsAFloatingToolWindow) {
    EXPECT_EQ(toolbar().windowTitle(), "Editor");
    EXPECT_EQ(toolbar().size(), QSize(520, 340));
    EXPECT_EQ(toolbar().windowFlags() & Qt::WindowType_Mask, Qt::Tool);
}

TEST_F(frmsetupTest, ItsTabsShowOnePanelAtATime) {
    constexpr std::array captions{"Polyphonics", "Channels", "Sound ",
                                  "Timing",      "Midi",     "Staff Configuration"};
    constexpr std::array inside{"Combo3", "LblInst1", "lblVolume", "TempoLabel", "Combo2", "ChTreble"};
    opened(0);
    for (int tab = 0; tab < 6; ++tab) {
        auto& button = control<QAbstractButton>("Lmnu", tab);
        EXPECT_EQ(button.text(), captions[static_cast<std::size_t>(tab)]);
        click(button);
        for (int other = 0; other < 6; ++other)
            EXPECT_EQ(control(inside[static_cast<std::size_t>(other)]).isVisible(), other == tab);
    }
}

TEST_F(frmsetupTest, KeysGoFromTabToTab) {
    opened(5);
    QTest::keyClick(&toolbar(), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_TRUE(control<QAbstractButton>("Lmnu", 0).isChecked());
    QTest::keyClick(&toolbar(), Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_TRUE(control<QAbstractButton>("Lmnu", 5).isChecked());
}

namespace {
/// A shortcut as the composing window has it.
struct Shortcut {
    Shortcut(Qt::Key key, QWidget& of) : shortcut(QKeySequence(key), &of) {
        QObject::connect(&shortcut, &QShortcut::activated, [this] { ++pressed; });
    }
    QShortcut shortcut;
    int pressed = 0;
};
} // namespace

TEST_F(frmsetupTest, SpacePressesWhatTheKeyboardHasReached) {
    opened(1);
    const Shortcut play(Qt::Key_Space, toolbar());
    for (int i = 0; i < 2; ++i) // to the active channel's button, and to its box
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(score().ChannelMuted[0]);
    EXPECT_EQ(play.pressed, 0);
}

TEST_F(frmsetupTest, AfterAClickSpaceStillPlays) {
    opened(1);
    const Shortcut play(Qt::Key_Space, toolbar());
    auto& box = control<QCheckBox>("TrackHide", 4);
    click(box);
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_TRUE(score().ChannelMuted[4]);
    EXPECT_EQ(play.pressed, 1);
}

TEST_F(frmsetupTest, HomeGoesToTheFirstItemOfAList) {
    opened(0);
    const Shortcut rewind(Qt::Key_Home, toolbar());
    auto& list = control<QComboBox>("Combo3");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(list.hasFocus());
    choose("Combo3", 5);
    QTest::keyClick(&list, Qt::Key_Home);
    EXPECT_EQ(workspace().setup.Combo3, 0);
    EXPECT_EQ(rewind.pressed, 0);
}

TEST_F(frmsetupTest, OpenItComesUpAtTheNextStartToo) {
    toolbar().open();
    EXPECT_TRUE(toolbar().isVisible());
    EXPECT_TRUE(workspace().setup.SetupOpen);
    EXPECT_TRUE(settings::read(settings, settings::frmsetup));
}

TEST_F(frmsetupTest, TheCloseImageHidesIt) {
    opened(1);
    click(control("imgTitleClose"));
    EXPECT_FALSE(toolbar().isVisible());
    EXPECT_FALSE(workspace().setup.SetupOpen);
    EXPECT_FALSE(settings::read(settings, settings::frmsetup));
}

TEST_F(frmsetupTest, EscClosesIt) {
    opened(1);
    QTest::keyClick(&toolbar(), Qt::Key_Escape);
    EXPECT_FALSE(toolbar().isVisible());
}

TEST_F(frmsetupTest, TheEndOfTheProgramIsNoClose) {
    opened(1);
    toolbar().unload();
    toolbar().close();
    EXPECT_TRUE(settings::read(settings, settings::frmsetup));
}

TEST_F(frmsetupTest, UnloadWritesTheSettings) {
    opened(1);
    toolbar().move(60, 45);
    SetupState& setup = workspace().setup;
    setup.TxtMeter = 3;
    setup.NoteX = 8;
    setup.TxBeats = 24;
    setup.ChTreble = false;
    workspace().view.Line_Height = 10;
    toolbar().unload();
    EXPECT_EQ(stored("frmsetup left"), "900");
    EXPECT_EQ(stored("frmsetup top"), "675");
    EXPECT_EQ(stored("Beats per measure"), "3");
    EXPECT_EQ(stored("Type of note"), "8");
    EXPECT_EQ(stored("Notes per measure"), "24");
    EXPECT_EQ(stored("Show Treble staff"), "0");
    EXPECT_EQ(stored("Show Bass staff"), "1");
    EXPECT_EQ(stored("Show_Sharp_guides"), "1");
    EXPECT_EQ(stored("Line_Height"), "10");
    EXPECT_EQ(stored("NumNotes"), "1000");
}

TEST_F(frmsetupTest, LoadReadsTheSettings) {
    store("frmsetup left", "300");
    store("frmsetup top", "450");
    store("Beats per measure", "6");
    store("Type of note", "8");
    store("Notes per measure", "48");
    store("Show Bass staff", "0");
    store("Show_Sharp_guides", "0");
    store("Line_Height", "12");
    EXPECT_EQ(toolbar().pos(), QPoint(20, 30));
    EXPECT_EQ(shownIn("TxtMeter"), "6");
    EXPECT_EQ(shownIn("NoteX"), "8");
    EXPECT_EQ(shownIn("TxBeats"), "48");
    EXPECT_EQ(shownIn("Text3"), "12");
    EXPECT_TRUE(control<QCheckBox>("ChTreble").isChecked());
    EXPECT_FALSE(control<QCheckBox>("ChBass").isChecked());
    EXPECT_FALSE(control<QCheckBox>("Check1").isChecked());
    EXPECT_EQ(workspace().view.Line_Height, 12);
}

TEST_F(frmsetupTest, ComingUpItChangesNothingThatIsDrawn) {
    store("Show_Sharp_guides", "2"); // rubbish: only 1 draws them
    EXPECT_FALSE(workspace().view.Show_Sharp_guides);
    opened(5);
    EXPECT_FALSE(control<QCheckBox>("Check1").isChecked());
    EXPECT_FALSE(workspace().view.Show_Sharp_guides);
}

TEST_F(frmsetupTest, AnEmptyStoreGivesTheDefaults) {
    EXPECT_EQ(shownIn("TxtMeter"), "4");
    EXPECT_EQ(shownIn("NoteX"), "4");
    EXPECT_EQ(shownIn("TxBeats"), "16");
    EXPECT_EQ(shownIn("TempoLabel"), "100");
    EXPECT_EQ(shownIn("Text1"), "1000");
    EXPECT_EQ(shownIn("Text3"), "8");
    EXPECT_EQ(shownIn("LblInst1"), "Nylon Guitar");
    EXPECT_EQ(shownIn("LblInst2"), "Acoustic Bass Drum");
    EXPECT_EQ(workspace().chords, ChordSteps());
}

TEST_F(frmsetupTest, APlaceOffTheScreenIsBroughtBack) {
    store("frmsetup left", "999999");
    store("frmsetup top", "-30000");
    EXPECT_TRUE(toolbar().screen()->availableGeometry().contains(toolbar().geometry()));
}

TEST_F(frmsetupTest, AtFirstItStandsOnTheScreen) {
    EXPECT_TRUE(toolbar().screen()->availableGeometry().contains(toolbar().geometry()));
}

TEST_F(frmsetupTest, F1ShowsItsPageOfTheHelp) {
    opened(2);
    const Shortcut help(Qt::Key_F1, toolbar());
    QTest::keyClick(&control("LblPan"), Qt::Key_F1);
    EXPECT_THAT(windows.pages, ElementsAre("setup-toolbar"));
    EXPECT_EQ(help.pressed, 0);
}

TEST_F(frmsetupTest, TheShownTabHasTheFocus) {
    opened(4);
    EXPECT_TRUE(control("Lmnu", 4).hasFocus());
}

TEST_F(frmsetupTest, LoadedLaterItLeavesTheOpenScoreAsItIs) {
    score().Tempo = 240;
    workspace().setup.TxtMeter = 3;
    EXPECT_EQ(shownIn("TempoLabel"), "240");
    EXPECT_EQ(shownIn("TxtMeter"), "3");
    EXPECT_EQ(score().Tempo, 240);
}

TEST_F(frmsetupTest, ShowingEverythingAnewChangesNothing) {
    opened(3);
    workspace().setup.TxtMeter = 10;
    workspace().setup.NoteX = 2;
    workspace().setup.TxBeats = 5;
    score().Tempo = 77;
    announce(workspace(), Change::File);
    EXPECT_EQ(shownIn("TxtMeter"), "10");
    EXPECT_EQ(shownIn("TempoLabel"), "77");
    EXPECT_EQ(workspace().setup.TxBeats, 5);
    EXPECT_EQ(score().Tempo, 77);
    EXPECT_THAT(watcher().told, testing::ElementsAre(Changes(Change::File)));
}

TEST_F(frmsetupTest, EveryControlHasANameAndATip) {
    int controls = 0;
    for (QWidget* child : toolbar().findChildren<QWidget*>()) {
        const QString name = child->objectName();
        if (child->focusPolicy() == Qt::NoFocus || name.isEmpty() || name.startsWith("qt_") ||
            child->inherits("QAbstractItemView") || qobject_cast<QAbstractSpinBox*>(child->parentWidget()))
            continue;
        ++controls;
        QAccessibleInterface* said = QAccessible::queryAccessibleInterface(child);
        EXPECT_TRUE(said && !said->text(QAccessible::Name).isEmpty()) << name.toStdString();
        EXPECT_TRUE(tips.toolTip(*child)) << name.toStdString();
    }
    EXPECT_EQ(controls, 6 + 1 + 1 + 16 + 24 + 2 + 5 + 5 + 5 + 4);
}

TEST_F(frmsetupTest, TabReachesTheControlsOfAPanelFromItsTab) {
    opened(3);
    control("Lmnu", 3).setFocus();
    std::vector<std::string> reached;
    for (int i = 0; i < 7; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached.push_back(QApplication::focusWidget()->objectName().toStdString());
    }
    EXPECT_THAT(reached, ElementsAre("LblTempo", "TempoLabel", "VScroll1", "VScroll2", "measureArrows",
                                     "fold", "Lmnu(3)"));
}

TEST_F(frmsetupTest, FoldedItIsItsTitleAndItsTabs) {
    opened(3);
    auto& fold = control<QAbstractButton>("fold");
    click(fold);
    EXPECT_EQ(toolbar().size(), QSize(520, 72));
    EXPECT_FALSE(control("LblTempo").isVisible());
    for (int tab = 0; tab < 6; ++tab)
        EXPECT_TRUE(toolbar().rect().contains(
            QRect(control("Lmnu", tab).mapTo(&toolbar(), QPoint()), control("Lmnu", tab).size())));
    click(fold);
    EXPECT_EQ(toolbar().size(), QSize(520, 340));
    EXPECT_TRUE(control("LblTempo").isVisible());
}

TEST_F(frmsetupTest, ATabUnfoldsIt) {
    opened(3);
    toolbar().setFolded(true);
    click(control("Lmnu", 5));
    EXPECT_FALSE(toolbar().isFolded());
    EXPECT_TRUE(control("ChTreble").isVisible());
}

TEST_F(frmsetupTest, KeysReachTheFoldedToolbarAndUnfoldIt) {
    opened(3);
    toolbar().setFolded(true);
    auto& fold = control<QAbstractButton>("fold");
    for (int i = 0; i < 3 && !fold.hasFocus(); ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    ASSERT_TRUE(fold.hasFocus());
    QTest::keyClick(&fold, Qt::Key_Space);
    EXPECT_FALSE(toolbar().isFolded());
    QTest::keyClick(&fold, Qt::Key_Space);
    EXPECT_TRUE(toolbar().isFolded());
    QTest::keyClick(&fold, Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_FALSE(toolbar().isFolded()) << "another page was asked for";
}

TEST_F(frmsetupTest, ItStaysFoldedWhenItIsClosedAndOpenedAndAtTheNextStart) {
    opened(3);
    toolbar().setFolded(true);
    toolbar().close();
    toolbar().open();
    EXPECT_TRUE(toolbar().isFolded());
    close();
    EXPECT_TRUE(toolbar().isFolded());
}

TEST_F(frmsetupTest, UnfoldedAtTheFootOfTheScreenItMovesUpAndBackAgain) {
    opened(3);
    toolbar().setFolded(true);
    const QRect screen = toolbar().screen()->availableGeometry();
    const QPoint foot(20, screen.bottom() + 1 - toolbar().height());
    toolbar().move(foot);
    toolbar().setFolded(false);
    EXPECT_TRUE(screen.contains(toolbar().geometry()));
    toolbar().setFolded(true);
    EXPECT_EQ(toolbar().pos(), foot);
}

TEST_F(frmsetupTest, ItsFirstPlaceIsClearOfTheHintAndOfTheFirstMeasures) {
    struct Row {
        QSize screen, form;
        bool folded;
    };
    for (const Row& row : {Row{{1366, 768}, {1233, 701}, false}, Row{{1024, 600}, {891, 533}, true},
                           Row{{1920, 1080}, {1787, 1013}, false}}) {
        shown().setGeometry(QRect(QPoint(33, 33), row.form));
        QApplication::processEvents();
        const FirstPlace first =
            firstPlace(window().geometry(), QRect({}, row.screen), {520, 340}, {520, 72});
        const QRect place(first.corner, first.folded ? QSize(520, 72) : QSize(520, 340));
        EXPECT_EQ(first.folded, row.folded);
        QWidget& hint = child("hint");
        EXPECT_TRUE(hint.isVisible());
        EXPECT_FALSE(place.intersects(QRect(hint.mapToGlobal(QPoint()), hint.size()))) << row.form.width();
        const QRect paper(child("MusicBox").mapToGlobal(QPoint()), QSize(3 * 16 * 12, 100));
        EXPECT_FALSE(place.intersects(paper)) << row.form.width();
    }
}

TEST_F(frmsetupTest, AStoredPlaceIsNotFolded) {
    store("frmsetup left", "150");
    store("frmsetup top", "150");
    const frmsetup second(desk(), &window());
    EXPECT_FALSE(second.isFolded());
    EXPECT_EQ(second.pos(), QPoint(10, 10));
}
