// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/frmsynth.h"

#include "SynthFixture.h"
#include "shell/WindowGeometry.h"

#include <QScreen>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;

using frmsynthTest = SynthFixture;

TEST_F(frmsynthTest, DockedItStandsUnderTheComposingWindowWhereverThatGoes) {
    QWidget composing;
    composing.setGeometry(20, 10, 700, 150);
    composing.show();
    frmsynth keyboard(desk(), &composing);
    keyboard.open();
    keyboard.setDocked(true);
    EXPECT_EQ(keyboard.y(), composing.frameGeometry().bottom() + 1);
    EXPECT_EQ(stored("Synthup"), "True");
    composing.move(40, 60);
    QApplication::processEvents();
    EXPECT_EQ(keyboard.y(), composing.frameGeometry().bottom() + 1);
    keyboard.setDocked(false);
    const QRect left = keyboard.geometry();
    composing.move(0, 0);
    QApplication::processEvents();
    EXPECT_EQ(keyboard.geometry(), left);
}

TEST_F(frmsynthTest, LoadingSendsTheDrumBankTheVolumeAndTheInstrument) {
    window().open();
    EXPECT_THAT(sent(), ElementsAre(shortmessage::kDrumBank, shortmessage::controller(0, 7, 127),
                                    shortmessage::programChange(0, 24)));
    EXPECT_EQ(window().windowTitle(), "Velmora  Keyboard");
    EXPECT_EQ(control<QLineEdit>("LblInstrument").text(), "Nylon Guitar");
}

TEST_F(frmsynthTest, VolumeAndInstrumentComeFromTheSettings) {
    store("Volume", "90");
    store("Intrumentval", "40");
    window().open();
    EXPECT_THAT(sent(), ElementsAre(shortmessage::kDrumBank, shortmessage::controller(0, 7, 90),
                                    shortmessage::programChange(0, 40)));
    EXPECT_EQ(shownIn("Label11"), "90");
    EXPECT_EQ(control<QLineEdit>("LblInstrument").text(), "Violin");
}

TEST_F(frmsynthTest, WhereNoInstrumentHasANameItIsTheOneThatTheSettingsName) {
    store("Inst Name", "My Guitar");
    workspace().instruments.MelodyInstrumentName.clear();
    workspace().instruments.MelodyInstrument = 7;
    window().open();
    EXPECT_EQ(sent().back(), shortmessage::programChange(0, 24));
    EXPECT_EQ(control<QLineEdit>("LblInstrument").text(), "My Guitar");
}

