// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QMenu>

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

class QAction;

namespace velmora {

class SettingsStore;

/// One line of a popup.
struct MenuRow {
    enum class Kind : unsigned char { Command, Check, Choice, Submenu, Separator };

    std::string_view popup; ///< the popup or sub-menu that it stands in
    std::string_view name;  ///< of the item; of the sub-menu that it opens
    int index = -1;         ///< in a control array, or -1
    std::string_view caption;
    Kind kind = Kind::Command;
    std::string_view shortcut; ///< shown at the right; the window that binds the item makes it work
};

/// All popups, line by line.
[[nodiscard]] const std::vector<MenuRow>& menuRows();

/// All popup menus of the program. It owns the items and their check marks and knows no window: windows bind
/// their routines to items. An item that nothing is bound to is shown as disabled.
class Frmmenu {
public:
    Frmmenu();
    ~Frmmenu();
    Frmmenu(const Frmmenu&) = delete;
    Frmmenu& operator=(const Frmmenu&) = delete;

    /// The popup of that name, "mnupopup6" say, or of a sub-menu.
    [[nodiscard]] QMenu& popup(std::string_view name) const;
    /// The item of that name, and of that index in a control array.
    [[nodiscard]] QAction& item(std::string_view name, int index = -1) const;

    /// Has @p routine called when the item is chosen, by mouse, key or screen reader, and enables it.
    void bind(std::string_view name, std::function<void()> routine) { bind(name, -1, std::move(routine)); }
    void bind(std::string_view name, int index, std::function<void()> routine);

    /// Runs before a popup opens: check marks are set here.
    void onPrepare(std::function<void()> prepare) { prepare_ = std::move(prepare); }

    /// Sets the check marks that follow the settings, and that of the percussion Tableau.
    void prepare(const SettingsStore& settings, bool percussionShown);
    /// Ticks the one entry of a control array, by its index.
    void choose(std::string_view array, int index);
    /// What the entry of a tool tip style does with the ticks: those of entries 1 to 3 go, then its own is
    /// set.
    void tickTooltextStyle(int index);

private:
    void addRow(const MenuRow& row);

    std::map<std::string_view, std::unique_ptr<QMenu>> popups_;
    std::map<std::pair<std::string_view, int>, QAction*> items_;
    std::function<void()> prepare_;
};

} // namespace velmora
