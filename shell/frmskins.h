// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/Appearance.h"

#include <QPointer>
#include <QStyle>

#include <vector>

namespace velmora {

class SettingsStore;

/// A window that takes the chosen skin.
class SkinUser {
public:
    virtual ~SkinUser() = default;

    /// The skin or the button style has changed: parts are placed and painted anew.
    virtual void appearanceChanged() = 0;
};

/// The hidden store of the art: which skin and which button style are chosen, and who shows them.
class frmskins {
public:
    /// Reads both from the settings and gives the application its style and colours.
    explicit frmskins(SettingsStore& settings);
    /// Gives them back: the style must not read what is gone.
    ~frmskins();
    frmskins(const frmskins&) = delete;
    frmskins& operator=(const frmskins&) = delete;

    [[nodiscard]] const Appearance& look() const { return look_; }

    /// The entries of the two menus. They keep the choice and repaint every open window.
    void Skintype_Click(int index);
    void Btnstyle_Click(int index);

    void add(SkinUser& window) { users_.push_back(&window); }
    void remove(SkinUser& window) { std::erase(users_, &window); }

private:
    void applyToAll();

    SettingsStore& settings_;
    Appearance look_;
    std::vector<SkinUser*> users_;
    QPointer<QStyle> style_;
};

} // namespace velmora
