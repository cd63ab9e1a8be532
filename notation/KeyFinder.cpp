// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/KeyFinder.h"

#include "notation/GridNotes.h"
#include "notation/Keys.h"
#include "score/Score.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace velmora::notation {

namespace {
constexpr std::size_t kPitchClasses = 12;

/// How much each degree is worth to a key, in semitones from its tonic.
using Profile = std::array<double, kPitchClasses>;
constexpr Profile kMajor{5.0, 1.0, 3.5, 1.0, 4.5, 4.0, 1.4, 4.5, 1.2, 3.5, 1.4, 3.6};
constexpr Profile kMinor{5.0, 1.0, 3.5, 4.5, 1.2, 4.0, 1.4, 4.5, 3.5, 1.6, 3.2, 3.0};
constexpr double kLastBonus = 0.35; ///< of a tonic that the music ends on
constexpr double kFirstBonus = 0.1; ///< of one that it begins on

std::size_t pitchClass(int note) {
    return static_cast<std::size_t>((note % 12 + 12) % 12);
}

double mean(const std::array<double, kPitchClasses>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(kPitchClasses);
}

/// How far the weights go with the profile, as a correlation without the scale of the weights, which all keys
/// share.
double likeness(const std::array<double, kPitchClasses>& weights, const Profile& profile, std::size_t tonic) {
    const double centre = mean(weights);
    const double profileCentre = mean(profile);
    double together = 0;
    double spread = 0;
    double profileSpread = 0;
    for (std::size_t i = 0; i < kPitchClasses; ++i) {
        const double weight = weights[(tonic + i) % kPitchClasses] - centre;
        const double worth = profile[i] - profileCentre;
        together += weight * worth;
        spread += weight * weight;
        profileSpread += worth * worth;
    }
    const double scale = spread * profileSpread;
    return scale > 0 ? together / std::sqrt(scale) : 0;
}

double fit(const PitchWeights& pitches, const Profile& profile, std::size_t tonic) {
    const int pitch = static_cast<int>(tonic);
    return likeness(pitches.weights, profile, tonic) + (pitches.lowestOfLast == pitch ? kLastBonus : 0) +
           (pitches.lowestOfFirst == pitch ? kFirstBonus : 0);
}
} // namespace

PitchWeights pitchWeights(const Score& score, int first, int last) {
    PitchWeights pitches;
    int lastEnd = -1;
    int firstStart = last;
    int lowestOfLast = 0;
    int lowestOfFirst = 0;
    const auto take = [&](const GridNote& of, int note) {
        pitches.weights[pitchClass(note)] += of.end - of.start;
        if (of.end > lastEnd || (of.end == lastEnd && note < lowestOfLast)) {
            lastEnd = of.end;
            lowestOfLast = note;
            pitches.lowestOfLast = static_cast<int>(pitchClass(note));
        }
        if (of.start < firstStart || (of.start == firstStart && note < lowestOfFirst)) {
            firstStart = of.start;
            lowestOfFirst = note;
            pitches.lowestOfFirst = static_cast<int>(pitchClass(note));
        }
    };
    for (int channel = 0; channel < kMelodyChannels; ++channel) {
        if (score.ChannelMuted[channel])
            continue;
        for (const GridNote& note : notesOf(score, channel, first, last)) {
            const int root = midiNoteOf(note.row);
            take(note, root);
            const ChordTones tones = chordTones(note.chord);
            for (int i = 0; i < tones.count; ++i)
                take(note, root + tones.semitones[static_cast<std::size_t>(i)]);
        }
    }
    return pitches;
}

int findKey(const PitchWeights& pitches) {
    const bool isSilent = std::ranges::all_of(pitches.weights, [](double weight) { return weight <= 0; });
    if (isSilent)
        return 0;
    int best = 0;
    double bestFit = -10;
    for (std::size_t i = 0; i < kKeys.size(); ++i) {
        const int fifths = kKeys[i].fifths;
        const double major = fit(pitches, kMajor, pitchClass(fifths * 7));
        const double minor = fit(pitches, kMinor, pitchClass(fifths * 7 + 9));
        if (std::max(major, minor) > bestFit) {
            bestFit = std::max(major, minor);
            best = static_cast<int>(i);
        }
    }
    return best;
}

} // namespace velmora::notation
