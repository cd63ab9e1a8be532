// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/LookMenus.h"

#include "base/Settings.h"
#include "shell/Frmmenu.h"
#include "shell/frmskins.h"

#include <QAction>

namespace velmora {

namespace {
constexpr int kFirstButtonStyle = 2; ///< the first one has no entry
constexpr std::int16_t kTooltextStyles = 3;

/// What the entry of a style does with the ticks: those of entries 1 to 3 go, then its own is set. Entry 0
/// keeps its tick until a menu is prepared anew, and there is no entry 3: that is meant.
void tickTooltextStyle(const Frmmenu& menu, int index) {
    for (int entry = 1; entry < kTooltextStyles; ++entry)
        menu.item("mnuXPtooltext", entry).setChecked(false);
    menu.item("mnuXPtooltext", index).setChecked(true);
}
} // namespace

void bindLooks(QObject& owner, Frmmenu& menu, frmskins& skins, SettingsStore& settings) {
    for (int skin = 1; skin <= kSkinCount; ++skin)
        menu.bind(owner, "mnuSkin", skin, [&skins, skin] { skins.Skintype_Click(skin); });
    for (int style = kFirstButtonStyle; style <= static_cast<int>(kButtonStyles.size()); ++style)
        menu.bind(owner, "mnuButton", style, [&skins, style] { skins.Btnstyle_Click(style); });
    for (std::int16_t style = 0; style < kTooltextStyles; ++style)
        menu.bind(owner, "mnuXPtooltext", style, [&menu, &settings, style] {
            tickTooltextStyle(menu, style);
            settings::save(settings, settings::ToolText_type, style);
        });
    const auto tick = [&menu, &settings] {
        // What stands for no skin ticks none, though a skin is shown.
        menu.choose("mnuSkin", settings::stored(settings, settings::Skin_type));
        menu.choose("mnuButton", settings::read(settings, settings::Skin_buttons));
        menu.choose("mnuXPtooltext", settings::read(settings, settings::ToolText_type));
    };
    menu.onPrepare(owner, tick);
    tick();
}

} // namespace velmora
