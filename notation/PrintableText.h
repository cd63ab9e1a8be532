// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace velmora::notation {

/// As valid UTF-8 on one line: what is none becomes U+FFFD, control characters become blanks.
[[nodiscard]] std::string printable(std::string_view text);

} // namespace velmora::notation
