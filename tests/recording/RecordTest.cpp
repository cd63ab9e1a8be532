// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/Record.h"

#include "RecordFixture.h"
#include "tests/support/Environment.h"

using namespace velmora;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using RecordTest = RecordFixture;

namespace {
/// What is disabled while it records, in all ways to reach it.
constexpr std::array kLocked{
    "player(0)", "player(1)",    "player(4)", "Optsourcesng", "Optsourcemid", "Optsourcekeyboard",
    "capture",   "CmdrecordSNG", "cbxFormat", "Combo3",       "Combo4",       "Command20",
    "Check2",    "Check3",       "Check4",    "Command1",     "showLog",      "LBLBtnCDw",
    "Text6"};
constexpr std::array kFree{"player(2)", "player(3)", "CmdStopRecording"};
constexpr std::array kLockedItems{"mnuRecordOpen", "mnuRecordPlay", "mnuRecordSave",
                                  "RecordStart",   "mnuEncode",     "mnuBurnCD"};
constexpr std::array kFreeItems{"mnuRecordPause", "mnuRecordStop", "RecordStop", "mnuExitRecord"};
} // namespace

TEST_F(RecordTest, ItIsAWindowWithThreeMenus) {
    opened();
    EXPECT_EQ(window().windowTitle(), "Velmora  Recording Studio");
    EXPECT_EQ(window().size(), QSize(640, 432));
    QStringList menus;
    for (const QAction* label : control<QMenuBar>("toolbMenu").actions())
        menus << label->text();
    EXPECT_EQ(menus, QStringList({"&File", "&Recording", "&Help"}));
}

TEST_F(RecordTest, TheImageButtonsAreNamedAndToldAbout) {
    constexpr std::array<std::pair<const char*, const char*>, 5> kButtons{{{"Open", "Open Music File"},
                                                                           {"Play", "Play from File"},
                                                                           {"Pause", "Pause Music"},
                                                                           {"Stop", "Stop Playing"},
                                                                           {"Save", "Save File As"}}};
    for (std::size_t i = 0; i < kButtons.size(); ++i) {
        auto& button = control<QAbstractButton>(qPrintable(QStringLiteral("player(%1)").arg(i)));
        EXPECT_EQ(button.text(), kButtons[i].first);
        EXPECT_EQ(tips.toolTip(button)->title, kButtons[i].second);
    }
}

TEST_F(RecordTest, ControlsHaveTheirWordsAndTips) {
    struct Row {
        const char* name;
        const char* words;
        const char* tip;
    };
    for (const auto& [name, words, tip] :
         {Row{"Optsourcesng", "Notes (SNG)", "Record from SNG file or not"},
          Row{"Optsourcemid", "MIDI File", "Record from MID file"},
          Row{"Optsourcekeyboard", "Keyboard", "Record what you play"},
          Row{"CmdrecordSNG", "Start Recording", "Start Recording"},
          Row{"CmdStopRecording", "Stop Recording", "Stop Recording"},
          Row{"Command1", "Volume Control", "Show system sound mixer"},
          Row{"Command20", "Encode File", "Encode File"}, Row{"showLog", "Show Log", "Show Log"}}) {
        auto& button = control<QAbstractButton>(name);
        EXPECT_EQ(button.text(), words);
        EXPECT_EQ(tips.toolTip(button)->title, tip);
    }
    EXPECT_EQ(tips.toolTip(control("cbxFormat"))->title, "Select WAV recording format");
    EXPECT_EQ(tips.toolTip(control("Status"))->title, "Progress Indicator");
}

