// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::notation {

/// The values of notes, each half of the one before.
enum class NoteValue : std::uint8_t {
    Whole,
    Half,
    Quarter,
    Eighth,
    Sixteenth,
    ThirtySecond,
    SixtyFourth,
    OneTwentyEighth,
    TwoFiftySixth,
    FiveHundredTwelfth ///< a step of the finest grid in 4/4
};

/// One sign of a note or rest: a value with its dots, or one of a triplet.
struct Value {
    NoteValue value = NoteValue::Quarter;
    std::uint8_t dots = 0;
    bool triplet = false;
    bool wholeBar = false; ///< the rest of a whole bar, of whatever length
    bool operator==(const Value&) const = default;
};
/// "quarter", "half.", "half..", "eighth3"; "bar" for the rest of a whole bar.
[[nodiscard]] std::string textOf(const Value& value);

enum class StaffClef : std::uint8_t { Treble, Bass, Percussion };

struct Staff {
    int channel;
    int secondChannel = -1; ///< a second voice on the staff
    StaffClef clef;
};

/// What is drawn before a head.
enum class Sign : std::uint8_t { None, Sharp, Flat, Natural };

/// One head of a note.
struct Pitch {
    std::string name; ///< `NoteName`: "F#", "Bb"; "-" on a percussion staff
    Sign sign = Sign::None;
    bool courtesy = false; ///< the sign only reminds
    int place = 0;         ///< `cy` less `HeaderHeight`, after the bass shift; the head's middle is 5 below
    int row = 0;           ///< in the grid
    int drumKey = -1;      ///< General MIDI key on a percussion staff, 35 to 81; -1 for none
};

/// What one bar holds of a note, or a run of rest.
struct Written {
    int bar = 1;   ///< from 1: position / `NotesPerMeasure` + 1
    int staff = 0; ///< index in `WrittenScore::staves`
    int voice = 0; ///< 0, or 1 for the second channel of a staff
    int step = 0;  ///< `NB` where it begins
    int steps = 0; ///< positions it takes in this bar
    std::vector<Value> values;
    bool isRest = false;

    // Of a note.
    std::vector<Pitch> pitches; ///< the written one, then the others of its chord
    bool held = false;          ///< it began in an earlier bar
    bool tiedIn = false;
    bool tiedOut = false;
    bool stemUp = true;
    bool lastOfNote = true; ///< `LO` is 0 behind it
    /// A beam for each value: the group's number in the bar's staff and voice, from 1; 0 for none. The
    /// classic page has one entry, as its groups are made of whole notes.
    std::vector<int> beams;
    int beamIndex = 0; ///< the I-th of N notes under one beam; 0 for none
    int beamCount = 0;
};

/// A score as it is to be written: what reading gives and engraving takes.
struct WrittenScore {
    int first = 0;            ///< the first position written, a multiple of `NotesPerMeasure`
    int LastStep = 0;         ///< behind the last, raised to a multiple of it
    int NotesPerMeasure = 16; ///< M
    int TxtMeter = 4;         ///< upper number of the time signature
    int NoteX = 4;            ///< the lower
    int key = 0;              ///< in `kKeys`
    int lastNoteEnd = 0;      ///< behind the last note that was read, not raised
    std::vector<Staff> staves;
    std::vector<Written> items; ///< bar by bar, staff by staff, voice by voice, in the order of time

    [[nodiscard]] int bars() const { return NotesPerMeasure < 1 ? 0 : (LastStep - first) / NotesPerMeasure; }
};

} // namespace velmora::notation
