// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/CleanOctaves.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace velmora::notation {

namespace {

constexpr int kHighest = 11;  ///< above the third ledger line an octave mark begins
constexpr int kFarthest = 15; ///< and up to the fifth one it need not become two
constexpr int kNearest = -7;  ///< so far beyond the other side of the staff notes may be moved
constexpr int kOctave = 7;
constexpr int kTrebleMiddle = 34; // B4, in steps of the scale from C0
constexpr int kBassMiddle = 22;   // D3

/// Steps of the scale from C0, by the name's letter and the row's key.
int scaleStep(const Pitch& pitch) {
    constexpr std::array<int, 7> kKeysOfLetters{9, 11, 0, 2, 4, 5, 7};
    constexpr std::array<int, 7> kStepsOfLetters{5, 6, 0, 1, 2, 3, 4};
    const auto letter = static_cast<std::size_t>(pitch.name[0] - 'A');
    const int key = 127 - pitch.row;
    int altered = 0;
    for (const char c : pitch.name.substr(1))
        altered += c == '#' ? 1 : c == 'b' ? -1 : 0;
    const int octave =
        static_cast<int>(std::floor((key - altered - kKeysOfLetters.at(letter)) / 12.0 + 0.5)) - 1;
    return octave * kOctave + kStepsOfLetters.at(letter);
}

/// How many of the notes from there on stand under one beam.
std::size_t beamedFrom(std::span<const Written* const> notes, std::size_t first) {
    std::size_t end = first + 1;
    while (end < notes.size() && notes[end]->beamIndex == notes[end - 1]->beamIndex + 1 &&
           notes[end - 1]->beamIndex > 0 && notes[end]->bar == notes[first]->bar &&
           notes[end]->voice == notes[first]->voice)
        ++end;
    return end - first;
}

/// Notes that are written in one octave.
struct Unit {
    int from, to; ///< positions
    int lowest, highest;
    int octaves = 0;
    bool held; ///< its first note began before it

    /// Whether its notes can be read that many octaves nearer.
    [[nodiscard]] bool fits(int by) const {
        return by > 0 ? lowest - by * kOctave >= kNearest : highest - by * kOctave <= -kNearest;
    }
    /// How far it is above the staff, or below it.
    [[nodiscard]] int beyond(int side) const { return side > 0 ? highest : -lowest; }
};

int octavesNeeded(int lowest, int highest) {
    const auto octavesBeyond = [](int beyond) { return beyond <= 0 ? 0 : (beyond + kOctave - 1) / kOctave; };
    const int up = std::min(octavesBeyond(highest - kHighest), 2);
    const int down = std::min(octavesBeyond(-kHighest - lowest), 2);
    // A chord wider than the staff can hold keeps its ledger lines on one side.
    if (up > 0)
        return lowest - up * kOctave < -kHighest ? 0 : up;
    return down > 0 && highest + down * kOctave > kHighest ? 0 : -down;
}

class OctaveFinder {
public:
    OctaveFinder(StaffClef clef, const WrittenScore& score)
        : clef_(clef)
        , measure_(score.NotesPerMeasure)
        , twoBeats_(score.NotesPerMeasure * std::max(1, score.NoteX) / std::max(1, score.TxtMeter) / 2) {}

    std::vector<OctaveRange> find(std::span<const Written* const> notes) {
        for (std::size_t i = 0; i < notes.size();) {
            const auto group = notes.subspan(i, beamedFrom(notes, i));
            addGroup(group);
            i += group.size();
        }
        for (const int side : {1, -1}) {
            joinNeighbours(side);
            takeOneKind(side);
        }
        for (std::size_t i = 1; i < units_.size(); ++i)
            if (units_[i].held) // what is tied has one octave
                units_[i].octaves = units_[i - 1].octaves;
        return ranges();
    }

private:
    [[nodiscard]] Unit unitOf(std::span<const Written* const> notes) const {
        const auto position = [this](const Written& note) { return (note.bar - 1) * measure_ + note.step; };
        Unit unit{.from = position(*notes.front()),
                  .to = position(*notes.back()) + notes.back()->steps,
                  .lowest = 1000,
                  .highest = -1000,
                  .held = notes.front()->tiedIn};
        for (const Written* note : notes)
            for (const Pitch& pitch : note->pitches) {
                const int place = placeOnStaff(pitch, clef_);
                unit.highest = std::max(unit.highest, place);
                unit.lowest = std::min(unit.lowest, place);
            }
        unit.octaves = octavesNeeded(unit.lowest, unit.highest);
        return unit;
    }

