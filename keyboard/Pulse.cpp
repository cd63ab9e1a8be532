// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/Pulse.h"

#include <algorithm>
#include <iterator>

namespace velmora {

double Pulse::beatAt(double moment) const {
    if (anchors.empty())
        return moment / period;
    const auto after = std::ranges::upper_bound(anchors, moment, {}, &Anchor::moment);
    if (after == anchors.begin())
        return after->beat + (moment - after->moment) / period;
    const Anchor& before = *std::prev(after);
    if (after == anchors.end())
        return before.beat + (moment - before.moment) / period;
    const double share = (moment - before.moment) / (after->moment - before.moment);
    return before.beat + share * (after->beat - before.beat);
}

} // namespace velmora
