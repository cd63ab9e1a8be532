// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/Spelling.h"

#include <array>
#include <cstddef>

namespace velmora::notation {

namespace {
constexpr int kOctave = 12;
constexpr int kLetters = 7;
/// Letters in fifths from F on, C being 0.
constexpr std::array kLetterOfFifth{3, 0, 4, 1, 5, 2, 6};
constexpr std::array kSemitones{0, 2, 4, 5, 7, 9, 11};
constexpr std::array kLetterNames{'C', 'D', 'E', 'F', 'G', 'A', 'B'};

// Places in fifths.
constexpr int kESharp = 11;
constexpr int kBSharp = 12;
constexpr int kCFlat = -7;
constexpr int kSharpsOfESharp = 3;
constexpr int kSharpsOfBSharp = 4;
// Relative to the key: what it spells when nothing speaks against it.
constexpr int kLowest = -3; ///< lowered third
constexpr int kLowered = -2;
constexpr int kFirstOfScale = -1;
constexpr int kLastOfScale = 5;
constexpr int kRaisedFourth = 6;

constexpr int modulo(int number, int by) {
    return (number % by + by) % by;
}

bool isAllowed(int note, int fifths, int key) {
    if (note == 0 && fifths == kBSharp) // there is no B below it
        return false;
    if (fifths > kBSharp || (fifths == kBSharp && key < kSharpsOfBSharp) ||
        (fifths == kESharp && key < kSharpsOfESharp))
        return false;
    return fifths > kCFlat || (fifths == kCFlat && key - 1 <= kCFlat);
}

SpelledNote spelledAs(int note, int fifths) {
    const int letter = kLetterOfFifth[static_cast<std::size_t>(modulo(fifths + 1, kLetters))];
    const int alter = (fifths + 1 - modulo(fifths + 1, kLetters)) / kLetters;
    const int natural = note - alter - kSemitones[static_cast<std::size_t>(letter)];
    // MIDI note 0 is the C of octave -1 on paper; here octaves are counted from it.
    return {.line = natural / kOctave * kLetters + letter, .alter = alter, .fifths = fifths};
}

/// The fifths that sound like @p note and are nearest to the key.
int fifthsByKey(int note, int key) {
    const int above = modulo(note * kLetters - (key + kLowest), kOctave);
    const int fifths = key + kLowest + above;
    if (isAllowed(note, fifths, key))
        return fifths;
    return fifths > key ? fifths - kOctave : fifths + kOctave;
}
} // namespace

std::string SpelledNote::name() const {
    std::string text(1, kLetterNames[static_cast<std::size_t>(modulo(line, kLetters))]);
    if (alter != 0)
        text += alter > 0 ? '#' : 'b';
    return text;
}

int alterInKey(int line, int key) {
    const int letter = modulo(line, kLetters);
    for (int place = 0; place < kLetters; ++place) {
        if (kLetterOfFifth[static_cast<std::size_t>(place)] == letter)
            return place < key ? 1 : place >= kLetters + key ? -1 : 0;
    }
    return 0;
}

SpelledNote spell(int note, int key, int next) {
    int fifths = fifthsByKey(note, key);
    const int place = fifths - key;
    if (place > kRaisedFourth && next == note - 1 && isAllowed(note, fifths - kOctave, key))
        fifths -= kOctave;
    else if (place <= kLowered && next == note + 1 && isAllowed(note, fifths + kOctave, key))
        fifths += kOctave;
    return spelledAs(note, fifths);
}

SpelledNote spellOver(const SpelledNote& root, int rootNote, int semitones, int key) {
    struct Interval {
        int semitones;
        int fifths;
    };
    constexpr std::array kIntervals{Interval{0, 0}, Interval{3, -3},  Interval{4, 4}, Interval{6, -6},
                                    Interval{7, 1}, Interval{10, -2}, Interval{11, 5}};
    const int note = rootNote + semitones;
    const int place = fifthsByKey(note, key) - key;
    if (place >= kFirstOfScale && place <= kLastOfScale)
        return spelledAs(note, key + place);
    for (const Interval& interval : kIntervals) {
        const int fifths = root.fifths + interval.fifths;
        if (interval.semitones == modulo(semitones, kOctave) && isAllowed(note, fifths, key))
            return spelledAs(note, fifths);
    }
    return spell(note, key);
}

} // namespace velmora::notation