    /// Under one beam all are written alike, unless they are too far apart for that.
    void addGroup(std::span<const Written* const> group) {
        const Unit whole = unitOf(group);
        const bool isAlike = whole.octaves != 0 || (whole.highest <= kHighest && whole.lowest >= -kHighest);
        if (isAlike) {
            units_.push_back(whole);
            return;
        }
        for (std::size_t i = 0; i < group.size(); ++i)
            units_.push_back(unitOf(group.subspan(i, 1)));
    }

    /// A short way between two ranges of a side belongs to them; a longer one where it is far out itself.
    void joinNeighbours(int side) {
        std::size_t last = units_.size();
        for (std::size_t i = 0; i < units_.size(); ++i) {
            if (units_[i].octaves * side <= 0)
                continue;
            if (last < i)
                join(last, i, side);
            last = i;
        }
    }
    void join(std::size_t first, std::size_t last, int side) {
        const int gap = units_[last].from - units_[first].to;
        const int octaves = std::min(units_[first].octaves * side, units_[last].octaves * side) * side;
        for (std::size_t i = first + 1; i < last; ++i)
            if (!units_[i].fits(octaves) || (gap >= twoBeats_ && units_[i].beyond(side) < kOuter))
                return;
        if (gap >= measure_)
            return;
        for (std::size_t i = first + 1; i < last; ++i)
            units_[i].octaves = octaves;
    }

    void takeOneKind(int side) {
        for (std::size_t i = 0; i < units_.size();) {
            std::size_t end = i + 1;
            if (units_[i].octaves * side > 0) {
                while (end < units_.size() && units_[end].octaves * side > 0 &&
                       units_[end].from - units_[end - 1].to < twoBeats_)
                    ++end;
                takeOneKind(std::span(units_).subspan(i, end - i), side);
            }
            i = end;
        }
    }
    static void takeOneKind(std::span<Unit> run, int side) {
        for (const int octaves : {1, 2}) {
            const bool canTake = std::ranges::all_of(run, [&](const Unit& unit) {
                return unit.beyond(side) - octaves * kOctave <= kFarthest && unit.fits(octaves * side);
            });
            if (!canTake)
                continue;
            for (Unit& unit : run)
                unit.octaves = octaves * side;
            return;
        }
    }

    [[nodiscard]] std::vector<OctaveRange> ranges() const {
        std::vector<OctaveRange> ranges;
        int before = 0;
        for (const Unit& unit : units_) {
            if (unit.octaves != 0 && unit.octaves == before && unit.from - ranges.back().to < measure_)
                ranges.back().to = std::max(ranges.back().to, unit.to);
            else if (unit.octaves != 0)
                ranges.push_back({unit.from, unit.to, unit.octaves});
            before = unit.octaves;
        }
        return ranges;
    }

    static constexpr int kOuter = 5; ///< the outermost line's place and one more

    StaffClef clef_;
    int measure_;
    int twoBeats_;
    std::vector<Unit> units_;
};

} // namespace

int placeOnStaff(const Pitch& pitch, StaffClef clef) {
    const bool isNamed = !pitch.name.empty() && pitch.name[0] >= 'A' && pitch.name[0] <= 'G';
    if (clef == StaffClef::Percussion || !isNamed)
        return 0;
    return scaleStep(pitch) - (clef == StaffClef::Bass ? kBassMiddle : kTrebleMiddle);
}

std::vector<OctaveRange> findOctaves(std::span<const Written* const> notes, StaffClef clef,
                                     const WrittenScore& score) {
    return OctaveFinder(clef, score).find(notes);
}

} // namespace velmora::notation
