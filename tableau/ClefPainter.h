// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

class QPainter;

namespace velmora {

// The faint clefs at the left of `MusicBox`, drawn with a pen around x = 25.

/// @param top y of the top line of the staff
void paintTrebleClef(QPainter& painter, double top, int lineHeight);
/// @param line y of the line of "4F"
void paintBassClef(QPainter& painter, double line, int lineHeight);
/// Pixels from the left edge that clefs may touch.
[[nodiscard]] int clefsWidth(int lineHeight);

} // namespace velmora
