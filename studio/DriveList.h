// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/cAudio.h"

#include <vector>

namespace velmora::burner {

/// The burners of this machine; none where the library is missing.
[[nodiscard]] std::vector<CdDrive> drives();
[[nodiscard]] Disc disc(const CdDrive& drive);
[[nodiscard]] bool takesSpeed(const CdDrive& drive, int speed);

} // namespace velmora::burner
