// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Marks.h"

#include <algorithm>

namespace velmora::notation {

int EngravedScore::styleOf(const TextStyle& style) {
    const auto found = std::ranges::find(styles, style);
    const auto index = static_cast<int>(found - styles.begin());
    if (found == styles.end())
        styles.push_back(style);
    return index;
}

} // namespace velmora::notation
