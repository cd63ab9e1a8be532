// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/DrumSigns.h"

#include "sound/Instruments.h"

#include <array>

namespace velmora::notation {

namespace {
constexpr std::array<DrumSign, kPercussionCount> kDrumSigns{{
    {35, DrumHead::Usual, "A. B. D."},     {36, DrumHead::Usual, "B. D."},
    {37, DrumHead::Cross, "S. St."},       {38, DrumHead::Usual, "S. D."},
    {39, DrumHead::Cross, "Clap"},         {40, DrumHead::Usual, "El. S. D."},
    {41, DrumHead::Usual, "L. Fl. T."},    {42, DrumHead::Cross, "H. H."},
    {43, DrumHead::Usual, "H. Fl. T."},    {44, DrumHead::Cross, "Ped. H. H."},
    {45, DrumHead::Usual, "L. T."},        {46, DrumHead::Circled, "Op. H. H."},
    {47, DrumHead::Usual, "L. M. T."},     {48, DrumHead::Usual, "H. M. T."},
    {49, DrumHead::Cross, "Cr. 1"},        {50, DrumHead::Usual, "H. T."},
    {51, DrumHead::Cross, "Ride 1"},       {52, DrumHead::Cross, "Ch. Cym."},
    {53, DrumHead::Diamond, "Ride B."},    {54, DrumHead::Diamond, "Tamb."},
    {55, DrumHead::Cross, "Spl."},         {56, DrumHead::Triangular, "Cowb."},
    {57, DrumHead::Cross, "Cr. 2"},        {58, DrumHead::Diamond, "Vibr."},
    {59, DrumHead::Cross, "Ride 2"},       {60, DrumHead::Usual, "H. Bgo."},
    {61, DrumHead::Usual, "L. Bgo."},      {62, DrumHead::Cross, "M. H. Cga."},
    {63, DrumHead::Usual, "H. Cga."},      {64, DrumHead::Usual, "L. Cga."},
    {65, DrumHead::Usual, "H. Timb."},     {66, DrumHead::Usual, "L. Timb."},
    {67, DrumHead::Triangular, "H. Ago."}, {68, DrumHead::Triangular, "L. Ago."},
    {69, DrumHead::Cross, "Cab."},         {70, DrumHead::Cross, "Mar."},
    {71, DrumHead::Usual, "Sh. Wh."},      {72, DrumHead::Usual, "L. Wh."},
    {73, DrumHead::Usual, "Sh. Gui."},     {74, DrumHead::Usual, "L. Gui."},
    {75, DrumHead::Usual, "Clav."},        {76, DrumHead::Usual, "H. W. B."},
    {77, DrumHead::Usual, "L. W. B."},     {78, DrumHead::Cross, "M. Cui."},
    {79, DrumHead::Usual, "Op. Cui."},     {80, DrumHead::Cross, "M. Trgl."},
    {81, DrumHead::Triangular, "Trgl."},
}};
static_assert(kDrumSigns.front().key == kFirstPercussionIdentifier &&
              kDrumSigns.back().key == kLastPercussionIdentifier);

constexpr DrumSign kNoDrum{-1, DrumHead::Usual, ""};
} // namespace

const DrumSign& drumSign(int key) {
    if (key < kFirstPercussionIdentifier || key > kLastPercussionIdentifier)
        return kNoDrum;
    return kDrumSigns[static_cast<std::size_t>(key - kFirstPercussionIdentifier)];
}

MusicGlyph drumGlyph(DrumHead head, MusicGlyph usual) {
    const bool hollow = usual != MusicGlyph::HeadBlack;
    switch (head) {
    case DrumHead::Usual:
        break;
    case DrumHead::Cross: // a cross has no inside that could be hollow
        return hollow ? MusicGlyph::HeadDiamondOpen : MusicGlyph::HeadCross;
    case DrumHead::Circled:
        return hollow ? MusicGlyph::HeadDiamondOpen : MusicGlyph::HeadCircledCross;
    case DrumHead::Diamond:
        return hollow ? MusicGlyph::HeadDiamondOpen : MusicGlyph::HeadDiamond;
    case DrumHead::Triangular:
        return hollow ? MusicGlyph::HeadTriangleOpen : MusicGlyph::HeadTriangle;
    }
    return usual;
}

} // namespace velmora::notation
