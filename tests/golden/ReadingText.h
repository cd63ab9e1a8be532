// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/WrittenScore.h"

#include <string>

namespace velmora {

/// What was read, in short: "F#.half^" is a half note with its stem up, "v" is down, "#F#" has the sign drawn
/// and "(n)F" a courtesy sign; "+" joins the heads of a chord, and values that one note is written with;
/// "~" is a tie, brackets [] stand round what is under one beam, "(half)" is a rest. " | " parts bars, " / "
/// staves and voices.
[[nodiscard]] std::string readingText(const notation::WrittenScore& score);

} // namespace velmora
