// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "keyboard/PhraseMeter.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace velmora {

struct Pulse;

/// How likely notes begin at a place of the beat, by the smallest fraction of the beat that names it: on
/// the beat, at its half, at a third and so on. Costs are negative logarithms of a place's share.
class PlaceCosts {
public:
    /// What is usual, with places between the beats as @p meter has them, and no other than those that are
    /// multiples of @p step ticks.
    PlaceCosts(PhraseMeter meter, int step);

    [[nodiscard]] double at(int tick) const;
    [[nodiscard]] int step() const { return step_; }
    [[nodiscard]] int ticksPerBeat() const { return static_cast<int>(costs_.size()); }
    /// The same, leaning to where these notes begin.
    [[nodiscard]] PlaceCosts learnt(std::span<const int> ticks) const;

private:
    void setCosts();

    int step_;
    std::vector<double> shares_; ///< of each kind of place, by `kinds_`
    std::vector<int> kinds_;     ///< by tick of the beat
    std::vector<int> counts_;    ///< places of each kind in a beat
    std::vector<double> costs_;  ///< by tick of the beat
};

/// Onsets that were brought to a grid.
struct OnsetFit {
    std::vector<int> ticks; ///< of each onset, from beat 0; they never fall
    double cost = 0;        ///< the lower the likelier; to be compared for the same onsets only
};

/// Seconds by which a hand is beside the beat, as a standard deviation.
inline constexpr double kHandJitter = 0.025;
/// Onsets closer than this may be meant to be at once.
inline constexpr double kAtOnce = 0.05;

/// The likeliest places of @p onsets, which never fall.
[[nodiscard]] OnsetFit fitOnsets(std::span<const double> onsets, const Pulse& pulse, PlaceCosts costs);

} // namespace velmora
