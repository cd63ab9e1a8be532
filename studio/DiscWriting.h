// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/BurnSpool.h"
#include "studio/GrabbedDrive.h"

namespace velmora::burner {

/// Writes the tracks from the spool to the blank disc that lies in the drive, and closes it.
[[nodiscard]] BurnOutcome write(const CdDrive& drive, const GrabbedDrive& grabbed, const CdTracks& tracks,
                                const BurnSpool& spool, BurnEvents& events, const std::stop_token& cancel);

} // namespace velmora::burner
