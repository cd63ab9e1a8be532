// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/Frmmenu.h"

#include <QMenu>

#include <memory>
#include <set>
#include <string>
#include <vector>

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
    {"mnuRecordpopup3", "mnuRecordHelp", kOne, "Help"},
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
    {"mnupopup6", "mnuOpenDemo", "Open a demo"},
    {"mnupopup6", "mnuRecent", "Recent files"},
    {"mnupopup9", "mnuNotestyle", "Notation Style"},
    {"mnupopup9", "mnuInterface", "Appearance"},
    {"mnupopup9", "mnuButtons", "Button Styles"},
    {"mnupopup9", "mnuXPtooltextstyle", "Tooltext Style"},
    {"mnusngwriPopup2", "mnuKeySW", "Key"},
    {"mnusngwriPopup2", "mnuTextSW", "Text/Lyrics"},
    {"mnusngwriPopup3", "mnusngwriSetup", "Setup Toolbar"},
});
constexpr std::array kKeys{"mnuCSW",     "mnuGSW",     "mnuDSW",       "mnuASW",     "mnuESW",
                           "mnuBSW",     "mnuFSW",     "mnuBflatSW",   "mnuEflatSW", "mnuAflatSW",
                           "mnuDflatSW", "mnuGflatSW", "mnuByItselfSW"};
constexpr std::array kSeparators{"mnuspc11", "mnuspc12", "mnuspc13", "mnuspc14", "mnuspc15",
                                 "mnuSpc21", "mnuSpc22", "mnuSpc23", "mnuSpc24"};

/// Without the shortcut, which follows a tab.
std::string captionOf(const QAction& action) {
    return action.text().section(QLatin1Char('\t'), 0, 0).toStdString();
}
} // namespace

