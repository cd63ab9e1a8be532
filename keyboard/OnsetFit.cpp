// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/OnsetFit.h"

#include "keyboard/Pulse.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace velmora {

namespace {
struct Share {
    int fraction; ///< of the beat: 3 for the two places at its thirds
    double share; ///< of all onsets
};
constexpr std::array kSimple{Share{1, 0.5},  Share{2, 0.3}, Share{4, 0.15},
                             Share{8, 0.02}, Share{3, 0.2}, Share{6, 0.05}};
constexpr std::array kCompound{Share{1, 0.42}, Share{3, 0.4},   Share{6, 0.08},
                               Share{2, 0.03}, Share{12, 0.01}, Share{4, 0.01}};
constexpr double kElsewhere = 0.003;
/// How many onsets it takes to outweigh what is usual.
constexpr double kTrust = 12;
constexpr int kRounds = 3;
/// Nothing is farther off than this many deviations: a note that fits nowhere shall not decide alone.
constexpr double kFarthest = 4;

double usualShare(PhraseMeter meter, int fraction) {
    const std::span<const Share> shares = meter.isCompound() ? std::span<const Share>(kCompound) : kSimple;
    const auto row = std::ranges::find(shares, fraction, &Share::fraction);
    return row != shares.end() ? row->share : kElsewhere;
}

int remainder(int tick, int ticksPerBeat) {
    const int rest = tick % ticksPerBeat;
    return rest < 0 ? rest + ticksPerBeat : rest;
}

/// The places about an onset, one of which it is brought to.
constexpr int kNear = 4;
struct Place {
    int tick = 0;
    double cost = 0;
    int from = 0; ///< index of the place of the onset before on the best way here
};
using Places = std::array<Place, kNear>;
} // namespace

PlaceCosts::PlaceCosts(PhraseMeter meter, int step) : step_(step) {
    const int ticks = meter.ticksPerBeat();
    std::vector<int> fractions;
    kinds_.assign(static_cast<std::size_t>(ticks), 0);
    // A step that divides no beat has its places anywhere in it.
    const int every = std::gcd(step, ticks);
    for (int tick = 0; tick < ticks; tick += every) {
        const int fraction = ticks / std::gcd(tick, ticks);
        auto found = std::ranges::find(fractions, fraction);
        if (found == fractions.end()) {
            fractions.push_back(fraction);
            counts_.push_back(0);
            shares_.push_back(usualShare(meter, fraction));
            found = std::prev(fractions.end());
        }
        const auto kind = found - fractions.begin();
        kinds_[static_cast<std::size_t>(tick)] = static_cast<int>(kind);
        ++counts_[static_cast<std::size_t>(kind)];
    }
    costs_.assign(static_cast<std::size_t>(ticks), std::numeric_limits<double>::infinity());
    setCosts();
}

void PlaceCosts::setCosts() {
    const double all = std::accumulate(shares_.begin(), shares_.end(), 0.0);
    const auto ticks = static_cast<int>(costs_.size());
    const int every = std::gcd(step_, ticks);
    for (int tick = 0; tick < ticks; tick += every) {
        const auto kind = static_cast<std::size_t>(kinds_[static_cast<std::size_t>(tick)]);
        costs_[static_cast<std::size_t>(tick)] = -std::log(shares_[kind] / all / counts_[kind]);
    }
}

double PlaceCosts::at(int tick) const {
    return costs_[static_cast<std::size_t>(remainder(tick, ticksPerBeat()))];
}

PlaceCosts PlaceCosts::learnt(std::span<const int> ticks) const {
    PlaceCosts more(*this);
    const double all = std::accumulate(shares_.begin(), shares_.end(), 0.0);
    for (double& share : more.shares_)
        share *= kTrust / all;
    for (const int tick : ticks)
        more.shares_[static_cast<std::size_t>(
            kinds_[static_cast<std::size_t>(remainder(tick, ticksPerBeat()))])] += 1;
    more.setCosts();
    return more;
}

namespace {
/// The best way through the places of all onsets: each near its onset, at a likely place, and none before
/// the one before it.
OnsetFit bestWay(std::span<const double> onsets, std::span<const double> ticks, double secondsPerTick,
                 const PlaceCosts& costs) {
    OnsetFit fit;
    if (onsets.empty())
        return fit;
    std::vector<Places> ways(onsets.size());
    const int step = costs.step();
    for (std::size_t i = 0; i < onsets.size(); ++i) {
        const int first = static_cast<int>(std::floor(ticks[i] / step)) - kNear / 2 + 1;
        for (int n = 0; n < kNear; ++n) {
            Place& place = ways[i][static_cast<std::size_t>(n)];
            place.tick = (first + n) * step;
            const double off = (ticks[i] - place.tick) * secondsPerTick / kHandJitter;
            place.cost =
                std::min(off * off, kFarthest * kFarthest + std::abs(off)) / 2 + costs.at(place.tick);
            if (i == 0)
                continue;
            const double apart = std::max(0.0, onsets[i] - onsets[i - 1] - kAtOnce) / kHandJitter;
            const double meeting = apart * apart / 4;
            double best = std::numeric_limits<double>::infinity();
            for (int m = 0; m < kNear; ++m) {
                const Place& before = ways[i - 1][static_cast<std::size_t>(m)];
                const double way = before.cost + (before.tick == place.tick ? meeting : 0);
                if (before.tick <= place.tick && way < best) {
                    best = way;
                    place.from = m;
                }
            }
            place.cost += best;
        }
    }
    fit.ticks.resize(onsets.size());
    auto at = static_cast<int>(std::ranges::min_element(ways.back(), {}, &Place::cost) - ways.back().begin());
    fit.cost = ways.back()[static_cast<std::size_t>(at)].cost;
    for (std::size_t i = onsets.size(); i-- > 0;) {
        const Place& place = ways[i][static_cast<std::size_t>(at)];
        fit.ticks[i] = place.tick;
        at = place.from;
    }
    return fit;
}
} // namespace

OnsetFit fitOnsets(std::span<const double> onsets, const Pulse& pulse, PlaceCosts costs) {
    std::vector<double> ticks(onsets.size());
    std::ranges::transform(onsets, ticks.begin(),
                           [&](double onset) { return pulse.beatAt(onset) * costs.ticksPerBeat(); });
    const double secondsPerTick = pulse.period / costs.ticksPerBeat();
    OnsetFit fit;
    for (int round = 0; round < kRounds; ++round) {
        fit = bestWay(onsets, ticks, secondsPerTick, costs);
        if (round + 1 < kRounds)
            costs = costs.learnt(fit.ticks);
    }
    return fit;
}

} // namespace velmora
