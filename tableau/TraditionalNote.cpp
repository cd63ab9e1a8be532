// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/TraditionalNote.h"

#include "score/Numbers.h"
#include "score/Score.h"
#include "tableau/GuidePainter.h"

#include <algorithm>
#include <array>

namespace velmora {

namespace {
/// The share of a cell that a head moves by, for measures of up to so many cells.
struct DropFactor {
    int upTo;
    double factor;
};
constexpr std::array<DropFactor, 5> kDropFactors{{{3, 0.7}, {4, 0.6}, {6, 0.5}, {8, 0.4}, {16, 0.35}}};
constexpr int kSharpRoom = 3;
constexpr int kFlatRoom = 2;
constexpr int kLeastOffset = 5; ///< half of a head

constexpr double kNothing = 0.0001;

/// Values by the part of the measure: exactly so much, and dotted from the value before up to it.
struct ValueClass {
    double fraction;
    NoteShape shape;
};
constexpr std::array<ValueClass, 7> kValueClasses{{{1, NoteShape::Whole},
                                                   {2, NoteShape::Half},
                                                   {4, NoteShape::Quarter},
                                                   {8, NoteShape::Eighth},
                                                   {16, NoteShape::Sixteenth},
                                                   {32, NoteShape::ThirtySecond},
                                                   {64, NoteShape::SixtyFourth}}};

constexpr int kMiddleTreble = 56; ///< "5B"
constexpr int kMiddleBass = 77;   ///< "4D"
constexpr int kBassBand = 20;     ///< above the line of "4D" the bass begins
} // namespace

std::optional<int> glyphDrop(int notesPerMeasure, int cells) {
    if (notesPerMeasure < 1)
        return std::nullopt;
    for (const DropFactor& row : kDropFactors)
        if (notesPerMeasure <= row.upTo)
            return static_cast<int>(roundHalfEven(notesPerMeasure * row.factor * cells));
    return std::nullopt;
}

int headOffset(int glyphDrop, std::optional<Accidental> accidental) {
    const int room = !accidental ? 0 : *accidental == Accidental::Sharp ? kSharpRoom : kFlatRoom;
    return std::max(glyphDrop + room, kLeastOffset);
}

std::optional<NoteValue> noteValue(int notesPerMeasure, int cells) {
    const double fraction = cells > 0 ? static_cast<double>(notesPerMeasure) / cells : 0;
    if (fraction < kNothing)
        return std::nullopt;
    if (fraction <= kValueClasses.front().fraction)
        return NoteValue{NoteShape::Whole, false};
    for (const ValueClass& row : kValueClasses)
        if (fraction <= row.fraction)
            return NoteValue{row.shape, fraction < row.fraction};
    return NoteValue{NoteShape::SixtyFourth, false};
}

std::optional<Accidental> accidentalOf(int row) {
    if (row < 0 || row > kLastRow)
        return std::nullopt;
    switch (NoteNames()[static_cast<std::size_t>(row)].back()) {
    case '#':
        return Accidental::Sharp;
    case 'b':
        return Accidental::Flat;
    default:
        return std::nullopt;
    }
}

Stem stemOf(int y, int topRow, int lineHeight, bool bassStaff) {
    const double treble = staffLineY(kMiddleTreble, topRow, lineHeight);
    const double bass = staffLineY(kMiddleBass, topRow, lineHeight);
    const bool lower = bassStaff && y > bass - kBassBand;
    return y > (lower ? bass : treble) ? Stem::Up : Stem::Down;
}

} // namespace velmora
