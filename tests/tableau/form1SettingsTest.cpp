// SPDX-License-Identifier: GPL-2.0-or-later
// The modes of the window, their marks, and the settings that they are kept in.
#include "form1Fixture.h"

#include <QLabel>

using namespace velmora;

namespace {
class form1SettingsTest : public form1Fixture {
protected:
    bool isOn(const char* array, int index) { return button(array, index).isChecked(); }
    bool isTicked(const char* item, int index = -1) { return menu.item(item, index).isChecked(); }
    int musicBoxHeight() { return child("MusicBox").height(); }
};
} // namespace

TEST_F(form1SettingsTest, AnEmptyStoreShowsEverything) {
    shown();
    EXPECT_TRUE(child("Beatbox").isVisible());
    EXPECT_TRUE(child("toolPanel").isVisible());
    EXPECT_TRUE(isOn("Lb1", 9));
    EXPECT_TRUE(isOn("Lb1", 10));
    EXPECT_FALSE(isOn("Lb1", 11));
    EXPECT_TRUE(isOn("Lb1", 12));
    EXPECT_FALSE(button("Lb1", 12).isEnabled());
    EXPECT_TRUE(isOn("Cmd2", 8));
    EXPECT_FALSE(isOn("Cmd2", 9));
    EXPECT_TRUE(isOn("Lb1", 13));
    EXPECT_TRUE(isOn("Lb1", 19));
    EXPECT_TRUE(isTicked("mnuPercussion"));
    EXPECT_TRUE(isTicked("mnuEdit"));
    EXPECT_TRUE(isTicked("mnuNotestyle1"));
    EXPECT_TRUE(isTicked("mnuSkin", 1));
    EXPECT_TRUE(isTicked("mnuXPtooltext", 1));
}

TEST_F(form1SettingsTest, StoredModesComeBack) {
    for (const auto& [key, value] : std::map<std::string, std::string>{{"Percussion", "False"},
                                                                       {"Editing Toolbar", "0"},
                                                                       {"Notationstyle", "1"},
                                                                       {"Accidentals", "False"},
                                                                       {"Playing position", "False"}})
        store(key, value);
    shown();
    EXPECT_FALSE(child("Beatbox").isVisible());
    EXPECT_FALSE(child("toolPanel").isVisible());
    EXPECT_FALSE(isOn("Lb1", 9));
    EXPECT_FALSE(isOn("Lb1", 10));
    EXPECT_TRUE(isOn("Lb1", 11));
    EXPECT_FALSE(isOn("Lb1", 12));
    EXPECT_TRUE(button("Lb1", 12).isEnabled());
    EXPECT_FALSE(isOn("Cmd2", 8));
    EXPECT_FALSE(workspace().play.ShowPlayLine);
    EXPECT_FALSE(isTicked("mnuPercussion"));
    EXPECT_FALSE(isTicked("mnuEdit"));
    EXPECT_TRUE(isTicked("mnuNotestyle2"));
    EXPECT_TRUE(isTicked("mnuNoAccidentals"));
}

TEST_F(form1SettingsTest, ClassicBehaviourIsTickedAndChangesAtOnce) {
    store("Classic", "0");
    shown();
    EXPECT_FALSE(isTicked("mnuClassic"));
    for (const bool on : {true, false}) {
        menu.item("mnuClassic").trigger();
        EXPECT_EQ(workspace().manners, Manners::of(on));
        EXPECT_EQ(isTicked("mnuClassic"), on);
        EXPECT_EQ(stored("Classic"), on ? "1" : "0");
    }
}

TEST_F(form1SettingsTest, PercussionHidesAndGivesItsHeightToMusicBox) {
    shown();
    const int before = musicBoxHeight();
    const int beatbox = child("Beatbox").height();
    for (const bool on : {false, true}) {
        QTest::mouseClick(&button("Lb1", 9), Qt::LeftButton);
        EXPECT_EQ(settings::read(settings, settings::Percussion), on);
        EXPECT_EQ(child("Beatbox").isVisible(), on);
        EXPECT_EQ(isOn("Lb1", 9), on);
        EXPECT_EQ(isTicked("mnuPercussion"), on);
        EXPECT_EQ(musicBoxHeight(), on ? before : before + beatbox + 3);
    }
}

TEST_F(form1SettingsTest, TheToolPanelHidesItselfAndTheMenuShowsItAgain) {
    shown();
    const int before = musicBoxHeight();
    QTest::mouseClick(&button("Lb1", 16), Qt::LeftButton);
    EXPECT_FALSE(child("toolPanel").isVisible());
    EXPECT_FALSE(settings::read(settings, settings::Editing_Toolbar, true));
    EXPECT_FALSE(isTicked("mnuEdit"));
    EXPECT_EQ(musicBoxHeight(), before + 64);
    menu.item("mnuEdit").trigger();
    EXPECT_TRUE(child("toolPanel").isVisible());
    EXPECT_TRUE(settings::read(settings, settings::Editing_Toolbar, false));
    EXPECT_TRUE(isTicked("mnuEdit"));
    EXPECT_EQ(musicBoxHeight(), before);
}

