// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/FirstPicture.h"

#include "shell/ControlPainter.h"
#include "shell/IconSet.h"
#include "shell/SkinPainter.h"
#include "tableau/Commands.h"

#include <QObject>
#include <QPainter>
#include <QPixmap>
#include <QTimerEvent>

#include <functional>
#include <span>
#include <vector>

namespace velmora {

namespace {
void drawCharacters(const QFont& font, double begin, qreal scale) {
    QString characters;
    for (char16_t character = ' '; character <= '~'; ++character)
        characters += character;
    QPixmap scrap(QSizeF(scale, scale).toSize());
    scrap.setDevicePixelRatio(scale);
    QPainter painter(&scrap);
    painter.setFont(font);
    painter.drawText(QPointF(begin / scale, 0), characters);
}

void drawIcon(const CommandRow& row, const Appearance& look, qreal scale) {
    constexpr int kIcon = 16;
    for (const bool enabled : {true, false})
        static_cast<void>(
            iconPixmap(row.icon, iconColoursOn(look, ButtonPlace::Bar, {.enabled = enabled}), kIcon, scale));
}

/// Does one piece whenever there is nothing else to do, and goes after the last.
class Preparation : public QObject {
public:
    Preparation(QObject& window, const Appearance& look, qreal scale) : QObject(&window) {
        for (const QFont& font : {textFont(8), textFont(10), textFont(12), textFont(12, true)})
            // A character is kept once for each quarter of a pixel of the device that it may begin at.
            for (const double begin : {0.0, 0.25, 0.5, 0.75})
                pieces_.emplace_back([=] { drawCharacters(font, begin, scale); });
        for (const std::span<const CommandRow> rows : {std::span<const CommandRow>(kCmd2), {kLb1}})
            for (const CommandRow& row : rows)
                pieces_.emplace_back([&row, &look, scale] { drawIcon(row, look, scale); });
        startTimer(0);
    }

protected:
    void timerEvent(QTimerEvent* event) override {
        if (next_ < pieces_.size()) {
            pieces_[next_++]();
            return;
        }
        killTimer(event->timerId());
        deleteLater();
    }

private:
    std::vector<std::function<void()>> pieces_;
    std::size_t next_ = 0;
};
} // namespace

void prepareFirstPicture(QObject& window, const Appearance& look, qreal scale) {
    new Preparation(window, look, scale); // its parent's
}

} // namespace velmora
