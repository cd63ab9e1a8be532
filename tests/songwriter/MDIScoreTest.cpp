// SPDX-License-Identifier: GPL-2.0-or-later
#include "tests/songwriter/MDIScoreFixture.h"

#include "base/Files.h"
#include "base/Settings.h"
#include "notation/Keys.h"
#include "parts/NumberField.h"
#include "shell/ProgressWindow.h"
#include "shell/Slider.h"
#include "songwriter/Commands.h"
#include "tests/support/FullDisk.h"

using namespace velmora;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {
using MDIScoreTest = MDIScoreFixture;

/// A clock by which everything lasts, and a hand that presses "Cancel" when it is given the time.
class SlowLoop : public HandLoop {
public:
    double now() const override { return clock_ += 0.6; }
    void YieldIfInput() override {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (auto* progress = dynamic_cast<ProgressWindow*>(window); progress && progress->isVisible()) {
                ++seen;
                if (cancels)
                    progress->close();
            }
    }

    bool cancels = false;
    int seen = 0; ///< how often a progress was shown

private:
    mutable double clock_ = 0;
};

constexpr const char* kItems[]{"mnuNewscoreSW",   "mnuOpenscoreSW", "mnuSavescoreASSW", "mnuOpenLyricsSW",
                               "mnuSaveLyricsSW", "mnuPrinttSW",    "mnuCloseSW",       "mnuCurrentNotesSW",
                               "mnuAddPageSW",    "mnuCSW",         "mnuGSW",           "mnuDSW",
                               "mnuASW",          "mnuESW",         "mnuBSW",           "mnuFSW",
                               "mnuBflatSW",      "mnuEflatSW",     "mnuAflatSW",       "mnuDflatSW",
                               "mnuGflatSW",      "mnuByItselfSW",  "mnuAddTextSW",     "mnuEditTextSW",
                               "mnuResetTextSW",  "mnuScoreSetup",  "mnuChannelSetup",  "mnuTextSetup"};
} // namespace

TEST_F(MDIScoreTest, TheBarHasNineButtonsWithTheirTipsAndCaptions) {
    window();
    const std::pair<const char*, const char*> rows[]{
        {"Open a Blank Score Sheet", "Blank"},
        {"Open a Music Score (sng)", "Open"},
        {"Save the music score and/or lyrics", "Save"},
        {"Edit or Create Keyboard File", "Edit"},
        {"Write Score from Current Notes", "Write Score"},
        {"Play Continuous Loop", "Loop"},
        {"ReWrite Score and Lyrics from Current Notes", "Write Score"},
        {"Print Music Score", "Print"},
        {"Close Velmora Songwriter", "Close"},
    };
    for (int i = 0; i < 9; ++i) {
        auto& button = control<QAbstractButton>(qPrintable(QStringLiteral("Lb1(%1)").arg(i)));
        EXPECT_EQ(tips.toolTip(button)->title, rows[i].first);
        EXPECT_EQ(button.text(), rows[i].second);
        EXPECT_TRUE(button.isEnabled()) << i;
    }
    EXPECT_EQ(window().windowTitle(), "Velmora SongWriter 1.1   BETA");
}

TEST_F(MDIScoreTest, EachItemOfItsMenusIsBoundAndDiesWithIt) {
    window();
    for (const char* name : kItems)
        EXPECT_TRUE(item(name).isEnabled()) << name;
    destroy();
    for (const char* name : kItems)
        EXPECT_FALSE(item(name).isEnabled()) << name;
}

TEST_F(MDIScoreTest, EveryControlHasAToolTextAndAName) {
    putBars(2);
    press(songButton("write"));
    for (const QWidget* part : window().findChildren<QWidget*>()) {
        const bool isControl = qobject_cast<const QAbstractButton*>(part) ||
                               qobject_cast<const QComboBox*>(part) || qobject_cast<const QLineEdit*>(part) ||
                               qobject_cast<const QAbstractSpinBox*>(part) ||
                               qobject_cast<const QAbstractSlider*>(part) ||
                               qobject_cast<const QPlainTextEdit*>(part) || part->objectName() == "Pic1";
        if (!isControl)
            continue;
        const bool isPartOfAnother = qobject_cast<const QAbstractSpinBox*>(part->parentWidget()) ||
                                     qobject_cast<const QComboBox*>(part->parentWidget()) ||
                                     part->parentWidget()->objectName().startsWith("qt_") ||
                                     part->objectName().startsWith("qt_");
        if (isPartOfAnother)
            continue;
        EXPECT_TRUE(tips.toolTip(*part)) << qPrintable(part->objectName());
        const QAccessibleInterface* const spoken =
            QAccessible::queryAccessibleInterface(const_cast<QWidget*>(part));
        EXPECT_FALSE(spoken->text(QAccessible::Name).trimmed().isEmpty()) << qPrintable(part->objectName());
    }
}

