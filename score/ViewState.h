// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <algorithm>
#include <cstdint>

namespace velmora {

/// What a press of the right mouse button on a Tableau does; the numbers are those of `RightClickMode`.
enum class RightClick : std::int16_t { Erase = 0, Menu = 1, Polyphonic = 2, Tips = 4 };

/// What a press of the left mouse button does; the numbers are those of `MouseMode`.
enum class Mouse : std::int16_t { Draw = 0, Cursor = 1, Select = 2 };

inline constexpr int kLastRow = 127;      ///< the lowest pitch
inline constexpr int kColumnWidth = 12;   ///< pixels of a position, on both Tableaux
inline constexpr int kBeatRowHeight = 12; ///< pixels of a row of `Beatbox`
/// Of a row of `MusicBox`: closer ones could not be told apart, and of taller ones too few would fit.
inline constexpr int kLeastLineHeight = 4;
inline constexpr int kMostLineHeight = 40;

/// Which part of the Score the composing window shows and how, what is marked in it, and what the mouse does
/// there. Columns are positions, rows count from the highest pitch.
struct ViewState {
    int ViewFirstColumn = 0; ///< position at the left edge
    int ViewLastColumn = 99; ///< last position painted
    int ViewColumns = 99;    ///< columns in view less one
    int ViewTopRow = 42;     ///< row at the top of `MusicBox`
    int ViewRows = 86;       ///< rows painted less one: more than fit, on purpose
    int SelectStart = -1;    ///< -1 for no selection
    int SelectEnd = -1;
    int PlayMark = 0; ///< the play-from mark; also where a pause leaves the position

    int Line_Height = 8; ///< pixels of a row of `MusicBox`
    bool Show_Sharp_guides = true;
    std::int16_t Notationstyle = 0; ///< 0 "Colorful Line", 1 "Traditional Notation"
    bool Accidentals = true;        ///< drawn beside the heads of the traditional notation

    Mouse MouseMode = Mouse::Draw;
    RightClick RightClickMode = RightClick::Erase;
    bool NoteEffectsOn = false;     ///< the Single Note Effects toolbar is the active one
    bool PointerInMusicBox = false; ///< the mouse rests on the melody's Tableau
    bool Check4 = false;            ///< "Static Note Test": a click plays a note and draws nothing

    [[nodiscard]] int ViewBottomRow() const { return std::min(ViewTopRow + ViewRows, kLastRow); }
    [[nodiscard]] int ViewHalfColumns() const { return (ViewColumns + 1) / 2; }
    [[nodiscard]] int ViewHalfRows() const { return (ViewRows + 1) / 2; }
};

} // namespace velmora
