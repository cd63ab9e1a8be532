// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/FirstPicture.h"

#include "shell/ControlPainter.h"
#include "shell/IconSet.h"
#include "shell/SkinPainter.h"
#include "tableau/Commands.h"

#include <QPainter>
#include <QPixmap>

#include <span>

namespace velmora {

namespace {
void prepareCharacters(qreal scale) {
    QString characters;
    for (char16_t character = ' '; character <= '~'; ++character)
        characters += character;
    QPixmap scrap(QSizeF(scale, scale).toSize());
    scrap.setDevicePixelRatio(scale);
    QPainter painter(&scrap);
    for (const QFont& font : {textFont(8), textFont(10), textFont(12), textFont(12, true)}) {
        painter.setFont(font);
        // A character is kept once for each quarter of a pixel of the device that it may begin at.
        for (const double begin : {0.0, 0.25, 0.5, 0.75})
            painter.drawText(QPointF(begin / scale, 0), characters);
    }
}

void prepareIcons(std::span<const CommandRow> rows, const Appearance& look, qreal scale) {
    constexpr int kIcon = 16;
    for (const CommandRow& row : rows)
        for (const bool enabled : {true, false})
            static_cast<void>(iconPixmap(
                row.icon, iconColoursOn(look, ButtonPlace::Bar, {.enabled = enabled}), kIcon, scale));
}
} // namespace

void prepareFirstPicture(const Appearance& look, qreal scale) {
    prepareCharacters(scale);
    prepareIcons(kCmd2, look, scale);
    prepareIcons(kLb1, look, scale);
}

} // namespace velmora
