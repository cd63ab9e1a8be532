// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QMenu>
#include <QObject>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

class QAction;

namespace velmora {

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

/// What the tips of a command say that nothing is bound to.
inline constexpr std::string_view kToCome = "Comes in a later version";

/// All popups, line by line.
[[nodiscard]] const std::vector<MenuRow>& menuRows();

/// All popup menus of the program. It owns the items and their check marks and knows no window: windows bind
/// their routines to items. An item that nothing is bound to is shown as disabled,
/// and its tip says that it is to come.
class Frmmenu {
public:
    using Routine = std::function<void()>;

    Frmmenu();
    ~Frmmenu();
    Frmmenu(const Frmmenu&) = delete;
    Frmmenu& operator=(const Frmmenu&) = delete;

    /// The popup of that name, "mnupopup6" say, or of a sub-menu.
    [[nodiscard]] QMenu& popup(std::string_view name) const;
    /// The item of that name, and of that index in a control array.
    [[nodiscard]] QAction& item(std::string_view name, int index = -1) const;

    /// Has @p routine called when the item is chosen, by mouse or screen reader, and enables it. The binding
    /// dies with @p owner: then the one before it counts again, enabled or not as it was left, and where
    /// there is none the item is disabled.
    void bind(QObject& owner, std::string_view name, Routine routine) {
        bind(owner, name, -1, std::move(routine));
    }
    void bind(QObject& owner, std::string_view name, int index, Routine routine);

    /// Runs before any popup opens, or before that one, as long as @p owner lives: check marks are set here.
    /// Of several the first that came runs first.
    void onPrepare(QObject& owner, Routine prepare) { onPrepare(owner, {}, std::move(prepare)); }
    void onPrepare(QObject& owner, std::string_view popup, Routine prepare);

    /// An entry of a sub-menu whose entries change.
    struct Entry {
        QString caption; ///< as it is to be read; with a tab before what stands at the right
        Routine routine;
    };
    /// Gives a sub-menu other entries. One without any can't be opened. They die with @p owner.
    void setEntries(QObject& owner, std::string_view popup, const std::vector<Entry>& entries);

    /// Ticks the one entry of a control array, by its index.
    void choose(std::string_view array, int index);

private:
    struct Binding {
        const QObject* owner;
        Routine routine;
        bool enabled = true; ///< how the item was left when a later binding took its place
    };
    struct Item {
        QAction* action = nullptr;
        std::vector<Binding> bindings; ///< the last one counts
    };
    struct Prepare {
        const QObject* owner;
        std::string_view popup; ///< blank for all
        Routine routine;
    };

    void addPopup(std::string_view name);
    void addRow(const MenuRow& row);
    void prepare(std::string_view popup) const;
    static void showBound(const Item& item, bool enabled);
    void follow(QObject& owner);
    void forget(const QObject* owner);

    std::map<std::string_view, std::unique_ptr<QMenu>> popups_;
    std::map<std::pair<std::string_view, int>, Item> items_;
    std::vector<Prepare> prepares_;
    std::map<std::string_view, const QObject*> entryOwners_; ///< by sub-menu
    std::set<const QObject*> owners_;
    QObject guard_; ///< ends what is heard of owners that outlive the menus
};

} // namespace velmora
