// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/frmskins.h"

#include "base/Settings.h"
#include "shell/SkinPainter.h"
#include "shell/SkinStyle.h"

#include <QApplication>

#include <algorithm>
#include <array>

namespace velmora {

namespace {
/// Parts to which a desktop's theme may give a font of their own, which goes before the application's.
constexpr std::array kThemedParts{"QMenu",         "QMenuBar",          "QMessageBox",  "QPushButton",
                                  "QToolButton",   "QCheckBox",         "QRadioButton", "QLabel",
                                  "QListView",     "QAbstractItemView", "QHeaderView",  "QComboLineEdit",
                                  "QComboMenuItem"};
} // namespace

static_assert(settings::Skin_type.range.most == kSkinCount);
static_assert(settings::Skin_buttons.range.most == kButtonStyles.size());

frmskins::frmskins(SettingsStore& settings)
    : settings_(settings)
    , look_{.skinType = settings::read(settings, settings::Skin_type),
            .buttonStyle = settings::read(settings, settings::Skin_buttons)} {
    style_ = new SkinStyle(look_); // Qt's to delete
    QApplication::setStyle(style_);
    QApplication::setFont(textFont());
    for (const char* part : kThemedParts)
        QApplication::setFont(textFont(), part);
    QApplication::setPalette(skinPalette(look_.skin()));
}

frmskins::~frmskins() {
    if (!style_ || QApplication::style() != style_)
        return;
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setPalette(QApplication::style()->standardPalette());
}

void frmskins::Skintype_Click(int index) {
    look_.skinType = std::clamp(index, 1, kSkinCount);
    settings::save(settings_, settings::Skin_type, static_cast<std::int16_t>(look_.skinType));
    applyToAll();
}

void frmskins::Btnstyle_Click(int index) {
    look_.buttonStyle = index;
    settings::save(settings_, settings::Skin_buttons, static_cast<std::int16_t>(index));
    applyToAll();
}

void frmskins::applyToAll() {
    QApplication::setPalette(skinPalette(look_.skin()));
    for (SkinUser* user : users_)
        user->appearanceChanged();
}

} // namespace velmora