TEST_F(RecordTest, ItOffersTheFormatsAndBeginsWithTheUsualOnes) {
    auto& formats = control<QComboBox>("cbxFormat");
    QStringList offered;
    for (int i = 0; i < formats.count(); ++i)
        offered << formats.itemText(i);
    EXPECT_EQ(offered, QStringList({"44.100Hz, 8bit Mono, 43k/sec", "44.100Hz, 8bit Stereo, 86k/sec",
                                    "44.100Hz, 16bit Mono, 86k/sec", "44.100Hz, 16bit Stereo, 172k/sec",
                                    "48.000Hz, 16bit Stereo, 192k/sec"}));
    EXPECT_EQ(formats.currentText(), "44.100Hz, 16bit Stereo, 172k/sec");
    EXPECT_EQ(control<QComboBox>("Combo3").currentText(), "Studio");
    EXPECT_EQ(control<QComboBox>("Combo3").count(), 10);
    EXPECT_EQ(control<QComboBox>("Combo4").currentText(), "224");
    EXPECT_EQ(control<QComboBox>("Combo4").count(), 14);
}

TEST_F(RecordTest, WhatTheUserChoosesIsTheSessions) {
    opened();
    click("Optsourcekeyboard");
    EXPECT_EQ(state().source, RecordingSource::Keyboard);
    click("Optsourcemid");
    EXPECT_EQ(state().source, RecordingSource::MidiFile);
    click("Optsourcesng");
    EXPECT_EQ(state().source, RecordingSource::Notes);
    click("Check4");
    EXPECT_FALSE(state().Check4);
    const auto step = [this](const char* list, Qt::Key key) {
        control<QComboBox>(list).setFocus();
        QTest::keyClick(&control(list), key);
    };
    step("capture", Qt::Key_Down);
    EXPECT_EQ(state().capture, CaptureSource::Everything);
    step("cbxFormat", Qt::Key_Up);
    EXPECT_EQ(state().cbxFormat, 2U);
    step("Combo3", Qt::Key_Home);
    EXPECT_EQ(state().Combo3, 0U);
    step("Combo4", Qt::Key_End);
    EXPECT_EQ(state().Combo4, 13U);
    control<QLineEdit>("Text6").setFocus();
    QTest::keyClicks(&control("Text6"), "tune.wav");
    EXPECT_EQ(state().Text6, "tune.wav");
}

TEST_F(RecordTest, ChoicesAreKept) {
    opened();
    click("Check2");
    click("Check3");
    click("Check4");
    for (const char* list : {"cbxFormat", "Combo3", "Combo4"}) {
        control<QComboBox>(list).setFocus();
        QTest::keyClick(&control(list), Qt::Key_Home);
    }
    EXPECT_EQ(stored("autoencode"), "0");
    EXPECT_EQ(stored("Delete WAV"), "0");
    EXPECT_EQ(stored("Show note position"), "0");
    EXPECT_EQ(stored("MP3 quality"), "0");
    EXPECT_EQ(stored("MP3 bitrate"), "0");
    EXPECT_EQ(stored("WAV format"), "44.100Hz, 8bit Mono, 43k/sec");
}

TEST_F(RecordTest, KeptChoicesAreThereAgain) {
    store("autoencode", "0");
    store("Delete WAV", "0");
    store("Show note position", "0");
    store("MP3 quality", "2");
    store("MP3 bitrate", "8");
    store("WAV format", "48.000Hz, 16bit Stereo, 192k/sec");
    opened();
    for (const char* box : {"Check2", "Check3", "Check4"})
        EXPECT_FALSE(control<QCheckBox>(box).isChecked()) << box;
    EXPECT_EQ(control<QComboBox>("Combo3").currentText(), "High");
    EXPECT_EQ(control<QComboBox>("Combo4").currentText(), "128");
    EXPECT_EQ(control<QComboBox>("cbxFormat").currentIndex(), 4);
}

TEST_F(RecordTest, SettingsThatAreNoChoiceCountAsTheUsualOnes) {
    store("MP3 quality", "10");
    store("MP3 bitrate", "-1");
    store("WAV format", "loud");
    opened();
    EXPECT_EQ(control<QComboBox>("Combo3").currentText(), "Studio");
    EXPECT_EQ(control<QComboBox>("Combo4").currentText(), "224");
    EXPECT_EQ(control<QComboBox>("cbxFormat").currentIndex(), 3);
}