class FrmmenuTest : public testing::Test {
protected:
    Frmmenu menu;
    QObject window; ///< an owner of bindings
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

TEST_F(FrmmenuTest, AnItemThatNothingIsBoundToIsDisabled) {
    for (const ItemRow& row : kItems)
        EXPECT_FALSE(menu.item(row.name, row.index).isEnabled()) << row.name;
    int pressed = 0;
    menu.bind(window, "mnuSkin", 3, [&] { ++pressed; });
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

TEST_F(FrmmenuTest, ABindingDiesWithItsOwner) {
    int pressed = 0;
    {
        QObject owner;
        menu.bind(owner, "mnuOpen", [&] { ++pressed; });
        menu.bind(owner, "mnuSkin", 3, [&] { ++pressed; });
        menu.item("mnuOpen").trigger();
    }
    for (QAction* item : {&menu.item("mnuOpen"), &menu.item("mnuSkin", 3)}) {
        EXPECT_FALSE(item->isEnabled());
        item->trigger();
        item->setEnabled(true);
        item->trigger();
    }
    EXPECT_EQ(pressed, 1);
}

TEST_F(FrmmenuTest, TheLatestBindingCountsAndThenTheOneBeforeIt) {
    std::vector<std::string> pressed;
    const auto bind = [&](QObject& owner, const char* name) {
        menu.bind(owner, "mnuOpen", [&pressed, name] { pressed.emplace_back(name); });
    };
    auto second = std::make_unique<QObject>();
    auto third = std::make_unique<QObject>();
    bind(window, "first");
    bind(*second, "second");
    bind(*third, "third");
    menu.item("mnuOpen").trigger();
    second.reset();
    menu.item("mnuOpen").trigger();
    third.reset();
    menu.item("mnuOpen").trigger();
    EXPECT_THAT(pressed, testing::ElementsAre("third", "third", "first"));
}

TEST_F(FrmmenuTest, AnItemThatComesBackIsEnabledAsItWasLeft) {
    menu.bind(window, "undo", [] {});
    for (const bool enabled : {false, true}) {
        menu.item("undo").setEnabled(enabled);
        {
            QObject other;
            menu.bind(other, "undo", [] {});
            EXPECT_TRUE(menu.item("undo").isEnabled());
            menu.item("undo").setEnabled(!enabled);
        }
        EXPECT_EQ(menu.item("undo").isEnabled(), enabled);
    }
}

TEST_F(FrmmenuTest, ARoutineMayEndItsOwner) {
    auto owner = std::make_unique<QObject>();
    std::string said;
    menu.bind(*owner, "RecordStop", [&, words = std::string("words that are kept with the routine")] {
        owner.reset();
        said = words;
    });
    menu.item("RecordStop").trigger();
    EXPECT_EQ(said, "words that are kept with the routine");
    EXPECT_FALSE(menu.item("RecordStop").isEnabled());
}

TEST_F(FrmmenuTest, AnOwnerMayOutliveTheMenus) {
    QObject owner;
    {
        Frmmenu brief;
        brief.bind(owner, "mnuOpen", [] {});
        brief.onPrepare(owner, [] {});
    }
    menu.bind(owner, "mnuOpen", [] {});
    EXPECT_TRUE(menu.item("mnuOpen").isEnabled());
}

TEST_F(FrmmenuTest, SeveralPrepareAPopupAndEachAsLongAsItLives) {
    std::string prepared;
    const auto opened = [&](const char* popup) {
        prepared.clear();
        emit menu.popup(popup).aboutToShow();
        return prepared;
    };
    auto other = std::make_unique<QObject>();
    menu.onPrepare(window, [&] { prepared += "all "; });
    menu.onPrepare(*other, "mnupopup9", [&] { prepared += "tools "; });
    menu.onPrepare(*other, [&] { prepared += "other "; });
    EXPECT_EQ(opened("mnupopup9"), "all tools other ");
    EXPECT_EQ(opened("mnupopup6"), "all other ");
    other.reset();
    EXPECT_EQ(opened("mnupopup9"), "all ");
}

TEST_F(FrmmenuTest, OneEntryOfAControlArrayIsChosen) {
    for (const int skin : {1, 5, 8}) {
        menu.choose("mnuSkin", skin);
        for (const MenuRow& row : menuRows())
            if (row.index >= 0) {
                EXPECT_EQ(menu.item(row.name, row.index).isChecked(),
                          row.name == "mnuSkin" && row.index == skin)
                    << row.name << row.index;
            }
    }
}

TEST_F(FrmmenuTest, ASubmenuMayGetOtherEntriesWhichAreShownAsTheyAre) {
    QMenu& recent = menu.popup("mnuRecent");
    EXPECT_FALSE(recent.menuAction()->isEnabled()) << "nothing is in it yet";
    std::vector<std::string> pressed;
    const auto entry = [&](const char* name) {
        return Frmmenu::Entry{name, [&pressed, name] { pressed.emplace_back(name); }};
    };
    menu.setEntries(window, "mnuRecent", {entry("rock & roll.sng\t~/Songs"), entry("two.sng")});
    ASSERT_EQ(recent.actions().size(), 2);
    EXPECT_TRUE(recent.menuAction()->isEnabled());
    EXPECT_EQ(recent.actions()[0]->text(), "rock && roll.sng\t~/Songs");
    recent.actions()[1]->trigger();
    menu.setEntries(window, "mnuRecent", {entry("three.sng")});
    ASSERT_EQ(recent.actions().size(), 1);
    recent.actions()[0]->trigger();
    EXPECT_THAT(pressed, testing::ElementsAre("two.sng", "three.sng"));
    menu.setEntries(window, "mnuRecent", {});
    EXPECT_FALSE(recent.menuAction()->isEnabled());
}

TEST_F(FrmmenuTest, AnEntryMayChangeTheEntriesAndTheyGoWithTheirOwner) {
    QMenu& recent = menu.popup("mnuRecent");
    {
        QObject owner;
        std::string said;
        menu.setEntries(owner, "mnuRecent",
                        {{"one.sng", [&, words = std::string("words that are kept with the routine")] {
                              menu.setEntries(owner, "mnuRecent", {{"two.sng", [] {}}});
                              said = words;
                          }}});
        recent.actions()[0]->trigger();
        EXPECT_EQ(said, "words that are kept with the routine");
        ASSERT_EQ(recent.actions().size(), 1);
        EXPECT_EQ(recent.actions()[0]->text(), "two.sng");
    }
    EXPECT_TRUE(recent.isEmpty());
    EXPECT_FALSE(recent.menuAction()->isEnabled());
}

TEST(FrmmenuToComeTest, AnItemThatNothingIsBoundToSaysThatItIsToCome) {
    Frmmenu menu;
    QAction& item = menu.item("mnuOpen");
    EXPECT_EQ(item.toolTip(), "Comes in a later version");
    EXPECT_TRUE(menu.popup("mnupopup6").toolTipsVisible());
    {
        QObject owner;
        menu.bind(owner, "mnuOpen", [] {});
        EXPECT_NE(item.toolTip(), "Comes in a later version");
    }
    EXPECT_EQ(item.toolTip(), "Comes in a later version");
}
