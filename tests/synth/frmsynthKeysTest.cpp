// SPDX-License-Identifier: GPL-2.0-or-later
// The keyboard's window as the computer's keys and the mouse play it.
#include "SynthFixture.h"
#include "keyboard/PianoKeys.h"
#include "synth/KeyArea.h"

#include <QDialog>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
class frmsynthKeysTest : public SynthFixture {
protected:
    KeyArea& keys() { return static_cast<KeyArea&>(control("Picture1")); }
    QPoint spot(int key, double height = 0.9) {
        const QRectF face = keys().layout().key(key);
        // Beside what lies above a white key.
        return QPointF(isBlackKey(key) ? face.center().x() : face.left() + 3, face.bottom() * height)
            .toPoint();
    }
    void mouse(QEvent::Type type, QPoint at, Qt::MouseButtons buttons = Qt::LeftButton) {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, keys().mapToGlobal(at), button, buttons, {});
        QCoreApplication::sendEvent(&keys(), &event);
    }
};
} // namespace

TEST_F(frmsynthKeysTest, AKeyOfTheComputerPlaysTheKeyWithItsLabel) {
    opened();
    down(kZ);
    EXPECT_TRUE(window().keyboard().sounds(0));
    up(kZ);
    EXPECT_THAT(sent(), ElementsAre(on(36), off(36)));
    EXPECT_FALSE(window().keyboard().sounds(0));
}

TEST_F(frmsynthKeysTest, WhatTheHandPressesHereGivesTheMessagesOfTheRoom) {
    opened();
    constexpr std::array keys{kZ,
                              kX,
                              kQ,
                              HandKey{34, Qt::Key_BraceLeft, "{"},
                              HandKey{48, Qt::Key_QuoteDbl, "\""},
                              HandKey{10, Qt::Key_1, "1"}};
    for (const HandKey& key : keys) {
        down(key);
        down(key);
        up(key);
    }
    const auto here = sent();
    RecordingPort other(loop);
    Keyboard room(other, loop, workspace().setup.channels, workspace().manners);
    for (const auto& [place, key, text] : keys) {
        const bool plain = text[0] >= '0' && text[0] <= 'z' && text[0] != '"';
        const int code = plain && key >= 48 && key <= 90 ? key : 0;
        room.Form_KeyDown({.position = static_cast<int>(place), .code = code, .text = text, .otherText = {}});
        room.Form_KeyUp({.position = static_cast<int>(place), .code = code, .text = text, .otherText = {}});
    }
    EXPECT_EQ(here, other.words());
    EXPECT_EQ(here.size(), 12U);
}

TEST_F(frmsynthKeysTest, KeysPlayWhereverTheFocusIs) {
    for (const char* name : {"Picture1", "lblVolume", "ChkSustain", "Lmnu(2)", "Optbeat(1)"}) {
        opened(4);
        control(name).setFocus();
        down(kZ);
        up(kZ);
        EXPECT_THAT(sent(), ElementsAre(on(36), off(36))) << name;
    }
    opened(1);
    control("Combo1").setFocus();
    down(kZ);
    up(kZ);
    EXPECT_THAT(sent(), ElementsAre(on(36), off(36)));
}

TEST_F(frmsynthKeysTest, InAFieldForTextTheyType) {
    opened(4);
    auto& field = control<QLineEdit>("txtValue");
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, "90");
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_EQ(window().keyboard().metronome().BeatsPerMinute, 90);
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_TRUE(control("Picture1").hasFocus()) << "Enter goes back to the keys";
}

TEST_F(frmsynthKeysTest, SpacePlaysItsPartUnlessTheRingIsOnAControl) {
    opened(4);
    window().keyboard().setPolynotes(Polynotes::OnSpacebar);
    window().keyboard().set(KeyboardSlider::Chord, 10);
    auto& hold = control<QCheckBox>("ChkSustain");
    hold.setFocus();
    down(kSpaceKey);
    down(kZ);
    pass(1);
    EXPECT_THAT(sent(), ElementsAre(on(36), on(48), on(36))) << "the chord is strummed";
    up(kZ);
    up(kSpaceKey);
    EXPECT_FALSE(hold.isChecked());
    QTest::keyClick(&hold, Qt::Key_Tab);
    QWidget* reached = QApplication::focusWidget();
    ASSERT_EQ(reached->objectName(), "ChkMute");
    down(kSpaceKey);
    up(kSpaceKey);
    EXPECT_TRUE(static_cast<QCheckBox*>(reached)->isChecked());
}

TEST_F(frmsynthKeysTest, WhatRepeatsByItselfStrikesOnce) {
    opened();
    tell(QEvent::KeyPress, kZ, {}, 1000);
    for (quint64 time = 1500; time < 1900; time += 40) {
        tell(QEvent::KeyRelease, kZ, {}, time, time % 80 == 0);
        tell(QEvent::KeyPress, kZ, {}, time, time % 80 == 0);
    }
    EXPECT_THAT(sent(), ElementsAre(on(36)));
    tell(QEvent::KeyRelease, kZ, {}, 2000);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window().keyboard().sounds(0); }));
}

