// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/MenuStrip.h"

#include "base/QtText.h"
#include "shell/Frmmenu.h"

#include <QKeyEvent>
#include <QShortcut>

namespace velmora {

MenuStrip::MenuStrip(const Frmmenu& menus, std::span<const Label> labels, QWidget* parent)
    : QMenuBar(parent) {
    setNativeMenuBar(false); // it stands in our own frame
    setObjectName("toolbMenu");
    for (const Label& label : labels) {
        QAction* action = addMenu(&menus.popup(label.popup));
        action->setText(toQString(label.caption));
        action->setObjectName(QStringLiteral("Lmnu(%1)").arg(label.index));
    }
    if (auto* more = findChild<QWidget*>("qt_menubar_ext_button")) // Qt's own, where the strip is too narrow
        more->setAccessibleName("More menus");
    auto* key = new QShortcut(Qt::Key_F10, parent);
    const int first = labels.empty() ? -1 : labels.front().index;
    connect(key, &QShortcut::activated, this, [this, first] { Lmnu_Click(first); });
}

QAction* MenuStrip::label(int index) const {
    const QString name = QStringLiteral("Lmnu(%1)").arg(index);
    for (QAction* action : actions())
        if (action->objectName() == name)
            return action;
    return nullptr;
}

void MenuStrip::Lmnu_Click(int index) {
    QAction* action = label(index);
    if (!action)
        return;
    setFocus(Qt::MenuBarFocusReason);
    setActiveAction(action);
    openReached();
}

/// The bar opens the menu of an active label by a key, and then follows the arrows to its neighbours.
void MenuStrip::openReached() {
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    keyPressEvent(&down);
}

/// Qt's bar goes no further, when Alt alone was pressed and let go, than to reach the first label.
bool MenuStrip::eventFilter(QObject* watched, QEvent* event) {
    const QAction* before = activeAction();
    const bool taken = QMenuBar::eventFilter(watched, event);
    if (event->type() == QEvent::KeyRelease && !before && activeAction())
        openReached();
    return taken;
}

} // namespace velmora
