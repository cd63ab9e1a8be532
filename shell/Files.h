// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// The whole content of a regular file, or nothing if it can't be opened or read.
[[nodiscard]] std::optional<std::string> readWholeFile(const std::filesystem::path& path);

/// Puts @p bytes in place of the file, or makes it: written beside, flushed, renamed. On failure the old file
/// is untouched and the reason is returned in words; a blank text is success.
[[nodiscard]] std::string replaceFile(const std::filesystem::path& path, std::string_view bytes);

} // namespace velmora
