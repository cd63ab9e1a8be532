// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/ReadOut.h"

#include "shell/ControlPainter.h"
#include "shell/SkinPainter.h"

#include <QPainter>

namespace velmora {

ReadOut::ReadOut(const Appearance& look, const QString& name, QWidget* parent) : QLabel(parent), look_(look) {
    setObjectName(name);
    setFont(textFont(12, true));
}

void ReadOut::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    paintReadOut(painter, look_.skin(), rect());
    painter.setPen(toQColor(look_.skin().text));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace velmora