TEST_F(RecordTest, WhileItRecordsAllButPauseAndStopIsDisabled) {
    windows.present.insert(Windows::Name::CDWriter);
    opened();
    for (const char* name : kLocked)
        EXPECT_TRUE(isEnabled(name)) << name;
    lock();
    for (const char* name : kLocked)
        EXPECT_FALSE(isEnabled(name)) << name;
    for (const char* name : kFree)
        EXPECT_TRUE(isEnabled(name)) << name;
    for (const char* name : kLockedItems)
        EXPECT_FALSE(item(name).isEnabled()) << name;
    for (const char* name : kFreeItems)
        EXPECT_TRUE(item(name).isEnabled()) << name;
    state().isRecording = state().isLocked = false;
    showState();
    for (const char* name : kLocked)
        EXPECT_TRUE(isEnabled(name)) << name;
    for (const char* name : kLockedItems)
        EXPECT_TRUE(item(name).isEnabled()) << name;
}

TEST_F(RecordTest, StartStaysPressedWhileItRecords) {
    opened();
    auto& start = control<SessionButton>("CmdrecordSNG");
    EXPECT_FALSE(start.isHeld());
    lock();
    EXPECT_TRUE(start.isHeld());
    EXPECT_TRUE(control("CmdStopRecording").hasFocus()) << "what ends it is under the hand";
}

TEST_F(RecordTest, OnlyTheEndOfEncodingCanBePressedWhileItEncodes) {
    opened();
    state().isEncoding = state().isLocked = true;
    state().Label8 = "Encoding";
    showState();
    EXPECT_EQ(control<QAbstractButton>("Command20").text(), "Stop Encoding");
    EXPECT_TRUE(isEnabled("Command20"));
    EXPECT_TRUE(item("mnuEncode").isEnabled());
    EXPECT_FALSE(isEnabled("CmdrecordSNG"));
    EXPECT_EQ(text("Label8"), "Encoding");
}

TEST_F(RecordTest, TheReadOutShowsTheState) {
    opened();
    EXPECT_EQ(text("lblTime"), "00:00");
    state().lblTime = "00:42";
    state().Status = "63 %";
    state().share = 0.63;
    state().Text6 = "/somewhere/40213.wav";
    state().lblKhz = "44";
    state().lblmode = "stereo";
    state().lblbitrate = "224";
    showState();
    EXPECT_EQ(text("lblTime"), "00:42");
    EXPECT_EQ(text("Status"), "63 %");
    EXPECT_EQ(control<QProgressBar>("L2").value(), 630);
    EXPECT_EQ(text("fileName"), "40213.wav");
    EXPECT_EQ(text("lblKhz"), "44 kHz");
    EXPECT_EQ(text("lblmode"), "stereo");
    EXPECT_EQ(text("lblbitrate"), "224 kbps");
}

TEST_F(RecordTest, TheReadOutNamesTheScoreThatIsRecorded) {
    opened();
    score().currentFile = "/somewhere/Morning Walk.sng";
    lock(RecordingSource::Notes);
    EXPECT_EQ(text("fileName"), "Morning Walk.sng");
}

TEST_F(RecordTest, MessagesAreShownAsTheyComeAndGo) {
    opened();
    state().Erbox = "Recording source is 'Notes'...\n";
    showState();
    state().Erbox += "Recording\n";
    showState();
    EXPECT_EQ(messages(), "Recording source is 'Notes'...\nRecording\n");
    state().Erbox = "Encoding in progress\n";
    showState();
    EXPECT_EQ(messages(), "Encoding in progress\n");
}

TEST_F(RecordTest, TheLastMessageIsSeen) {
    opened();
    for (int i = 0; i < 100; ++i)
        state().Erbox += "line " + std::to_string(i) + "\n";
    showState();
    const QScrollBar& bar = *control<QPlainTextEdit>("Erbox").verticalScrollBar();
    EXPECT_GT(bar.maximum(), 0);
    EXPECT_EQ(bar.value(), bar.maximum());
}

