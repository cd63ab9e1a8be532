// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace velmora {

/// Puts a copy of the file in place of @p target, as `PendingFile` does. Blank, or why not, in a sentence
/// that names the file. Memory doesn't grow with the file.
/// @param between called now and then, so that events are served; may be blank
[[nodiscard]] std::string copyFile(const std::filesystem::path& source, const std::filesystem::path& target,
                                   const std::function<void()>& between);

} // namespace velmora