TEST_F(MDIScoreTest, Button0WithNoSheetsOpenMakesPage1) {
    press(songButton("blank"));
    ASSERT_TRUE(pages().frontSheet());
    EXPECT_EQ(front().windowTitle(), " Untitled Score -           Page 1");
    item("mnuAddPageSW").trigger();
    EXPECT_EQ(front().windowTitle(), " Untitled Score -           Page 2");
    EXPECT_EQ(control<QLabel>("place").text(), "Page 2 of 2");
}

TEST_F(MDIScoreTest, WritingClosesAllSheetsAndMakesNewOnesTheFirstBeforeTheOthers) {
    putBars(60);
    press(songButton("blank"));
    press(songButton("write"));
    ASSERT_GE(song().count(), 2);
    EXPECT_EQ(window().findChildren<QWidget*>(QRegularExpression("^ScoreSheet")).size(), song().count());
    EXPECT_EQ(pages().front(), 1);
    EXPECT_THAT(front().windowTitle().toStdString(), HasSubstr("Untitled Score         Page 1"));
    EXPECT_THAT(front().Pic1().accessibleName().toStdString(), HasSubstr("60 bars in all"));
}

TEST_F(MDIScoreTest, ASheetThatIsClosedLeavesItsPlaceEmpty) {
    press(songButton("blank"));
    press(songButton("blank"));
    press(songButton("blank"));
    front().findChild<QAbstractButton*>("imgTitleClose")->click();
    pages().sheet(1)->findChild<QAbstractButton*>("imgTitleClose")->click();
    EXPECT_THAT(song().openPages(), ElementsAre(2));
    EXPECT_EQ(pages().front(), 2);
    pages().frontSheet()->findChild<QAbstractButton*>("imgTitleClose")->click();
    EXPECT_FALSE(pages().frontSheet());
    press(songButton("blank"));
    EXPECT_EQ(pages().front(), 4);
}

TEST_F(MDIScoreTest, TheKeyItemsAreRadiosInStepWithTheList) {
    window();
    auto& list = control<QComboBox>("Combo1");
    for (int key = 0; key < 12; ++key) {
        item(std::string(notation::kKeys[static_cast<std::size_t>(key)].item).c_str()).trigger();
        EXPECT_EQ(list.currentIndex(), key);
        EXPECT_EQ(list.currentText().toStdString(), notation::kKeys[static_cast<std::size_t>(key)].text);
        int checked = 0;
        for (const notation::Key& other : notation::kKeys)
            checked += item(std::string(other.item).c_str()).isChecked() ? 1 : 0;
        EXPECT_EQ(checked, 1);
    }
    list.setCurrentIndex(2);
    emit list.activated(2);
    EXPECT_TRUE(item("mnuDSW").isChecked());
    EXPECT_EQ(song().setup.key, 2);
    item("mnuByItselfSW").trigger();
    EXPECT_EQ(song().setup.key, notation::kAutomaticKey);
    EXPECT_EQ(list.currentText(), "by itself");
    EXPECT_FALSE(item("mnuDSW").isChecked());
}

