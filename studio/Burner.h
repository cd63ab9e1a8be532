// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/cAudio.h"

namespace velmora {

/// Burning over libburn. Every call waits until all is done, and no two run at a time in the process, since
/// the library knows one owner. Where it is missing there is no drive. Thread-safe: yes.
namespace burner {

[[nodiscard]] std::vector<CdDrive> drives();
[[nodiscard]] Disc disc(const CdDrive& drive);
[[nodiscard]] std::string blank(const CdDrive& drive, BurnEvents& events);
[[nodiscard]] bool takesSpeed(const CdDrive& drive, int speed);
/// @param speed KB/s, 0 for the highest
[[nodiscard]] BurnOutcome burn(const CdDrive& drive, const CdTracks& tracks, int speed, BurnEvents& events,
                               const std::stop_token& cancel);

} // namespace burner

} // namespace velmora
