// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/MenuStrip.h"

#include "base/QtText.h"
#include "shell/Frmmenu.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QShortcut>
#include <QTimer>

namespace velmora {

/// From the press of Alt until it is let go, or another window has the keyboard.
class MenuStrip::AltHeld : public QObject {
public:
    explicit AltHeld(MenuStrip& strip) : strip_(strip) { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        const bool released =
            event->type() == QEvent::KeyRelease && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Alt;
        if (released || event->type() == QEvent::ApplicationDeactivate ||
            event->type() == QEvent::WindowDeactivate)
            QTimer::singleShot(0, &strip_, [&strip = strip_] { strip.showLetters(false); });
        return false;
    }

private:
    MenuStrip& strip_;
};

MenuStrip::MenuStrip(const Frmmenu& menus, std::span<const Label> labels, QWidget* parent)
    : QMenuBar(parent) {
    setNativeMenuBar(false); // it stands in our own frame
    setObjectName("toolbMenu");
    for (const Label& label : labels) {
        QMenu& popup = menus.popup(label.popup);
        QAction* action = addMenu(&popup);
        action->setText('&' + toQString(label.caption));
        action->setObjectName(QStringLiteral("Lmnu(%1)").arg(label.index));
        followPopup(popup);
    }
    if (auto* more = findChild<QWidget*>("qt_menubar_ext_button")) // Qt's own, where the strip is too narrow
        more->setAccessibleName("More menus");
    auto* key = new QShortcut(Qt::Key_F10, parent);
    const int first = labels.empty() ? -1 : labels.front().index;
    connect(key, &QShortcut::activated, this, [this, first] { Lmnu_Click(first); });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* old, QWidget* now) {
        if (now == this && old && old->window() == window())
            before_ = old;
    });
}

MenuStrip::~MenuStrip() {
    disconnect(qApp, nullptr, this, nullptr);
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

/// An arrow closes a menu and opens its neighbour at once, so that only later it is known to be the last one.
void MenuStrip::followPopup(const QMenu& popup) {
    connect(&popup, &QMenu::aboutToHide, this,
            [this] { QTimer::singleShot(0, this, [this] { leaveUnlessOpen(); }); });
}

/// Qt's bar would keep the label reached and the focus, for arrows and one more Esc.
void MenuStrip::leaveUnlessOpen() {
    if (QApplication::activePopupWidget() || !(hasFocus() || activeAction()))
        return;
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    keyPressEvent(&escape);
    setActiveAction(nullptr);
    if (window()->focusWidget() != this)
        return;
    if (before_)
        before_->setFocus(Qt::MenuBarFocusReason);
    else
        clearFocus();
}

void MenuStrip::showLetters(bool shown) {
    if (shown == showsLetters())
        return;
    letters_ = shown ? std::make_unique<AltHeld>(*this) : nullptr;
    update();
}

/// Qt's bar goes no further, when Alt alone was pressed and let go, than to reach the first label.
bool MenuStrip::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Alt)
        showLetters(true);
    const QAction* before = activeAction();
    const bool taken = QMenuBar::eventFilter(watched, event);
    if (event->type() == QEvent::KeyRelease && !before && activeAction())
        openReached();
    return taken;
}

} // namespace velmora
