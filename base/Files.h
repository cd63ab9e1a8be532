// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

inline constexpr std::uintmax_t kLargestFile = std::uintmax_t{1} << 30; ///< bytes; no file of ours comes near

/// The whole content of a regular file, or nothing if it can't be opened or read, or is larger than
/// `kLargestFile`.
[[nodiscard]] std::optional<std::string> readWholeFile(const std::filesystem::path& path);

/// Puts @p bytes in place of the file, or makes it, as `PendingFile` does. On failure the old file is
/// untouched and what went wrong is returned in a sentence that names the file; a blank text is success.
[[nodiscard]] std::string replaceFile(const std::filesystem::path& path, std::string_view bytes);

} // namespace velmora
