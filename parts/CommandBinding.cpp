// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/CommandBinding.h"

#include "parts/CommandBank.h"
#include "shell/Frmmenu.h"

#include <QAction>
#include <QShortcut>

namespace velmora {

void bindCommand(QWidget& window, Frmmenu& menu, const CommandWays& ways,
                 const std::function<void()>& press) {
    if (ways.bank)
        ways.bank->bind(ways.index, press);
    if (!ways.item.empty())
        menu.bind(window, ways.item, press);
    if (!ways.key)
        return;
    auto* shortcut = new QShortcut(QKeySequence(ways.key), &window);
    shortcut->setAutoRepeat(false);
    QObject::connect(shortcut, &QShortcut::activated, &window, [&menu, ways, press] {
        const bool enabled = !ways.item.empty() ? menu.item(ways.item).isEnabled()
                                                : !ways.bank || (*ways.bank)[ways.index].isEnabled();
        if (enabled)
            press();
    });
}

} // namespace velmora
