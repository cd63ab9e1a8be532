// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/Frmmenu.h"

#include "base/QtText.h"

#include <QAction>

namespace velmora {

namespace {
/// "mnuSkin(3)" for an item of a control array.
QString objectNameOf(std::string_view name, int index) {
    return index < 0 ? toQString(name) : QStringLiteral("%1(%2)").arg(toQString(name)).arg(index);
}
} // namespace

Frmmenu::Frmmenu() {
    for (const MenuRow& row : menuRows()) {
        addPopup(row.popup);
        if (row.kind == MenuRow::Kind::Submenu)
            addPopup(row.name);
    }
    for (const MenuRow& row : menuRows())
        addRow(row);
    for (const auto& [name, menu] : popups_)
        menu->menuAction()->setEnabled(!menu->isEmpty());
}

Frmmenu::~Frmmenu() = default;

void Frmmenu::addPopup(std::string_view name) {
    auto& made = popups_[name];
    if (made)
        return;
    made = std::make_unique<QMenu>();
    made->setObjectName(toQString(name));
    made->setToolTipsVisible(true); // of those that have one
    QObject::connect(made.get(), &QMenu::aboutToShow, made.get(), [this, name] { prepare(name); });
}

void Frmmenu::addRow(const MenuRow& row) {
    QMenu& menu = popup(row.popup);
    if (row.kind == MenuRow::Kind::Separator) {
        menu.addSeparator()->setObjectName(toQString(row.name));
        return;
    }
    if (row.kind == MenuRow::Kind::Submenu) {
        popup(row.name).setTitle(toQString(row.caption));
        menu.addMenu(&popup(row.name));
        return;
    }
    Item& item = items_[{row.name, row.index}];
    if (!item.action) {
        QString text = toQString(row.caption);
        if (!row.shortcut.empty())
            text += QLatin1Char('\t') + toQString(row.shortcut);
        item.action = new QAction(text, &menu);
        item.action->setObjectName(objectNameOf(row.name, row.index));
        item.action->setCheckable(row.kind != MenuRow::Kind::Command);
        showBound(item, false);
        QObject::connect(item.action, &QAction::triggered, item.action, [&item] {
            if (item.bindings.empty())
                return;
            const Routine routine = item.bindings.back().routine; // it may end its own owner
            routine();
        });
    }
    menu.addAction(item.action);
}

QMenu& Frmmenu::popup(std::string_view name) const {
    return *popups_.at(name);
}

QAction& Frmmenu::item(std::string_view name, int index) const {
    return *items_.at({name, index}).action;
}

void Frmmenu::bind(QObject& owner, std::string_view name, int index, Routine routine) {
    Item& item = items_.at({name, index});
    if (!item.bindings.empty())
        item.bindings.back().enabled = item.action->isEnabled();
    item.bindings.push_back({&owner, std::move(routine)});
    showBound(item, true);
    follow(owner);
}

void Frmmenu::showBound(const Item& item, bool enabled) {
    item.action->setEnabled(enabled);
    const bool toCome = item.bindings.empty() && !item.action->text().isEmpty();
    item.action->setToolTip(toCome ? toQString(kToCome) : QString());
}

void Frmmenu::onPrepare(QObject& owner, std::string_view popup, Routine prepare) {
    prepares_.push_back({&owner, popup, std::move(prepare)});
    follow(owner);
}

void Frmmenu::prepare(std::string_view popup) const {
    const auto now = prepares_; // a routine may add another
    for (const Prepare& each : now) {
        if (each.popup.empty() || each.popup == popup)
            each.routine();
    }
}

void Frmmenu::follow(QObject& owner) {
    if (owners_.insert(&owner).second)
        QObject::connect(&owner, &QObject::destroyed, &guard_, [this, gone = &owner] { forget(gone); });
}

void Frmmenu::forget(const QObject* owner) {
    owners_.erase(owner);
    for (const auto& [name, of] : entryOwners_)
        if (of == owner) {
            popup(name).clear();
            popup(name).menuAction()->setEnabled(false);
        }
    std::erase_if(entryOwners_, [owner](const auto& each) { return each.second == owner; });
    std::erase_if(prepares_, [owner](const Prepare& each) { return each.owner == owner; });
    for (auto& [place, item] : items_) {
        const auto ofOwner = [owner](const Binding& each) { return each.owner == owner; };
        const bool counted = !item.bindings.empty() && ofOwner(item.bindings.back());
        std::erase_if(item.bindings, ofOwner);
        if (counted)
            showBound(item, !item.bindings.empty() && item.bindings.back().enabled);
    }
}

void Frmmenu::setEntries(QObject& owner, std::string_view name, const std::vector<Entry>& entries) {
    QMenu& menu = popup(name);
    menu.clear();
    for (const Entry& entry : entries) {
        const QAction* const action =
            menu.addAction(QString(entry.caption).replace(u'&', QLatin1String("&&")));
        QObject::connect(action, &QAction::triggered, action, [routine = entry.routine] {
            const Routine last = routine; // it may change the entries
            last();
        });
    }
    menu.menuAction()->setEnabled(!entries.empty());
    entryOwners_.insert_or_assign(popups_.find(name)->first, &owner);
    follow(owner);
}

void Frmmenu::choose(std::string_view array, int index) {
    for (const auto& [place, item] : items_)
        if (place.first == array && place.second >= 0)
            item.action->setChecked(place.second == index);
}

} // namespace velmora
