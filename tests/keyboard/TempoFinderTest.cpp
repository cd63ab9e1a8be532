// SPDX-License-Identifier: GPL-2.0-or-later
// The beat of known tunes as hands play them: beside the beat, at any tempo.
#include "keyboard/TempoFinder.h"

#include "keyboard/Quantiser.h"
#include "tests/keyboard/KnownTunes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <numbers>
#include <random>
#include <utility>

using namespace velmora;

namespace {
constexpr int kTicksOfSixteenth = kTicksPerQuarter / 4;

/// A tune as somebody plays it.
struct Rendition {
    const KnownTune& tune;
    PhraseMeter meter;
    std::vector<TuneNote> truth;
    double period; ///< seconds of a beat
    double beat;   ///< when the metronome beats: the first bar line
    std::vector<PlayedNote> notes;
};

/// @param sway by how much the tempo comes and goes, as a share of it
Rendition play(unsigned seed, double sway = 0) {
    std::mt19937 random(seed);
    const auto between = [&random](double least, double most) {
        return least + (most - least) * static_cast<double>(random()) / 4294967296.0;
    };
    const KnownTune& tune = knownTunes()[seed % knownTunes().size()];
    Rendition made{tune, {tune.beats, tune.value}, notesOf(tune), 60 / between(60, 160), 0, {}};
    std::normal_distribution<double> jitter(0, between(0.015, 0.030));
    const double first = between(0, 5);
    const double held = between(0.6, 1); // of a note's value
    const double swing = between(0, 2 * std::numbers::pi);
    const double perBeat = double{1} * made.meter.ticksPerBeat() / kTicksOfSixteenth;
    const auto moment = [&](double sixteenth) {
        constexpr double kSwayBeats = 20;
        constexpr double kTurn = 2 * std::numbers::pi / kSwayBeats;
        const double beat = sixteenth / perBeat;
        return first + made.period * (beat + sway / kTurn * std::sin(beat * kTurn + swing));
    };
    made.beat = moment(tune.pickUp);
    for (const TuneNote& note : made.truth) {
        PlayedNote played{.note = static_cast<std::uint8_t>(note.note)};
        played.onset = moment(note.start) + jitter(random);
        played.end = std::max(played.onset + 0.03, moment(note.start + note.length * held) + jitter(random));
        made.notes.push_back(played);
    }
    std::ranges::stable_sort(made.notes, {}, &PlayedNote::onset);
    return made;
}

/// What came of many.
struct Figures {
    double right = 0;
    double found = 0;
    double truth = 0;
    double values = 0;
    double tempos = 0;
    int plays = 0;

    [[nodiscard]] double f1() const { return 2 * right / (found + truth); }
    [[nodiscard]] double valuesRight() const { return values / truth; }
    [[nodiscard]] double temposRight() const { return tempos / plays; }
    void print(const char* how) const {
        std::printf("  %s: %d plays, onsets F1 %.4f, tempo right %.4f, note values right %.4f\n", how, plays,
                    f1(), temposRight(), valuesRight());
    }
};

/// 1, 2 or 0.5: by how much the found beats are too long; nothing for another tempo.
double scaleOf(const Pulse& pulse, double period) {
    for (const double scale : {1.0, 0.5, 2.0})
        if (std::abs(pulse.period / period / scale - 1) < 0.04)
            return scale;
    return 0;
}

/// Counts the notes that stand where the tune has them. @param at how many ticks before beat 0 the tune
/// begins; where no metronome tells, most notes do.
void count(Figures& figures, const Rendition& play, const Pulse& pulse, std::optional<int> at) {
    const double scale = scaleOf(pulse, play.period);
    const NoteGrid grid = simplestGrid(play.notes, pulse, play.meter);
    const auto quantised = quantise(play.notes, pulse, play.meter, grid, NoteLengths::Legato);
    const auto ticks = [scale](int found) { return std::lround(found * (scale > 0 ? scale : 1)); };
    std::map<long, int> shifts;
    for (std::size_t i = 0; i < std::min(quantised.size(), play.truth.size()); ++i)
        ++shifts[ticks(quantised[i].start) - long{play.truth[i].start} * kTicksOfSixteenth];
    const long shift =
        at ? *at
           : std::ranges::max_element(shifts, {}, [](const auto& entry) { return entry.second; })->first;
    std::map<std::pair<long, int>, long> truth; // the value of the note there
    for (const TuneNote& note : play.truth)
        truth[{long{note.start} * kTicksOfSixteenth + shift, note.note}] =
            long{note.length} * kTicksOfSixteenth;
    for (const GridNote& note : quantised) {
        const auto there = truth.find({ticks(note.start), note.note});
        if (there == truth.end())
            continue;
        ++figures.right;
        figures.values += there->second == ticks(note.length) ? 1 : 0;
        truth.erase(there);
    }
    figures.found += static_cast<double>(quantised.size());
    figures.truth += static_cast<double>(play.truth.size());
    figures.tempos += scale > 0 ? 1 : 0;
    ++figures.plays;
}

constexpr int kPlays = 1000;
} // namespace