TEST_F(RecordTest, ATakeOfTheKeyboardBeginsAndEnds) {
    opened();
    click("Check2"); // no MP3
    click("Optsourcekeyboard");
    click("CmdrecordSNG");
    EXPECT_TRUE(state().isRecording);
    EXPECT_EQ(text("Label8"), "Recording");
    EXPECT_THAT(windows.opened, ElementsAre(Windows::Name::frmsynth));
    mix().advance(44100);
    click("CmdStopRecording");
    EXPECT_FALSE(state().isRecording);
    EXPECT_EQ(text("Label8"), "");
    EXPECT_THAT(messages(), HasSubstr("Recording Stopped!"));
    EXPECT_EQ(std::filesystem::file_size(state().Text6), 44U + 44100 * 4);
}

TEST_F(RecordTest, MenusAndKeysPressTheSame) {
    opened();
    click("Check2");
    click("Optsourcekeyboard");
    item("RecordStart").trigger();
    EXPECT_TRUE(state().isRecording);
    item("RecordStop").trigger();
    EXPECT_FALSE(state().isRecording);
    QTest::keyClick(&window(), Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(state().isRecording);
    QTest::keyClick(&window(), Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(state().isRecording) << "what is disabled can't be pressed by a key";
    QTest::keyClick(&window(), Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_FALSE(state().isRecording);
}

TEST_F(RecordTest, StopSaysSoWhereNothingPlays) {
    opened();
    click("player(3)");
    EXPECT_THAT(messages(), HasSubstr("Music File was previously stopped."));
    item("mnuRecordStop").trigger();
    EXPECT_THAT(messages(), HasSubstr("previously stopped.\nMusic File was previously stopped."));
}

TEST_F(RecordTest, OpenAsksForAFileAndAScoreGoesToTheComposingWindow) {
    opened();
    dialogs.answers.push_back({"/somewhere/tune.sng", 1});
    click("player(0)");
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_EQ(dialogs.asked[0].title, "Open File");
    EXPECT_EQ(dialogs.asked[0].filters,
              "Midi, score, wav, mp3(*.sng;*.mid;*.wav;*mp3)|*.sng;*.mid;*.wav;*mp3");
    EXPECT_THAT(windows.scores, ElementsAre(std::filesystem::path("/somewhere/tune.sng")));
}

TEST_F(RecordTest, SaveWithoutAFileIsRefused) {
    opened();
    click("player(4)");
    EXPECT_THAT(messages(), HasSubstr("Invalid source file"));
    EXPECT_THAT(dialogs.asked, IsEmpty());
}

TEST_F(RecordTest, AMidiRecordingWithoutAFileIsNone) {
    opened();
    click("Optsourcemid");
    click("CmdrecordSNG");
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_EQ(dialogs.asked[0].title, "Open MIDI File");
    EXPECT_EQ(dialogs.asked[0].filters, "Midi(*.mid)|*.mid");
    EXPECT_THAT(messages(), HasSubstr("You must enter a File Name to start recording"));
    EXPECT_TRUE(isEnabled("CmdrecordSNG"));
}

TEST_F(RecordTest, OtherWindowsAreAskedForByName) {
    opened();
    EXPECT_FALSE(isEnabled("LBLBtnCDw")) << "there is none yet";
    EXPECT_FALSE(item("mnuBurnCD").isEnabled());
    destroy();
    windows.present.insert(Windows::Name::CDWriter);
    opened();
    click("showLog");
    click("LBLBtnCDw");
    item("mnuBurnCD").trigger();
    EXPECT_THAT(windows.opened,
                ElementsAre(Windows::Name::frmLog, Windows::Name::CDWriter, Windows::Name::CDWriter));
}

TEST_F(RecordTest, HelpIsItsOwnPage) {
    opened();
    QTest::keyClick(&window(), Qt::Key_F1);
    item("mnuRecordHelp").trigger();
    click("imgTitleHelp");
    EXPECT_THAT(windows.pages, ElementsAre("recording-studio", "recording-studio", "recording-studio"));
}

TEST_F(RecordTest, IfNoMixerStartsTheUserIsTold) {
    Environment environment;
    environment.set("PATH", home.path().toStdString());
    opened();
    driver.in<QWidget>([](QWidget& box) {
        EXPECT_EQ(box.windowTitle(), "Velmora - Error");
        EXPECT_EQ(wordsOf(box), "Unable to load SndVol32.exe");
        pressIn(box, "ok");
    });
    click("Command1");
}

TEST_F(RecordTest, ClosingWhileItRecordsAsksFirst) {
    opened();
    click("Optsourcekeyboard");
    click("CmdrecordSNG");
    driver.in<QWidget>([](QWidget& box) {
        EXPECT_EQ(wordsOf(box), "A recording goes on. Stop it and close the Recording Studio?");
        pressIn(box, "no");
    });
    window().close();
    EXPECT_TRUE(window().isVisible());
    EXPECT_TRUE(state().isRecording);
    mix().advance(44100);
    driver.in<QWidget>([](QWidget& box) { pressIn(box, "yes"); });
    item("mnuExitRecord").trigger();
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(state().isRecording);
    EXPECT_EQ(std::filesystem::file_size(state().InputPath), 44U + 44100 * 4) << "the take is whole";
}

TEST_F(RecordTest, ClosingWhileNothingGoesOnAsksNothing) {
    opened();
    window().close();
    EXPECT_FALSE(window().isVisible());
}

TEST_F(RecordTest, TheEndOfTheProgramEndsATake) {
    opened();
    click("Optsourcekeyboard");
    click("CmdrecordSNG");
    window().unload();
    EXPECT_FALSE(state().isRecording);
    EXPECT_TRUE(std::filesystem::exists(state().InputPath));
}

TEST_F(RecordTest, ItComesUpWhereItWas) {
    opened();
    window().move(60, 45);
    window().close();
    EXPECT_EQ(stored("record left"), "900");
    EXPECT_EQ(stored("record top"), "675");
    destroy();
    opened();
    EXPECT_EQ(window().pos(), QPoint(60, 45));
}

TEST_F(RecordTest, ClosingRestoresThePlayingPosition) {
    opened();
    workspace().play.ShowPlayLine = false; // as a take without it leaves it that is cut off
    window().close();
    EXPECT_TRUE(workspace().play.ShowPlayLine);
}

TEST_F(RecordTest, TabGoesThroughItInTheOrderOfReading) {
    windows.present.insert(Windows::Name::CDWriter);
    opened();
    control("player(0)").setFocus();
    QStringList order;
    for (int i = 0; i < 40 && (order.isEmpty() || QApplication::focusWidget()->objectName() != order.front());
         ++i) {
        order << QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(
        order.join(' ').toStdString(),
        "player(0) player(1) player(2) player(3) player(4) capture Optsourcesng CmdrecordSNG "
        "CmdStopRecording cbxFormat Combo3 Combo4 Command20 Check2 Check3 Check4 showTake LBLBtnCDw Command1 "
        "showLog Text6 Erbox");
}

TEST_F(RecordTest, NothingIsCutAtItsLeastSize) {
    opened();
    for (const auto* button : window().findChildren<QAbstractButton*>()) {
        if (!button->isVisible() || button->text().isEmpty() || button->objectName().startsWith("player"))
            continue;
        const int words = QFontMetrics(button->font()).horizontalAdvance(button->text());
        EXPECT_LE(words, button->width()) << button->objectName().toStdString();
    }
    for (const auto* list : window().findChildren<QComboBox*>())
        for (int i = 0; i < list->count(); ++i)
            EXPECT_LE(list->fontMetrics().horizontalAdvance(list->itemText(i)), list->width() - 28)
                << list->objectName().toStdString();
    window().resize(900, 600);
    EXPECT_EQ(control("messagePanel").geometry().right(), 900 - 13);
    EXPECT_EQ(control("messagePanel").geometry().bottom(), control("afterPanel").geometry().bottom());
}
