// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Engraver.h"

namespace velmora::notation {

EngravedScore engraveClean(const WrittenScore&, const ScoreSetup&, TextMeasure&,
                           const std::function<bool(int)>&) {
    return {};
}

} // namespace velmora::notation
