// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/Frmmenu.h"

#include "base/Settings.h"
#include "tests/support/MemorySettings.h"

#include <QMenu>

#include <set>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr int kOne = -1; ///< no control array

struct ItemRow {
    const char* popup;
    const char* name;
    int index;
    const char* caption;
};
constexpr auto kItems = std::to_array<ItemRow>({
    {"mnupopup6", "mnuOpen", kOne, "Open File"},
    {"mnupopup6", "mnuSaveAs2", kOne, "Save as"},
    {"mnupopup6", "mnuSave2", kOne, "Save"},
    {"mnupopup6", "mnuExit", kOne, "Exit"},
    {"mnupopup6", "mnuNew", kOne, "Clear All"},
    {"mnupopup7", "mnuCut", kOne, "Cut selection"},
    {"mnupopup7", "mnuCopy", kOne, "Copy selection"},
    {"mnupopup7", "mnuPasteInsert", kOne, "Paste (insert)"},
    {"mnupopup7", "mnuPasteoverwrite", kOne, "Paste (overwrite)"},
    {"mnupopup11", "mnublank", kOne, ""},
    {"mnupopup11", "mnuerase", kOne, "Erase on Right-click"},
    {"mnupopup11", "mnuMenu", kOne, "Menu on Right-Click"},
    {"mnupopup11", "mnuTips", kOne, "Show Tips on Right-Click"},
    {"mnupopup8", "mnuRewind", kOne, "Rewind"},
    {"mnupopup8", "mnuPlay", kOne, "Play"},
    {"mnupopup8", "mnupause", kOne, "Pause"},
    {"mnupopup8", "mnuStopPlaying", kOne, "Stop Playing"},
    {"mnupopup8", "mnuStopall", kOne, "Stop all sound"},
    {"mnupopup9", "mnuSetup", kOne, "Setup Toolbar"},
    {"mnupopup9", "mnuEdit", kOne, "Editing Toolbar"},
    {"mnupopup9", "mnuRecordtool", kOne, "Recording Toolbar"},
    {"mnupopup9", "mnuPercussion", kOne, "Percussion Tableau"},
    {"mnuNotestyle", "mnuNotestyle1", kOne, "Colorful Line"},
    {"mnuNotestyle", "mnuNotestyle2", kOne, "Traditional Notation"},
    {"mnuNotestyle", "mnuAccidentals", kOne, "Accidentals"},
    {"mnuNotestyle", "mnuNoAccidentals", kOne, "No Accidentals"},
    {"mnuInterface", "mnuSkin", 1, "XP (Blue)"},
    {"mnuInterface", "mnuSkin", 2, "3D stylized"},
    {"mnuInterface", "mnuSkin", 3, "Blue Steel"},
    {"mnuInterface", "mnuSkin", 4, "Riveted"},
    {"mnuInterface", "mnuSkin", 5, "Gray Steel"},
    {"mnuInterface", "mnuSkin", 6, "Gunmetal"},
    {"mnuInterface", "mnuSkin", 7, "Win 98"},
    {"mnuInterface", "mnuSkin", 8, "XP (Silver)"},
    {"mnuButtons", "mnuButton", 2, "Rectangular"},
    {"mnuButtons", "mnuButton", 3, "Rounded"},
    {"mnuButtons", "mnuButton", 4, "Hidden"},
    {"mnuButtons", "mnuButton", 5, "Flat"},
    {"mnuButtons", "mnuButton", 6, "Round"},
    {"mnuXPtooltextstyle", "mnuXPtooltext", 0, "Rectangular Tooltext"},
    {"mnuXPtooltextstyle", "mnuXPtooltext", 1, "Balloon Tooltext"},
    {"mnuXPtooltextstyle", "mnuXPtooltext", 2, "Win 98 Style Tooltext"},
    {"mnupopup10", "mnuTutorial", kOne, "Tutorial"},
    {"mnupopup10", "mnuHelpfile", kOne, "Help"},
    {"mnukeybdpopup1", "mnukeybdDock", kOne, "Dock Keyboard"},
    {"mnukeybdpopup1", "mnukeybdclose", kOne, "Close"},
    {"mnukeybdpopup2", "mnukeybdtoolbars", kOne, "Toolbars"},
    {"mnukeybdpopup2", "mnukeybdSound1toolbar", kOne, "Sound 1 Toolbar"},
    {"mnukeybdpopup2", "mnukeybdSound2toolbar", kOne, "Sound 2 Toolbar"},
    {"mnukeybdpopup3", "mnuKeybdsetup", kOne, "Setup"},
    {"mnukeybdpopup3", "mnuKeybdCompose", kOne, "Keyboard Composer"},
    {"mnukeybdpopup4", "mnukeybdHelp", kOne, "Help"},
    {"mnuRecordpopup1", "mnuRecordOpen", kOne, "Open File"},
    {"mnuRecordpopup1", "mnuRecordSave", kOne, "Save As"},
    {"mnuRecordpopup1", "mnuRecordPlay", kOne, "Play"},
    {"mnuRecordpopup1", "mnuRecordPause", kOne, "Pause"},
    {"mnuRecordpopup1", "mnuRecordStop", kOne, "Stop"},
    {"mnuRecordpopup1", "mnuExitRecord", kOne, "Close"},
    {"mnuRecordpopup2", "RecordStart", kOne, "Start Recording"},
    {"mnuRecordpopup2", "RecordStop", kOne, "Stop Recording"},
    {"mnuRecordpopup2", "mnuEncode", kOne, "Encode MP3"},
    {"mnuRecordpopup2", "mnuBurnCD", kOne, "Burn CD"},
    {"mnusngwriPopup1", "mnuNewscoreSW", kOne, "New Score"},
    {"mnusngwriPopup1", "mnuOpenscoreSW", kOne, "Open Score"},
    {"mnusngwriPopup1", "mnuSavescoreASSW", kOne, "Save Score As"},
    {"mnusngwriPopup1", "mnuOpenLyricsSW", kOne, "Open Lyrics"},
    {"mnusngwriPopup1", "mnuSaveLyricsSW", kOne, "Save  Lyrics"},
    {"mnusngwriPopup1", "mnuPrinttSW", kOne, "Print Score"},
    {"mnusngwriPopup1", "mnuCloseSW", kOne, "Close Songwriter"},
    {"mnusngwriPopup2", "mnuCurrentNotesSW", kOne, "Current Notes"},
    {"mnusngwriPopup2", "mnuAddPageSW", kOne, "Add Page"},
    {"mnuTextSW", "mnuAddTextSW", kOne, "Add Text"},
    {"mnuTextSW", "mnuEditTextSW", kOne, "Edit Text"},
    {"mnuTextSW", "mnuResetTextSW", kOne, "Reset Text"},
});

