// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/Skin.h"

#include <QPainterPath>
#include <QRectF>

#include <cstdint>

class QPainter;

namespace velmora {

inline constexpr int kTitleHeight = 28;

/// The window's outline: a rounded rectangle, `Skin::extraHeight` taller than the window and cut at its foot;
/// plain if @p square. Moved inwards by @p inset.
[[nodiscard]] QPainterPath windowOutline(const Skin& skin, const QSizeF& window, bool square,
                                         qreal inset = 0);

/// Title bar, edges and outline of a window of that size at 0, 0; the panel covers the inside. What lies
/// outside the outline is left as it was.
void paintFrame(QPainter& painter, const Skin& skin, const QSizeF& window, bool square);

/// The small picture of the program in a title bar, 16 by 16.
void paintProgramIcon(QPainter& painter, const QRectF& rect);

enum class TitleSign : std::uint8_t { Close, Maximize, Restore, Minimize, Help };
/// A title button, 22 by 18.
void paintTitleButton(QPainter& painter, const Skin& skin, const QRectF& rect, TitleSign sign, bool hot,
                      bool pressed);

} // namespace velmora
