// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/InstrumentField.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace velmora {

namespace {
bool opens(const QKeyEvent& event) {
    const int key = event.key();
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
}
} // namespace

InstrumentField::InstrumentField(QWidget* parent) : QLineEdit(parent) {
    setReadOnly(true);
}

void InstrumentField::showName(const QString& name) {
    setText(name);
    setCursorPosition(0);
}

bool InstrumentField::event(QEvent* event) {
    // Its own keys open the picker, whatever else they are shortcuts of.
    if (event->type() == QEvent::ShortcutOverride && opens(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

void InstrumentField::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && onOpen)
        onOpen();
}

void InstrumentField::keyPressEvent(QKeyEvent* event) {
    if (!opens(*event))
        QLineEdit::keyPressEvent(event);
    else if (onOpen)
        onOpen();
}

} // namespace velmora
