// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ModScore.h"

namespace velmora::notation {

WrittenScore readClean(const Score&, const SetupState&, const ScoreSetup&) {
    return {};
}

} // namespace velmora::notation
