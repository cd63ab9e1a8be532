// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/SngFile.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace velmora::cli {

inline constexpr int kUsualNotes = 1000; ///< `NumNotes` where no file asks for more

/// The text of a score file. What is strange about it, as read by @p reader, is said on standard error.
/// Throws Failure if it can't be read or is no text.
[[nodiscard]] std::string readScoreText(const std::filesystem::path& file, SngReader reader);

} // namespace velmora::cli
