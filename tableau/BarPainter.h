// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "tableau/TableauScene.h"

#include <QImage>

#include <optional>

namespace velmora {

/// `Pic3`, the Polynote Selector: a box for each head of the active channel that has a chord.
void paintPolynoteBar(QImage& surface, const TableauScene& scene);
/// Marks a column of the view in `Pic3`, as a drag there does, until it is painted anew.
void markPolynoteColumn(QImage& surface, const TableauScene& scene, int column);
/// `Pic2a`, the Note Indicator and Identifier.
/// @param clickedColumn column of the view that was clicked: 0 at the left edge
void paintIndicatorBar(QImage& surface, const TableauScene& scene, std::optional<int> clickedColumn);

} // namespace velmora
