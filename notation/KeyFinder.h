// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>

namespace velmora {
struct Score;
} // namespace velmora

namespace velmora::notation {

/// How long each pitch class sounds, C first, and how the tune ends.
struct PitchWeights {
    std::array<double, 12> weights{};
    int lowestOfLast = -1; ///< pitch class of the lowest note that ends last; -1 for none
};
[[nodiscard]] PitchWeights pitchWeights(const Score& score, int first, int last);

/// The index in `kKeys` of the key whose signature fits best; a minor key has that of its relative major.
[[nodiscard]] int findKey(const PitchWeights& weights);

} // namespace velmora::notation
