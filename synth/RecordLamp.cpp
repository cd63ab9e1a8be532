// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/RecordLamp.h"

#include "shell/SkinPainter.h"

#include <QPainter>

namespace velmora {

namespace {
constexpr Rgb kOn{0, 255, 0};
constexpr Rgb kOff{255, 0, 0};
} // namespace

RecordLamp::RecordLamp(QWidget* parent) : QWidget(parent) {
    setObjectName("Label8");
    setAccessibleName("OFF");
    setAccessibleDescription("Recording");
}

void RecordLamp::setOn(bool on) {
    if (on == on_)
        return;
    on_ = on;
    setAccessibleName(on ? "ON" : "OFF");
    update();
}

void RecordLamp::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Rgb ground = on_ ? kOn : kOff;
    fillRounded(painter, rect(), height() / 2.0, toQColor(ground), toQColor(mix(ground, kBlack, 0.4)));
    painter.setFont(textFont(12, true));
    painter.setPen(Qt::black);
    painter.drawText(rect(), Qt::AlignCenter, on_ ? "ON" : "OFF");
}

} // namespace velmora
