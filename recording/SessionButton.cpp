// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/SessionButton.h"

#include "shell/ControlPainter.h"
#include "shell/SkinPainter.h"

#include <QPainter>

#include <utility>

namespace velmora {

namespace {
constexpr int kIconLeft = 8;
constexpr int kIcon = 16;
constexpr int kWordsLeft = 30;
} // namespace

SessionButton::SessionButton(const Appearance& look, std::string icon, const QString& words, QWidget* parent)
    : CommandButton(look, ButtonForm::Text, parent)
    , look_(look)
    , icon_(std::move(icon)) {
    setFace(icon_, words);
}

void SessionButton::setHeld(bool held) {
    if (std::exchange(held_, held) != held)
        update();
}

void SessionButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const ControlState state{
        .enabled = isEnabled() || held_, .hot = underMouse() && !held_, .pressed = isDown() || held_};
    paintFace(painter, look_, rect(), ButtonPlace::Panel, state);
    if (isDown())
        painter.translate(1, 1);
    paintIcon(painter, {kIconLeft, (height() - kIcon) / 2.0}, icon_,
              iconColoursOn(look_, ButtonPlace::Panel, state), kIcon);
    painter.setPen(inkOn(look_.skin(), state));
    painter.setFont(textFont());
    painter.drawText(rect().adjusted(kWordsLeft, 0, -4, 0), Qt::AlignLeft | Qt::AlignVCenter, text());
}

} // namespace velmora