TEST_F(MDIScoreTest, TheTabsShowTheirPanels) {
    opened();
    for (const auto& [index, panel] :
         {std::pair(3, "stavesPanel"), std::pair(4, "notesPanel"), std::pair(5, "scorePanel")}) {
        window().Lmnu_Click(index);
        EXPECT_TRUE(control(panel).isVisible()) << panel;
    }
    EXPECT_FALSE(control("textsPanel").isVisible());
    window().Lmnu_Click(1);
    EXPECT_TRUE(control("textsPanel").isVisible());
    EXPECT_TRUE(menu.popup("mnuTextSW").isVisible());
    menu.popup("mnuTextSW").close();
    for (const auto& [index, popup] : {std::pair(0, "mnusngwriPopup2"), std::pair(2, "mnusngwriPopup1")}) {
        window().Lmnu_Click(index);
        EXPECT_TRUE(menu.popup(popup).isVisible()) << popup;
        EXPECT_TRUE(control("textsPanel").isVisible()) << "the panel stays";
        menu.popup(popup).close();
    }
    window().Lmnu_Click(6);
    item("mnuChannelSetup").trigger();
    EXPECT_TRUE(control("stavesPanel").isVisible());
}

TEST_F(MDIScoreTest, ThreeSlidersSetTensOfPixels) {
    window();
    const std::tuple<const char*, const char*, int notation::ScoreSetup::*> rows[]{
        {"HScroll1", "Lbar", &notation::ScoreSetup::BarWidth},
        {"HScroll2", "Label3", &notation::ScoreSetup::SpacerHeight},
        {"HScroll3", "Label2", &notation::ScoreSetup::HeaderHeight}};
    // The scroll bars of sheets have the same names; there is none yet.
    for (const auto& [slider, value, size] : rows) {
        EXPECT_EQ(control<QLabel>(value).text(), "60");
        QTest::keyClick(&control<Slider>(slider), Qt::Key_Right);
        EXPECT_EQ(control<QLabel>(value).text(), "70");
        EXPECT_EQ(song().setup.*size, 70);
    }
}

TEST_F(MDIScoreTest, SettingsAreReadAtStartAndWrittenOnClosing) {
    settings.SaveSetting("ScoreSettings", "BarWidth", "9");
    settings.SaveSetting("ScoreSettings", "HeaderHeight", "-400");
    settings.SaveSetting("ScoreSettings", "SpacerHeight", "3000");
    settings.SaveSetting("ScoreSettings", "NewScore", "0");
    settings.SaveSetting("ScoreSettings", "JoinNotes", "1");
    opened();
    EXPECT_EQ(song().setup.BarWidth, 90);
    EXPECT_EQ(song().setup.HeaderHeight, 10) << "clipped";
    EXPECT_EQ(song().setup.SpacerHeight, 300) << "clipped";
    EXPECT_FALSE(song().setup.newScore);
    EXPECT_EQ(song().setup.joinNotes, 4);
    tick("Check1");
    QTest::keyClick(&control<Slider>("HScroll1"), Qt::Key_Right);
    press(songButton("close"));
    EXPECT_FALSE(window().isVisible());
    const auto stored = [this](const char* key) { return settings.GetSetting("ScoreSettings", key, "none"); };
    EXPECT_EQ(stored("BarWidth"), "10");
    EXPECT_EQ(stored("NewScore"), "1");
    EXPECT_EQ(stored("JoinNotes"), "1");
    EXPECT_NE(this->stored("frmscore Width"), "none");
    EXPECT_NE(this->stored("frmscore left"), "none");
}

TEST_F(MDIScoreTest, WhatIsChosenForTheCleanPageIsThereAtTheNextStart) {
    opened();
    tick("chkClassic");
    tick("chkLearn");
    tick("chkVoices");
    press(songButton("close"));
    const auto stored = [this](const char* key) { return settings.GetSetting("ScoreSettings", key, "none"); };
    EXPECT_EQ(stored("ClassicPage"), "0") << "though the manners are classic";
    EXPECT_EQ(stored("LearnToRead"), "True");
    EXPECT_EQ(stored("TwoVoices"), "True");
    destroy();
    song().setup = {}; // as another start finds it
    song().setup.classicPage = true;
    opened();
    EXPECT_FALSE(control<QCheckBox>("chkClassic").isChecked());
    EXPECT_TRUE(control<QCheckBox>("chkLearn").isChecked());
    EXPECT_TRUE(control<QCheckBox>("chkVoices").isChecked());
    tick("chkLearn");
    tick("chkVoices");
    press(songButton("close"));
    EXPECT_EQ(stored("LearnToRead"), "False");
    EXPECT_EQ(stored("TwoVoices"), "False");
}

