// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/KeyPainter.h"

#include "keyboard/PianoKeys.h"
#include "shell/PixelGrid.h"
#include "shell/SkinPainter.h"
#include "synth/KeyLayout.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <array>

namespace velmora {

namespace {
constexpr QRgb kSounding = qRgb(255, 0, 0);
constexpr QRgb kWhiteLine = qRgb(96, 100, 108);
constexpr QRgb kBlackLine = qRgb(60, 62, 68);
constexpr QRgb kShine = qRgb(90, 92, 98);
constexpr int kRadius = 2;
constexpr std::array kSizes{12, 10, 8};

/// What catches the light on a black key that rests, left of its middle and above its label.
void paintShine(QPainter& painter, const QRectF& face, const QRectF& label) {
    const QRectF shine(face.left() + 3, 2, 2, label.top() - 6);
    if (shine.height() > 0)
        painter.fillRect(PixelGrid(painter).rect(shine), QColor::fromRgb(kShine));
}
} // namespace

FittedLabel fittedLabel(const QString& label, double width) {
    for (const int pixels : kSizes)
        if (QFontMetricsF(textFont(pixels, true)).horizontalAdvance(label) <= width)
            return {label, pixels};
    return {QFontMetricsF(textFont(kSizes.back(), true)).elidedText(label, Qt::ElideRight, width),
            kSizes.back()};
}

void paintKey(QPainter& painter, const KeyLayout& layout, int key, bool sounds, const QString& label) {
    const bool black = isBlackKey(key);
    const QRectF face = layout.key(key);
    const QRectF box = layout.label(key);
    const QColor fill = sounds ? QColor::fromRgb(kSounding) : black ? Qt::black : Qt::white;
    fillRounded(painter, face, kRadius, fill, QColor::fromRgb(black ? kBlackLine : kWhiteLine));
    if (black && !sounds)
        paintShine(painter, face, box);
    const FittedLabel fitted = fittedLabel(label, box.width() - 2);
    painter.setFont(textFont(fitted.pixels, true));
    painter.setPen(black && !sounds ? Qt::white : Qt::black);
    painter.drawText(PixelGrid(painter).rect(box), Qt::AlignCenter | Qt::TextSingleLine, fitted.text);
}

} // namespace velmora
