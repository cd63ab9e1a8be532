// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QRect>
#include <QSize>

#include <array>

namespace velmora {

inline constexpr int kTwips = 15; ///< to a pixel: the settings keep window places in twips

/// A stored length in pixels. Whatever stands in the settings, it is one that can be reckoned with.
[[nodiscard]] int pixelsOfTwips(float twips);

/// Which side or corner of a window each of `Resizer`(0 to 7) and `Winedge`(0 to 7) stands at.
inline constexpr std::array<Qt::Edges, 8> kFrameEdges{
    Qt::LeftEdge,
    Qt::RightEdge,
    Qt::TopEdge,
    Qt::BottomEdge,
    Qt::LeftEdge | Qt::TopEdge,
    Qt::RightEdge | Qt::TopEdge,
    Qt::LeftEdge | Qt::BottomEdge,
    Qt::RightEdge | Qt::BottomEdge,
};

/// Where such a piece stands in a window of that size, @p thickness across and, in the corners, @p corner a
/// side.
[[nodiscard]] QRect framePiece(Qt::Edges edges, QSize window, int thickness, int corner);

/// The window's frame after its edges have been dragged by @p by: the other sides stay, and it never becomes
/// smaller than @p least.
[[nodiscard]] QRect resizedFrame(const QRect& frame, Qt::Edges edges, QPoint by, QSize least);

/// Where the composing window opens, in pixels: at the stored place, unless it is at least half as wide as
/// the screen or at least four tenths as high. Then it stands at 500, 500 twips and is as large as the screen
/// less 2000 by 1000 twips. In either case it is no larger than the screen, not smaller than @p least where
/// the screen has room, and its title bar is on the screen.
[[nodiscard]] QRect openingFrame(const QRect& stored, const QRect& screen, QSize least);

} // namespace velmora
