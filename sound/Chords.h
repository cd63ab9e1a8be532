// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace velmora {

/// One chord type: its entry in the list `Combo3`, its steps in semitones, and its hint.
struct ChordType {
    std::string_view name;
    int step1;
    int step2;
    int step3;
    std::string_view hint; ///< blank where the label keeps what it shows
};

/// Chord types 0 to 7. Type 0, the single note, has no steps of its own.
inline constexpr std::array kChordTypes{
    ChordType{"Single Note", 0, 0, 0, "1 note: 5C "},
    ChordType{"Major", 4, 7, 12, "4 note chord: 5C 5E 5G 6C"},
    ChordType{"Minor ", 3, 7, 12, "4 note chord: 5C 5D#  5G 6C"},
    ChordType{"Major 7th ", 4, 7, 11, "4 note chord: 5C 5E 5G  5B"},
    ChordType{"Minor 7th ", 3, 7, 10, "4 note chord: 5C 5E 5G 6C"}, // the Major hint; that is meant
    ChordType{"Minor 7th -5 ", 3, 6, 10, "4 note chord: 5C 5D# 5G 5A#"},
    ChordType{"2 Octave combo ", -12, 0, 0, "2 notes: 5C 4C"},
    ChordType{"3 Octave combo ", -12, 12, 0, ""},
};
static_assert(kChordTypes.size() == 8);

/// The setup toolbar's list: chord types 1 to 7, so its index is the type - 1.
inline constexpr std::array<std::string_view, 7> kSetupChordNames{
    "Major (4 note chord: 5C 5E 5G 6C )",          "Minor (4 note chord: 5C 5D#  5G 6C )",
    "Major 7th (4 note chord: 5C 5E 5G  5B )",     "Minor 7th (4 note chord: 5C 5D# 5G 5A# )",
    "Minor 7th -5 (4 note chord: 5C 5D 5F# 5A# )", "2 Octave combo (2 notes: 5C 4C )",
    "3 Octave combo (3 notes: 5C 4C 6C )",
};

/// The keyboard's chord buttons, a numbering of its own.
inline constexpr std::array<std::string_view, 11> kKeyboardChordNames{
    " Note",       " Major",        " Minor",     " Major 7th", " Minor 7th", " Minor 7th-5",
    " Diminished", " Dominant 7th", " Major 9th", " Minor 9th", " Octave",
};

/// Name of a keyboard chord button, blank for an index out of range.
[[nodiscard]] std::string_view keyboardChordName(int index);

/// The further notes of a chord, in semitones from the note. One record serves the whole program: what the
/// last `SelectChord` left is what the next chord plays with.
struct ChordSteps {
    int ChordStep1 = 3;
    int ChordStep2 = 7;        ///< 0 for no note
    int ChordStep3 = 12;       ///< 0 for no note
    std::string_view Label7;   ///< the hint beside the list; blank before the first chord
    std::optional<int> Combo3; ///< item that the last `SelectChord` puts the list on, if it does

    /// Sets steps and hint of a chord type. Type 0 sets the hint alone, 7 the steps alone; a type that isn't
    /// 0 to 7 changes nothing.
    void SelectChord(int type);

    bool operator==(const ChordSteps&) const = default;
};

} // namespace velmora
