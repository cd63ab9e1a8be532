// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <string_view>

namespace velmora::notation {

/// A key of `Combo1`, and what `SelectKey` takes from it.
struct Key {
    std::string_view text; ///< "B flat Major"
    std::string_view word; ///< "Bb", as the command line has it
    std::string_view item; ///< its menu item, "mnuBflatSW"
    int fifths;            ///< sharps, or flats with a minus
    int timeSignatureX;    ///< of the classic page
    int FirstNoteX;        ///< likewise

    [[nodiscard]] constexpr bool KeyIsFlat() const { return fifths < 0; }
};

inline constexpr std::array<Key, 12> kKeys{{
    {"C Major", "C", "mnuCSW", 0, 30, 40},
    {"G Major", "G", "mnuGSW", 1, 34, 48},
    {"D Major", "D", "mnuDSW", 2, 44, 52},
    {"A Major", "A", "mnuASW", 3, 52, 60},
    {"E Major", "E", "mnuESW", 4, 60, 68},
    {"B Major", "B", "mnuBSW", 5, 68, 76},
    {"F Major", "F", "mnuFSW", -1, 32, 40},
    {"B flat Major", "Bb", "mnuBflatSW", -2, 40, 48},
    {"E flat Major", "Eb", "mnuEflatSW", -3, 46, 54},
    {"A flat Major", "Ab", "mnuAflatSW", -4, 50, 60},
    {"D flat Major", "Db", "mnuDflatSW", -5, 58, 68},
    {"G flat Major", "Gb", "mnuGflatSW", -6, 62, 72},
}};

} // namespace velmora::notation
