// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "composition/RecoveryFile.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace velmora {

enum class RecoveryAnswer : std::uint8_t { BringBack, Drop, Later };

/// Asks about the scores that a crash left, one after the other: each that is not wanted is removed, and
/// without an answer everything stays for the next start.
/// @param named the score that the user started the program with, which one that is brought back keeps shut;
/// blank for none
/// @return the one that is to be brought back
[[nodiscard]] std::optional<LeftScore>
offerRecovery(RecoveryFile& recovery, const std::filesystem::path& named,
              const std::function<RecoveryAnswer(const std::string& question)>& ask);

} // namespace velmora
