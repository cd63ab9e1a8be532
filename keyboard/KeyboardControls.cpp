// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/KeyboardControls.h"

#include "score/Numbers.h"

#include <cmath>
#include <cstddef>

namespace velmora {

namespace {
template<int Most>
double wholeShare(double share) {
    return std::trunc(share * Most);
}
double strumTempo(double share) {
    return std::trunc(share * 10) + 1;
}
double panReadout(double share) {
    return std::trunc(share * 128) - 64;
}
double fromTheRight(double share) {
    return 12 - share * 12 + 1;
}
double compression(double share) {
    return share * 6 + 1;
}
double tempo(double share) {
    return 4 * roundHalfEven(share * 125);
}
} // namespace

const std::array<KeyboardSliderRow, kKeyboardSliders>& keyboardSliders() {
    using enum KeyboardSlider;
    static constexpr std::array<KeyboardSliderRow, kKeyboardSliders> kRows{{
        {Channel, "channel", "LblCh", 0, 8, 0, wholeShare<8>, true},
        {Octave, "octave", "LblOct", 0, 10, 0, wholeShare<10>, true},
        {Chord, "chord", "LblCrd", 0, 10, 0, wholeShare<10>, true},
        {Strum, "strum", "LblStrum", 1, 11, 1, strumTempo, true},
        {Volume, "volume", "lblVolume", 0, 127, 127, wholeShare<127>, true},
        {Modulation, "modulation", "LblMod", 0, 127, 0, wholeShare<127>, true},
        {Reverb, "reverb", "LblReverb", 0, 127, 0, wholeShare<127>, true},
        {Chorus, "chorus", "LblChorus", 0, 127, 0, wholeShare<127>, true},
        {Pan, "pan", "LblPan", -64, 64, 0, panReadout, true},
        {Speed, "speed", "LblSpeed", 1, 13, 9, fromTheRight, false},
        {Pauses, "pauses", "LblPauses", 1, 13, 1, fromTheRight, false},
        {Compression, "compression", "LblFileSpeed", 1, 7, 2.5, compression, false},
        {Tempo, "tempo", "LblTempo", 0, 500, 200, tempo, true},
    }};
    return kRows;
}

const KeyboardSliderRow& rowOf(KeyboardSlider slider) {
    return keyboardSliders()[static_cast<std::size_t>(slider)];
}

} // namespace velmora
