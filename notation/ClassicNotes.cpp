// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/ClassicNotes.h"

#include <algorithm>
#include <span>

namespace velmora::notation {

namespace {

constexpr int kImageToPen = 14;
constexpr int kAboveUp = 19;       ///< of an image's top over `cy`, stem up
constexpr int kAboveDown = 1;      ///< likewise, stem down
constexpr int kAboveFlagsDown = 2; ///< of a sixteenth, and of what was pending
constexpr int kPercussionUpFrom = 57;

GlyphImage imageOf(NoteValue value, bool TU) {
    switch (value) {
    case NoteValue::Half:
        return TU ? GlyphImage::Img2UP : GlyphImage::Img2DN;
    case NoteValue::Eighth:
        return TU ? GlyphImage::Img8UP : GlyphImage::Img8DN;
    case NoteValue::Sixteenth:
        return TU ? GlyphImage::Img16UP : GlyphImage::Img16DN;
    default:
        return TU ? GlyphImage::Img4UP : GlyphImage::Img4DN;
    }
}

} // namespace

void ClassicNotes::draw(const PlacedPiece& piece, const ClassicPlace& place) {
    const int cy = piece.item->pitches.front().place + setup_.HeaderHeight;
    if (piece.wasPending) {
        join(piece, place, cy);
        return;
    }
    if (piece.value.value == NoteValue::Whole) {
        drawWhole(piece, place, cy);
        return;
    }
    const double y = place.isPercussion ? place.percussionY : cy + place.TT;
    // The header is not looked at on a percussion staff: meant.
    const bool TU = place.isPercussion ? y > kPercussionUpFrom : piece.item->stemUp;
    const int above = TU                                          ? kAboveUp
                      : piece.value.value == NoteValue::Sixteenth ? kAboveFlagsDown
                                                                  : kAboveDown;
    ink_.image(imageOf(piece.value.value, TU), {piece.cx3 - double{kImageToPen}, y - above}, Role::Head);
    drawSign(piece, place, cy, piece.cx3);
    if (piece.value.dots > 0)
        drawDots(piece, y);
}

/// `DrawAccidental` and the ledger lines; neither is used on a percussion staff.
void ClassicNotes::drawSign(const PlacedPiece& piece, const ClassicPlace& place, int cy, double x) {
    if (place.isPercussion)
        return;
    const Sign sign = piece.item->pitches.front().sign;
    if (sign == Sign::Sharp)
        ink_.image(GlyphImage::ImgSharp, {x - 23, cy - 11 + place.TT}, Role::Accidental);
    else if (sign == Sign::Flat)
        ink_.image(GlyphImage::ImgFlat, {x - 25, cy - 12 + place.TT}, Role::Accidental);
    DrawLedgerLines(ink_, x, cy, place.TT, setup_.HeaderHeight);
}

void ClassicNotes::drawWhole(const PlacedPiece& piece, const ClassicPlace& place, int cy) {
    const double x = piece.cx3 + setup_.BarWidth * 0.5;
    const double y = (place.isPercussion ? place.percussionY : cy + place.TT) + 5;
    ink_.ellipse({x, y}, 5, 0.63, false, Role::Head);
    for (const double offset : {0.0, 1.0, -1.0})
        ink_.ellipse({x + offset, y}, 4, 0.8, false, Role::Head);
    drawSign(piece, place, cy, x);
}

void ClassicNotes::drawDots(const PlacedPiece& piece, double y) {
    const NoteValue value = piece.value.value;
    const double second = value == NoteValue::Half ? 5 : value == NoteValue::Eighth ? 2 : 4;
    for (const double below : {3.0, second})
        ink_.ellipse({piece.cx3 + 11.0, y + below}, 1, 1, true, Role::Dot);
}

void ClassicNotes::join(const PlacedPiece& piece, const ClassicPlace& place, int cy) {
    const Written& note = *piece.item;
    const bool TU = note.stemUp;
    if (PN_ == 0)
        BeamDirection_ = TU;
    const double BeamFlip = TU == BeamDirection_ ? 0 : TU ? 18 : -17;
    const double BeamStemY = cy - (TU ? kAboveUp : kAboveFlagsDown) + place.TT;
    Pending& slot = pending_.at(PN_++);
    slot = {piece.cx3 - double{kImageToPen}, BeamStemY, BeamStemY + BeamFlip};
    if (PN_ == pending_.size()) // the fourth is placed anew, a pixel lower where stems are down: meant
        slot.BeamHeadY = cy - (BeamDirection_ ? kAboveUp : kAboveDown) + place.TT;
    drawSign(piece, place, cy, piece.cx3);
    if (note.beamCount == 0)
        FlushGroupSingly(note);
    else if (note.beamIndex == note.beamCount)
        DrawBeamGroup(note);
}

void ClassicNotes::FlushGroupSingly(const Written& note) {
    const Pending& slot = pending_.front();
    ink_.image(imageOf(note.values.front().value, BeamDirection_), {slot.BeamX, slot.BeamStemY}, Role::Head);
    PN_ = 0;
}

void ClassicNotes::DrawBeamGroup(const Written& last) {
    const bool up = BeamDirection_;
    const bool areSixteenths = last.values.front().value == NoteValue::Sixteenth;
    const auto group = std::span(pending_).first(PN_);
    for (const Pending& slot : group)
        ink_.image(up ? GlyphImage::Img4UP : GlyphImage::Img4DN, {slot.BeamX, slot.BeamHeadY}, Role::Head);
    const auto [Highest, Lowest] = std::ranges::minmax(group, {}, &Pending::BeamHeadY);
    const double beamY = up ? Highest.BeamHeadY : Lowest.BeamHeadY + 32;
    const double x1 = group.front().BeamX + (up ? 19 : 13);
    const double x2 = group.back().BeamX + (up ? 17 : 11);
    const double DrawWidth = areSixteenths ? 2 : 3;
    ink_.line({x1, beamY}, {x2, beamY}, DrawWidth, Role::Beam);
    if (areSixteenths)
        for (const double below : {3.0, 4.0})
            // Stems down: - 4 and - 5.
            ink_.line({x1, beamY + (up ? below : -below - 1)}, {x2, beamY + (up ? below : -below - 1)},
                      DrawWidth, Role::Beam);
    for (std::size_t i = 0; i < group.size(); ++i) {
        const double x = i == 0 ? x1 - 1 : i + 1 == group.size() ? x2 + 1 : group[i].BeamX + (up ? 18 : 12);
        const double noteY = group[i].BeamHeadY + (up ? 0 : 30);
        ink_.line({x, noteY}, {x, beamY}, 1, Role::Stem);
    }
    PN_ = 0;
}

} // namespace velmora::notation
