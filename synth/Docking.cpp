// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/Docking.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace velmora {

Docking::Docking(QWidget* over, std::function<void()> place) : over_(over), place_(std::move(place)) {
    if (over)
        over->installEventFilter(this);
}

void Docking::setOn(bool on) {
    on_ = on && over_;
    if (on_)
        place_();
}

QRect Docking::place(QSize least, int height) const {
    if (!over_)
        return {QPoint(), least};
    const QRect above = over_->frameGeometry();
    const QRect screen = over_->screen()->availableGeometry();
    const int width = std::clamp(above.width(), least.width(), std::max(least.width(), screen.width()));
    const int lowest = screen.bottom() + 1 - height;
    const int furthest = std::max(screen.left(), screen.right() + 1 - width);
    return {std::clamp(above.left(), screen.left(), furthest), std::min(above.bottom() + 1, lowest), width,
            height};
}

bool Docking::eventFilter(QObject* watched, QEvent* event) {
    const bool moved = event->type() == QEvent::Move || event->type() == QEvent::Resize;
    if (moved && on_ && watched == over_)
        place_();
    return false;
}

} // namespace velmora
