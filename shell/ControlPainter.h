// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shell/Appearance.h"
#include "shell/IconSet.h"

#include <QColor>
#include <QRectF>
#include <QString>

#include <cstdint>

class QPainter;

namespace velmora {

/// What a control shows at the moment.
struct ControlState {
    bool enabled = true;
    bool hot = false; ///< under the mouse
    bool pressed = false;
    bool checked = false; ///< its mode is on
};

/// Where a button stands decides whether it has a face.
enum class ButtonPlace : std::uint8_t {
    Bar,  ///< an icon, with or without words, in a bar: at rest it has no face
    Panel ///< a text button: it always has one
};

/// The face of a button and its edge, without what stands on it.
void paintFace(QPainter& painter, const Appearance& look, const QRectF& rect, ButtonPlace place,
               const ControlState& state);
/// The colours of text and icon on a button.
[[nodiscard]] QColor inkOn(const Skin& skin, const ControlState& state);
[[nodiscard]] IconColours iconColoursOn(const Appearance& look, ButtonPlace place, const ControlState& state);
/// The radius of a button's corners.
[[nodiscard]] qreal faceRadius(const Appearance& look, const QRectF& rect);

void paintField(QPainter& painter, const Skin& skin, const QRectF& rect, bool enabled);
void paintReadOut(QPainter& painter, const Skin& skin, const QRectF& rect);
/// A box with a thin edge, a little lighter than the panel.
void paintGroup(QPainter& painter, const Skin& skin, const QRectF& rect);
/// What lightens the panel under menus, groups and tool pages: white, nearly transparent.
[[nodiscard]] QColor lightening(const Skin& skin);
/// The heading of such a box, bold, with a rule under it.
void paintGroupHeading(QPainter& painter, const Skin& skin, const QRectF& rect, const QString& words);
/// A vertical rule of two lines.
void paintSeparator(QPainter& painter, const Skin& skin, qreal x, qreal y, qreal height);

/// A box, and a disc, 14 by 14.
void paintCheckBox(QPainter& painter, const Skin& skin, const QRectF& rect, const ControlState& state);
void paintRadio(QPainter& painter, const Skin& skin, const QRectF& rect, const ControlState& state);

enum class Direction : std::uint8_t { Left, Right, Up, Down };
/// An angle, 8 by 4, in the middle of @p rect.
void paintChevron(QPainter& painter, const QRectF& rect, Direction direction, const QColor& ink);
/// A small solid triangle in the middle of @p rect.
void paintTriangle(QPainter& painter, const QRectF& rect, Direction direction, const QColor& ink);

/// A slider's bar, 4 across, along the middle of @p rect; the accent fills it between the two places along
/// it.
void paintGroove(QPainter& painter, const Skin& skin, const QRectF& rect, bool horizontal, qreal from,
                 qreal to, const ControlState& state = {});
void paintPointer(QPainter& painter, const Skin& skin, const QRectF& rect, bool horizontal,
                  const ControlState& state = {});
void paintScrollRail(QPainter& painter, const Skin& skin, const QRectF& rect);
/// With three ticks across; none if it is too short for them.
void paintThumb(QPainter& painter, const Skin& skin, const QRectF& rect, bool horizontal,
                const ControlState& state);
/// A plain face without text: arrows of scroll bars, spin buttons, lists.
void paintSmallFace(QPainter& painter, const Skin& skin, const QRectF& rect, const ControlState& state,
                    bool edge = true);

} // namespace velmora
