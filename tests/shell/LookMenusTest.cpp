// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/LookMenus.h"

#include "base/Settings.h"
#include "shell/Frmmenu.h"
#include "shell/frmskins.h"
#include "tests/support/MemorySettings.h"

#include <QMenu>

#include <memory>
#include <vector>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
class LookMenusTest : public testing::Test {
protected:
    void bind() { bindLooks(*window, menu, skins, settings); }
    void open() { emit menu.popup("mnuInterface").aboutToShow(); }
    /// The ticked entries of a control array.
    std::vector<int> ticked(std::string_view array) {
        std::vector<int> list;
        for (const MenuRow& row : menuRows())
            if (row.name == array && menu.item(array, row.index).isChecked())
                list.push_back(row.index);
        return list;
    }

    MemorySettings settings;
    frmskins skins{settings};
    Frmmenu menu;
    std::unique_ptr<QObject> window = std::make_unique<QObject>();
};
} // namespace

TEST_F(LookMenusTest, TicksFollowTheSettings) {
    bind();
    for (const std::int16_t skin : {1, 5, 8}) {
        settings::save(settings, settings::Skin_type, skin);
        open();
        EXPECT_THAT(ticked("mnuSkin"), testing::ElementsAre(skin));
    }
    for (const std::int16_t style : {2, 6}) {
        settings::save(settings, settings::Skin_buttons, style);
        open();
        EXPECT_THAT(ticked("mnuButton"), testing::ElementsAre(style));
    }
    for (const std::int16_t style : {0, 1, 2}) {
        settings::save(settings, settings::ToolText_type, style);
        open();
        EXPECT_THAT(ticked("mnuXPtooltext"), testing::ElementsAre(style));
    }
}

TEST_F(LookMenusTest, TicksAreSetFromTheFirst) {
    settings::save(settings, settings::Skin_type, 5);
    bind();
    EXPECT_THAT(ticked("mnuSkin"), testing::ElementsAre(5));
    EXPECT_THAT(ticked("mnuXPtooltext"), testing::ElementsAre(1));
}

TEST_F(LookMenusTest, NoButtonStyleIsTickedUntilTheUserPicksOne) {
    bind();
    EXPECT_THAT(ticked("mnuButton"), testing::IsEmpty());
    menu.item("mnuButton", 4).trigger();
    open();
    EXPECT_THAT(ticked("mnuButton"), testing::ElementsAre(4));
}

TEST_F(LookMenusTest, EveryEntryIsBoundAndKeepsItsChoice) {
    bind();
    for (const MenuRow& row : menuRows()) {
        QAction* entry = row.index < 0 ? nullptr : &menu.item(row.name, row.index);
        if (!entry)
            continue;
        EXPECT_TRUE(entry->isEnabled()) << row.name << row.index;
        entry->trigger();
        open();
        EXPECT_THAT(ticked(row.name), testing::ElementsAre(row.index)) << row.name;
    }
    EXPECT_EQ(skins.look().skinType, 8);
    EXPECT_EQ(skins.look().buttonStyle, 6);
    EXPECT_EQ(settings::read(settings, settings::ToolText_type), 2);
}

TEST_F(LookMenusTest, TheEntryOfRectangularTipsKeepsItsTickUntilAMenuIsPrepared) {
    bind();
    for (const int style : {0, 1})
        menu.item("mnuXPtooltext", style).trigger();
    EXPECT_THAT(ticked("mnuXPtooltext"), testing::ElementsAre(0, 1)) << "it is meant";
    open();
    EXPECT_THAT(ticked("mnuXPtooltext"), testing::ElementsAre(1));
}

TEST_F(LookMenusTest, NothingIsChosenOnceTheWindowIsGone) {
    bind();
    window.reset();
    menu.item("mnuSkin", 5).trigger();
    EXPECT_FALSE(menu.item("mnuSkin", 5).isEnabled());
    EXPECT_EQ(skins.look().skinType, 1);
}

TEST_F(LookMenusTest, AStoredSkinThatThereIsNoneOfTicksNone) {
    settings::save(settings, settings::Skin_type, 9);
    bind();
    open();
    EXPECT_THAT(ticked("mnuSkin"), testing::IsEmpty());
}
