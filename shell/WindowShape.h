// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

class QPainterPath;
class QWidget;

namespace velmora {

/// Cuts the window to @p outline, in pixels of the device and not of the layout, so that at a scale factor of
/// 2 a corner has steps of one pixel. A path that is the window's whole rectangle takes the cut away. Does
/// nothing before the window is on the platform.
void shapeWindow(QWidget& window, const QPainterPath& outline);

} // namespace velmora
