// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/Stamp.h"

namespace velmora {

/// The ball of a note, anchored at the upper left pixel of its cell: a circle of radius 5 with a black edge
/// and a white highlight.
[[nodiscard]] Stamp ballStamp(QRgb colour, qreal scale);
/// The ring of a chord behind it, of radius 7.
[[nodiscard]] Stamp ringStamp(QRgb colour, qreal scale);

} // namespace velmora
