// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ClassicNotes.h"
#include "notation/ClassicValues.h"

#include <algorithm>

namespace velmora::notation {

namespace {

constexpr double kLeastX = 50;
constexpr double kBarLength = 10;
constexpr double kBarWidth = 4; ///< `DrawWidth` of half and whole rests

bool has(const std::vector<Value>& values, NoteValue value) {
    return std::ranges::any_of(values, [value](const Value& one) { return one.value == value; });
}

void bar(ClassicInk& ink, double end, double y) {
    ink.line({end - kBarLength, y}, {end, y}, kBarWidth, Role::Rest);
}

void drawWithHalf(ClassicInk& ink, const PlacedPiece& rest, double x, double y, double B) {
    const auto& values = rest.item->values;
    if (has(values, NoteValue::Eighth))
        ink.image(GlyphImage::ImgPause8, {x + 10, y + 39}, Role::Rest);
    if (has(values, NoteValue::Sixteenth))
        ink.image(GlyphImage::ImgPause16, {x + 20, y + 38}, Role::Rest);
    if (has(values, NoteValue::Quarter))
        ink.image(GlyphImage::ImgPause4, {rest.cx3 + B * 0.2, y + 39}, Role::Rest);
    bar(ink, rest.cx3 + B * 0.45, y + 54);
}

void drawSmall(ClassicInk& ink, const std::vector<Value>& values, double x, double y) {
    for (const Value& one : values) {
        if (one.value == NoteValue::Sixteenth)
            ink.image(GlyphImage::ImgPause16, {x, y + 38}, Role::Rest);
        else
            ink.image(one.value == NoteValue::Quarter ? GlyphImage::ImgPause4 : GlyphImage::ImgPause8,
                      {x, y + 39}, Role::Rest);
        x += 10;
    }
}

} // namespace

void DrawRest(ClassicInk& ink, const PlacedPiece& rest, const ClassicPlace& place, const ScoreSetup& setup) {
    double x = rest.cx3;
    double y = setup.HeaderHeight + place.TT;
    if (place.isPercussion) { // a quarter of the way to the left: meant
        y = place.percussionY - 32 - setup.HeaderHeight - 12;
        x = toWhole(x - x / 4);
    }
    x = std::max(x, kLeastX);
    switch (rest.value.value) {
    case NoteValue::Whole:
        bar(ink, rest.cx3 + setup.BarWidth * 0.6, y + 51);
        break;
    case NoteValue::Half:
        drawWithHalf(ink, rest, x, y, setup.BarWidth);
        break;
    default:
        drawSmall(ink, rest.item->values, x, y);
    }
}

} // namespace velmora::notation
