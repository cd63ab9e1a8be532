// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "score/SngFile.h"

#include <filesystem>
#include <optional>
#include <string>

namespace velmora::cli {

inline constexpr int kUsualNotes = 1000; ///< `NumNotes` where no file asks for more

struct ScoreText {
    std::string text;
    SngReader reader; ///< the one to read it by
};
/// The text of a score file, to be read by @p reader or, with none, by the one that Open takes for it. What
/// is strange about it is said on standard error. Throws Failure if it can't be read or is no text.
[[nodiscard]] ScoreText readScoreText(const std::filesystem::path& file, std::optional<SngReader> reader);

} // namespace velmora::cli
