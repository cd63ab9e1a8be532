// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <string>

namespace velmora::notation {

/// A MIDI note as it is written.
struct SpelledNote {
    int line = 35;  ///< diatonic steps above the C of octave 0, whatever the sign; MIDI note 60 is 35
    int alter = 0;  ///< -1 flat, 1 sharp
    int fifths = 0; ///< of its name above C: F is -1, F sharp 6

    [[nodiscard]] std::string name() const; ///< "F#"
    bool operator==(const SpelledNote&) const = default;
};

/// What the signature of @p key (sharps, or flats with a minus) says of a line: -1, 0 or 1.
[[nodiscard]] int alterInKey(int line, int key);

/// Spells a note by the key: what the key has, the raised fourth, first and fifth (the leading tones), the
/// lowered seventh and third; the other way where @p next goes on by a semitone. No Fb at all, Cb where the
/// key has it, E# from three sharps on and B# from four.
/// @param next the next note of another pitch; -1 for none
[[nodiscard]] SpelledNote spell(int note, int key, int next = -1);

/// A chord's note over its root: as the key has it, else in thirds of the root: four semitones are a third,
/// seven a fifth. As `spell` where that would need a sign that there isn't.
[[nodiscard]] SpelledNote spellOver(const SpelledNote& root, int rootNote, int semitones, int key);

} // namespace velmora::notation
