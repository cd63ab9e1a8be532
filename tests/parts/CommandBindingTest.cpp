// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/CommandBinding.h"

#include "parts/CommandBank.h"
#include "shell/Appearance.h"
#include "shell/ExToolTip.h"
#include "shell/Frmmenu.h"
#include "tests/support/MemorySettings.h"

#include <QAction>
#include <QTest>

#include <array>
#include <memory>

#include <gtest/gtest.h>

using namespace velmora;

namespace {
constexpr auto kRows = std::to_array<CommandRow>({
    {"open", "open", "", "Open", "Opens"},
    {"save", "save", "", "Save", "Saves"},
});

/// A window with two buttons, which counts what is pressed.
struct Room : QWidget {
    explicit Room(ExToolTip& tips) : bank("Cmd9", kRows, look, tips, this) {}

    Appearance look;
    CommandBank bank;
    int opened = 0;
    int saved = 0;
};
constexpr auto kBindings = std::to_array<CommandBinding<Room>>({
    {{&Room::bank, indexOf(kRows, "open")}, [](Room& room) { ++room.opened; }, "mnuOpen", "Ctrl+O"},
    {{&Room::bank, indexOf(kRows, "save")}, [](Room& room) { ++room.saved; }, "", "Ctrl+S"},
});

class CommandBindingTest : public testing::Test {
protected:
    CommandBindingTest() {
        bindCommands<Room>(*room, menu, kBindings);
        room->show();
        room->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(room.get()));
    }
    void key(Qt::Key key) { QTest::keyClick(room.get(), key, Qt::ControlModifier); }

    MemorySettings settings;
    ExToolTip tips{settings};
    Frmmenu menu;
    std::unique_ptr<Room> room = std::make_unique<Room>(tips);
};
} // namespace

TEST_F(CommandBindingTest, ButtonItemAndKeyPressOneRoutine) {
    room->bank.press(0);
    EXPECT_EQ(room->opened, 1);
    menu.item("mnuOpen").trigger();
    EXPECT_EQ(room->opened, 2);
    key(Qt::Key_O);
    EXPECT_EQ(room->opened, 3);
    EXPECT_EQ(room->saved, 0);
}

TEST_F(CommandBindingTest, TheKeyOfADisabledItemDoesNothing) {
    menu.item("mnuOpen").setEnabled(false);
    key(Qt::Key_O);
    EXPECT_EQ(room->opened, 0);
    menu.item("mnuOpen").setEnabled(true);
    key(Qt::Key_O);
    EXPECT_EQ(room->opened, 1);
}

TEST_F(CommandBindingTest, WithoutAnItemTheKeyFollowsTheButton) {
    room->bank[1].setEnabled(false);
    key(Qt::Key_S);
    EXPECT_EQ(room->saved, 0);
    room->bank[1].setEnabled(true);
    key(Qt::Key_S);
    EXPECT_EQ(room->saved, 1);
}

TEST_F(CommandBindingTest, AnotherWindowsBindingOfTheItemLeavesTheKeyItsOwnRoutine) {
    QObject other;
    int elsewhere = 0;
    menu.bind(other, "mnuOpen", [&] { ++elsewhere; });
    key(Qt::Key_O);
    EXPECT_EQ(room->opened, 1);
    EXPECT_EQ(elsewhere, 0);
}

TEST_F(CommandBindingTest, TheItemIsDisabledOnceTheWindowIsGone) {
    room.reset();
    EXPECT_FALSE(menu.item("mnuOpen").isEnabled());
}

TEST_F(CommandBindingTest, WhatIsStillToComeSaysSo) {
    Room fresh(tips);
    EXPECT_FALSE(fresh.bank[0].isEnabled());
    EXPECT_EQ(tips.toolTip(fresh.bank[0])->text, "Opens\nComes in a later version");
    EXPECT_EQ(tips.toolTip(fresh.bank[0])->title, "Open");
    fresh.bank.bind(0, [] {});
    EXPECT_EQ(tips.toolTip(fresh.bank[0])->text, "Opens");
}
