// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/ShareBar.h"

#include "shell/Appearance.h"
#include "shell/SkinPainter.h"

#include <QPainter>

#include <algorithm>

namespace velmora {

namespace {
constexpr int kWhole = 1000;  ///< steps of the bar
constexpr double kPale = 0.4; ///< of the part that is still to come
} // namespace

ShareBar::ShareBar(const Appearance& look, Ground ground, QWidget* parent)
    : QProgressBar(parent)
    , look_(look)
    , ground_(ground) {
    setRange(0, kWhole);
    setTextVisible(false);
}

void ShareBar::setShare(double share) {
    const int steps = static_cast<int>(std::clamp(share, 0.0, 1.0) * kWhole);
    if (steps == value())
        return;
    setValue(steps); // which repaints by what its own painting would have kept
    update();
}

int ShareBar::percent() const {
    return value() * 100 / kWhole;
}

void ShareBar::paintEvent(QPaintEvent* /*event*/) {
    const Skin& skin = look_.skin();
    const double radius = groupRadius(skin);
    QPainter painter(this);
    // The paler one is a dark skin's panel itself.
    const bool pale = ground_ == Ground::ReadOut || !isDark(skin);
    const Rgb groove = pale ? mix(skin.groove, skin.readOut, kPale) : skin.groove;
    fillRounded(painter, rect(), radius, toQColor(groove));
    const double filled = width() * static_cast<double>(value()) / kWhole;
    if (filled < 1)
        return;
    painter.setClipRect(QRectF(0, 0, filled, height()));
    fillRounded(painter, rect(), radius, toQColor(skin.accent));
}

} // namespace velmora
