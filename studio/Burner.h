// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/cAudio.h"

#include <stop_token>

/// Burning over libburn. Every call waits until all is done, and no two run at a time in the process, since
/// the library knows one owner. Where it is missing there is no drive. Thread-safe: yes.
namespace velmora::burner {

/// Writes the tracks to a blank disc, then reads every sector back and compares.
/// @param speed KB/s, 0 for the highest
[[nodiscard]] BurnOutcome burn(const CdDrive& drive, const CdTracks& tracks, int speed, BurnEvents& events,
                               const std::stop_token& cancel);

} // namespace velmora::burner
