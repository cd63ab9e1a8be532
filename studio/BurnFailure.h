// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/cAudio.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmora::burner {

/// What the library says when a drive is gone. Then the drive counts as idle and as given back while a thread
/// of the library still tries to talk to it.
inline constexpr std::string_view kVanished = "Failed to transfer command";

struct BurnFailure {
    BurnCode code = BurnCode::WriteError;
    std::string detail;
};

/// What came of the disc, by what the library complained of. Of a drive that refuses a page of write
/// parameters, or can't tell an address, it doesn't: that drive is written to all the same.
[[nodiscard]] BurnFailure failureOf(const std::vector<std::string>& complaints);

} // namespace velmora::burner
