// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/SpelledVoice.h"

#include "notation/Beams.h"

#include <utility>

namespace velmora::notation {

namespace {
constexpr int kHighestNote = 127;
constexpr int kStepPixels = 4;
constexpr int kBottomPlace = 67;  ///< of the lowest line
constexpr int kTrebleBottom = 37; ///< E above middle C
constexpr int kBassBottom = 25;   ///< G, an octave and a half below it

int placeOf(int line, StaffClef clef) {
    return kBottomPlace - kStepPixels * (line - (clef == StaffClef::Bass ? kBassBottom : kTrebleBottom));
}

class Speller {
public:
    Speller(StaffClef clef, int key) : clef_(clef), key_(key) {}

    /// @param next the next note of another pitch, -1 for none
    [[nodiscard]] SpelledHeads headsOf(const GridNote& note, int next) const {
        SpelledHeads heads;
        heads.note = note;
        if (clef_ == StaffClef::Percussion) {
            heads.pitches.push_back(
                {.name = "-", .place = kMiddlePlace, .row = note.row, .drumKey = note.drumKey});
            return heads;
        }
        const int root = midiNoteOf(note.row);
        const ChordTones tones = chordTones(note.chord);
        heads.pitches.reserve(static_cast<std::size_t>(tones.count) + 1);
        const SpelledNote spelled = spell(root, key_, next);
        add(heads, spelled, note.row);
        for (int i = 0; i < tones.count; ++i) {
            const int semitones = tones.semitones[static_cast<std::size_t>(i)];
            if (root + semitones >= 0 && root + semitones <= kHighestNote)
                add(heads, spellOver(spelled, root, semitones, key_), note.row - semitones);
        }
        return heads;
    }

private:
    void add(SpelledHeads& heads, const SpelledNote& spelled, int row) const {
        heads.pitches.push_back({.name = spelled.name(), .place = placeOf(spelled.line, clef_), .row = row});
        heads.spelled.push_back(spelled);
    }

    StaffClef clef_;
    int key_;
};
} // namespace

std::vector<SpelledHeads> spellVoice(const std::vector<GridNote>& notes, StaffClef clef, int key) {
    const Speller speller(clef, key);
    std::vector<SpelledHeads> voice(notes.size());
    int next = -1;
    for (std::size_t i = notes.size(); i-- > 0;) {
        if (i + 1 < notes.size() && notes[i + 1].row != notes[i].row)
            next = midiNoteOf(notes[i + 1].row);
        voice[i] = speller.headsOf(notes[i], next);
    }
    return voice;
}

} // namespace velmora::notation