struct MenuRowOf {
    const char* popup;
    const char* name;
    const char* caption;
};
constexpr auto kSubmenus = std::to_array<MenuRowOf>({
    {"mnupopup9", "mnuNotestyle", "Notation Style"},
    {"mnupopup9", "mnuInterface", "Appearance"},
    {"mnupopup9", "mnuButtons", "Button Styles"},
    {"mnupopup9", "mnuXPtooltextstyle", "Tooltext Style"},
    {"mnusngwriPopup2", "mnuKeySW", "Key"},
    {"mnusngwriPopup2", "mnuTextSW", "Text/Lyrics"},
    {"mnusngwriPopup3", "mnusngwriSetup", "Setup Toolbar"},
});
constexpr auto kOpeners = std::to_array<MenuRowOf>({
    {"mnupopup6", "Command1", "File"},
    {"mnupopup7", "Command2", "Edit"},
    {"mnupopup10", "Command3", "Help"},
    {"mnupopup9", "Command4", "Setup"},
    {"mnupopup11", "Command5", "Poli/erase/mnu"},
    {"mnupopup8", "Command7", "Play"},
    {"mnukeybdpopup1", "Command8", "Keyboard1"},
    {"mnukeybdpopup2", "Command9", "Keyboard2"},
    {"mnukeybdpopup3", "Command10", "Keyboard3"},
    {"mnuRecordpopup1", "cmdRecord1", ""},
    {"mnuRecordpopup2", "cmdRecord2", ""},
    {"mnusngwriPopup1", "Cmdsongwriter1", ""},
    {"mnusngwriPopup2", "Cmdsongwriter2", ""},
    {"mnusngwriPopup3", "Cmdsongwriter3", ""},
});
constexpr std::array kKeys{"mnuCSW", "mnuGSW",     "mnuDSW",     "mnuASW",     "mnuESW",     "mnuBSW",
                           "mnuFSW", "mnuBflatSW", "mnuEflatSW", "mnuAflatSW", "mnuDflatSW", "mnuGflatSW"};