TEST_F(frmsynthKeysTest, AKeyThatGoesUpWithAnotherTextEndsItsOwnNote) {
    opened();
    tell(QEvent::KeyPress, {34, Qt::Key_BraceLeft, "{"}, Qt::ShiftModifier);
    tell(QEvent::KeyRelease, {34, Qt::Key_BracketLeft, "["});
    const int note = kLowestNote + 31;
    EXPECT_THAT(sent(), ElementsAre(on(note), off(note)));
}

TEST_F(frmsynthKeysTest, WhenTheFocusGoesEveryKeyGoesUp) {
    opened();
    down(kZ);
    down(kX);
    sent();
    QWidget other;
    other.show();
    other.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_THAT(sent(), testing::UnorderedElementsAre(off(36), off(38)));
    up(kZ);
    EXPECT_THAT(sent(), IsEmpty());
    window().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
    down(kZ);
    EXPECT_THAT(sent(), ElementsAre(on(36))) << "it plays again";
}

TEST_F(frmsynthKeysTest, ADialogEndsTheNotes) {
    opened();
    down(kZ);
    sent();
    driver.in<QWidget>([this](QWidget& box) {
        EXPECT_EQ(wordsOf(box), "Nothing to save");
        EXPECT_THAT(sent(), ElementsAre(off(36)));
        pressIn(box, "ok");
    });
    window().CmdRecord_Click();
}

TEST_F(frmsynthKeysTest, MannersEndTheNotes) {
    opened();
    down(kZ);
    sent();
    workspace().setManners(Manners::careful());
    EXPECT_THAT(sent(), ElementsAre(off(36)));
}

TEST_F(frmsynthKeysTest, HidingEndsTheNotes) {
    opened();
    down(kZ);
    sent();
    window().hide();
    EXPECT_THAT(sent(), ElementsAre(off(36)));
}

TEST_F(frmsynthKeysTest, AnotherWindowsKeysAreItsOwn) {
    opened();
    QWidget other;
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Z, {}, 52, 0, 0, "z");
    QCoreApplication::sendEvent(&other, &event);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(frmsynthKeysTest, ClosedItLeavesTheKeysAlone) {
    opened();
    window().close();
    sent();
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Z, {}, 52, 0, 0, "z");
    QCoreApplication::sendEvent(&window(), &event);
    EXPECT_THAT(sent(), IsEmpty());
}

// The mouse

TEST_F(frmsynthKeysTest, ThePressOfTheMouseStrikesAndItsReleaseEnds) {
    opened();
    QTest::mousePress(&keys(), Qt::LeftButton, {}, spot(0));
    EXPECT_THAT(sent(), ElementsAre(on(36)));
    QTest::mouseRelease(&keys(), Qt::LeftButton, {}, spot(0));
    EXPECT_THAT(sent(), ElementsAre(off(36)));
}

TEST_F(frmsynthKeysTest, ABlackKeyIsStruckAboveTheWhiteOnesAroundIt) {
    opened();
    click(control("CmdKey", 1));
    EXPECT_THAT(sent(), ElementsAre(on(37), off(37)));
}

TEST_F(frmsynthKeysTest, SlidingPlaysKeyAfterKey) {
    opened();
    mouse(QEvent::MouseButtonPress, spot(0));
    for (const int key : {0, 2, 4, 5})
        mouse(QEvent::MouseMove, spot(key));
    mouse(QEvent::MouseButtonRelease, spot(5), Qt::NoButton);
    EXPECT_THAT(sent(), ElementsAre(on(36), off(36), on(38), off(38), on(40), off(40), on(41), off(41)));
}

TEST_F(frmsynthKeysTest, SlidingOffTheKeysEndsTheNoteAndSlidingBackStrikes) {
    opened();
    mouse(QEvent::MouseButtonPress, spot(0));
    mouse(QEvent::MouseMove, {spot(0).x(), -30});
    mouse(QEvent::MouseMove, {keys().width() - 4, 40}); // no panic under a pressed button
    mouse(QEvent::MouseMove, spot(0));
    mouse(QEvent::MouseButtonRelease, spot(0), Qt::NoButton);
    EXPECT_THAT(sent(), ElementsAre(on(36), off(36), on(36), off(36)));
}

