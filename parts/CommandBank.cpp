// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/CommandBank.h"

#include "base/QtText.h"
#include "shell/ExToolTip.h"
#include "shell/Frmmenu.h"

#include <utility>

namespace velmora {

namespace {
/// The form that a button of the place has where there is room.
ButtonForm formAt(CommandPlace place, bool labelled) {
    switch (place) {
    case CommandPlace::BarRight:
        return labelled ? ButtonForm::IconAndText : ButtonForm::Icon;
    case CommandPlace::Tab:
        return ButtonForm::Tab;
    case CommandPlace::Maker:
    case CommandPlace::Effects:
    case CommandPlace::Editor:
    case CommandPlace::Strip:
        return ButtonForm::IconOverText;
    case CommandPlace::TextLine:
        return ButtonForm::Text;
    default:
        return ButtonForm::Icon;
    }
}
} // namespace

CommandBank::CommandBank(std::string_view name, std::span<const CommandRow> rows, const Appearance& look,
                         ExToolTip& tips, QWidget* parent)
    : rows_(rows)
    , tips_(tips)
    , routines_(rows.size()) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const CommandRow& row = rows[i];
        auto* button = new CommandButton(look, formAt(row.place, !row.label.empty()), parent);
        button->setObjectName(QStringLiteral("%1(%2)").arg(toQString(name)).arg(i));
        button->setFace(row.icon, toQString(row.label));
        button->setCheckable(row.toggles);
        button->setEnabled(false);
        Tip tip = tipOf(static_cast<int>(i));
        tip.text += QLatin1Char('\n') + toQString(kToCome);
        tips.SetToolTip(*button, tip);
        QObject::connect(button, &QAbstractButton::clicked, button, [this, i] {
            if (routines_[i])
                routines_[i]();
        });
        buttons_.push_back(button);
    }
}

void CommandBank::bind(int index, std::function<void()> routine) {
    routines_.at(static_cast<std::size_t>(index)) = std::move(routine);
    (*this)[index].setEnabled(true);
    tips_.SetToolTip((*this)[index], tipOf(index));
}

Tip CommandBank::tipOf(int index) const {
    const CommandRow& row = this->row(index);
    return {toQString(row.title), toQString(row.text), std::string(row.icon)};
}

void CommandBank::press(int index) const {
    if (index < 0 || index >= size() || !(*this)[index].isEnabled())
        return;
    if (const auto& routine = routines_[static_cast<std::size_t>(index)])
        routine();
}

} // namespace velmora
