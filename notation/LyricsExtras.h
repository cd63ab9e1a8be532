// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace velmora::notation {

struct ScoreSetup;

// What a lyrics file keeps of the clean page: the composer, the words of the tempo and the words under the
// notes. They stand behind all else, a line each, under keys that readers of the plain file don't know.

/// Those lines; blank if there is nothing to keep.
[[nodiscard]] std::string extrasOf(const ScoreSetup& setup);
/// Whether a line of a file is one of them. No other key is looked for within it.
[[nodiscard]] bool isExtra(std::string_view line);
/// Takes them from lines. Without any they become empty.
void takeExtras(std::string_view lines, ScoreSetup& setup);

/// The words as they are typed in one line: verses stand between bars, "|".
[[nodiscard]] std::string versesLine(const ScoreSetup& setup);
void setVersesLine(std::string_view line, ScoreSetup& setup);

} // namespace velmora::notation
