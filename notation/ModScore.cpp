// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ModScore.h"

namespace velmora::notation {

int RowToY(int) {
    return 0;
}
std::string SpellNote(int, bool) {
    return {};
}
StaffChoice AssignStaves(const Score&, int) {
    return {};
}
std::vector<Staff> stavesOf(const StaffChoice&) {
    return {};
}
WrittenScore readScore(const Score& score, const SetupState& meter, const ScoreSetup& setup) {
    return setup.classicPage ? readClassic(score, meter, setup) : readClean(score, meter, setup);
}

} // namespace velmora::notation
