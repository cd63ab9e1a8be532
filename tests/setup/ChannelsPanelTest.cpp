// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/ChannelsPanel.h"

#include "SetupFixture.h"
#include "parts/FrmInst.h"
#include "sound/ShortMessage.h"

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

using ChannelsPanelTest = SetupFixture;

TEST_F(ChannelsPanelTest, AChannelsButtonMakesItTheActiveOne) {
    opened(1);
    click(control("TrackSel", 2));
    EXPECT_TRUE(told().any(Change::Channels));
    EXPECT_EQ(score().ActiveChannel, 2);
    EXPECT_TRUE(control<QAbstractButton>("TrackSel", 2).isChecked());
    EXPECT_FALSE(control<QAbstractButton>("TrackSel", 0).isChecked());
    EXPECT_TRUE(score().ChannelShown[2]);
    EXPECT_FALSE(score().ChannelShown[0]);
}

TEST_F(ChannelsPanelTest, TheActiveChannelsButtonMayBePressedAgain) {
    opened(1);
    click(control("TrackSel", 0));
    EXPECT_TRUE(told().any(Change::Channels));
    EXPECT_TRUE(control<QAbstractButton>("TrackSel", 0).isChecked());
}

TEST_F(ChannelsPanelTest, ThereIsNoButtonForTheDrumChannel) {
    EXPECT_EQ(toolbar().findChild<QWidget*>("TrackSel(9)"), nullptr);
    EXPECT_EQ(control<QAbstractButton>("TrackSel", 12).text(), "12");
    EXPECT_EQ(control<QAbstractButton>("TrackSel", 8).text(), "9");
}

TEST_F(ChannelsPanelTest, SelectingAChannelGivesItItsGroupsInstrument) {
    workspace().instruments.MelodyInstrument = 73;
    workspace().instruments.PercussionInstrument = 140;
    opened(1);
    click(control("TrackSel", 3));
    click(control("TrackSel", 11));
    EXPECT_EQ(score().ChannelInstrument[3], 73);
    EXPECT_EQ(score().ChannelInstrument[11], 140);
    EXPECT_TRUE(told().any(Change::Instruments));
}

TEST_F(ChannelsPanelTest, WithoutANameTheInstrumentIsRead) {
    opened(1);
    store("Intrumentval", "5");
    workspace().instruments.MelodyInstrumentName = "";
    click(control("TrackSel", 3));
    EXPECT_EQ(score().ChannelInstrument[3], 5);
}

TEST_F(ChannelsPanelTest, SelectingAChannelGivesItsSelectedNotesTheInstrument) {
    putNotes(score(), 1, 60, 3);
    workspace().view.SelectStart = 2;
    workspace().view.SelectEnd = 3;
    workspace().instruments.MelodyInstrument = 73;
    opened(1);
    click(control("TrackSel", 1));
    EXPECT_EQ(score().NoteInstrument.at(1, 1), 24);
    EXPECT_EQ(score().NoteInstrument.at(1, 2), 73);
    EXPECT_EQ(workspace().undoStep(), "Instrument");
    EXPECT_TRUE(told().any(Change::Undo));
    EXPECT_TRUE(workspace().undoLast());
    EXPECT_EQ(score().NoteInstrument.at(1, 2), 24);
}

TEST_F(ChannelsPanelTest, AnInstrumentThatChangesNoNoteLeavesTheUndoStep) {
    putNotes(score(), 1, 60, 3);
    workspace().view.SelectStart = 2;
    workspace().view.SelectEnd = 3;
    workspace().keepForUndo("Cut Selection");
    opened(1);
    click(control("TrackSel", 1)); // whose notes have the instrument already
    click(control("TrackSel", 2)); // which has none
    EXPECT_EQ(workspace().undoStep(), "Cut Selection");
}

TEST_F(ChannelsPanelTest, AChannelThatIsRefusedKeepsTheOldOneMarked) {
    opened(1);
    toolbar().TrackSel_Click(9);
    EXPECT_EQ(score().ActiveChannel, 0);
    EXPECT_TRUE(control<QAbstractButton>("TrackSel", 0).isChecked());
}

TEST_F(ChannelsPanelTest, AChannelSelectedElsewhereIsMarked) {
    opened(1);
    workspace().selectChannel(6);
    EXPECT_TRUE(control<QAbstractButton>("TrackSel", 6).isChecked());
    EXPECT_THAT(watcher().told, testing::SizeIs(1)) << "showing it changes nothing";
}

TEST_F(ChannelsPanelTest, AHiddenChannelIsMuted) {
    opened(1);
    click(control("TrackHide", 4));
    EXPECT_TRUE(score().ChannelMuted[4]);
    EXPECT_TRUE(told().any(Change::Channels));
    click(control("TrackHide", 4));
    EXPECT_FALSE(score().ChannelMuted[4]);
}

TEST_F(ChannelsPanelTest, ABoxOutOfLineIsBroughtInLine) {
    opened(1);
    score().ChannelMuted[4] = true;
    click(control("TrackHide", 4)); // ticks it
    EXPECT_TRUE(score().ChannelMuted[4]);
    score().ChannelMuted[5] = true;
    click(control("TrackSel", 5));
    EXPECT_TRUE(control<QCheckBox>("TrackHide", 5).isChecked());
}

