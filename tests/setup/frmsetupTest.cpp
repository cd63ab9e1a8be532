// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/frmsetup.h"

#include "SetupFixture.h"
#include "shell/Slider.h"
#include "sound/ShortMessage.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>

using namespace velmora;
using testing::Contains;
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

// --- opening, closing, settings

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

TEST_F(frmsetupTest, LoadedLaterItLeavesTheOpenScoreAsItIs) {
    score().Tempo = 240;
    workspace().setup.TxtMeter = 3;
    EXPECT_EQ(shownIn("TempoLabel"), "240");
    EXPECT_EQ(shownIn("TxtMeter"), "3");
    EXPECT_EQ(score().Tempo, 240);
}

TEST_F(frmsetupTest, RefreshingAsksNothingAndChangesNothing) {
    opened(3);
    workspace().setup.TxtMeter = 10;
    workspace().setup.NoteX = 2;
    workspace().setup.TxBeats = 5;
    score().Tempo = 77;
    toolbar().refresh();
    EXPECT_EQ(shownIn("TxtMeter"), "10");
    EXPECT_EQ(shownIn("TempoLabel"), "77");
    EXPECT_EQ(workspace().setup.TxBeats, 5);
    EXPECT_EQ(score().Tempo, 77);
    EXPECT_THAT(asked, IsEmpty());
}

// --- channels

TEST_F(frmsetupTest, AChannelsButtonMakesItTheActiveOne) {
    opened(1);
    click(control("TrackSel", 2));
    EXPECT_EQ(asked.front(), "TrackSel 2");
    EXPECT_EQ(score().ActiveChannel, 2);
    EXPECT_TRUE(control<QAbstractButton>("TrackSel", 2).isChecked());
    EXPECT_FALSE(control<QAbstractButton>("TrackSel", 0).isChecked());
    EXPECT_TRUE(score().ChannelShown[2]);
    EXPECT_FALSE(score().ChannelShown[0]);
}

TEST_F(frmsetupTest, TheActiveChannelsButtonMayBePressedAgain) {
    opened(1);
    click(control("TrackSel", 0));
    EXPECT_THAT(asked, Contains("TrackSel 0"));
    EXPECT_TRUE(control<QAbstractButton>("TrackSel", 0).isChecked());
}

TEST_F(frmsetupTest, ThereIsNoButtonForTheDrumChannel) {
    EXPECT_EQ(toolbar().findChild<QWidget*>("TrackSel(9)"), nullptr);
    EXPECT_EQ(control<QAbstractButton>("TrackSel", 12).text(), "12");
    EXPECT_EQ(control<QAbstractButton>("TrackSel", 8).text(), "9");
}

TEST_F(frmsetupTest, SelectingAChannelGivesItItsGroupsInstrument) {
    workspace().instruments.MelodyInstrument = 73;
    workspace().instruments.PercussionInstrument = 140;
    opened(1);
    click(control("TrackSel", 3));
    click(control("TrackSel", 11));
    EXPECT_EQ(score().ChannelInstrument[3], 73);
    EXPECT_EQ(score().ChannelInstrument[11], 140);
    EXPECT_THAT(asked, Contains("instruments"));
}

TEST_F(frmsetupTest, WithoutANameTheInstrumentIsRead) {
    opened(1);
    store("Intrumentval", "5");
    workspace().instruments.MelodyInstrumentName = "";
    click(control("TrackSel", 3));
    EXPECT_EQ(score().ChannelInstrument[3], 5);
}

TEST_F(frmsetupTest, SelectingAChannelGivesItsSelectedNotesTheInstrument) {
    putNotes(score(), 1, 60, 3);
    workspace().view.SelectStart = 2;
    workspace().view.SelectEnd = 3;
    workspace().instruments.MelodyInstrument = 73;
    opened(1);
    click(control("TrackSel", 1));
    EXPECT_EQ(score().NoteInstrument.at(1, 1), 24);
    EXPECT_EQ(score().NoteInstrument.at(1, 2), 73);
    EXPECT_EQ(workspace().undo.UndoChannel, 1);
}

