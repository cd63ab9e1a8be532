// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/TipWindow.h"

#include "shell/Compositor.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QWindow>

#include <cmath>

namespace velmora {

namespace {
QRect screenAt(QPoint mouse, const QWidget& owner) {
    const QScreen* screen = QGuiApplication::screenAt(mouse);
    return (screen ? screen : owner.screen())->geometry();
}
} // namespace

TipWindow::TipWindow()
    // Staying on top goes without saying for a tip. Said late, by the platform, it costs the window that was
    // made first, and the next one takes the mouse.
    : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput) {
    setObjectName(QStringLiteral("NQV-EXTOOLTIP"));
    setWindowTitle(objectName());
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_TranslucentBackground);
    setFocusPolicy(Qt::NoFocus);
}

void TipWindow::showAt(QPoint mouse, const TipContent& content, const TipColours& colours,
                       const QWidget& owner) {
    hide();
    content_ = content;
    colours_ = colours;
    shinesThrough_ = windowsShineThrough();
    // A shadow that nothing shines through is a stain.
    content_.shadow = content.shadow && shinesThrough_;
    layout_ = layoutTip(content_, mouse, screenAt(mouse, owner));
    setGeometry(layout_.window);
    if (shinesThrough_)
        clearMask();
    else
        setMask(tipMask(layout_));
    // Where places on the screen are the compositor's to give, they are counted from a window below.
    winId();
    windowHandle()->setTransientParent(owner.window()->windowHandle());
    show();
    raise();
}

void TipWindow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (!shinesThrough_) // soft pixels of the outline would mix with black
        painter.fillRect(rect(), colours_.edge);
    paintTip(painter, layout_, content_, colours_);
    if (!shinesThrough_ && devicePixelRatio() != std::floor(devicePixelRatio())) {
        // A mask has no pixels between the logical ones, so it cuts into the line.
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.strokePath(tipOutline(layout_, 1), QPen(colours_.edge, 2));
    }
}

} // namespace velmora
