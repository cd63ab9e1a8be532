// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/TableauBox.h"

#include <QEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <cmath>
#include <utility>

namespace velmora {

namespace {
MouseButton buttonOf(Qt::MouseButton button) {
    switch (button) {
    case Qt::LeftButton:
        return MouseButton::Left;
    case Qt::RightButton:
        return MouseButton::Right;
    default:
        return MouseButton::None;
    }
}
int shiftOf(const QMouseEvent& event) {
    return event.modifiers().testFlag(Qt::ShiftModifier) ? 1 : 0;
}
} // namespace

TableauBox::TableauBox(const char* name, const char* said, QWidget* parent) : QWidget(parent) {
    setObjectName(QLatin1String(name));
    setAccessibleName(QLatin1String(said));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
}

bool TableauBox::isStale() const {
    const QSize device(static_cast<int>(std::ceil(width() * devicePixelRatioF())),
                       static_cast<int>(std::ceil(height() * devicePixelRatioF())));
    return picture_.size() != device || picture_.devicePixelRatio() != devicePixelRatioF();
}

QImage& TableauBox::picture() {
    if (isStale()) {
        picture_ = QImage(static_cast<int>(std::ceil(width() * devicePixelRatioF())),
                          static_cast<int>(std::ceil(height() * devicePixelRatioF())), QImage::Format_RGB32);
        picture_.setDevicePixelRatio(devicePixelRatioF());
        picture_.fill(Qt::white);
    }
    return picture_;
}

void TableauBox::paintEvent(QPaintEvent* event) {
    if (isStale() && onStale)
        onStale(); // the window stands on another screen
    QPainter painter(this);
    const QRectF part = event->rect();
    const qreal ratio = picture().devicePixelRatio();
    painter.drawImage(part, picture(), QRectF(part.topLeft() * ratio, part.size() * ratio));
}

void TableauBox::mousePressEvent(QMouseEvent* event) {
    const MouseButton button = buttonOf(event->button());
    loseUnless(event->buttons());
    if (button == MouseButton::None || held_ != MouseButton::None) // a second button is no second stroke
        return;
    held_ = button;
    const QPoint at = event->position().toPoint();
    if (mouse.down)
        mouse.down(button, shiftOf(*event), at.x(), at.y());
}

void TableauBox::mouseMoveEvent(QMouseEvent* event) {
    loseUnless(event->buttons());
    const QPoint at = event->position().toPoint();
    if (mouse.move)
        mouse.move(held_, shiftOf(*event), at.x(), at.y());
}

void TableauBox::mouseReleaseEvent(QMouseEvent* event) {
    if (buttonOf(event->button()) != held_ || held_ == MouseButton::None)
        return;
    const MouseButton button = std::exchange(held_, MouseButton::None);
    const QPoint at = event->position().toPoint();
    if (mouse.up)
        mouse.up(button, shiftOf(*event), at.x(), at.y());
}

/// A popup that opened at the press has taken the release.
void TableauBox::loseUnless(Qt::MouseButtons down) {
    const Qt::MouseButton held = held_ == MouseButton::Left ? Qt::LeftButton : Qt::RightButton;
    if (!down.testFlag(held))
        lose();
}

void TableauBox::lose() {
    if (std::exchange(held_, MouseButton::None) != MouseButton::None && mouse.lost)
        mouse.lost();
}

bool TableauBox::event(QEvent* event) {
    const QEvent::Type type = event->type();
    if (mouse.over && (type == QEvent::Enter || type == QEvent::Leave || type == QEvent::Hide))
        mouse.over(type == QEvent::Enter);
    switch (type) {
    case QEvent::UngrabMouse:
    case QEvent::WindowDeactivate:
    case QEvent::Hide:
        lose();
        break;
    case QEvent::Leave: // a window that comes up under the mouse sends one in the middle of a stroke
        loseUnless(QGuiApplication::mouseButtons());
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void TableauBox::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        lose();
    QWidget::changeEvent(event);
}

} // namespace velmora