TEST_F(MDIScoreTest, APageThatNobodyChoseFollowsTheMannersOfTheNextStart) {
    opened();
    press(songButton("close"));
    EXPECT_EQ(settings.GetSetting("ScoreSettings", "ClassicPage", "none"), "-1");
    destroy();
    beCareful();
    song().setup.classicPage = false; // as a document begins in these manners
    opened();
    EXPECT_FALSE(control<QCheckBox>("chkClassic").isChecked());
    tick("chkClassic");
    press(songButton("close"));
    EXPECT_EQ(settings.GetSetting("ScoreSettings", "ClassicPage", "none"), "1");
}

TEST_F(MDIScoreTest, TheNumberOfPercussionStavesIsKeptWhenItChanges) {
    window();
    auto& drums = control<NumberField>("VScroll6");
    drums.stepBy(1);
    EXPECT_EQ(settings.GetSetting("ScoreSettings", "NumDrums", "none"), "1");
    EXPECT_EQ(song().setup.staves.DrumStaves(), 1);
    drums.stepBy(-1);
    EXPECT_EQ(settings.GetSetting("ScoreSettings", "NumDrums", "none"), "0");
}

TEST_F(MDIScoreTest, TickingASixthChannelIsUndoneAtOnce) {
    window();
    for (int box = 0; box < 6; ++box)
        tick(qPrintable(QStringLiteral("chkChannel(%1)").arg(box)));
    EXPECT_TRUE(control<QCheckBox>("chkChannel(4)").isChecked());
    EXPECT_FALSE(control<QCheckBox>("chkChannel(5)").isChecked());
    tick("ChkNotetype(1)");
    EXPECT_EQ(control<QLineEdit>("lblTreb").text(), "4");
    EXPECT_EQ(control<QLineEdit>("LblBass").text(), "1");
    EXPECT_EQ(control<QLineEdit>("Lbldrums").text(), "0");
}

TEST_F(MDIScoreTest, JoinNotesIsDisabledWhereItHasNoEffect) {
    window();
    EXPECT_TRUE(control("Check2").isEnabled()) << "in classic manners the page is the classic one";
    EXPECT_FALSE(control("chkLearn").isEnabled());
    tick("Check2");
    EXPECT_EQ(song().setup.joinNotes, 4);
    tick("Option1");
    EXPECT_EQ(song().setup.joinNotes, 2);
    tick("chkClassic");
    EXPECT_FALSE(control("Check2").isEnabled());
    EXPECT_FALSE(control("Option1").isEnabled());
    EXPECT_TRUE(control("chkLearn").isEnabled());
    EXPECT_TRUE(control("chkVoices").isEnabled());
    EXPECT_TRUE(control("verses").isEnabled());
    tick("Optspc1");
    EXPECT_EQ(song().setup.spacing, notation::NoteSpacing::Symmetrical);
    tick("Optspc2");
    EXPECT_EQ(song().setup.spacing, notation::NoteSpacing::Proportional);
}

TEST_F(MDIScoreTest, ThePageFollowsTheManners) {
    window();
    EXPECT_TRUE(control<QCheckBox>("chkClassic").isChecked());
    beCareful();
    EXPECT_FALSE(control<QCheckBox>("chkClassic").isChecked());
    EXPECT_FALSE(song().setup.classicPage);
}

TEST_F(MDIScoreTest, TheEndFollowsTheScoreUntilItIsTyped) {
    window();
    EXPECT_EQ(control<QLineEdit>("Text5").text(), "0");
    putBars(2);
    announce(workspace(), Change::Cells);
    EXPECT_EQ(control<QLineEdit>("Text5").text(), "32");
    control<NumberField>("VScroll1").stepBy(1);
    EXPECT_EQ(song().setup.end, 48) << "by a measure";
    control<NumberField>("VScroll2").stepBy(-5);
    EXPECT_EQ(song().setup.start, 0);
    announce(workspace(), Change::File);
    EXPECT_EQ(control<QLineEdit>("Text5").text(), "32");
}

TEST_F(MDIScoreTest, APageThatIsLeftAloneTakesTheRoomOfTheOthers) {
    putBars(1);
    press(songButton("write"));
    const QRect alone = front().geometry();
    putBars(60);
    press(songButton("write"));
    ASSERT_GT(song().count(), 1);
    EXPECT_NE(front().geometry(), alone);
    score().ClearNoteArrays();
    putBars(1);
    press(songButton("write"));
    ASSERT_EQ(song().count(), 1);
    EXPECT_EQ(front().geometry(), alone);
}

