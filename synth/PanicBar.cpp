// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/PanicBar.h"

#include "shell/Appearance.h"
#include "shell/SkinPainter.h"
#include "synth/SynthColours.h"

#include <QPainter>

namespace velmora {

namespace {
constexpr Rgb kLit{128, 255, 255};
const char* const kWords = "Move cursor over Panic Bar to stop sound";
} // namespace

PanicBar::PanicBar(const Appearance& look, QWidget* parent) : QWidget(parent), look_(look) {
    setObjectName("Label4");
    setAccessibleName(kWords);
    setMouseTracking(true);
}

void PanicBar::setLit(bool lit) {
    if (lit != lit_)
        update();
    lit_ = lit;
}

void PanicBar::paintEvent(QPaintEvent* /*event*/) {
    const Skin& skin = look_.skin();
    QPainter painter(this);
    const Rgb ground = lit_ ? kLit : keyGround(skin);
    fillRounded(painter, rect(), fieldRadius(skin), toQColor(ground), toQColor(skin.line));
    painter.setFont(textFont(10));
    painter.setPen(toQColor(lit_ ? kBlack : skin.dim));
    painter.drawText(rect(), Qt::AlignCenter, kWords);
}

void PanicBar::mouseMoveEvent(QMouseEvent* /*event*/) {
    if (onMove)
        onMove();
}

} // namespace velmora
