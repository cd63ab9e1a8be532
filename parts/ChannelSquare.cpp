// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/ChannelSquare.h"

#include "parts/ChannelColours.h"
#include "shell/SkinPainter.h"

#include <QPainter>

namespace velmora {

namespace {
constexpr int kChip = 16;
constexpr int kSquare = 20;

const ChannelColours& coloursOf(int channel) {
    return kChannelColours[kChannelColours.contains(channel) ? channel : 0];
}
} // namespace

void paintChip(QPainter& painter, QPointF corner, int channel) {
    const Rgb face = coloursOf(channel).bright;
    fillRounded(painter, QRectF(corner, QSizeF(kChip, kChip)), 3, toQColor(face),
                toQColor(mix(face, kBlack, 0.45)));
}

ChannelSquare::ChannelSquare(int channel, QWidget* parent) : QWidget(parent), channel_(channel) {
    resize(kSquare, kSquare);
    setChannel(channel);
}

void ChannelSquare::setChannel(int channel) {
    channel_ = channel;
    setAccessibleName(QStringLiteral("Channel %1").arg(coloursOf(channel).caption));
    update();
}

void ChannelSquare::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const ChannelColours& colours = coloursOf(channel_);
    fillRounded(painter, rect(), 3, toQColor(colours.bright), toQColor(mix(colours.bright, kBlack, 0.45)));
    painter.setPen(toQColor(inkOnColour(colours.bright)));
    painter.setFont(textFont(width() < kSquare ? 10 : 12, true));
    painter.drawText(rect(), Qt::AlignCenter, QString::fromLatin1(colours.caption));
}

} // namespace velmora