TEST_F(frmsetupTest, AChannelThatIsRefusedKeepsTheOldOneMarked) {
    opened(1);
    toolbar().TrackSel_Click(9);
    EXPECT_EQ(score().ActiveChannel, 0);
    EXPECT_TRUE(control<QAbstractButton>("TrackSel", 0).isChecked());
}

TEST_F(frmsetupTest, AChannelSelectedElsewhereIsMarked) {
    opened(1);
    workspace().selectChannel(6);
    toolbar().channelChanged();
    EXPECT_TRUE(control<QAbstractButton>("TrackSel", 6).isChecked());
    EXPECT_THAT(asked, IsEmpty());
}

TEST_F(frmsetupTest, AHiddenChannelIsMuted) {
    opened(1);
    click(control("TrackHide", 4));
    EXPECT_TRUE(score().ChannelMuted[4]);
    EXPECT_THAT(asked, Contains("notes"));
    click(control("TrackHide", 4));
    EXPECT_FALSE(score().ChannelMuted[4]);
}

TEST_F(frmsetupTest, ABoxOutOfLineIsBroughtInLine) {
    opened(1);
    score().ChannelMuted[4] = true;
    click(control("TrackHide", 4)); // ticks it
    EXPECT_TRUE(score().ChannelMuted[4]);
    score().ChannelMuted[5] = true;
    click(control("TrackSel", 5));
    EXPECT_TRUE(control<QCheckBox>("TrackHide", 5).isChecked());
}

// --- instruments

namespace {
bool pickerIsOpen() {
    const QWidget* modal = QApplication::activeModalWidget();
    return modal && modal->objectName() == "FrmInst";
}
} // namespace

TEST_F(frmsetupTest, ADoubleClickOnAnInstrumentOpensThePicker) {
    opened(1);
    QTest::mouseDClick(&control("LblInst2"), Qt::LeftButton);
    EXPECT_TRUE(pickerIsOpen());
}

TEST_F(frmsetupTest, EnterOnAnInstrumentOpensThePicker) {
    opened(1);
    QTest::keyClick(&control("LblInst1"), Qt::Key_Return);
    EXPECT_TRUE(pickerIsOpen());
}

TEST_F(frmsetupTest, OpeningThePickerPlaysTheMelodyInstrumentsProgram) {
    opened(1);
    workspace().selectChannel(3);
    midi.sent.clear();
    toolbar().LblInst_DblClick();
    EXPECT_THAT(midi.words(), ElementsAre(shortmessage::programChange(3, 24)));
}

TEST_F(frmsetupTest, OnPercussionOrWithoutANameNothingIsPlayed) {
    opened(1);
    workspace().selectChannel(8);
    midi.sent.clear();
    toolbar().LblInst_DblClick();
    EXPECT_THAT(midi.words(), IsEmpty());
}

TEST_F(frmsetupTest, APickedInstrumentIsShownPlayedAndTheChannels) {
    opened(1);
    toolbar().LblInst_DblClick();
    QWidget* picker = QApplication::activeModalWidget();
    ASSERT_TRUE(picker);
    ASSERT_TRUE(QTest::qWaitFor(
        [picker] { return QApplication::focusWidget() && QApplication::focusWidget()->window() == picker; }));
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "LstInstruments");
    midi.sent.clear();
    QTest::keyClicks(QApplication::focusWidget(), "flu");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(shownIn("LblInst1"), "Flute");
    EXPECT_EQ(score().ChannelInstrument[0], 73);
    EXPECT_THAT(midi.words(), ElementsAre(shortmessage::programChange(0, 73)));
    EXPECT_THAT(asked, Contains("instruments"));
}

// --- chords

