// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/EffectGraph.h"

#include "shell/Appearance.h"
#include "shell/SkinPainter.h"

#include <QPainter>

namespace velmora {

namespace {
constexpr int kMost = 127;
}

EffectGraph::EffectGraph(const Appearance& look, const QString& name, QWidget* parent)
    : QWidget(parent)
    , look_(look) {
    setObjectName(name);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void EffectGraph::showValue(int value) {
    if (value == value_)
        return;
    value_ = value;
    update();
}

void EffectGraph::paintEvent(QPaintEvent* /*event*/) {
    if (value_ <= 0)
        return;
    QPainter painter(this);
    const qreal filled = static_cast<qreal>(height()) * std::min(value_, kMost) / kMost;
    fillRounded(painter, QRectF(0, height() - filled, width(), filled), 0, toQColor(look_.skin().accent));
}

} // namespace velmora
