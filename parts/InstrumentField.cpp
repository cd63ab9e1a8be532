// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/InstrumentField.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionComboBox>
#include <QStylePainter>

namespace velmora {

namespace {
constexpr int kInset = 1; ///< of the words of a list

bool opens(const QKeyEvent& event) {
    const int key = event.key();
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space || key == Qt::Key_F4 ||
           (key == Qt::Key_Down && event.modifiers().testFlag(Qt::AltModifier));
}
} // namespace

/// A click doesn't take the focus, so that Space still plays.
InstrumentField::InstrumentField(QWidget* parent) : QLineEdit(parent) {
    setReadOnly(true);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::ArrowCursor);
    setAttribute(Qt::WA_Hover);
}

void InstrumentField::showName(const QString& name) {
    setText(name);
    setCursorPosition(0);
}

void InstrumentField::open() const {
    if (onOpen)
        onOpen();
}

bool InstrumentField::event(QEvent* event) {
    // Its own keys open the picker, whatever else they are shortcuts of.
    if (event->type() == QEvent::ShortcutOverride && opens(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

/// As a list that drops down, with the name cut where it has no room.
void InstrumentField::paintEvent(QPaintEvent* /*event*/) {
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    option.initFrom(this);
    option.state.setFlag(QStyle::State_Sunken, pressed_);
    const QRect words =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    option.currentText = fontMetrics().elidedText(text(), Qt::ElideRight, words.width() - 2 * kInset);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void InstrumentField::mousePressEvent(QMouseEvent* event) {
    pressed_ = event->button() == Qt::LeftButton;
    update();
}

/// There is nothing to select.
void InstrumentField::mouseMoveEvent(QMouseEvent* event) {
    event->accept();
}

void InstrumentField::mouseReleaseEvent(QMouseEvent* event) {
    const bool clicked = pressed_ && event->button() == Qt::LeftButton && rect().contains(event->pos());
    pressed_ = false;
    update();
    if (clicked)
        open();
}

void InstrumentField::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        open();
}

void InstrumentField::keyPressEvent(QKeyEvent* event) {
    if (opens(*event))
        open();
    else
        QLineEdit::keyPressEvent(event);
}

} // namespace velmora