TEST_F(frmsetupTest, TheChordListOffersSevenChordsAndSetsTheirSteps) {
    opened(0);
    auto& list = control<QComboBox>("Combo3");
    EXPECT_EQ(list.count(), 7);
    EXPECT_EQ(list.itemText(0), "Major (4 note chord: 5C 5E 5G 6C )");
    choose("Combo3", 5);
    EXPECT_EQ(workspace().setup.Combo3, 5);
    EXPECT_EQ(workspace().chords.ChordStep1, -12);
}

TEST_F(frmsetupTest, AChordForTheActiveChannelRepaintsItsMarks) {
    opened(0);
    choose("Combo3", 2);
    asked.clear();
    click(control("Ch", 0));
    EXPECT_THAT(asked, ElementsAre("mode 2", "chords 0", "notes"));
    EXPECT_TRUE(holds(score().Polyphonics, 1, 2));
    asked.clear();
    click(control("Ch", 0));
    EXPECT_THAT(asked, ElementsAre("chords 0", "notes"));
    EXPECT_TRUE(holds(score().Polyphonics, 1, 0));
}

TEST_F(frmsetupTest, AChordForAnotherChannelLeavesTheMarks) {
    opened(0);
    click(control("Ch", 5));
    EXPECT_THAT(asked, ElementsAre("mode 2", "notes"));
    EXPECT_TRUE(workspace().setup.Ch[5]);
}

TEST_F(frmsetupTest, PercussionHasNoChordBox) {
    EXPECT_EQ(toolbar().findChild<QWidget*>("Ch(8)"), nullptr);
}

TEST_F(frmsetupTest, AStrumBoxIsKeptForItsChannel) {
    opened(0);
    click(control("Chkstrum", 7));
    EXPECT_TRUE(workspace().setup.Chkstrum[7]);
    click(control("Chkstrum", 7));
    EXPECT_FALSE(workspace().setup.Chkstrum[7]);
}

// --- sound

TEST_F(frmsetupTest, TheVolumeIsTheActiveChannels) {
    opened(2);
    auto& bar = control<Slider>("lblVolume");
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(6 + (bar.width() - 12) / 2, 10));
    EXPECT_EQ(score().ChannelVelocity[0], 63);
    EXPECT_TRUE(holds(score().Volume, 0, 63));
    EXPECT_TRUE(holds(score().Volume, 1, 127));
    EXPECT_EQ(shownIn("Label15"), "63");
    EXPECT_EQ(shownIn("Label2"), "63");
}

TEST_F(frmsetupTest, AtTheBarsStartTheVolumeIsFull) {
    opened(2);
    auto& bar = control<Slider>("lblVolume");
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(100, 10));
    QTest::mouseMove(&bar, QPoint(2, 10));
    EXPECT_EQ(score().ChannelVelocity[0], 127);
    EXPECT_EQ(shownIn("Label15"), "127");
}

TEST_F(frmsetupTest, WithNoButtonPressedTheNotesKeepTheirVolume) {
    opened(2);
    score().ActiveChannel = 4; // whose button nobody has told
    QTest::keyClick(&control("lblVolume"), Qt::Key_Left);
    EXPECT_EQ(score().ChannelVelocity[4], 126);
    EXPECT_TRUE(holds(score().Volume, 4, 127));
}

TEST_F(frmsetupTest, AControllerIsKeptShownAndSentAtOnce) {
    workspace().selectChannel(2);
    opened(2);
    midi.sent.clear();
    struct Row {
        const char* bar;
        const char* label;
        int number;
        std::int16_t PlaybackChannelSetup::*value;
    };
    for (const Row& row : {Row{"LblMod", "LMod", 1, &PlaybackChannelSetup::modulation},
                           Row{"LblReverb", "LReverb", 91, &PlaybackChannelSetup::reverb},
                           Row{"LblChorus", "LChorus", 93, &PlaybackChannelSetup::chorus}}) {
        midi.sent.clear();
        QTest::keyClick(&control(row.bar), Qt::Key_End);
        EXPECT_EQ(workspace().setup.channels[2].*row.value, 127);
        EXPECT_EQ(shownIn(row.label), "127");
        EXPECT_THAT(midi.words(), ElementsAre(shortmessage::controller(2, row.number, 127)));
    }
}