TEST_F(form1SettingsTest, OneOfTheNoteStylesIsOn) {
    shown();
    for (const int style : {1, 1, 0, 0, 1}) {
        QTest::mouseClick(&button("Lb1", 10 + style), Qt::LeftButton);
        EXPECT_EQ(stored("Notationstyle"), std::to_string(style));
        EXPECT_EQ(isOn("Lb1", 10), style == 0);
        EXPECT_EQ(isOn("Lb1", 11), style == 1);
        EXPECT_EQ(isTicked("mnuNotestyle1"), style == 0);
        EXPECT_EQ(isTicked("mnuNotestyle2"), style == 1);
        EXPECT_EQ(button("Lb1", 12).isEnabled(), style == 1);
        EXPECT_EQ(menu.item("mnuAccidentals").isEnabled(), style == 1);
        EXPECT_EQ(menu.item("mnuNoAccidentals").isEnabled(), style == 1);
    }
}

TEST_F(form1SettingsTest, AccidentalsAreATogglingButtonAndTwoItems) {
    store("Notationstyle", "1");
    shown();
    for (const bool on : {false, true}) {
        QTest::mouseClick(&button("Lb1", 12), Qt::LeftButton);
        EXPECT_EQ(settings::read(settings, settings::Accidentals), on);
        EXPECT_EQ(isOn("Lb1", 12), on);
        EXPECT_EQ(isTicked("mnuAccidentals"), on);
        EXPECT_EQ(isTicked("mnuNoAccidentals"), !on);
    }
    for (const char* item : {"mnuNoAccidentals", "mnuNoAccidentals", "mnuAccidentals", "mnuAccidentals"}) {
        const bool on = std::string_view(item) == "mnuAccidentals";
        menu.item(item).trigger();
        EXPECT_EQ(settings::read(settings, settings::Accidentals), on);
        EXPECT_TRUE(isTicked(item)) << "a second choice keeps the tick";
        EXPECT_EQ(isOn("Lb1", 12), on);
    }
}

TEST_F(form1SettingsTest, ThePlayLineIsKept) {
    shown();
    for (const bool on : {false, true}) {
        QTest::mouseClick(&button("Cmd2", 8), Qt::LeftButton);
        EXPECT_EQ(settings::read(settings, settings::Playing_position), on);
        EXPECT_EQ(workspace().play.ShowPlayLine, on);
        EXPECT_EQ(isOn("Cmd2", 8), on);
    }
}

TEST_F(form1SettingsTest, EntryZeroOfTheTipStylesKeepsItsTick) {
    shown();
    menu.item("mnuXPtooltext", 0).trigger();
    EXPECT_EQ(stored("ToolText type"), "0");
    EXPECT_TRUE(isTicked("mnuXPtooltext", 0));
    EXPECT_FALSE(isTicked("mnuXPtooltext", 1));
    menu.item("mnuXPtooltext", 2).trigger();
    EXPECT_EQ(stored("ToolText type"), "2");
    EXPECT_TRUE(isTicked("mnuXPtooltext", 2));
    EXPECT_TRUE(isTicked("mnuXPtooltext", 0)) << "until a menu is prepared anew";
    tips.ConfigureToolTip();
    EXPECT_EQ(tips.ToolTipStyle(), 2);
}

TEST_F(form1SettingsTest, LooksAreChosenByMenuAndKept) {
    shown();
    for (int skin = 1; skin <= kSkinCount; ++skin) {
        menu.item("mnuSkin", skin).trigger();
        EXPECT_EQ(stored("Skin type"), std::to_string(skin));
        EXPECT_EQ(window().look().skinType, skin);
    }
    for (int style = 2; style <= 6; ++style) {
        menu.item("mnuButton", style).trigger();
        EXPECT_EQ(stored("Skin buttons"), std::to_string(style));
        EXPECT_EQ(window().look().buttonStyle, style);
    }
    emit menu.popup("mnupopup9").aboutToShow();
    EXPECT_TRUE(isTicked("mnuSkin", kSkinCount));
    EXPECT_FALSE(isTicked("mnuSkin", 1));
    EXPECT_TRUE(isTicked("mnuButton", 6));
}

TEST_F(form1SettingsTest, TabsShowTheirPageAndNoOther) {
    shown();
    const char* toolbars[]{"TB1", "TB2", "TB4"};
    for (const int tab : {0, 1, 1, 2, 0}) {
        QTest::mouseClick(&button("Lb1", 17 + tab), Qt::LeftButton);
        for (int other = 0; other < 3; ++other) {
            EXPECT_EQ(child(toolbars[other]).isVisible(), other == tab) << toolbars[other];
            EXPECT_EQ(isOn("Lb1", 17 + other), other == tab);
        }
        EXPECT_EQ(workspace().view.NoteEffectsOn, tab == 1);
    }
}
