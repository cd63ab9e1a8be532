// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "notation/Marks.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace velmora::notation {

inline constexpr int kMostStaves = 5;
inline constexpr int kAutomaticKey = -1; ///< "Key: by itself"

/// The channels' panel: `chkChannel` and `ChkNotetype`. Boxes 8 to 11 are the percussion channels 8, 10,
/// 11, 12.
struct StaffChoice {
    std::array<bool, 12> chkChannel{};
    std::array<bool, 8> ChkNotetype{}; ///< true for the bass clef

    [[nodiscard]] int TrebleStaves() const;
    [[nodiscard]] int BassStaves() const;
    [[nodiscard]] int DrumStaves() const;
    /// 1 to 5 of what is written; 0 for none.
    [[nodiscard]] int StaffCount() const { return TrebleStaves() + BassStaves() + DrumStaves(); }
    bool operator==(const StaffChoice&) const = default;
};
/// The channel of box 0 to 11, and the reverse (-1 for a channel without one).
[[nodiscard]] int channelOfBox(int box);
[[nodiscard]] int boxOfChannel(int channel);

enum class NoteSpacing : std::uint8_t { Proportional, Symmetrical };

/// The channels' colours as the grid has them; a window gives those of its own.
inline constexpr int kLastColour = 12;
inline constexpr std::array<Colour, kLastColour + 1> kUsualColours{
    0xFF0000, 0x0000FF, 0x00FF00, 0xFF00FF, 0x00FFFF, 0xFF8000, 0xFFFF80,
    0xC0C0FF, 0xA891B3, 0xFFFFFF, 0xC04000, 0x5FA6BA, 0xC0C000};

/// What the four panels of the Songwriter say, and the page. Pixels are those of `Pic1`.
struct ScoreSetup {
    // Score Setup
    bool newScore = true;  ///< `Check1`: `AssignStaves` before writing
    int key = 0;           ///< `Combo1`'s index, or `kAutomaticKey` (the clean page alone)
    int start = 0;         ///< `Text4`
    int end = -1;          ///< `Text5`; -1 is `SongEnd`
    int HeaderHeight = 60; ///< "Page Header"
    int SpacerHeight = 60; ///< "Line Height"
    int BarWidth = 60;     ///< "Bar Width"

    // Note Setup
    bool classicPage = false; ///< "Classic page"
    int joinNotes = 0;        ///< `Check2` with `Option1` to `Option3`: 0, 2, 3 or 4
    NoteSpacing spacing = NoteSpacing::Proportional;
    bool repeatSigns = false; ///< `Check4`
    bool numbers = false;     ///< `Check5`
    bool learnToRead = false; ///< coloured heads with letters; the clean page alone
    bool twoVoices = false;   ///< two melody channels of one clef share a staff; the clean page alone

    // Channels
    StaffChoice staves;

    // Text
    std::string title; ///< `Title`
    TextStyle titleStyle{.family = "Times New Roman", .points = 14, .bold = true};
    bool titleEveryPage = false; ///< `Check6`
    std::string composer;        ///< the clean page alone, as what follows
    std::string tempoWords;
    int tempo = 0; ///< quarters a minute, for the metronome mark; 0 for none
    std::vector<std::string>
        verses; ///< words that are laid under the first staff, syllables parted by hyphens

    std::array<Colour, kLastColour + 1> channelColours = kUsualColours; ///< of heads, with `learnToRead`

    // The page
    double pageWidth = 794; ///< of `Pic1`: A4
    double pageHeight = 1123;
};

} // namespace velmora::notation
