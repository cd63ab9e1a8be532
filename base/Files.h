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

enum class TextProblem : std::uint8_t {
    None,
    Unreadable, ///< as for `readWholeFile`
    NotText     ///< it has a NUL
};
struct TextFile {
    TextProblem problem = TextProblem::None;
    std::string text;
};
/// The same for a text. What isn't one shows it in its first block as a rule, and no more of it is read then.
[[nodiscard]] TextFile readTextFile(const std::filesystem::path& path);

/// Puts @p bytes in place of the file, or makes it, as `PendingFile` does. On failure the old file is
/// untouched and what went wrong is returned in a sentence that names the file; a blank text is success.
[[nodiscard]] std::string replaceFile(const std::filesystem::path& path, std::string_view bytes);

} // namespace velmora