TEST_F(MDIScoreTest, TheKeyOfATabLeadsIntoItsPanel) {
    opened();
    beCareful();
    for (const auto& [key, first] :
         {std::pair{Qt::Key_N, "chkClassic"}, {Qt::Key_S, "Check1"}, {Qt::Key_T, "Title"}}) {
        QTest::keyClick(&window(), key, Qt::AltModifier);
        ASSERT_NE(window().focusWidget(), nullptr);
        EXPECT_EQ(window().focusWidget()->objectName(), first);
        EXPECT_TRUE(window().focusWidget()->isVisible());
    }
    menu.popup("mnuTextSW").close();
    QWidget* const title = window().focusWidget();
    window().Lmnu_Click(5);
    EXPECT_FALSE(title->isVisible()) << "a press of the mouse shows another panel";
    EXPECT_NE(window().focusWidget(), &control<QCheckBox>("Check1")) << "and leaves the keys where they are";
}

TEST_F(MDIScoreTest, StartAndEndCanBeTypedAsFarAsAScoreGoes) {
    window();
    auto& start = control<QLineEdit>("Text4");
    auto& end = control<QLineEdit>("Text5");
    const auto typeInto = [](QLineEdit& field, const char* digits) {
        field.selectAll();
        QTest::keyClicks(&field, digits);
        QTest::keyClick(&field, Qt::Key_Return);
    };
    typeInto(start, "32768");
    typeInto(end, "200000");
    EXPECT_EQ(song().setup.start, 32768);
    EXPECT_EQ(song().setup.end, kMostNotes);
    typeInto(end, "200001");
    EXPECT_EQ(song().setup.end, 20000) << "what was a position stays, digit by digit";
    EXPECT_EQ(end.text(), "20000");
    typeInto(start, "-3");
    EXPECT_EQ(song().setup.start, 0);
}

TEST_F(MDIScoreTest, AScoreIsOpenedInTheComposingWindowAndWritten) {
    putBars(2);
    dialogs.answers.push_back({"/songs/Tune.SNG", 1});
    window();
    windows.onOpenScore = [this] { announce(workspace(), Change::File); };
    press(songButton("open"));
    EXPECT_EQ(dialogs.asked.back(),
              (ScriptedDialogs::Asked{"open", "Open File", "Score Files, Lyrics(*.sng;*.lyr) |*.sng;*.lyr|",
                                      folders.songs().string()}));
    EXPECT_THAT(windows.scores, ElementsAre("/songs/Tune.SNG"));
    EXPECT_EQ(song().count(), 1);
}

TEST_F(MDIScoreTest, AScoreThatTheUserWouldNotReplaceIsNotWritten) {
    putBars(2);
    dialogs.answers.push_back({"/songs/tune.sng", 1});
    press(songButton("open"));
    EXPECT_EQ(song().count(), 0);
    press(songButton("open")); // cancelled
    EXPECT_THAT(windows.scores, testing::SizeIs(1));
}

TEST_F(MDIScoreTest, AnythingElseIsOpenedAsLyrics) {
    const std::string file = (folders.home() / "words.lyr").string();
    ASSERT_TRUE(replaceFile(file, "Title=Morning Walk\r\nLbar= 90\r\n").empty());
    dialogs.answers.push_back({file, 1});
    press(songButton("open"));
    EXPECT_THAT(windows.scores, IsEmpty());
    EXPECT_EQ(control<QLineEdit>("Title").text(), "Morning Walk");
    EXPECT_EQ(control<QLabel>("Lbar").text(), "90");
    EXPECT_EQ(control<QLabel>("songTitle").text(), "Morning Walk");
}

TEST_F(MDIScoreTest, LyricsThatAskForAThousandPagesOpenSoon) {
    const std::string file = (folders.home() / "many.lyr").string();
    ASSERT_EQ(replaceFile(file, " Page : 999999 Left: 1 Top: 2 : Pic1.CurrentY= 2 Pic1.FontSize= 12 "
                                "Pic1.FontName= Arial  Text= end\r\n"),
              "");
    opened();
    QElapsedTimer clock;
    clock.start();
    window().openDocument(file);
    EXPECT_EQ(song().count(), 1000);
    EXPECT_EQ(pages().front(), 1);
    press(songButton("blank"));
    EXPECT_EQ(pages().front(), 1001);
    EXPECT_LT(clock.elapsed(), 5000);
}

