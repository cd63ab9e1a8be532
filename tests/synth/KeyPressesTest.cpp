// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/KeyPresses.h"

#include "keyboard/ComputerKey.h"
#include "tests/support/Waiting.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QTest>

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
class KeyPressesTest : public testing::Test {
protected:
    static std::unique_ptr<QKeyEvent> event(QEvent::Type type, quint32 place, int key, const char* text,
                                            quint64 timestamp = 0, Qt::KeyboardModifiers modifiers = {},
                                            bool repeats = false, quint32 native = 0) {
        auto made = std::make_unique<QKeyEvent>(type, key, modifiers, place, 0, native,
                                                QString::fromUtf8(text), repeats);
        made->setTimestamp(timestamp);
        return made;
    }
    bool press(quint32 place, int key, const char* text, quint64 timestamp = 0,
               Qt::KeyboardModifiers modifiers = {}, bool repeats = false, quint32 native = 0) {
        return presses.press(
            *event(QEvent::KeyPress, place, key, text, timestamp, modifiers, repeats, native));
    }
    bool release(quint32 place, int key, const char* text, quint64 timestamp = 0, bool repeats = false) {
        return presses.release(*event(QEvent::KeyRelease, place, key, text, timestamp, {}, repeats));
    }
    std::string written(const char* what, const ComputerKey& key) {
        return std::string(what) + ' ' + std::to_string(key.position) + ' ' + std::to_string(key.code) + ' ' +
               std::string(key.text) + ' ' + std::string(key.otherText);
    }

    std::vector<std::string> told;
    KeyPresses presses{[this](const ComputerKey& key) { told.push_back(written("down", key)); },
                       [this](const ComputerKey& key) { told.push_back(written("up", key)); }};
};
} // namespace

TEST_F(KeyPressesTest, ALetterHasItsCodeAndBothItsCases) {
    EXPECT_TRUE(press(52, Qt::Key_Z, "z"));
    EXPECT_TRUE(release(52, Qt::Key_Z, "z"));
    EXPECT_THAT(told, ElementsAre("down 52 90 z Z", "up 52 90 z Z"));
}

TEST_F(KeyPressesTest, SignsOfTheirOwnPlayByWhatTheyType) {
    press(34, Qt::Key_BraceLeft, "{");
    press(60, Qt::Key_Period, ".");
    EXPECT_THAT(told, ElementsAre("down 34 0 { ", "down 60 0 . "));
}

TEST_F(KeyPressesTest, TheKeypadPlaysByWhatItTypes) {
    press(79, Qt::Key_7, "7", 0, Qt::KeypadModifier);
    EXPECT_THAT(told, ElementsAre("down 79 0 7 "));
}

TEST_F(KeyPressesTest, ShiftThatGoesUpFirstLeavesNothingDown) {
    press(34, Qt::Key_BraceLeft, "{", 0, Qt::ShiftModifier);
    release(34, Qt::Key_BracketLeft, "[");
    EXPECT_THAT(told, ElementsAre("down 34 0 { ", "up 34 0 { "));
}

