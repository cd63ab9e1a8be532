// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

// The keyboard's keys, numbered from the left: key 0 is a C, and they are chromatic.

inline constexpr int kPianoKeys = 44;
inline constexpr int kWhiteKeys = 26;
inline constexpr int kLowestNote = 36; ///< MIDI note of key 0, unshifted
inline constexpr int kLowestRow = 91;  ///< of the Score, of key 0

[[nodiscard]] constexpr bool isPianoKey(int key) {
    return key >= 0 && key < kPianoKeys;
}
[[nodiscard]] constexpr bool isBlackKey(int key) {
    constexpr unsigned kBlackOnes = 0b0101'0100'1010; // 1, 3, 6, 8 and 10 of an octave
    return (kBlackOnes >> static_cast<unsigned>(key % 12) & 1U) != 0;
}
/// Row of the Score on which an unshifted key is drawn.
[[nodiscard]] constexpr int rowOfKey(int key) {
    return kLowestRow - key;
}
[[nodiscard]] constexpr int keyOfRow(int row) {
    return kLowestRow - row;
}

} // namespace velmora