TEST_F(frmsetupTest, ThePanIsShownFromItsMiddle) {
    opened(2);
    midi.sent.clear();
    EXPECT_EQ(shownIn("LPan"), "0");
    QTest::keyClick(&control("LblPan"), Qt::Key_Left);
    EXPECT_EQ(shownIn("LPan"), "-1");
    EXPECT_EQ(workspace().setup.channels[0].pan, 63);
    EXPECT_THAT(midi.words(), ElementsAre(shortmessage::controller(0, 10, 63)));
    QTest::keyClick(&control("LblPan"), Qt::Key_End);
    EXPECT_EQ(shownIn("LPan"), "63");
}

TEST_F(frmsetupTest, AControllerFillsTheScoreOnlyWithTheNextChannelChange) {
    opened(2);
    QTest::keyClick(&control("LblReverb"), Qt::Key_End);
    EXPECT_TRUE(holds(score().Reverb_Change, 0, 0));
    toolbar().channelChanged();
    EXPECT_TRUE(holds(score().Reverb_Change, 0, 127));
}

TEST_F(frmsetupTest, AChannelsValuesAreShownWhenItIsSelected) {
    workspace().setup.channels[3].pan = 100;
    workspace().setup.channels[3].chorus = 9;
    opened(1);
    midi.sent.clear();
    click(control("TrackSel", 3));
    EXPECT_EQ(shownIn("LPan"), "36");
    EXPECT_EQ(shownIn("LChorus"), "9");
    EXPECT_TRUE(holds(score().Pan_Change, 3, 100));
    EXPECT_THAT(midi.words(), IsEmpty()); // showing sends nothing
}

TEST_F(frmsetupTest, ClosedItFillsNoEffects) {
    workspace().setup.channels[0].pan = 100;
    toolbar().channelChanged();
    EXPECT_TRUE(holds(score().Pan_Change, 0, 64));
}

// --- timing

TEST_F(frmsetupTest, TheTempoSliderStepsInFours) {
    opened(3);
    auto& bar = control<Slider>("LblTempo");
    QTest::keyClick(&bar, Qt::Key_Right);
    EXPECT_EQ(score().Tempo, 104);
    EXPECT_EQ(shownIn("TempoLabel"), "104");
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(6 + (bar.width() - 12) / 2, 10));
    EXPECT_EQ(score().Tempo, 248); // the whole part of 62.5
    QTest::mouseMove(&bar, QPoint(0, 10));
    EXPECT_EQ(score().Tempo, 0);
    EXPECT_THAT(asked, Contains("top bar"));
}

TEST_F(frmsetupTest, TheTempoMayBeTyped) {
    opened(3);
    type("TempoLabel", "233");
    EXPECT_EQ(score().Tempo, 233);
    EXPECT_EQ(control<Slider>("LblTempo").value(), 233);
    type("TempoLabel", "fast");
    EXPECT_EQ(score().Tempo, 0);
}

TEST_F(frmsetupTest, ATempoThatIsTooLargeIsNotTaken) {
    opened(3);
    type("TempoLabel", "99999");
    EXPECT_EQ(score().Tempo, 9999);
    QTest::keyClick(&control("TempoLabel"), Qt::Key_Return);
    EXPECT_EQ(shownIn("TempoLabel"), "9999");
}

TEST_F(frmsetupTest, AMeterIsTypedOrStepped) {
    opened(3);
    type("TxtMeter", "3");
    EXPECT_EQ(workspace().setup.TxBeats, 12);
    EXPECT_EQ(shownIn("TxBeats"), "12");
    EXPECT_THAT(asked, ElementsAre("notes", "beats", "top bar", "notes"));
    QTest::keyClick(&control("VScroll1"), Qt::Key_Up);
    EXPECT_EQ(shownIn("TxtMeter"), "4");
    EXPECT_EQ(score().NotesPerMeasure, 16);
}