TEST_F(frmsynthKeysTest, TheRightButtonStrikesNothing) {
    opened();
    QTest::mouseClick(&keys(), Qt::RightButton, {}, spot(0));
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(frmsynthKeysTest, InClassicMannersTheHeightOnAKeyMeansNothing) {
    opened();
    QTest::mouseClick(&keys(), Qt::LeftButton, {}, spot(0, 0.1));
    EXPECT_THAT(sent(), ElementsAre(on(36, 100), off(36)));
}

TEST_F(frmsynthKeysTest, InCarefulOnesItIsTheVelocity) {
    beCareful();
    opened();
    const auto velocity = [&](int key, double height) {
        QTest::mouseClick(&keys(), Qt::LeftButton, {}, spot(key, height));
        return shortmessage::data2(sent().front());
    };
    EXPECT_EQ(velocity(0, 0), 40);
    EXPECT_NEAR(velocity(0, 0.5), 84, 2);
    EXPECT_NEAR(velocity(0, 0.99), 126, 1);
    EXPECT_NEAR(velocity(1, 0.95), 123, 2) << "a black key has a foot of its own";
}

TEST_F(frmsynthKeysTest, AScreenReaderKnowsEachKeyAndCanPressIt) {
    opened();
    auto& key = control<QAbstractButton>("CmdKey", 6);
    EXPECT_EQ(key.accessibleName(), "Key F sharp 2, plays with G");
    key.click();
    EXPECT_THAT(sent(), ElementsAre(on(42), off(42)));
    EXPECT_EQ(control("CmdKey", 24).accessibleName(), "Key C 4, plays with R");
    window().keyboard().Option5_Click(1);
    click(control("Lmnu", 3));
    click(control("Option5", 1));
    EXPECT_EQ(control("CmdKey", 24).accessibleName(), "Key C 3, plays with R");
}

// What sounds is seen

TEST_F(frmsynthKeysTest, WhatIsPlayedByOthersIsSeenToo) {
    opened();
    const auto isRed = [this](int key) {
        QImage picture = window().grab().toImage();
        return picture.pixelColor(keys().mapTo(&window(), spot(key, 0.75))) == QColor(255, 0, 0);
    };
    EXPECT_FALSE(isRed(7));
    window().keyboard().midi(1, shortmessage::noteOn(5, 43, 77));
    window().arm();
    EXPECT_TRUE(isRed(7));
    window().keyboard().midi(1, shortmessage::noteOff(5, 43));
    EXPECT_FALSE(isRed(7));
}

// Panic

TEST_F(frmsynthKeysTest, TheMouseOverThePanicBarStopsAllSound) {
    opened();
    down(kZ);
    sent();
    auto& bar = control("Label4");
    QTest::mouseMove(&bar, bar.rect().center());
    EXPECT_THAT(sent(), testing::Contains(RecordingPort::kReset));
    EXPECT_FALSE(window().keyboard().sounds(0));
    EXPECT_EQ(bar.grab().toImage().pixelColor(4, 8), QColor(128, 255, 255));
    QTest::mouseMove(&keys(), {keys().width() - 4, 40});
    EXPECT_THAT(sent(), testing::Contains(RecordingPort::kReset)) << "so does the bare background";
    EXPECT_NE(bar.grab().toImage().pixelColor(4, 8), QColor(128, 255, 255));
}

TEST_F(frmsynthKeysTest, TheMouseOverAKeyStopsNothing) {
    opened();
    QTest::mouseMove(&keys(), spot(3));
    EXPECT_THAT(sent(), IsEmpty());
}

// Editing

TEST_F(frmsynthKeysTest, WhileLabelsAreEditedTheComputersKeysAreSilentAndTheMousePlays) {
    opened(1);
    click(control("Check1"));
    control("Picture1").setFocus();
    down(kZ);
    up(kZ);
    EXPECT_THAT(sent(), IsEmpty());
    QTest::mouseClick(&keys(), Qt::LeftButton, {}, spot(0, 0.3));
    EXPECT_THAT(sent(), ElementsAre(on(36), off(36)));
}

TEST_F(frmsynthKeysTest, AClickOnALabelSelectsItSoThatAKeyTypedReplacesIt) {
    opened(1);
    window().CmdEd_Click();
    auto& label = control<QLineEdit>("NoteX", 0);
    EXPECT_EQ(label.text(), "Z");
    click(label);
    EXPECT_EQ(label.selectedText(), "Z");
    QTest::keyClicks(&label, "#");
    EXPECT_EQ(label.text(), "#");
    EXPECT_EQ(window().keyboard().scheme().labels[0], "#");
    window().CmdEd_Click();
    EXPECT_FALSE(label.isVisible());
    down({52, Qt::Key_Z, "z"});
    EXPECT_THAT(sent(), IsEmpty());
    down({51, Qt::Key_NumberSign, "#"});
    EXPECT_THAT(sent(), ElementsAre(on(36)));
}

TEST_F(frmsynthKeysTest, EscEndsTheEditing) {
    opened(1);
    window().CmdEd_Click();
    auto& label = control<QLineEdit>("NoteX", 5);
    label.setFocus();
    QTest::keyClick(&label, Qt::Key_Escape);
    EXPECT_FALSE(window().keyboard().controls().Check1);
    EXPECT_FALSE(control<QCheckBox>("Check1").isChecked());
    EXPECT_TRUE(control("Picture1").hasFocus());
}

TEST_F(frmsynthKeysTest, KeysThatAreDownWhenEditingBeginsGoUp) {
    opened(1);
    down(kZ);
    sent();
    window().CmdEd_Click();
    EXPECT_THAT(sent(), ElementsAre(off(36)));
}
