// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>

namespace velmora {

/// How loud it is, each value of full scale, left and right.
struct Levels {
    std::array<float, 2> peak{}; ///< of the last moments, falling
    std::array<float, 2> held{}; ///< the highest of the last seconds
    /// Full scale was reached: a 16-bit value is the last one there is.
    std::array<bool, 2> clipped{};
};

} // namespace velmora
