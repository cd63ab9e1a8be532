// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ClassicNotes.h"

#include <algorithm>
#include <array>
#include <limits>

namespace velmora::notation {

namespace {

struct LedgerCase {
    int lastD;
    int startsLeft; ///< of the note's x
    int count;
    std::array<int, 3> lines;
};
// clang-format off
/// The places of both clefs in one table; 148, 158 and 166 are no multiples of a staff space: meant.
constexpr std::array kLedgerCases{
    LedgerCase{22, 5, 2, {32, 24}},
    LedgerCase{30, 5, 1, {32}},
    LedgerCase{72, 5, 0, {}},
    LedgerCase{80, 6, 1, {80}},
    LedgerCase{83, 6, 2, {80, 88}},
    LedgerCase{87, 6, 3, {80, 88, 96}},
    LedgerCase{98, 5, 3, {88, 96, 104}},
    LedgerCase{102, 5, 3, {96, 104, 112}},
    LedgerCase{141, 5, 0, {}},
    LedgerCase{145, 5, 1, {148}},
    LedgerCase{149, 5, 2, {148, 156}},
    LedgerCase{154, 5, 3, {148, 156, 164}},
    LedgerCase{158, 5, 1, {158}},
    LedgerCase{166, 5, 2, {158, 166}},
    LedgerCase{std::numeric_limits<int>::max(), 5, 3, {158, 166, 174}},
};
// clang-format on
static_assert(kLedgerCases.size() == 15);
constexpr double kLedgerLength = 15;

} // namespace

void DrawLedgerLines(ClassicInk& ink, double x, int cy, double TT, int HeaderHeight) {
    const int d = cy - HeaderHeight;
    const auto& row =
        *std::ranges::find_if(kLedgerCases, [d](const LedgerCase& one) { return d <= one.lastD; });
    for (std::size_t i = 0; i < static_cast<std::size_t>(row.count); ++i) {
        const Point from{x - row.startsLeft, row.lines.at(i) + HeaderHeight + TT};
        ink.line(from, {from.x + kLedgerLength, from.y}, 1, Role::Ledger);
    }
}

} // namespace velmora::notation
