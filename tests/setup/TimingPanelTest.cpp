// SPDX-License-Identifier: GPL-2.0-or-later
#include "setup/TimingPanel.h"

#include "SetupFixture.h"
#include "shell/Slider.h"

using namespace velmora;
using testing::Contains;
using testing::ElementsAre;

using TimingPanelTest = SetupFixture;

TEST_F(TimingPanelTest, TheTempoSliderStepsInFours) {
    opened(3);
    auto& bar = control<Slider>("LblTempo");
    QTest::keyClick(&bar, Qt::Key_Right);
    EXPECT_EQ(score().Tempo, 104);
    EXPECT_EQ(shownIn("TempoLabel"), "104");
    drag(bar, bar.width() / 2, bar.width() / 2);
    EXPECT_EQ(score().Tempo, 248); // the whole part of 62.5
    drag(bar, bar.width() / 2, 0);
    EXPECT_EQ(score().Tempo, 0);
    EXPECT_EQ(told(), Change::Meter | Change::Undo);
}

TEST_F(TimingPanelTest, TheTempoMayBeTyped) {
    opened(3);
    type("TempoLabel", "233");
    EXPECT_EQ(score().Tempo, 233);
    EXPECT_EQ(control<Slider>("LblTempo").value(), 233);
    type("TempoLabel", "fast");
    EXPECT_EQ(score().Tempo, 0);
}

TEST_F(TimingPanelTest, ATempoThatIsTooLargeIsNotTaken) {
    opened(3);
    type("TempoLabel", "99999");
    EXPECT_EQ(score().Tempo, 9999);
    QTest::keyClick(&control("TempoLabel"), Qt::Key_Return);
    EXPECT_EQ(shownIn("TempoLabel"), "9999");
}

TEST_F(TimingPanelTest, AMeterIsTypedOrStepped) {
    opened(3);
    type("TxtMeter", "3");
    EXPECT_EQ(workspace().setup.TxBeats, 12);
    EXPECT_EQ(shownIn("TxBeats"), "12");
    EXPECT_THAT(watcher().told, ElementsAre(Changes(Change::Meter)));
    QTest::keyClick(&control("VScroll1"), Qt::Key_Up);
    EXPECT_EQ(shownIn("TxtMeter"), "4");
    EXPECT_EQ(score().NotesPerMeasure, 16);
}

TEST_F(TimingPanelTest, TheTwoArrowsGoThroughTheirOwnLists) {
    opened(3);
    for (int press = 0; press < 3; ++press)
        QTest::keyClick(&control("VScroll1"), Qt::Key_Up);
    EXPECT_EQ(shownIn("TxtMeter"), "8");
    QTest::keyClick(&control("VScroll2"), Qt::Key_Down);
    EXPECT_EQ(shownIn("NoteX"), "2");
    EXPECT_EQ(shownIn("TxBeats"), "16");
}

TEST_F(TimingPanelTest, AProductAboveSixteenIsForTheBeatsAlone) {
    opened(3);
    type("TxtMeter", "2");
    type("NoteX", "2");
    type("NoteX", "9"); // 18
    EXPECT_EQ(shownIn("TxBeats"), "4");
    type("TxtMeter", "2");
    EXPECT_EQ(shownIn("TxBeats"), "18");
}

TEST_F(TimingPanelTest, TheNotesOfAMeasureMayBeTyped) {
    opened(3);
    type("TxBeats", "7");
    EXPECT_EQ(score().NotesPerMeasure, 7);
    EXPECT_EQ(workspace().setup.TxtMeter, 4);
    EXPECT_THAT(watcher().told, ElementsAre(Changes(Change::Meter)));
}

TEST_F(TimingPanelTest, LettersCountAsZeroUntilTheFieldIsLeft) {
    opened(3);
    type("TxtMeter", "x");
    EXPECT_EQ(workspace().setup.TxtMeter, 0);
    EXPECT_EQ(score().NotesPerMeasure, 0);
    EXPECT_EQ(shownIn("TxtMeter"), "x");
    control("LblTempo").setFocus();
    EXPECT_EQ(shownIn("TxtMeter"), "0");
}
