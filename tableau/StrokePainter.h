// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/TableauScene.h"

#include <QColor>
#include <QImage>

namespace velmora {

// What a gesture draws over a painted picture, never the Score. Rows and columns are those of the view: 0 is
// the top row, and the left edge. Draw through `MelodyPainter::drawOver`, so that the next painting is fast.

/// The rubber band of a note that is being drawn: with its ball in the "Colorful Line".
void paintBand(QImage& surface, const TableauScene& scene, bool percussion, int row, int fromColumn,
               int toColumn);
/// The ball at a press: black, with a white highlight.
void paintPressBall(QImage& surface, int row, int column, int rowHeight);
/// A blue box 4 wide over the full height, where a selection begins.
void paintSelectEdge(QImage& surface, int column);
/// A box over the full height, from one column to 3 pixels into the other.
void paintSelectDrag(QImage& surface, int fromColumn, int toColumn, const QColor& highlight);
/// Blends with alpha 100 of 255 over the full height; the strip is that of a selection or of a mark.
void blendStrip(QImage& surface, int x, int width, const QColor& source);
/// A hairline, or two pixels that nobody overlooks.
enum class PlayLine : std::uint8_t { Pale, Bold };
void paintPlayLine(QImage& surface, int column, PlayLine how = PlayLine::Pale);

} // namespace velmora
