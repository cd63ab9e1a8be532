// SPDX-License-Identifier: GPL-2.0-or-later
// How the tips follow the mouse.
#include "shell/ExToolTip.h"

#include <QEnterEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QWidget>

namespace velmora {

namespace {
bool concernsTips(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::KeyPress:
    case QEvent::Wheel:
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::Hide:
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
    case QEvent::WindowBlocked:
        return true;
    default:
        return false;
    }
}
} // namespace

bool ExToolTip::eventFilter(QObject* watched, QEvent* event) {
    // Every event of the application comes by here.
    if (watched->isWidgetType() && concernsTips(event->type())) {
        QWidget& window = *static_cast<QWidget*>(watched)->window();
        if (isAttached(window)) {
            controlEvent(window, *event);
            if (watched == &window)
                windowEvent(window, *event);
        }
    }
    return QObject::eventFilter(watched, event);
}

void ExToolTip::controlEvent(QWidget& window, const QEvent& event) {
    switch (event.type()) {
    case QEvent::MouseMove: {
        const auto& move = static_cast<const QMouseEvent&>(event);
        mouseMoved(window, move.globalPosition().toPoint(), move.buttons());
        break;
    }
    case QEvent::MouseButtonPress:
    case QEvent::KeyPress:
    case QEvent::Wheel:
        reset(); // the control stays the one hovered last, so that its tip doesn't come again
        break;
    default:
        break;
    }
}

void ExToolTip::windowEvent(QWidget& window, const QEvent& event) {
    switch (event.type()) {
    case QEvent::Enter:
        mouseMoved(window, static_cast<const QEnterEvent&>(event).globalPosition().toPoint(),
                   QGuiApplication::mouseButtons());
        break;
    case QEvent::Leave:
    case QEvent::Hide:
        mouseLeft(window);
        break;
    case QEvent::WindowActivate:
        activated(window);
        break;
    case QEvent::WindowDeactivate:
    case QEvent::WindowBlocked:
        reset();
        break;
    default:
        break;
    }
}

QWidget* ExToolTip::controlAt(QWidget& window, QPoint mouse) const {
    const QPoint place = window.mapFromGlobal(mouse);
    if (!window.rect().contains(place))
        return nullptr;
    QWidget* control = window.childAt(place);
    for (control = control ? control : &window; control; control = control->parentWidget())
        if (control == &window || toolTip(*control))
            break;
    return control && toolTip(*control) ? control : nullptr;
}

void ExToolTip::mouseMoved(QWidget& window, QPoint mouse, Qt::MouseButtons buttons) {
    mouse_ = mouse;
    if (!window.rect().contains(window.mapFromGlobal(mouse))) {
        mouseLeft(window);
        return;
    }
    follow(window);
    timer_.moved(TipTimer::Mouse::Inside);
    if (buttons == Qt::NoButton) // a stroke or a drag is not asking
        hover(window, controlAt(window, mouse));
    runClock();
}

void ExToolTip::mouseLeft(const QWidget& window) {
    if (window_ != &window)
        return;
    timer_.moved(TipTimer::Mouse::Outside);
    shown_ = nullptr;
    reset();
}

void ExToolTip::activated(QWidget& window) {
    if (window_ != &window)
        return;
    timer_.activated();
    shown_ = nullptr;
    reset();
}

void ExToolTip::follow(QWidget& window) {
    if (window_ == &window)
        return;
    timer_.moved(TipTimer::Mouse::Outside);
    window_ = &window;
}

} // namespace velmora
