// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/cAudio.h"

#include <string>

namespace velmora::burner {

/// Makes a rewritable disc blank. Blank, or why not, naming the drive.
[[nodiscard]] std::string blank(const CdDrive& drive, BurnEvents& events);

} // namespace velmora::burner
