// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/frmskins.h"

#include "base/Settings.h"
#include "shell/SkinPainter.h"
#include "shell/SkinStyle.h"
#include "tests/support/MemorySettings.h"

#include <QApplication>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
class CountingUser : public SkinUser {
public:
    void appearanceChanged() override { ++changes; }
    int changes = 0;
};
std::string stored(const MemorySettings& settings, const char* key) {
    return settings.GetSetting("Settings", key, "none");
}
} // namespace

TEST(frmskinsTest, WithoutSettingsTheFirstSkinAndStyleAreChosen) {
    MemorySettings settings;
    const frmskins skins(settings);
    EXPECT_EQ(skins.look().skinType, 1);
    EXPECT_EQ(skins.look().buttonStyle, 1);
    EXPECT_EQ(stored(settings, "Skin type"), "none") << "reading saves nothing";
}

TEST(frmskinsTest, StoredSkinsAreClampedToThoseThatExist) {
    struct Row {
        std::int16_t stored;
        int chosen;
    };
    for (const Row row : {Row{1, 1}, {8, 8}, {0, 1}, {-5, 1}, {9, 8}, {32767, 8}}) {
        MemorySettings settings;
        settings::save(settings, settings::Skin_type, row.stored);
        EXPECT_EQ(frmskins(settings).look().skinType, row.chosen) << row.stored;
    }
}

TEST(frmskinsTest, AStyleThatNoEntryStandsForLooksLikeTheFirst) {
    for (const std::int16_t style : {0, 1, 7, -1, 999}) {
        MemorySettings settings;
        settings::save(settings, settings::Skin_buttons, style);
        EXPECT_EQ(&frmskins(settings).look().buttons(), &kButtonStyles[0]) << style;
    }
    for (const std::int16_t style : {2, 3, 4, 5, 6}) {
        MemorySettings settings;
        settings::save(settings, settings::Skin_buttons, style);
        EXPECT_EQ(&frmskins(settings).look().buttons(), &kButtonStyles[static_cast<std::size_t>(style - 1)]);
    }
}

TEST(frmskinsTest, AChosenSkinIsSavedAndShownByAll) {
    MemorySettings settings;
    frmskins skins(settings);
    CountingUser one;
    CountingUser other;
    skins.add(one);
    skins.add(other);
    skins.Skintype_Click(6);
    EXPECT_EQ(stored(settings, "Skin type"), "6");
    EXPECT_EQ(skins.look().skinType, 6);
    EXPECT_EQ(one.changes, 1);
    EXPECT_EQ(other.changes, 1);
    skins.remove(one);
    skins.Skintype_Click(2);
    EXPECT_EQ(one.changes, 1);
    EXPECT_EQ(other.changes, 2);
}

TEST(frmskinsTest, AChosenButtonStyleIsSavedAndShownByAll) {
    MemorySettings settings;
    frmskins skins(settings);
    CountingUser user;
    skins.add(user);
    skins.Btnstyle_Click(4);
    EXPECT_EQ(stored(settings, "Skin buttons"), "4");
    EXPECT_EQ(skins.look().buttons().caption, "Hidden");
    EXPECT_EQ(user.changes, 1);
}

TEST(frmskinsTest, TheApplicationTakesStyleAndColours) {
    MemorySettings settings;
    frmskins skins(settings);
    EXPECT_NE(dynamic_cast<SkinStyle*>(QApplication::style()), nullptr);
    for (int type = 1; type <= kSkinCount; ++type) {
        skins.Skintype_Click(type);
        EXPECT_EQ(QApplication::palette().color(QPalette::WindowText), toQColor(skinOf(type).text));
        EXPECT_EQ(QApplication::palette().color(QPalette::Base), toQColor(skinOf(type).field));
    }
}