TEST_F(MDIScoreTest, SavingSavesTheScoreAndThenTheWords) {
    const std::string file = (folders.home() / "words").string();
    dialogs.answers.push_back({file, 1});
    press(songButton("save"));
    EXPECT_EQ(windows.savedScores, 1);
    EXPECT_EQ(dialogs.asked.back().filters, "Velmora Text/Lyrics(*.lyr)|*.lyr");
    EXPECT_TRUE(std::filesystem::exists(file + ".lyr"));
}

TEST_F(MDIScoreTest, ACancelledNameSavesNothingAndCapitalsAreAnExtensionToo) {
    window();
    item("mnuSaveLyricsSW").trigger();
    EXPECT_THAT(dialogs.asked, testing::SizeIs(1));
    EXPECT_TRUE(song().lyricsFile().empty());
    const std::string file = (folders.home() / "WORDS.LYR").string();
    dialogs.answers.push_back({file, 1});
    item("mnuSaveLyricsSW").trigger();
    EXPECT_EQ(song().lyricsFile(), file);
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST_F(MDIScoreTest, AFullDiskIsToldAndTheWordsStayUnsaved) {
    beCareful();
    opened();
    QTest::keyClicks(&control<QLineEdit>("Title"), "Walk");
    const std::string file = (folders.home() / "walk.lyr").string();
    ASSERT_EQ(replaceFile(file, "old"), "");
    dialogs.answers.push_back({file, 1});
    driver.in<QWidget>([](QWidget& box) {
        EXPECT_THAT(wordsOf(box).toStdString(), HasSubstr("walk.lyr"));
        pressIn(box, "ok");
    });
    {
        const FullDisk disk(4);
        item("mnuSaveLyricsSW").trigger();
    }
    EXPECT_EQ(readWholeFile(file), "old");
    EXPECT_TRUE(song().isUnsaved());
}

TEST_F(MDIScoreTest, TheDefaultFileHasTheWidthsOfTheWindows) {
    putBars(1);
    opened();
    press(songButton("write"));
    press(songButton("rewrite"));
    const auto kept = notation::parseLyrics(readWholeFile(folders.home() / "default.lyr").value_or(""));
    EXPECT_EQ(kept.width, window().width() * 15);
    EXPECT_EQ(kept.sheetWidth, front().width() * 15);
}

TEST_F(MDIScoreTest, CarefulSavingAsksForANameOnceAndOnlyIfThereAreWords) {
    beCareful();
    press(songButton("save"));
    EXPECT_EQ(windows.savedScores, 1);
    EXPECT_THAT(dialogs.asked, IsEmpty());
    QTest::keyClicks(&control<QLineEdit>("Title"), "Walk");
    dialogs.answers.push_back({(folders.home() / "walk.lyr").string(), 1});
    press(songButton("save"));
    EXPECT_THAT(dialogs.asked, testing::SizeIs(1));
    QTest::keyClicks(&control<QLineEdit>("Title"), "ing");
    EXPECT_TRUE(song().isUnsaved());
    press(songButton("save"));
    EXPECT_THAT(dialogs.asked, testing::SizeIs(1)) << "its own file";
    EXPECT_FALSE(song().isUnsaved());
    item("mnuSaveLyricsSW").trigger();
    EXPECT_THAT(dialogs.asked, testing::SizeIs(2));
    item("mnuSavescoreASSW").trigger();
    EXPECT_EQ(windows.savedScoresAs, 1);
}

TEST_F(MDIScoreTest, WordsThatAreInNoFileAreAskedForBeforeTheProgramEnds) {
    beCareful();
    opened();
    EXPECT_TRUE(window().mayEnd());
    QTest::keyClicks(&control<QLineEdit>("Title"), "Walk");
    driver.in<QWidget>([](QWidget& box) {
        EXPECT_THAT(wordsOf(box).toStdString(), HasSubstr("not saved"));
        pressIn(box, "cancel");
    });
    EXPECT_FALSE(window().mayEnd());
    driver.in<QWidget>([](QWidget& box) { pressIn(box, "discard"); });
    EXPECT_TRUE(window().mayEnd());
}

TEST_F(MDIScoreTest, KeyboardAndPrintOpenTheirWindows) {
    press(songButton("edit"));
    press(songButton("print"));
    item("mnuPrinttSW").trigger();
    EXPECT_THAT(windows.opened,
                ElementsAre(Windows::Name::frmsynth, Windows::Name::fPrint, Windows::Name::fPrint));
    window().imgTitleHelp_Click();
    EXPECT_THAT(windows.pages, ElementsAre("songwriter"));
}

TEST_F(MDIScoreTest, TheLoopPlaysUntilItIsPressedAgain) {
    putBars(1);
    opened();
    int rounds = 0;
    loop.onWait = [&](int waits) {
        EXPECT_TRUE(workspace().play.LoopOn);
        EXPECT_TRUE(control<QAbstractButton>("Lb1(5)").isChecked());
        if (waits == 40) { // more than the score has positions
            ++rounds;
            press(songButton("loop"));
        }
    };
    press(songButton("loop"));
    EXPECT_EQ(rounds, 1);
    EXPECT_FALSE(workspace().play.Playing);
    EXPECT_FALSE(workspace().play.LoopOn) << "as it was before";
    EXPECT_FALSE(control<QAbstractButton>("Lb1(5)").isChecked());
}

TEST_F(MDIScoreTest, AMeasureWithoutNotesIsSaidInWords) {
    putBars(1);
    opened();
    score().NotesPerMeasure = 0;
    driver.in<QWidget>([](QWidget& box) {
        EXPECT_THAT(wordsOf(box).toStdString(), HasSubstr("A measure has no notes"));
        pressIn(box, "ok");
    });
    press(songButton("write"));
    EXPECT_EQ(song().count(), 0);
}

TEST_F(MDIScoreTest, TheChosenStaffAloneIsWrittenWithoutWriteAllChannels) {
    window();
    EXPECT_FALSE(control("Opt(2)").isEnabled());
    tick("chkAllChannels");
    tick("Opt(2)");
    EXPECT_FALSE(song().allChannels);
    EXPECT_EQ(song().staff, 2);
}

TEST_F(MDIScoreTest, KeysWalkThroughThePagesAndZoom) {
    press(songButton("blank"));
    press(songButton("blank"));
    opened();
    QTest::keyClick(&window(), Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(pages().front(), 1) << "behind the last comes the first";
    QTest::keyClick(&window(), Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(pages().front(), 2);
    const QSize before = front().Pic1().pageSize();
    QTest::keyClick(&window(), Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_GT(front().Pic1().pageSize().width(), before.width());
    EXPECT_EQ(control<QComboBox>("zoom").currentText(), "125 %");
    QTest::keyClick(&window(), Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(front().Pic1().pageSize(), before);
}

TEST_F(MDIScoreTest, ItHasRoomOnASmallScreen) {
    opened();
    EXPECT_LE(window().minimumWidth(), 1024);
    EXPECT_LE(window().minimumHeight(), 600);
    window().resize(1024, 600);
    for (const char* panel : {"stavesPanel", "notesPanel", "scorePanel", "textsPanel"}) {
        const QWidget& shown = control(panel);
        for (const QWidget* part : shown.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            EXPECT_TRUE(shown.rect().contains(part->geometry()))
                << panel << ' ' << qPrintable(part->objectName());
    }
}

TEST(MDIScoreProgressTest, WritingThatLastsShowsHowFarItIsAndCanBeCancelled) {
    BasicTestDesk<SlowLoop> desk;
    desk.score().resizeNotes(20'000);
    putNotes(desk.score(), 0, 60, 2'400, 4);
    MDIScore window(desk.desk());
    window.open();
    window.WriteFromNotes();
    const int pages = desk.song().count();
    ASSERT_GT(pages, 2);
    EXPECT_GT(desk.loop.seen, 0);
    EXPECT_LT(desk.loop.seen, pages - 1) << "not within the first second";
    desk.loop.cancels = true;
    window.WriteFromNotes();
    EXPECT_LT(desk.song().count(), pages);
    EXPECT_GE(desk.song().count(), 1) << "the pages so far";
}
