// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>

namespace velmora {

/// docs/engraving.md: each rule with its picture and its reason.
[[nodiscard]] std::string engravingPage();

} // namespace velmora
