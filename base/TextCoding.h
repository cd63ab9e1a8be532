// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// What may stand at the front of a file in UTF-8.
inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

[[nodiscard]] bool isUtf8(std::string_view bytes);
/// The text in UTF-8. Every byte is a character of its own: the five that stand for none stay what they are.
[[nodiscard]] std::string fromWindows1252(std::string_view bytes);

} // namespace velmora
