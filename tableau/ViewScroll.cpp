// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ViewScroll.h"

#include "tableau/ViewGeometry.h"

#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionSlider>

#include <utility>

namespace velmora {

ViewScroll::ViewScroll(Qt::Orientation orientation, const char* name, QWidget* parent)
    : QScrollBar(orientation, parent) {
    setObjectName(QLatin1String(name));
    setContextMenuPolicy(Qt::NoContextMenu);
    connect(this, &QScrollBar::valueChanged, this, [this](int value) {
        if (!following_ && onScroll)
            onScroll(value);
    });
}

void ViewScroll::follow(const ScrollRange& range, int value) {
    const bool nested = std::exchange(following_, true);
    setRange(range.minimum, range.maximum);
    setPageStep(range.page);
    setValue(value);
    following_ = nested;
}

QRect ViewScroll::part(int subControl) const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    return style()->subControlRect(QStyle::CC_ScrollBar, &option, static_cast<QStyle::SubControl>(subControl),
                                   this);
}

int ViewScroll::along(const QPoint& at) const {
    return orientation() == Qt::Horizontal ? at.x() : at.y();
}

void ViewScroll::mousePressEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    if (event->button() != Qt::LeftButton || !part(QStyle::SC_ScrollBarGroove).contains(at)) {
        QScrollBar::mousePressEvent(event);
        return;
    }
    const QRect thumb = part(QStyle::SC_ScrollBarSlider);
    grip_ = thumb.contains(at) ? along(at) - along(thumb.topLeft()) : 0;
    dragging_ = true;
    update();
    dragTo(at);
}

void ViewScroll::mouseMoveEvent(QMouseEvent* event) {
    if (!dragging_)
        QScrollBar::mouseMoveEvent(event);
    else if (event->buttons().testFlag(Qt::LeftButton))
        dragTo(event->position().toPoint());
}

void ViewScroll::mouseReleaseEvent(QMouseEvent* event) {
    if (!dragging_) {
        QScrollBar::mouseReleaseEvent(event);
        return;
    }
    if (event->button() == Qt::LeftButton)
        dragging_ = false;
    update();
}

/// Nobody gets the release of a drag that greying interrupts.
void ViewScroll::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        dragging_ = false;
    QScrollBar::changeEvent(event);
}

void ViewScroll::dragTo(const QPoint& at) {
    const QRect rail = part(QStyle::SC_ScrollBarGroove);
    const int length = orientation() == Qt::Horizontal ? rail.width() : rail.height();
    const int place = along(at) - grip_ - along(rail.topLeft());
    if (length <= 0)
        return;
    setValue(valueAt ? valueAt(place, length)
                     : minimum() + place * (maximum() - minimum() + pageStep()) / length);
}

void ViewScroll::initStyleOption(QStyleOptionSlider* option) const {
    QScrollBar::initStyleOption(option);
    if (dragging_) {
        option->activeSubControls = QStyle::SC_ScrollBarSlider;
        option->state |= QStyle::State_Sunken;
    }
}

} // namespace velmora
