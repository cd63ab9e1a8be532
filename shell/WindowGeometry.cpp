// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/WindowGeometry.h"

#include <algorithm>
#include <cmath>

namespace velmora {

int pixelsOfTwips(float twips) {
    constexpr float kFarthest = 1e6F; // pixels: beyond any screen
    if (std::isnan(twips))
        return 0;
    return static_cast<int>(std::lround(std::clamp(twips / kTwips, -kFarthest, kFarthest)));
}

QRect framePiece(Qt::Edges edges, QSize window, int thickness, int corner) {
    const bool left = edges.testFlag(Qt::LeftEdge);
    const bool top = edges.testFlag(Qt::TopEdge);
    const bool sideways = left || edges.testFlag(Qt::RightEdge);
    const bool upDown = top || edges.testFlag(Qt::BottomEdge);
    const int width = sideways ? (upDown ? corner : thickness) : window.width() - 2 * corner;
    const int height = upDown ? (sideways ? corner : thickness) : window.height() - 2 * corner;
    return {sideways ? (left ? 0 : window.width() - width) : corner,
            upDown ? (top ? 0 : window.height() - height) : corner, std::max(0, width), std::max(0, height)};
}

QRect resizedFrame(const QRect& frame, Qt::Edges edges, QPoint by, QSize least) {
    QRect result = frame;
    if (edges.testFlag(Qt::LeftEdge))
        result.setLeft(std::min(frame.left() + by.x(), frame.right() - least.width() + 1));
    if (edges.testFlag(Qt::RightEdge))
        result.setRight(std::max(frame.right() + by.x(), frame.left() + least.width() - 1));
    if (edges.testFlag(Qt::TopEdge))
        result.setTop(std::min(frame.top() + by.y(), frame.bottom() - least.height() + 1));
    if (edges.testFlag(Qt::BottomEdge))
        result.setBottom(std::max(frame.bottom() + by.y(), frame.top() + least.height() - 1));
    return result;
}

QRect openingFrame(const QRect& stored, const QRect& screen, QSize least) {
    const auto pixels = [](int twips) {
        return static_cast<int>(std::lround(static_cast<double>(twips) / kTwips));
    };
    QRect frame = stored;
    if (2 * frame.width() >= screen.width() || 10 * frame.height() >= 4 * screen.height())
        frame = {screen.left() + pixels(500), screen.top() + pixels(500),
                 pixels(screen.width() * kTwips - 2000), pixels(screen.height() * kTwips - 1000)};
    frame.setSize(frame.size().expandedTo(least).boundedTo(screen.size()));
    frame.moveLeft(std::clamp(frame.left(), screen.left(), screen.right() + 1 - frame.width()));
    frame.moveTop(std::clamp(frame.top(), screen.top(), screen.bottom() + 1 - frame.height()));
    return frame;
}

FirstPlace firstPlace(const QRect& around, const QRect& screen, QSize whole, QSize folded) {
    constexpr int kBeside = 8;
    constexpr QPoint kInside(28, 56); // from its lower right corner
    const QPoint beside(around.right() + kBeside, around.top());
    if (beside.x() + whole.width() <= screen.right())
        return {onScreen(beside, whole, screen), false};
    const bool folds = 2 * whole.width() > around.width() || 2 * whole.height() > around.height();
    const QSize size = folds ? folded : whole;
    const QPoint corner = around.bottomRight() - kInside - QPoint(size.width(), size.height());
    return {onScreen(corner, size, screen), folds};
}

QRect readingFrame(const QRect& around, const QRect& screen, QSize wanted, QSize least, int free) {
    const QSize size = wanted.boundedTo(screen.size()).expandedTo(least);
    const QPoint beside(around.right() + 1, around.top());
    if (beside.x() + size.width() <= screen.right() + 1)
        return {onScreen(beside, size, screen), size};
    QRect frame({}, size);
    frame.moveCenter(around.center());
    const int top = std::max(frame.top(), around.top() + free);
    const int height = std::clamp(screen.bottom() + 1 - top, least.height(), size.height());
    frame = {frame.left(), top, size.width(), height};
    return {onScreen(frame.topLeft(), frame.size(), screen), frame.size()};
}

bool tellsPlaces(QStringView platform) {
    return !platform.startsWith(u"wayland");
}

QPoint onScreen(QPoint corner, QSize size, const QRect& screen) {
    const auto within = [](int place, int length, int first, int last) {
        return std::clamp(place, first, std::max(first, last + 1 - length));
    };
    return {within(corner.x(), size.width(), screen.left(), screen.right()),
            within(corner.y(), size.height(), screen.top(), screen.bottom())};
}

} // namespace velmora