constexpr std::array kSeparators{"mnuspc11", "mnuspc12", "mnuspc13", "mnuspc14",
                                 "mnuSpc21", "mnuSpc22", "mnuSpc23", "mnuSpc24"};

/// Without the shortcut, which follows a tab.
std::string captionOf(const QAction& action) {
    return action.text().section(QLatin1Char('\t'), 0, 0).toStdString();
}
/// The ticked entries of a control array.
std::vector<int> ticked(const Frmmenu& menu, std::string_view array) {
    std::vector<int> list;
    for (const MenuRow& row : menuRows())
        if (row.name == array && menu.item(array, row.index).isChecked())
            list.push_back(row.index);
    return list;
}
} // namespace

class FrmmenuTest : public testing::Test {
protected:
    MemorySettings settings;
    Frmmenu menu;
};

TEST_F(FrmmenuTest, EachItemStandsInItsPopupUnderItsCaption) {
    for (const ItemRow& row : kItems) {
        const QAction& item = menu.item(row.name, row.index);
        EXPECT_EQ(captionOf(item), row.caption) << row.name << row.index;
        EXPECT_TRUE(menu.popup(row.popup).actions().contains(&item)) << row.name << row.index;
    }
}

TEST_F(FrmmenuTest, TheKeysOfTheSongwriterStandInTheirOwnMenu) {
    EXPECT_EQ(menu.popup("mnuKeySW").actions().size(), static_cast<int>(kKeys.size()));
    std::set<std::string> captions;
    for (const char* key : kKeys) {
        EXPECT_TRUE(menu.popup("mnuKeySW").actions().contains(&menu.item(key))) << key;
        captions.insert(captionOf(menu.item(key)));
    }
    EXPECT_EQ(captions.size(), kKeys.size()) << "no two keys are called the same";
}

TEST_F(FrmmenuTest, SubmenusHangUnderTheirCaptions) {
    for (const MenuRowOf& row : kSubmenus) {
        EXPECT_EQ(menu.popup(row.name).title(), row.caption);
        EXPECT_TRUE(menu.popup(row.popup).actions().contains(menu.popup(row.name).menuAction())) << row.name;
    }
}

TEST_F(FrmmenuTest, AllSeparatorsAreThere) {
    std::multiset<std::string> found;
    for (const char* popup : {"mnupopup6", "mnupopup7", "mnupopup8", "mnupopup9", "mnuNotestyle"})
        for (const QAction* action : menu.popup(popup).actions())
            if (action->isSeparator())
                found.insert(action->objectName().toStdString());
    EXPECT_EQ(found, std::multiset<std::string>(kSeparators.begin(), kSeparators.end()));
}

TEST_F(FrmmenuTest, EachOpenerOpensItsPopup) {
    for (const MenuRowOf& row : kOpeners) {
        const auto found = std::ranges::find(menuOpeners(), std::string_view(row.name), &MenuOpener::name);
        ASSERT_NE(found, menuOpeners().end()) << row.name;
        EXPECT_EQ(found->popup, row.popup) << row.name;
        EXPECT_EQ(found->caption, row.caption) << row.name;
    }
    for (const MenuOpener& opener : menuOpeners())
        EXPECT_FALSE(menu.popup(opener.popup).isEmpty()) << opener.name;
}

TEST_F(FrmmenuTest, AnItemThatNothingIsBoundToIsDisabled) {
    for (const ItemRow& row : kItems)
        EXPECT_FALSE(menu.item(row.name, row.index).isEnabled()) << row.name;
    int pressed = 0;
    menu.bind("mnuSkin", 3, [&] { ++pressed; });
    EXPECT_TRUE(menu.item("mnuSkin", 3).isEnabled());
    EXPECT_FALSE(menu.item("mnuSkin", 4).isEnabled());
    menu.item("mnuSkin", 3).trigger();
    EXPECT_EQ(pressed, 1);
    menu.item("mnuSkin", 4).trigger();
    EXPECT_EQ(pressed, 1);
}

