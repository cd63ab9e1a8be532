// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/StepMark.h"

#include "shell/SkinPainter.h"

#include <QMouseEvent>
#include <QPainter>

namespace velmora {

namespace {
const QString& mark() {
    static const QString words = QStringLiteral("[-<<|>>+]");
    return words;
}
} // namespace

StepMark::StepMark(const QString& name, QWidget* parent) : QWidget(parent) {
    setObjectName(name);
    setFont(textFont(10));
}

QSize StepMark::sizeHint() const {
    return {fontMetrics().horizontalAdvance(mark()), 12};
}

void StepMark::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(palette().color(underMouse() ? QPalette::WindowText : QPalette::PlaceholderText));
    painter.drawText(rect(), Qt::AlignCenter, mark());
}

void StepMark::enterEvent(QEnterEvent* /*event*/) {
    update();
}

void StepMark::leaveEvent(QEvent* /*event*/) {
    update();
}

void StepMark::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && onHalf)
        onHalf(event->position().x() < width() / 2.0 ? -1 : 1);
}

} // namespace velmora
