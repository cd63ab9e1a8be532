// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/ModalDialog.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QPointer>

namespace velmora {

namespace {
/// Closes a dialog when the window under it is closed, which cancels it. One that is only iconified keeps its
/// dialog.
class CloseWithParent : public QObject {
public:
    explicit CloseWithParent(QWidget& dialog) : QObject(&dialog), dialog_(dialog) {
        if (QWidget* parent = dialog.parentWidget())
            parent->window()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Hide && !event->spontaneous())
            dialog_.close();
        return QObject::eventFilter(watched, event);
    }

private:
    QWidget& dialog_;
};
} // namespace

std::string whyNoDialogs() {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return "There is no screen to show a dialog on.";
    return {};
}

void closeWithParent(QWidget& dialog) {
    new CloseWithParent(dialog);
}

ModalEnd runModally(QDialog& dialog) {
    const QPointer<QDialog> guard(&dialog);
    closeWithParent(dialog);
    const int result = dialog.exec();
    if (!guard)
        return ModalEnd::Destroyed;
    return result == QDialog::Accepted ? ModalEnd::Accepted : ModalEnd::Cancelled;
}

} // namespace velmora
