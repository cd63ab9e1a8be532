// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

class QPainterPath;
class QWidget;

namespace velmora {

/// Cuts the window to @p outline, in pixels of the device and not of the layout, so that at a scale factor of
/// 2 a corner has steps of one pixel. A path that is the window's whole rectangle takes the cut away. Does
/// nothing before the window is on the platform.
/// @param corner how high a corner of the outline is at most; between those it is as wide as the window
void shapeWindow(QWidget& window, const QPainterPath& outline, int corner);

} // namespace velmora
