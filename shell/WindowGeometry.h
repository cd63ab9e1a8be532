// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QRect>
#include <QSize>
#include <QStringView>

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

/// Where a tool window first stands, and whether folded.
struct FirstPlace {
    QPoint corner;
    bool folded = false;

    bool operator==(const FirstPlace&) const = default;
};
/// Beside the window that it belongs to, where there is room; otherwise in its lower right, where its
/// buttons stay free, and folded if it were more than half as wide or as high as that window. On the screen
/// in any case.
[[nodiscard]] FirstPlace firstPlace(const QRect& around, const QRect& screen, QSize whole, QSize folded);

/// Where a window of @p wanted size, that is to be read beside the one it belongs to, first stands: at its
/// right, where there is room, else in its middle. There it leaves the uppermost @p free pixels of that
/// window seen and becomes as much lower as it must, but not smaller than @p least.
[[nodiscard]] QRect readingFrame(const QRect& around, const QRect& screen, QSize wanted, QSize least,
                                 int free);

/// Whether the platform says where windows stand. Where it doesn't, 0, 0 is told of all of them: that is to
/// be stored as little as brought back.
[[nodiscard]] bool tellsPlaces(QStringView platform);

/// The place on a screen nearest to @p corner for a window of that size. Of a larger one the upper left is
/// seen.
[[nodiscard]] QPoint onScreen(QPoint corner, QSize size, const QRect& screen);

} // namespace velmora