TEST_F(frmsetupTest, TheTwoArrowsGoThroughTheirOwnLists) {
    opened(3);
    for (int press = 0; press < 3; ++press)
        QTest::keyClick(&control("VScroll1"), Qt::Key_Up);
    EXPECT_EQ(shownIn("TxtMeter"), "8");
    QTest::keyClick(&control("VScroll2"), Qt::Key_Down);
    EXPECT_EQ(shownIn("NoteX"), "2");
    EXPECT_EQ(shownIn("TxBeats"), "16");
}

TEST_F(frmsetupTest, AProductAboveSixteenIsForTheBeatsAlone) {
    opened(3);
    type("TxtMeter", "2");
    type("NoteX", "2");
    type("NoteX", "9"); // 18
    EXPECT_EQ(shownIn("TxBeats"), "4");
    type("TxtMeter", "2");
    EXPECT_EQ(shownIn("TxBeats"), "18");
}

TEST_F(frmsetupTest, TheNotesOfAMeasureMayBeTyped) {
    opened(3);
    type("TxBeats", "7");
    EXPECT_EQ(score().NotesPerMeasure, 7);
    EXPECT_EQ(workspace().setup.TxtMeter, 4);
    EXPECT_THAT(asked, ElementsAre("notes", "beats", "top bar"));
}

TEST_F(frmsetupTest, LettersCountAsZeroUntilTheFieldIsLeft) {
    opened(3);
    type("TxtMeter", "x");
    EXPECT_EQ(workspace().setup.TxtMeter, 0);
    EXPECT_EQ(score().NotesPerMeasure, 0);
    EXPECT_EQ(shownIn("TxtMeter"), "x");
    control("LblTempo").setFocus();
    EXPECT_EQ(shownIn("TxtMeter"), "0");
}

// --- device and length

TEST_F(frmsetupTest, TheDeviceListNamesTheMapperAndEveryDevice) {
    store("Devices", "0");
    opened(4);
    auto& list = control<QComboBox>("Combo2");
    EXPECT_EQ(list.count(), 3);
    EXPECT_EQ(list.itemText(0), "MIDI Mapper");
    EXPECT_EQ(list.currentText(), "first");
}

TEST_F(frmsetupTest, OnFirstUseTheLastDeviceIsWritten) {
    opened(4);
    EXPECT_EQ(stored("Devices"), "1");
    EXPECT_EQ(control<QComboBox>("Combo2").currentText(), "second");
}

TEST_F(frmsetupTest, AChosenDeviceIsKeptAndOpened) {
    store("Devices", "0");
    opened(4);
    choose("Combo2", 2);
    EXPECT_EQ(stored("Devices"), "1");
    EXPECT_THAT(midi.opened, ElementsAre(1));
    EXPECT_EQ(workspace().setup.Combo2, 2);
}

TEST_F(frmsetupTest, ADeviceThatFailsLeavesTheMapper) {
    store("Devices", "0");
    opened(4);
    midi.failing = true;
    auto& list = control<QComboBox>("Combo2");
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(list.currentIndex(), 0);
    EXPECT_EQ(midi.opened.back(), -1);
    EXPECT_EQ(stored("Devices"), "1");
    toolbar().refresh();
    EXPECT_EQ(list.currentIndex(), 0);
}

TEST_F(frmsetupTest, ADeviceThatComesIsListedWhileThePanelIsShown) {
    store("Devices", "0");
    opened(4);
    auto& list = control<QComboBox>("Combo2");
    midi.names.push_back("third");
    EXPECT_TRUE(QTest::qWaitFor([&] { return list.count() == 4; }, 10000));
    EXPECT_EQ(list.currentText(), "first");
}

TEST_F(frmsetupTest, TheListIsUpToDateWhenItOpens) {
    store("Devices", "0");
    opened(4);
    auto& list = control<QComboBox>("Combo2");
    midi.names = {"other"};
    list.showPopup();
    EXPECT_EQ(list.count(), 2);
    EXPECT_EQ(list.currentText(), "other");
    midi.names.push_back("late");
    toolbar().refresh();
    EXPECT_EQ(list.count(), 2); // an open list stays
    list.hidePopup();
    toolbar().refresh();
    EXPECT_EQ(list.count(), 3);
}

