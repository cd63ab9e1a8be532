// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/TempoFinder.h"

#include "keyboard/OnsetFit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

namespace velmora {

namespace {
constexpr double kUnknownPeriod = 0.5;
constexpr double kSlowest = 40; ///< beats per minute that are looked for
constexpr double kFastest = 220;
constexpr double kRatio = 1.025;   ///< from one rate that is tried to the next
constexpr std::size_t kHeard = 48; ///< onsets from which the rate is found
constexpr std::size_t kFinalists = 5;
/// Rates near this one are likelier, all else being equal.
constexpr double kUsualRate = 100;

/// What a hand does to the beat, as variances: an onset, and the change of the period from beat to beat.
constexpr double kJitterVariance = kHandJitter * kHandJitter;
constexpr double kPeriodNoise = 0.01;
/// A rate that is tried is right to this share of it.
constexpr double kRateDoubt = 0.02;
/// The drift of a tempo is seen in about so many beats.
constexpr double kDriftBeats = 3;

/// Places of a beat at which a phrase may begin, and where notes are looked for, as shares of the beat.
struct Divisions {
    int step; ///< ticks
    std::vector<int> starts;
};

Divisions divisionsOf(PhraseMeter meter) {
    const int ticks = meter.ticksPerBeat();
    if (meter.isCompound())
        return {std::max(1, ticks / 6), {0, ticks / 3, ticks * 2 / 3}};
    return {std::max(1, ticks / 4), {0, ticks / 2, ticks * 3 / 4}};
}

/// Follows the beat from onset to onset, by a linear filter of when the last place was and how long a tick
/// is.
struct Track {
    double period = 0; ///< that was tried: seconds of a beat
    std::vector<int> ticks;
    double cost = std::numeric_limits<double>::infinity();
};

Track track(std::span<const double> onsets, const PlaceCosts& costs, double period, int start, double bound) {
    Track found{.period = period, .ticks = {start}, .cost = costs.at(start)};
    const double perBeat = costs.ticksPerBeat();
    const int step = costs.step();
    double tick = period / perBeat;
    double moment = onsets[0];
    double momentVariance = kJitterVariance;
    double both = 0;
    double tickVariance = tick * tick * kRateDoubt * kRateDoubt;
    // Slower beats have fewer places for the same onsets, which speaks for them.
    const double perOnset = -std::log(period);
    found.cost += perOnset;
    int at = start;
    found.ticks.reserve(onsets.size());
    for (std::size_t i = 1; i < onsets.size() && found.cost < bound; ++i) {
        const double ahead = at + (onsets[i] - moment) / tick;
        const int first = static_cast<int>(std::floor(ahead / step)) * step - step;
        double best = std::numeric_limits<double>::infinity();
        int place = at;
        for (int tried = std::max(at, first); tried <= first + 3 * step; tried += step) {
            const double steps = tried - at;
            const double off = onsets[i] - moment - steps * tick;
            const double variance =
                momentVariance + 2 * steps * both + steps * steps * tickVariance + kJitterVariance;
            double cost =
                off * off / variance / 2 + std::log(variance / kJitterVariance) / 2 + costs.at(tried);
            if (steps == 0)
                cost += std::max(0.0, onsets[i] - onsets[i - 1] - kAtOnce) / kHandJitter;
            if (cost < best) {
                best = cost;
                place = tried;
            }
        }
        const double steps = place - at;
        const double noise = kPeriodNoise * tick;
        momentVariance += 2 * steps * both + steps * steps * tickVariance;
        both += steps * tickVariance;
        tickVariance += noise * noise * steps / perBeat;
        moment += steps * tick;
        const double gain = momentVariance / (momentVariance + kJitterVariance);
        const double tickGain = both / (momentVariance + kJitterVariance);
        const double off = onsets[i] - moment;
        moment += gain * off;
        tick += tickGain * off;
        tickVariance -= tickGain * both;
        both *= 1 - gain;
        momentVariance *= 1 - gain;
        at = place;
        found.ticks.push_back(at);
        found.cost += best + perOnset;
    }
    if (found.ticks.size() < onsets.size())
        found.cost = std::numeric_limits<double>::infinity();
    return found;
}

/// Beats through onsets whose places are known: about each onset a straight line, to which those near it
/// count most.
Pulse through(std::span<const double> onsets, std::span<const int> ticks, double perBeat, double fallback) {
    Pulse pulse;
    pulse.period = fallback;
    const auto line = [&](double about, double width) {
        double weights = 0;
        double beats = 0;
        double moments = 0;
        double squares = 0;
        double products = 0;
        const auto from = std::ranges::lower_bound(ticks, (about - 3 * width) * perBeat) - ticks.begin();
        for (auto i = static_cast<std::size_t>(from); i < onsets.size(); ++i) {
            const double beat = ticks[i] / perBeat - about;
            if (beat > 3 * width)
                break;
            const double weight = std::exp(-beat * beat / (2 * width * width));
            weights += weight;
            beats += weight * beat;
            moments += weight * onsets[i];
            squares += weight * beat * beat;
            products += weight * beat * onsets[i];
        }
        const double spread = squares - beats * beats / weights;
        const double period = spread > 1e-9 ? (products - beats * moments / weights) / spread : fallback;
        return std::pair((moments - period * beats) / weights, period);
    };
    const double all = (ticks.back() - ticks.front()) / perBeat;
    pulse.period = line((ticks.back() + ticks.front()) / perBeat / 2, std::max(all, 1.0) * 10).second;
    if (pulse.period <= 0)
        pulse.period = fallback;
    const double firstBeat = ticks.front() / perBeat;
    const auto wholeBeats = static_cast<int>(std::floor(ticks.back() / perBeat - firstBeat));
    for (int i = 0; i <= wholeBeats; ++i) {
        const double beat = firstBeat + i;
        const auto [moment, period] = line(beat, kDriftBeats);
        if (pulse.anchors.empty() || moment > pulse.anchors.back().moment)
            pulse.anchors.push_back({moment, beat});
    }
    return pulse;
}

double rateCost(double period, std::size_t onsets) {
    const double octaves = std::log2(60 / period / kUsualRate);
    return octaves * octaves * (1 + 0.2 * static_cast<double>(onsets));
}

/// The beat that is nearest to the first onset is beat 0.
void countFromFirst(Pulse& pulse, double first) {
    const double shift = std::round(pulse.beatAt(first));
    for (Pulse::Anchor& anchor : pulse.anchors)
        anchor.beat -= shift;
}

std::vector<Track> finalistsOf(std::span<const double> onsets, const PlaceCosts& costs,
                               const std::vector<int>& starts) {
    std::vector<Track> best;
    static const int kRates = static_cast<int>(std::ceil(std::log(kFastest / kSlowest) / std::log(kRatio)));
    for (int i = 0; i < kRates; ++i) {
        const double period = 60 / (kSlowest * std::pow(kRatio, i));
        const double usual = rateCost(period, onsets.size());
        for (const int start : starts) {
            const bool full = best.size() == kFinalists;
            const double bound = full ? best.back().cost - usual : std::numeric_limits<double>::infinity();
            Track tried = track(onsets, costs, period, start, bound);
            tried.cost += usual;
            if (full && tried.cost >= best.back().cost)
                continue;
            // Neighbours find the same.
            const auto same = std::ranges::find(best, tried.ticks, &Track::ticks);
            if (same != best.end()) {
                if (same->cost <= tried.cost)
                    continue;
                best.erase(same);
            }
            const auto place = std::ranges::upper_bound(best, tried.cost, {}, &Track::cost);
            best.insert(place, std::move(tried));
            if (best.size() > kFinalists)
                best.pop_back();
        }
    }
    return best;
}
} // namespace

Pulse findPulse(std::span<const double> onsets, PhraseMeter meter) {
    if (onsets.size() < 2 || onsets.back() - onsets.front() < kAtOnce) {
        const double first = onsets.empty() ? 0 : onsets.front();
        return {.anchors = {{first, 0}}, .period = kUnknownPeriod};
    }
    const Divisions divisions = divisionsOf(meter);
    const PlaceCosts costs(meter, divisions.step);
    const double perBeat = costs.ticksPerBeat();
    const auto heard = onsets.first(std::min(onsets.size(), kHeard));
    Pulse best;
    double least = std::numeric_limits<double>::infinity();
    for (const Track& finalist : finalistsOf(heard, costs, divisions.starts)) {
        const Track whole = heard.size() == onsets.size()
                                ? finalist
                                : track(onsets, costs, finalist.period, finalist.ticks.front(),
                                        std::numeric_limits<double>::infinity());
        Pulse pulse = through(onsets, whole.ticks, perBeat, finalist.period);
        OnsetFit fit;
        for (int round = 0; round < 2; ++round) {
            fit = fitOnsets(onsets, pulse, costs);
            pulse = through(onsets, fit.ticks, perBeat, pulse.period);
        }
        const auto count = static_cast<double>(onsets.size());
        const double cost = fit.cost - count * std::log(pulse.period) + rateCost(pulse.period, onsets.size());
        if (cost < least) {
            least = cost;
            best = std::move(pulse);
        }
    }
    countFromFirst(best, onsets.front());
    return best;
}

Pulse pulseOfMetronome(std::span<const double> onsets, PhraseMeter meter, double beat, double interval) {
    constexpr double kMostOff = 0.06;
    Pulse pulse{.anchors = {{beat, 0}}, .period = interval};
    if (onsets.empty())
        return pulse;
    const PlaceCosts costs(meter, divisionsOf(meter).step);
    const OnsetFit fit = fitOnsets(onsets, pulse, costs);
    double off = 0;
    for (std::size_t i = 0; i < onsets.size(); ++i)
        off += onsets[i] - beat - fit.ticks[i] * interval / costs.ticksPerBeat();
    off /= static_cast<double>(onsets.size() + 4);
    pulse.anchors.front().moment += std::clamp(off, -kMostOff, kMostOff);
    countFromFirst(pulse, onsets.front());
    return pulse;
}

} // namespace velmora
