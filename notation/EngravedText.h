// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"

#include <string>

namespace velmora::notation {

/// What is drawn, a line an element, in the order of drawing; pixels as whole numbers, a half as the even
/// one.
[[nodiscard]] std::string engravedText(const EngravedScore& score);

} // namespace velmora::notation