TEST_F(frmsetupTest, NotesAreAdded) {
    opened(4);
    type("Text2", "200");
    click(control("Command1"));
    EXPECT_EQ(score().NumNotes, 1200);
    EXPECT_EQ(shownIn("Text1"), "1200");
    EXPECT_EQ(stored("NumNotes"), "1200");
    EXPECT_THAT(asked, ElementsAre("length"));
}

TEST_F(frmsetupTest, NotesAreSubtracted) {
    opened(4);
    type("Text2", "900");
    click(control("Command4"));
    EXPECT_EQ(score().NumNotes, 100);
    EXPECT_EQ(shownIn("Text1"), "100");
}

TEST_F(frmsetupTest, MoreThanThereAreIsNotSubtracted) {
    opened(4);
    type("Text2", "1000");
    click(control("Command4"));
    type("Text2", "99999999999");
    click(control("Command4"));
    click(control("Command1"));
    EXPECT_EQ(score().NumNotes, 1000);
    EXPECT_EQ(stored("NumNotes"), "none");
    EXPECT_THAT(asked, IsEmpty());
}

TEST_F(frmsetupTest, LettersAddNothing) {
    opened(4);
    type("Text2", "many");
    click(control("Command1"));
    EXPECT_EQ(score().NumNotes, 1000);
}

TEST_F(frmsetupTest, TheTotalCannotBeTyped) {
    opened(4);
    type("Text1", "5");
    EXPECT_EQ(shownIn("Text1"), "1000");
}

// --- staff

TEST_F(frmsetupTest, TheStaffBoxesAreKeptAtOnce) {
    opened(5);
    click(control("ChTreble"));
    click(control("ChBass"));
    click(control("Check1"));
    EXPECT_FALSE(workspace().setup.ChTreble);
    EXPECT_FALSE(workspace().setup.ChBass);
    EXPECT_FALSE(workspace().view.Show_Sharp_guides);
    EXPECT_EQ(stored("Show Treble staff"), "0");
    EXPECT_EQ(stored("Show Bass staff"), "0");
    EXPECT_EQ(stored("Show_Sharp_guides"), "0");
    EXPECT_THAT(asked, ElementsAre("notes", "notes", "notes"));
}

TEST_F(frmsetupTest, TheLineSpacingLaysOutTheComposingWindow) {
    opened(5);
    type("Text3", "9");
    EXPECT_EQ(workspace().view.Line_Height, 9);
    EXPECT_EQ(stored("Line_Height"), "9");
    EXPECT_THAT(asked, ElementsAre("lay out", "notes"));
    QTest::keyClick(&control("VScroll3"), Qt::Key_Down);
    EXPECT_EQ(shownIn("Text3"), "8");
}

TEST_F(frmsetupTest, ALineSpacingOfLettersIsTheLeast) {
    opened(5);
    type("Text3", "abc");
    EXPECT_EQ(workspace().view.Line_Height, 4);
    QTest::keyClick(&control("VScroll3"), Qt::Key_Down);
    EXPECT_EQ(workspace().view.Line_Height, 4);
    EXPECT_EQ(shownIn("Text3"), "4");
}

// --- every control

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
    EXPECT_EQ(controls, 6 + 1 + 16 + 24 + 2 + 5 + 5 + 5 + 4);
}

TEST_F(frmsetupTest, TabReachesTheControlsOfAPanelFromItsTab) {
    opened(3);
    control("Lmnu", 3).setFocus();
    std::vector<std::string> reached;
    for (int i = 0; i < 6; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached.push_back(QApplication::focusWidget()->objectName().toStdString());
    }
    EXPECT_THAT(reached,
                ElementsAre("LblTempo", "TempoLabel", "VScroll1", "VScroll2", "measureArrows", "Lmnu(3)"));
}