TEST_F(KeyPressesTest, CommandsAreNoPresses) {
    EXPECT_FALSE(press(52, Qt::Key_Z, "\x1a", 0, Qt::ControlModifier));
    EXPECT_FALSE(press(52, Qt::Key_Z, "z", 0, Qt::AltModifier));
    EXPECT_FALSE(press(52, Qt::Key_Z, "z", 0, Qt::MetaModifier));
    EXPECT_FALSE(press(23, Qt::Key_Tab, "\t"));
    EXPECT_FALSE(press(9, Qt::Key_Escape, "\x1b"));
    EXPECT_FALSE(press(50, Qt::Key_Shift, ""));
    EXPECT_FALSE(press(113, Qt::Key_Left, ""));
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(KeyPressesTest, WithAltGrAKeyPlaysByWhatItTypesAlone) {
    EXPECT_FALSE(press(108, Qt::Key_AltGr, ""));
    press(24, Qt::Key_Q, "@");
    release(24, Qt::Key_Q, "@");
    release(108, Qt::Key_AltGr, "");
    press(24, Qt::Key_Q, "q");
    EXPECT_THAT(told, ElementsAre("down 24 0 @ ", "up 24 0 @ ", "down 24 81 q Q"));
}

TEST_F(KeyPressesTest, TheWindowSystemsModifierTellsOfAltGr) {
    press(24, Qt::Key_Q, "@", 0, Qt::ControlModifier | Qt::AltModifier, false, 0x80);
    EXPECT_THAT(told, ElementsAre("down 24 0 @ "));
}

TEST_F(KeyPressesTest, WhatRepeatsByItselfIsNoPress) {
    press(52, Qt::Key_Z, "z", 100);
    EXPECT_TRUE(release(52, Qt::Key_Z, "z", 500, true));
    EXPECT_TRUE(press(52, Qt::Key_Z, "z", 500, {}, true));
    EXPECT_TRUE(press(52, Qt::Key_Z, "z", 540));
    EXPECT_THAT(told, ElementsAre("down 52 90 z Z"));
    release(52, Qt::Key_Z, "z");
    EXPECT_EQ(told.size(), 2U);
}

TEST_F(KeyPressesTest, AReleaseAndAPressWithOneTimeStampAreNeither) {
    press(52, Qt::Key_Z, "z", 100);
    for (quint64 time = 500; time < 1000; time += 40) {
        release(52, Qt::Key_Z, "z", time);
        press(52, Qt::Key_Z, "z", time);
    }
    QTest::qWait(20);
    EXPECT_THAT(told, ElementsAre("down 52 90 z Z"));
    release(52, Qt::Key_Z, "z", 1200);
    EXPECT_TRUE(QTest::qWaitFor([this] { return told.size() == 2; })) << "it ends when no press follows";
}

TEST_F(KeyPressesTest, OnABusyMachineThePressOfARepeatMayComeSomewhatLater) {
    press(52, Qt::Key_Z, "z", 100);
    QElapsedTimer passed;
    quint64 time = 500;
    do { // until this machine isn't too busy itself
        time += 40;
        told.clear();
        passed.start();
        release(52, Qt::Key_Z, "z", time);
        QTest::qSleep(4);
        QCoreApplication::processEvents(); // what is due by then is done
    } while (passed.elapsed() >= 9 && press(52, Qt::Key_Z, "z", time));
    press(52, Qt::Key_Z, "z", time);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(KeyPressesTest, AQuickFingerStrikesAnew) {
    press(52, Qt::Key_Z, "z", 100);
    release(52, Qt::Key_Z, "z", 150);
    press(52, Qt::Key_Z, "z", 151);
    EXPECT_THAT(told, ElementsAre("down 52 90 z Z", "up 52 90 z Z", "down 52 90 z Z"));
}

TEST_F(KeyPressesTest, AnotherKeyWithTheSameStampIsAPress) {
    press(52, Qt::Key_Z, "z", 100);
    release(52, Qt::Key_Z, "z", 150);
    press(53, Qt::Key_X, "x", 150);
    EXPECT_THAT(told, ElementsAre("down 52 90 z Z", "up 52 90 z Z", "down 53 88 x X"));
}

TEST_F(KeyPressesTest, TwoReleasesInARowAreBothTold) {
    press(52, Qt::Key_Z, "z", 100);
    press(53, Qt::Key_X, "x", 110);
    release(52, Qt::Key_Z, "z", 150);
    release(53, Qt::Key_X, "x", 150);
    EXPECT_TRUE(QTest::qWaitFor([this] { return told.size() == 4; }));
    EXPECT_THAT(told, ElementsAre("down 52 90 z Z", "down 53 88 x X", "up 52 90 z Z", "up 53 88 x X"));
}

TEST_F(KeyPressesTest, AReleaseOfWhatWasNotPressedHereIsNothing) {
    EXPECT_FALSE(release(52, Qt::Key_Z, "z"));
    press(52, Qt::Key_Z, "z", 100);
    presses.forget();
    EXPECT_FALSE(release(52, Qt::Key_Z, "z", 150));
    EXPECT_THAT(told, ElementsAre("down 52 90 z Z"));
}

TEST_F(KeyPressesTest, AWindowSystemWithoutScanCodesIsGoneByKeys) {
    press(0, Qt::Key_Z, "z");
    press(0, Qt::Key_X, "x");
    release(0, Qt::Key_Z, "z");
    EXPECT_EQ(told.size(), 3U);
    EXPECT_NE(told[0].substr(5), told[1].substr(5));
    EXPECT_EQ("up" + told[0].substr(4), told[2]);
}
