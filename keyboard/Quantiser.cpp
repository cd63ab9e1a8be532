// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/Quantiser.h"

#include "keyboard/OnsetFit.h"
#include "keyboard/Pulse.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmora {

namespace {
/// What a finer grid must gain to be taken, in the cost of `OnsetFit`.
constexpr double kFiner = 3;
/// Of a beat: how far the end of a phrase may be from a beat and be on it.
constexpr double kNearBeat = 0.5;

bool divides(NoteGrid grid, PhraseMeter meter) {
    return meter.ticksPerBeat() % rowOf(grid).ticks == 0;
}

int roundedUp(double ticks, int step) {
    return static_cast<int>(std::ceil(ticks / step - 0.25)) * step;
}

int rounded(double ticks, int step) {
    return static_cast<int>(std::lround(ticks / step)) * step;
}

/// Where a note ends that goes on to @p next, the start of what comes after it.
int legatoEnd(double end, int next, int step, int perBeat) {
    return next - end < perBeat ? next : std::min(next, roundedUp(end, step));
}

/// Where the last note ends: on a beat, if it was let go of shortly before one.
int lastEnd(double end, int step, int perBeat) {
    const int beat = roundedUp(end, perBeat);
    return beat - end < perBeat * kNearBeat ? beat : roundedUp(end, step);
}
/// A note that is struck again within a step is one note.
void join(std::vector<GridNote>& notes, const GridNote& more) {
    for (auto i = notes.size(); i-- > 0 && notes[i].start == more.start;)
        if (notes[i].note == more.note) {
            notes[i].length = std::max(notes[i].length, more.length);
            notes[i].velocity = std::max(notes[i].velocity, more.velocity);
            return;
        }
    notes.push_back(more);
}
} // namespace

std::vector<double> onsetsOf(std::span<const PlayedNote> notes) {
    std::vector<double> onsets(notes.size());
    std::ranges::transform(notes, onsets.begin(), &PlayedNote::onset);
    return onsets;
}

NoteGrid simplestGrid(std::span<const PlayedNote> notes, const Pulse& pulse, PhraseMeter meter) {
    const std::vector<double> onsets = onsetsOf(notes);
    NoteGrid best = NoteGrid::Sixteenth;
    double least = std::numeric_limits<double>::infinity();
    double dearer = 0;
    for (const NoteGridRow& row : kNoteGrids) {
        if (!divides(row.grid, meter) && row.grid != NoteGrid::ThirtySecond)
            continue;
        const double cost = fitOnsets(onsets, pulse, PlaceCosts(meter, row.ticks)).cost + dearer;
        if (cost < least) {
            least = cost;
            best = row.grid;
        }
        dearer += kFiner;
    }
    return best;
}

std::vector<GridNote> quantise(std::span<const PlayedNote> notes, const Pulse& pulse, PhraseMeter meter,
                               NoteGrid grid, NoteLengths lengths) {
    const int step = rowOf(grid).ticks;
    const int perBeat = meter.ticksPerBeat();
    const OnsetFit fit = fitOnsets(onsetsOf(notes), pulse, PlaceCosts(meter, step));
    std::vector<GridNote> quantised;
    quantised.reserve(notes.size());
    std::size_t next = 0; // the first note that begins later
    for (std::size_t i = 0; i < notes.size(); ++i) {
        const int start = fit.ticks[i];
        next = std::max(next, i + 1);
        while (next < notes.size() && fit.ticks[next] == start)
            ++next;
        // As far from its place as it was from its onset: an early note is not a long one.
        const double length = (pulse.beatAt(notes[i].end) - pulse.beatAt(notes[i].onset)) * perBeat;
        const double end = start + length;
        int last = start + rounded(length, step);
        if (lengths == NoteLengths::Legato)
            last = next < notes.size() ? legatoEnd(end, fit.ticks[next], step, perBeat)
                                       : lastEnd(end, step, perBeat);
        join(quantised,
             {start, std::max(step, last - start), notes[i].note, notes[i].velocity, notes[i].program});
    }
    return quantised;
}

} // namespace velmora