TEST_F(FrmmenuTest, AnItemOfTwoPopupsIsOne) {
    for (const char* name : {"mnuerase", "mnuMenu", "mnuTips"})
        for (const char* popup : {"mnupopup7", "mnupopup11"})
            EXPECT_TRUE(menu.popup(popup).actions().contains(&menu.item(name))) << name << " in " << popup;
}

TEST_F(FrmmenuTest, PreparingRunsBeforeAPopupOpens) {
    int prepared = 0;
    menu.onPrepare([&] { ++prepared; });
    emit menu.popup("mnupopup9").aboutToShow();
    EXPECT_EQ(prepared, 1);
}

TEST_F(FrmmenuTest, TheTickOfThePercussionFollowsItsTableau) {
    for (const bool shown : {true, false, true}) {
        menu.prepare(settings, shown);
        EXPECT_EQ(menu.item("mnuPercussion").isChecked(), shown);
    }
}

TEST_F(FrmmenuTest, TicksFollowTheSettings) {
    for (const std::int16_t skin : {1, 5, 8}) {
        settings::save(settings, settings::Skin_type, skin);
        menu.prepare(settings, true);
        EXPECT_THAT(ticked(menu, "mnuSkin"), testing::ElementsAre(skin));
    }
    for (const std::int16_t style : {2, 6}) {
        settings::save(settings, settings::Skin_buttons, style);
        menu.prepare(settings, true);
        EXPECT_THAT(ticked(menu, "mnuButton"), testing::ElementsAre(style));
    }
    for (const std::int16_t style : {0, 1, 2}) {
        settings::save(settings, settings::ToolText_type, style);
        menu.prepare(settings, true);
        EXPECT_THAT(ticked(menu, "mnuXPtooltext"), testing::ElementsAre(style));
    }
    for (const bool shown : {false, true}) {
        settings::save(settings, settings::Editing_Toolbar, shown);
        menu.prepare(settings, true);
        EXPECT_EQ(menu.item("mnuEdit").isChecked(), shown);
    }
}

TEST_F(FrmmenuTest, AStoredSkinThatThereIsNoneOfTicksNone) {
    settings::save(settings, settings::Skin_type, 9);
    menu.prepare(settings, true);
    EXPECT_THAT(ticked(menu, "mnuSkin"), testing::IsEmpty());
}

TEST_F(FrmmenuTest, NoButtonStyleIsTickedUntilTheUserPicksOne) {
    menu.prepare(settings, true);
    EXPECT_THAT(ticked(menu, "mnuButton"), testing::IsEmpty());
}

TEST_F(FrmmenuTest, AccidentalsBelongToTraditionalNotation) {
    for (const std::int16_t style : {0, 1})
        for (const bool accidentals : {true, false}) {
            settings::save(settings, settings::Notationstyle, style);
            settings::save(settings, settings::Accidentals, accidentals);
            for (const char* name : {"mnuAccidentals", "mnuNoAccidentals"})
                menu.bind(name, [] {});
            menu.prepare(settings, true);
            EXPECT_EQ(menu.item("mnuNotestyle1").isChecked(), style == 0);
            EXPECT_EQ(menu.item("mnuNotestyle2").isChecked(), style == 1);
            EXPECT_EQ(menu.item("mnuAccidentals").isEnabled(), style == 1);
            EXPECT_EQ(menu.item("mnuNoAccidentals").isEnabled(), style == 1);
            EXPECT_EQ(menu.item("mnuAccidentals").isChecked(), accidentals);
            EXPECT_EQ(menu.item("mnuNoAccidentals").isChecked(), !accidentals);
        }
}

TEST_F(FrmmenuTest, TheEntryOfRectangularTipsKeepsItsTick) {
    menu.tickTooltextStyle(0);
    menu.tickTooltextStyle(1);
    EXPECT_THAT(ticked(menu, "mnuXPtooltext"), testing::ElementsAre(0, 1)) << "it is meant";
    menu.tickTooltextStyle(2);
    EXPECT_THAT(ticked(menu, "mnuXPtooltext"), testing::ElementsAre(0, 2));
}