namespace {
bool pickerIsOpen() {
    const QWidget* modal = QApplication::activeModalWidget();
    return modal && modal->objectName() == "FrmInst";
}
} // namespace

TEST_F(ChannelsPanelTest, ADoubleClickOnAnInstrumentOpensThePicker) {
    opened(1);
    QTest::mouseDClick(&control("LblInst2"), Qt::LeftButton);
    EXPECT_TRUE(pickerIsOpen());
}

TEST_F(ChannelsPanelTest, EnterOnAnInstrumentOpensThePicker) {
    opened(1);
    QTest::keyClick(&control("LblInst1"), Qt::Key_Return);
    EXPECT_TRUE(pickerIsOpen());
}

TEST_F(ChannelsPanelTest, OpeningThePickerPlaysTheMelodyInstrumentsProgram) {
    opened(1);
    workspace().selectChannel(3);
    port.sent.clear();
    toolbar().LblInst_DblClick();
    EXPECT_THAT(port.words(), ElementsAre(shortmessage::programChange(3, 24)));
}

TEST_F(ChannelsPanelTest, OnPercussionOrWithoutANameNothingIsPlayed) {
    opened(1);
    workspace().selectChannel(8);
    port.sent.clear();
    toolbar().LblInst_DblClick();
    EXPECT_THAT(port.words(), IsEmpty());
}

TEST_F(ChannelsPanelTest, AfterThePickerTheKeysGoOnInTheToolbar) {
    opened(1);
    control("LblInst2").setFocus();
    toolbar().LblInst_DblClick();
    QWidget* picker = QApplication::activeModalWidget();
    ASSERT_TRUE(picker);
    picker->close();
    EXPECT_TRUE(QTest::qWaitFor([this] { return control("LblInst2").hasFocus(); }));
}

TEST_F(ChannelsPanelTest, APercussionSoundIsNothingForAMelodyChannel) {
    putNotes(score(), 0, 60, 3);
    score().NoteInstrument.set(0, 2, 73); // a note with an instrument of its own
    workspace().view.SelectStart = 0;
    workspace().view.SelectEnd = 5;
    opened(1);
    toolbar().LblInst_DblClick();
    auto* picker = dynamic_cast<FrmInst*>(QApplication::activeModalWidget());
    ASSERT_TRUE(picker);
    port.sent.clear();
    picker->LstInstruments2_DblClick();
    EXPECT_EQ(shownIn("LblInst2"), "Acoustic Bass Drum");
    EXPECT_EQ(score().NoteInstrument.at(0, 2), 73);
    EXPECT_THAT(port.words(), IsEmpty());
}

TEST_F(ChannelsPanelTest, APickedInstrumentIsShownPlayedAndTheChannels) {
    opened(1);
    toolbar().LblInst_DblClick();
    QWidget* picker = QApplication::activeModalWidget();
    ASSERT_TRUE(picker);
    ASSERT_TRUE(QTest::qWaitFor(
        [picker] { return QApplication::focusWidget() && QApplication::focusWidget()->window() == picker; }));
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "LstInstruments");
    port.sent.clear();
    QTest::keyClicks(QApplication::focusWidget(), "flu");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(shownIn("LblInst1"), "Flute");
    EXPECT_EQ(score().ChannelInstrument[0], 73);
    EXPECT_THAT(port.words(), ElementsAre(shortmessage::programChange(0, 73)));
    EXPECT_TRUE(told().any(Change::Instruments));
}

TEST_F(ChannelsPanelTest, OneClickOnAnInstrumentOpensThePicker) {
    opened(1);
    QTest::mouseClick(&control("LblInst2"), Qt::LeftButton);
    EXPECT_TRUE(pickerIsOpen());
}

TEST_F(ChannelsPanelTest, SoDoTheKeysThatOpenAList) {
    for (const auto& [key, with] : {std::pair{Qt::Key_F4, Qt::NoModifier},
                                    {Qt::Key_Space, Qt::NoModifier},
                                    {Qt::Key_Down, Qt::AltModifier}}) {
        opened(1);
        QTest::keyClick(&control("LblInst1"), key, with);
        ASSERT_TRUE(pickerIsOpen()) << key;
        QApplication::activeModalWidget()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QTest::keyClick(&control("LblInst1"), Qt::Key_Down);
    EXPECT_FALSE(pickerIsOpen());
}

TEST_F(ChannelsPanelTest, APressThatLeavesTheFieldOpensNothing) {
    opened(1);
    QWidget& field = control("LblInst1");
    QTest::mousePress(&field, Qt::LeftButton);
    QTest::mouseRelease(&field, Qt::LeftButton, {}, QPoint(-5, 5));
    QTest::mouseClick(&field, Qt::RightButton);
    EXPECT_FALSE(pickerIsOpen());
    EXPECT_FALSE(field.hasFocus()) << "Space still plays";
}

TEST_F(ChannelsPanelTest, InCarefulMannerTheChosenChannelsInstrumentIsShown) {
    store("Classic", "0");
    opened(1);
    score().ChannelInstrument[3] = 73;
    click(control("TrackSel", 3));
    EXPECT_EQ(shownIn("LblInst1"), "Flute");
    EXPECT_EQ(score().ChannelInstrument[3], 73);
    click(control("TrackSel", 0));
    EXPECT_EQ(shownIn("LblInst1"), "Nylon Guitar");
}
