// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/GridNotes.h"

#include "score/Score.h"
#include "sound/Chords.h"
#include "sound/Instruments.h"

#include <algorithm>

namespace velmora::notation {

namespace {
constexpr int kLowestRow = 127;

int drumKeyOf(const Score& score, int channel, int position) {
    const int code = score.NoteInstrument.valueOr(channel, position, 0);
    return channel >= kFirstPercussion && code >= kFirstPercussionCode ? code - kKeyToCode : -1;
}
} // namespace

std::vector<GridNote> notesOf(const Score& score, int channel, int first, int end) {
    std::vector<GridNote> notes;
    const auto cells = score.NoteCell.row(channel);
    end = std::min(end, static_cast<int>(cells.size()));
    for (int position = first; position < end;) {
        const int cell = cells[static_cast<std::size_t>(position)];
        const int start = position++;
        if (cellClass(cell) != CellClass::Head)
            continue;
        while (position < end &&
               cellClass(cells[static_cast<std::size_t>(position)]) == CellClass::Continuation)
            ++position;
        const bool isMelody = channel < kMelodyChannels;
        notes.push_back({.start = start,
                         .end = position,
                         .row = cellRow(cell),
                         .chord = isMelody ? score.Polyphonics.valueOr(channel + 1, start, 0) : 0,
                         .drumKey = drumKeyOf(score, channel, start)});
    }
    return notes;
}

int midiNoteOf(int row) {
    return RowToNote(std::clamp(row, 0, kLowestRow));
}

ChordTones chordTones(int chord) {
    ChordTones tones;
    if (chord < 1 || chord >= static_cast<int>(kChordTypes.size()))
        return tones;
    ChordSteps steps;
    steps.SelectChord(chord);
    const auto add = [&](int step) { tones.semitones[static_cast<std::size_t>(tones.count++)] = step; };
    add(steps.ChordStep1);
    if (steps.ChordStep2 > 0)
        add(steps.ChordStep2);
    if (steps.ChordStep3 > 0)
        add(steps.ChordStep3);
    return tones;
}

} // namespace velmora::notation