TEST(TempoFinderTest, TunesPlayedToAMetronomeStandWhereTheyBelong) {
    Figures figures;
    for (int seed = 0; seed < kPlays; ++seed) {
        const Rendition play = ::play(static_cast<unsigned>(seed));
        const double heard = play.beat - 7 * play.period; // it has been running
        const Pulse pulse = pulseOfMetronome(onsetsOf(play.notes), play.meter, heard, play.period);
        const Pulse::Anchor beat = pulse.anchors.front();
        const double zero = beat.moment - beat.beat * play.period;
        const int beats = static_cast<int>(std::lround((play.beat - zero) / play.period));
        const int at = beats * play.meter.ticksPerBeat() - play.tune.pickUp * kTicksOfSixteenth;
        count(figures, play, pulse, at);
    }
    figures.print("with a metronome");
    EXPECT_GE(figures.f1(), 0.97);
    EXPECT_GE(figures.temposRight(), 0.95);
    EXPECT_GE(figures.valuesRight(), 0.90);
}

TEST(TempoFinderTest, TunesPlayedFreelyAreUnderstood) {
    Figures figures;
    for (int seed = 0; seed < kPlays; ++seed) {
        const Rendition play = ::play(static_cast<unsigned>(seed));
        count(figures, play, findPulse(onsetsOf(play.notes), play.meter), {});
    }
    figures.print("without a metronome");
    EXPECT_GE(figures.f1(), 0.90);
    EXPECT_GE(figures.temposRight(), 0.95);
    EXPECT_GE(figures.valuesRight(), 0.90);
}

TEST(TempoFinderTest, ATempoThatComesAndGoesIsFollowed) {
    Figures figures;
    for (int seed = 0; seed < kPlays / 4; ++seed) {
        const Rendition play = ::play(static_cast<unsigned>(seed), 0.03);
        count(figures, play, findPulse(onsetsOf(play.notes), play.meter), {});
    }
    figures.print("with a tempo that sways by 3 %");
    EXPECT_GE(figures.f1(), 0.90);
    EXPECT_GE(figures.valuesRight(), 0.85);
}

TEST(TempoFinderTest, ALongPhraseIsFollowedToItsEnd) {
    std::vector<double> onsets;
    std::mt19937 random(7);
    std::normal_distribution<double> jitter(0, 0.02);
    double moment = 1;
    for (int i = 0; i < 2000; ++i) {
        onsets.push_back(moment + jitter(random));
        moment += (i % 4 < 2 ? 0.25 : 0.5) * (1 + 0.05 * std::sin(i / 200.0));
    }
    std::ranges::sort(onsets);
    const Pulse pulse = findPulse(onsets, {});
    EXPECT_NEAR(pulse.period, 0.5, 0.02);
    // 6 eighths for each 4 notes.
    EXPECT_NEAR(pulse.beatAt(onsets[1996]), 1996 / 4 * 3.0, 0.2);
}

TEST(TempoFinderTest, OfOneNoteNoTempoIsTold) {
    const std::array<double, 1> one{3.25};
    EXPECT_EQ(findPulse(one, {}).beatsPerMinute(), 120);
    EXPECT_EQ(findPulse(one, {}).beatAt(3.25), 0);
    EXPECT_EQ(findPulse({}, {}).beatsPerMinute(), 120);
    const std::array<double, 3> chord{3.25, 3.26, 3.27};
    EXPECT_EQ(findPulse(chord, {}).beatsPerMinute(), 120);
}

TEST(TempoFinderTest, AHandThatIsSteadilyAheadOfTheMetronomeIsOnIt) {
    const std::array<double, 8> onsets{0.95, 1.45, 1.95, 2.45, 2.95, 3.45, 3.95, 4.45};
    const Pulse pulse = pulseOfMetronome(onsets, {}, 0, 0.5);
    EXPECT_NEAR(pulse.beatAt(2.95), 4, 0.05);
    EXPECT_EQ(pulse.period, 0.5);
}

TEST(TempoFinderTest, AnythingThatRisesIsTaken) {
    std::mt19937 random(3);
    for (int round = 0; round < 200; ++round) {
        std::vector<double> onsets(random() % 40);
        const double span = std::pow(10.0, static_cast<double>(random() % 5) - 1);
        for (double& onset : onsets)
            onset = static_cast<double>(random() % 1000) / 1000 * span;
        std::ranges::sort(onsets);
        const PhraseMeter meter{static_cast<int>(random() % 17), 1 << random() % 7};
        const Pulse pulse = findPulse(onsets, meter);
        EXPECT_GT(pulse.period, 0);
        for (std::size_t i = 1; i < onsets.size(); ++i)
            EXPECT_LE(pulse.beatAt(onsets[i - 1]), pulse.beatAt(onsets[i]) + 1e-9);
    }
}
