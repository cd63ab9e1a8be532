// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/BurnSpool.h"

namespace velmora::burner {

/// Reads every sector of the disc back and compares it with the spool.
[[nodiscard]] BurnOutcome compare(const CdDrive& drive, const CdTracks& tracks, const BurnSpool& spool,
                                  BurnEvents& events, const std::stop_token& cancel);

} // namespace velmora::burner
