// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Engraver.h"

namespace velmora::notation {

EngravedScore engraveClassic(const WrittenScore&, const ScoreSetup&, const std::function<bool(int)>&) {
    return {};
}
EngravedPage DrawBlankPage(EngravedScore&, const WrittenScore&, const ScoreSetup&, int) {
    return {};
}

} // namespace velmora::notation