TEST_F(frmsynthTest, OpenedTwiceItLoadsOnce) {
    opened();
    window().open();
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(frmsynthTest, ClosingSilencesKeepsThePlaceAndBringsTheComposingWindowBack) {
    opened();
    window().move(30, 45);
    down(kZ);
    sent();
    window().close();
    EXPECT_FALSE(window().isVisible());
    const auto words = sent();
    EXPECT_EQ(words.front(), off(36));
    EXPECT_EQ(words.back(), RecordingPort::kReset);
    EXPECT_EQ(stored("formS left"), "450");
    EXPECT_EQ(stored("formS top"), "675");
    EXPECT_EQ(stored("formS Width"), std::to_string(1192 * 15));
    EXPECT_EQ(stored("formS Height"), std::to_string(396 * 15));
    EXPECT_THAT(windows.opened, ElementsAre(Windows::Name::form1));
}

TEST_F(frmsynthTest, TheEndOfTheProgramKeepsThePlaceToo) {
    opened();
    window().move(60, 30);
    window().unload();
    EXPECT_EQ(stored("formS left"), "900");
    sent();
    window().unload();
    EXPECT_THAT(sent(), IsEmpty()) << "once";
}

TEST_F(frmsynthTest, ItComesUpWhereItWasButAsWideAsTheOtherSpellingSays) {
    store("formS left", "300");
    store("formS top", "150");
    store("formS Width", std::to_string(1400 * 15));
    window().open();
    const QRect around = window().screen()->availableGeometry();
    const int screen = around.width();
    EXPECT_EQ(window().pos(), onScreen({20, 10}, window().size(), around));
    EXPECT_EQ(window().y(), 10);
    EXPECT_EQ(window().width(), std::clamp(screen - pixelsOfTwips(200), 1000, std::max(1000, screen)));
    EXPECT_EQ(window().height(), 396);
    EXPECT_EQ(stored("formS Width"), std::to_string(window().width() * 15)) << "written at once";
}

TEST_F(frmsynthTest, TheWidthIsReadInItsOwnSpelling) {
    store("formS width", std::to_string(1050 * 15));
    window().open();
    EXPECT_EQ(window().width(),
              std::max(1000, std::min(1050, window().screen()->availableGeometry().width())));
}

TEST_F(frmsynthTest, TheFirstTimeItIsALittleNarrowerThanTheComposingWindow) {
    QWidget composing;
    composing.resize(1100, 600);
    frmsynth keyboard(desk(), &composing);
    keyboard.open();
    EXPECT_EQ(keyboard.width(),
              std::max(1000, std::min(1087, keyboard.screen()->availableGeometry().width())));
    EXPECT_TRUE(keyboard.screen()->availableGeometry().contains(keyboard.geometry()) ||
                keyboard.screen()->availableGeometry().width() < 1000);
}

TEST_F(frmsynthTest, ASchemeOfTheSettingsIsLoadedAndAMissingOneIsNot) {
    store("keyfile", "/nowhere/at/all.key");
    window().open();
    EXPECT_EQ(shownIn("Label3"), "keyboard.key");
    EXPECT_EQ(window().keyboard().scheme(), KeyScheme::builtIn());
    window().close();
    EXPECT_EQ(stored("keyfile"), "/nowhere/at/all.key") << "whether or not it is there";
}

TEST_F(frmsynthTest, WithoutASchemeNoneIsKept) {
    window().open();
    window().close();
    EXPECT_EQ(stored("keyfile"), "None");
}

TEST_F(frmsynthTest, WhileARecordingGoesOnClosingAsksInCarefulMannersAlone) {
    opened();
    window().CmdRec_Click();
    window().close();
    EXPECT_FALSE(window().isVisible());
    workspace().setManners(Manners::careful());
    opened();
    window().CmdRec_Click();
    down(kZ);
    for (const char* answer : {"no", "yes"}) {
        driver.in<QWidget>([answer](QWidget& box) {
            EXPECT_EQ(wordsOf(box), "A recording goes on. Stop it and close the keyboard?");
            pressIn(box, answer);
        });
        window().close();
        EXPECT_EQ(window().isVisible(), answer == std::string("no"));
    }
    EXPECT_EQ(window().keyboard().recording(), TakeRecorder::State::Off);
}

TEST_F(frmsynthTest, WhatWasRecordedIsThereWhenItComesUpAgain) {
    opened();
    window().CmdRec_Click();
    down(kZ);
    pass(0.1);
    window().close();
    const int size = window().keyboard().take.size();
    EXPECT_GT(size, 5);
    opened();
    EXPECT_EQ(window().keyboard().take.size(), size);
}

TEST_F(frmsynthTest, TabsShowOnePageAtATimeAndTheLastThreePressCommands) {
    constexpr std::array kCaptions{"Setup", "Compose", "Sound 1", "Sound 2", "Tools", "Help", "Close"};
    constexpr std::array kPages{"Picture16", "Picture17", "Picture19", "Picture4"};
    opened();
    for (int tab = 1; tab <= 7; ++tab)
        EXPECT_EQ(control<QAbstractButton>("Lmnu", tab).text(), kCaptions[static_cast<std::size_t>(tab - 1)]);
    for (int tab = 1; tab <= 4; ++tab) {
        click(control("Lmnu", tab));
        for (int page = 1; page <= 4; ++page)
            EXPECT_EQ(control(kPages[static_cast<std::size_t>(page - 1)]).isVisible(), page == tab);
    }
    click(control("Lmnu", 6));
    EXPECT_THAT(windows.pages, ElementsAre("keyboard"));
    click(control("Lmnu", 5));
    EXPECT_TRUE(menu.popup("mnukeybdpopup2").isVisible());
    menu.popup("mnukeybdpopup2").close();
    EXPECT_TRUE(control<QAbstractButton>("Lmnu", 4).isChecked());
    click(control("Lmnu", 7));
    EXPECT_FALSE(window().isVisible());
}

TEST_F(frmsynthTest, TheMenuOfToolsTicksWhatIsShown) {
    opened(3);
    emit menu.popup("mnukeybdpopup2").aboutToShow();
    EXPECT_TRUE(menu.item("mnukeybdtoolbars").isChecked());
    EXPECT_TRUE(menu.item("mnukeybdSound1toolbar").isChecked());
    EXPECT_FALSE(menu.item("mnukeybdSound2toolbar").isChecked());
    menu.item("mnukeybdSound2toolbar").trigger();
    EXPECT_TRUE(control("Picture4").isVisible());
    menu.item("mnuKeybdsetup").trigger();
    EXPECT_TRUE(control("Picture16").isVisible());
    menu.item("mnuKeybdCompose").trigger();
    EXPECT_TRUE(control("Picture17").isVisible());
    menu.item("mnukeybdtoolbars").trigger();
    EXPECT_FALSE(window().showsStrip());
    menu.item("mnukeybdHelp").trigger();
    EXPECT_THAT(windows.pages, ElementsAre("keyboard"));
    menu.item("mnukeybdclose").trigger();
    EXPECT_FALSE(window().isVisible());
}

TEST_F(frmsynthTest, HidingTheEditingToolbarGivesItsHeightToTheKeys) {
    opened();
    const int before = control("Picture1").height();
    EXPECT_TRUE(button(11).isChecked());
    click(button(11));
    EXPECT_FALSE(control("Picture4").isVisible());
    EXPECT_FALSE(control("Lmnu", 1).isVisible());
    EXPECT_EQ(control("Picture1").height(), before + 136);
    click(button(11));
    EXPECT_TRUE(control("Picture4").isVisible());
    EXPECT_EQ(control("Picture1").height(), before);
}

TEST_F(frmsynthTest, AtItsLeastSizeTheKeysAreStillThere) {
    opened();
    window().resize(window().minimumSize());
    EXPECT_EQ(window().minimumWidth(), 1000);
    EXPECT_GE(control("Picture1").height(), 120);
    int end = 0;
    for (int index = 1; index <= 15; ++index)
        end = std::max(end, button(index).geometry().right());
    EXPECT_LT(end, control("Label8").x()) << "the strip ends before the lamp";
}

TEST_F(frmsynthTest, EscLeavesTheWindowOpen) {
    opened();
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_TRUE(window().isVisible());
}
