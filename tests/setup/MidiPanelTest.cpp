// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/MidiPanel.h"

#include "SetupFixture.h"

#include <QAbstractItemView>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

using MidiPanelTest = SetupFixture;

TEST_F(MidiPanelTest, TheDeviceListNamesTheMapperAndEveryDevice) {
    store("Devices", "0");
    opened(4);
    auto& list = control<QComboBox>("Combo2");
    EXPECT_EQ(list.count(), 3);
    EXPECT_EQ(list.itemText(0), "MIDI Mapper");
    EXPECT_EQ(list.currentText(), "first");
}

TEST_F(MidiPanelTest, OnFirstUseTheMapperIsWrittenWhereThereAreSeveralDevices) {
    opened(4);
    EXPECT_EQ(stored("Devices"), "-1");
    EXPECT_EQ(control<QComboBox>("Combo2").currentText(), "MIDI Mapper");
}

TEST_F(MidiPanelTest, AChosenDeviceIsKeptAndOpened) {
    store("Devices", "0");
    opened(4);
    choose("Combo2", 2);
    EXPECT_EQ(stored("Devices"), "1");
    EXPECT_THAT(port.opened, ElementsAre(1));
    EXPECT_EQ(workspace().setup.Combo2, 2);
}

TEST_F(MidiPanelTest, ADeviceThatFailsLeavesTheMapper) {
    store("Devices", "0");
    opened(4);
    port.refused = {0, 1, 2};
    auto& list = control<QComboBox>("Combo2");
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(list.currentIndex(), 0);
    EXPECT_EQ(port.opened.back(), -1);
    EXPECT_EQ(stored("Devices"), "1");
    announce(workspace(), Change::Device);
    EXPECT_EQ(list.currentIndex(), 0);
}

TEST_F(MidiPanelTest, ADeviceThatComesIsListedWhileThePanelIsShown) {
    store("Devices", "0");
    opened(4);
    auto& list = control<QComboBox>("Combo2");
    port.names.push_back("third");
    EXPECT_TRUE(QTest::qWaitFor([&] { return list.count() == 4; }, 10000));
    EXPECT_EQ(list.currentText(), "first");
}

TEST_F(MidiPanelTest, TheListIsUpToDateWhenItOpens) {
    store("Devices", "0");
    opened(4);
    auto& list = control<QComboBox>("Combo2");
    port.names = {"other"};
    list.showPopup();
    EXPECT_EQ(list.count(), 2);
    EXPECT_EQ(list.currentText(), "other");
    port.names.push_back("late");
    announce(workspace(), Change::Device);
    EXPECT_EQ(list.count(), 2); // an open list stays
    list.hidePopup();
    announce(workspace(), Change::Device);
    EXPECT_EQ(list.count(), 3);
}

TEST_F(MidiPanelTest, TheMapperSoundsWhereTheOpenDeviceGoesWhileThePanelIsShown) {
    store("Devices", "0");
    opened(4);
    choose("Combo2", 2);
    port.names = {"first"};
    EXPECT_TRUE(QTest::qWaitFor([&] { return port.opened.back() == MidiPort::kMapper; }, 10000));
    EXPECT_EQ(control<QComboBox>("Combo2").currentText(), "MIDI Mapper");
    EXPECT_EQ(stored("Devices"), "1");
}

TEST_F(MidiPanelTest, NotesAreAdded) {
    opened(4);
    type("Text2", "200");
    click(control("Command1"));
    EXPECT_EQ(score().NumNotes, 1200);
    EXPECT_EQ(shownIn("Text1"), "1200");
    EXPECT_EQ(stored("NumNotes"), "1200");
    EXPECT_THAT(watcher().told, ElementsAre(Change::Length | Change::Marks | Change::Undo));
}

TEST_F(MidiPanelTest, NotesAreSubtracted) {
    opened(4);
    type("Text2", "900");
    click(control("Command4"));
    EXPECT_EQ(score().NumNotes, 100);
    EXPECT_EQ(shownIn("Text1"), "100");
}

TEST_F(MidiPanelTest, MoreThanThereAreIsNotSubtracted) {
    opened(4);
    type("Text2", "1000");
    click(control("Command4"));
    type("Text2", "99999999999");
    click(control("Command4"));
    click(control("Command1"));
    EXPECT_EQ(score().NumNotes, 1000);
    EXPECT_EQ(stored("NumNotes"), "none");
    EXPECT_THAT(watcher().told, IsEmpty());
}

TEST_F(MidiPanelTest, LettersAddNothing) {
    opened(4);
    type("Text2", "many");
    click(control("Command1"));
    EXPECT_EQ(score().NumNotes, 1000);
}

TEST_F(MidiPanelTest, TheTotalCannotBeTyped) {
    opened(4);
    type("Text1", "5");
    EXPECT_EQ(shownIn("Text1"), "1000");
}
