// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/Frmmenu.h"

#include "base/QtText.h"
#include "base/Settings.h"

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
        for (const std::string_view menu :
             {row.popup, row.kind == MenuRow::Kind::Submenu ? row.name : row.popup}) {
            auto& made = popups_[menu];
            if (made)
                continue;
            made = std::make_unique<QMenu>();
            made->setObjectName(toQString(menu));
            QObject::connect(made.get(), &QMenu::aboutToShow, made.get(), [this] {
                if (prepare_)
                    prepare_();
            });
        }
    }
    for (const MenuRow& row : menuRows())
        addRow(row);
}

Frmmenu::~Frmmenu() = default;

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
    auto& item = items_[{row.name, row.index}];
    if (!item) {
        QString text = toQString(row.caption);
        if (!row.shortcut.empty())
            text += QLatin1Char('\t') + toQString(row.shortcut);
        item = new QAction(text, &menu);
        item->setObjectName(objectNameOf(row.name, row.index));
        item->setCheckable(row.kind != MenuRow::Kind::Command);
        item->setEnabled(false);
    }
    menu.addAction(item);
}

QMenu& Frmmenu::popup(std::string_view name) const {
    return *popups_.at(name);
}

QAction& Frmmenu::item(std::string_view name, int index) const {
    return *items_.at({name, index});
}

void Frmmenu::bind(std::string_view name, int index, std::function<void()> routine) {
    QAction& bound = item(name, index);
    QObject::connect(&bound, &QAction::triggered, &bound, [routine = std::move(routine)] { routine(); });
    bound.setEnabled(true);
}

void Frmmenu::prepare(const SettingsStore& settings, bool percussionShown) {
    const bool traditional = settings::read(settings, settings::Notationstyle) == 1;
    const bool accidentals = settings::read(settings, settings::Accidentals);
    item("mnuPercussion").setChecked(percussionShown);
    item("mnuEdit").setChecked(settings::read(settings, settings::Editing_Toolbar, true));
    // What stands for no skin ticks none, though a skin is shown.
    choose("mnuSkin", settings::stored(settings, settings::Skin_type));
    choose("mnuButton", settings::read(settings, settings::Skin_buttons));
    choose("mnuXPtooltext", settings::read(settings, settings::ToolText_type));
    item("mnuNotestyle1").setChecked(!traditional);
    item("mnuNotestyle2").setChecked(traditional);
    for (const auto name : {"mnuAccidentals", "mnuNoAccidentals"})
        item(name).setEnabled(traditional);
    item("mnuAccidentals").setChecked(accidentals);
    item("mnuNoAccidentals").setChecked(!accidentals);
}

void Frmmenu::choose(std::string_view array, int index) {
    for (const auto& [place, action] : items_)
        if (place.first == array && place.second >= 0)
            action->setChecked(place.second == index);
}

void Frmmenu::tickTooltextStyle(int index) {
    // Entry 0 keeps its tick, and there is no entry 3: that is meant.
    for (int entry = 1; entry <= 3; ++entry)
        if (const auto found = items_.find({"mnuXPtooltext", entry}); found != items_.end())
            found->second->setChecked(false);
    item("mnuXPtooltext", index).setChecked(true);
}

} // namespace velmora
