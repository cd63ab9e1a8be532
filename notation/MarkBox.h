// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"
#include "notation/MusicOutlines.h"
#include "notation/TextMeasure.h"

#include <vector>

namespace velmora::notation {

/// What a mark covers, in pixels; a text takes its letters and not its line, so that staves may come near.
[[nodiscard]] Box boxOf(const Mark& mark, const std::vector<TextStyle>& styles, TextMeasure& measure);

/// A curve's middle line at @p t, from 0 to 1.
[[nodiscard]] Point pointOf(const CurveMark& curve, double t);

/// Moves a mark.
void moveMark(Mark& mark, double right, double down);

} // namespace velmora::notation
