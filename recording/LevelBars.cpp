// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/LevelBars.h"

#include "shell/Appearance.h"
#include "shell/ControlPainter.h"
#include "shell/PixelGrid.h"
#include "shell/SkinPainter.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmora {

namespace {
constexpr double kFloor = -60; ///< dB
constexpr int kInset = 2;
constexpr int kGap = 2; ///< between the sides, and under the lamps
constexpr int kLamp = 6;
} // namespace

LevelBars::LevelBars(const Appearance& look, QWidget* parent) : QWidget(parent), look_(look) {
    setObjectName("levels");
    setAccessibleName("Level");
    setAttribute(Qt::WA_OpaquePaintEvent);
}

double LevelBars::shareOf(float value) {
    if (!(value > 0))
        return 0;
    return std::clamp((20 * std::log10(static_cast<double>(value)) - kFloor) / -kFloor, 0.0, 1.0);
}

QRect LevelBars::column(int side) const {
    const int wide = (width() - 2 * kInset - kGap) / 2;
    return {kInset + side * (wide + kGap), kInset, wide, height() - 2 * kInset};
}

/// Of a bar at full scale, in pixels of the device.
int LevelBars::travel() const {
    return static_cast<int>((height() - 2 * kInset - kLamp - kGap) * devicePixelRatioF());
}

/// Of a side, what lies between two heights over its foot.
QRect LevelBars::rows(int side, int one, int other) const {
    const qreal pixel = 1 / devicePixelRatioF();
    const QRectF all = column(side);
    const qreal foot = all.bottom();
    const auto [low, high] = std::minmax(one, other);
    return QRectF(all.left(), foot - high * pixel, all.width(), (high - low) * pixel).toAlignedRect();
}

void LevelBars::updateChanged(int side, const Side& before, const Side& now) {
    const QRect all = column(side);
    if (now.clipped != before.clipped)
        update(all.left(), all.top(), all.width(), kLamp);
    if (now.bar != before.bar)
        update(rows(side, now.bar, before.bar));
    if (now.held == before.held)
        return;
    const int line = static_cast<int>(std::ceil(devicePixelRatioF()));
    for (const int held : {before.held, now.held})
        if (held > 0)
            update(rows(side, held - line, held));
}

void LevelBars::showLevels(const Levels& levels) {
    for (std::size_t side = 0; side < sides_.size(); ++side) {
        const auto pixels = [this](float value) {
            return static_cast<int>(std::lround(shareOf(value) * travel()));
        };
        const Side now{pixels(levels.peak[side]), pixels(levels.held[side]), levels.clipped[side]};
        if (now == sides_[side])
            continue;
        if (now.clipped != sides_[side].clipped)
            setAccessibleDescription(now.clipped ? "Too loud: the recording is clipped" : "");
        updateChanged(static_cast<int>(side), std::exchange(sides_[side], now), now);
    }
}

/// The ground too: nothing behind it is painted for it.
void LevelBars::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const Skin& skin = look_.skin();
    painter.fillRect(event->rect(), toQColor(skin.readOut));
    if (!QRect(column(0) | column(1)).contains(event->rect()))
        paintReadOut(painter, skin, rect());
    const qreal pixel = 1 / devicePixelRatioF();
    const QColor groove = toQColor(mix(skin.groove, skin.readOut, 0.4));
    for (int side = 0; side < 2; ++side) {
        const QRectF all = column(side);
        const Side& shown = sides_[static_cast<std::size_t>(side)];
        const QRectF lamp(all.left(), all.top(), all.width(), kLamp);
        painter.fillRect(lamp, shown.clipped ? toQColor(recordRed(skin)) : groove);
        const qreal foot = all.bottom();
        painter.fillRect(QRectF(all.left(), lamp.bottom() + kGap, all.width(), foot - lamp.bottom() - kGap),
                         groove);
        painter.fillRect(QRectF(all.left(), foot - shown.bar * pixel, all.width(), shown.bar * pixel),
                         toQColor(skin.accent));
        if (shown.held > 0)
            painter.fillRect(QRectF(all.left(), foot - shown.held * pixel, all.width(), 1),
                             toQColor(skin.text));
    }
}

} // namespace velmora
