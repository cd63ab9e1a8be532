// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace velmora {

// What the commands of takes ask and say.

inline constexpr std::string_view kEraseRecording = "Erase Recording"; ///< title of the question
inline constexpr std::string_view kOverwriteTake = "Recording has not been saved. Overwrite?";
inline constexpr std::string_view kNothingToSave = "Nothing to save";

/// The name that was given for a take's score: trimmed, without a character 0 at its end, with ".sng" where
/// it doesn't end so in either case; blank for a blank one.
[[nodiscard]] std::string takeScoreName(std::string_view given);

} // namespace velmora
