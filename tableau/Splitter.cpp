// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/Splitter.h"

#include "shell/Appearance.h"
#include "shell/SkinPainter.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace velmora {

namespace {
constexpr int kLeastBelow = 100; ///< what stays under the bar
constexpr QSize kGrip{32, 2};
} // namespace

Splitter::Splitter(const Appearance& look, QWidget* area)
    : QWidget(area)
    , look_(look)
    , P1_(new QWidget(area)) {
    setObjectName("Label9");
    setAccessibleName("Border between the Tableaux");
    setCursor(Qt::SplitVCursor);
    P1_->setObjectName("P1");
    P1_->setAutoFillBackground(true);
    P1_->setBackgroundRole(QPalette::Highlight);
    P1_->setAttribute(Qt::WA_TransparentForMouseEvents);
    P1_->hide();
}

void Splitter::layOut(const QRect& gap) {
    if (gap.isEmpty()) { // a drag ends without its release
        held_ = Qt::NoButton;
        P1_->hide();
    }
    setVisible(!gap.isEmpty());
    setGeometry(gap.x(), gap.center().y() - kGrab / 2, gap.width(), kGrab);
    gap_ = QRect(0, gap.y() - y(), gap.width(), gap.height());
    raise();
}

void Splitter::mousePressEvent(QMouseEvent* event) {
    if (held_ != Qt::NoButton)
        return;
    held_ = event->button();
    P1_->setGeometry(gap_.translated(pos()));
    P1_->show();
    P1_->raise();
    barTo(*event);
}

void Splitter::mouseMoveEvent(QMouseEvent* event) {
    if (held_ != Qt::NoButton)
        barTo(*event);
}

void Splitter::barTo(const QMouseEvent& event) {
    const int top = y() + event.position().toPoint().y();
    P1_->move(x(), std::clamp(top, 0, std::max(0, parentWidget()->height() - kLeastBelow)));
}

void Splitter::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != held_ || held_ == Qt::NoButton)
        return;
    held_ = Qt::NoButton;
    P1_->hide();
    if (onRelease)
        onRelease(P1_->y());
}

void Splitter::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRectF grip(QPointF(width() / 2 - kGrip.width() / 2, gap_.y() + 1), kGrip);
    fillRounded(painter, grip, 1, toQColor(look_.skin().dim));
}

} // namespace velmora
