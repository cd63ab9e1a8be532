// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace velmora {

/// When a key strikes more than its own note. Each is a check box that clears the other two.
enum class Polynotes : std::uint8_t {
    Single,     ///< `Check10`, "Single Notes"
    OnSpacebar, ///< `Check2`, "Polynotes on Spacebar down"
    Always      ///< `Check8`, "Always play polynotes"
};

/// What the keyboard's controls stand on. The window shows this record; the rooms read it.
struct KeyboardControls {
    int OctaveShift =
        0; ///< semitones; written in whole octaves by `Option5` and in semitones by `LblOct`, as meant
    int SoundChannel = 0;       ///< 0 to 8: what the keys play on and the sliders of sound act on
    int Text4 = 0;              ///< chord number, 0 to 10
    int Text1 = 1;              ///< strum tempo, 1 to 11: tens of milliseconds between notes
    bool strumAtLeftEnd = true; ///< of its slider, where a release cuts all sound
    Polynotes polynotes = Polynotes::Single;
    bool Chkstrum = false;
    bool Check9 = true;  ///< the metronome's "Tone"
    bool Check1 = false; ///< editing: computer keys are silent
    bool Check3 = false; ///< "Insert pauses"
    double Text2 = 10;   ///< "Playing Speed": milliseconds of a tick
    double Text11 = 13;  ///< "Length of Pauses"
    double Text12 = 2.5; ///< "Compression"
    int Text8 = 200;     ///< "File Tempo"

    bool operator==(const KeyboardControls&) const = default;
};

enum class KeyboardSlider : std::uint8_t {
    Channel,
    Octave,
    Chord,
    Strum,
    Volume,
    Modulation,
    Reverb,
    Chorus,
    Pan,
    Speed,
    Pauses,
    Compression,
    Tempo
};

/// A slider: what the share of its travel at which its pointer stands, 0 to 1, means.
struct KeyboardSliderRow {
    KeyboardSlider slider;
    std::string_view name;    ///< in scripts
    std::string_view control; ///< in the window
    double least;             ///< of its values
    double most;
    double rest; ///< what a right click sets
    double (*value)(double share);
    bool whole; ///< its values are whole numbers
};

inline constexpr int kKeyboardSliders = 13;
/// In the order of `KeyboardSlider`.
[[nodiscard]] const std::array<KeyboardSliderRow, kKeyboardSliders>& keyboardSliders();
[[nodiscard]] const KeyboardSliderRow& rowOf(KeyboardSlider slider);

} // namespace velmora
