// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

namespace velmora {

/// The value below which that share of them lies: 0.5 for the median, 1 for the largest; -1 for none.
[[nodiscard]] inline double shareOf(std::vector<double> values, double share) {
    if (values.empty())
        return -1;
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(std::lround(share * static_cast<double>(values.size() - 1)))];
}

} // namespace velmora
