// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/MusicShapes.h"

#include "notation/OutlineShapes.h"

namespace velmora::notation {

namespace {
/// Where a sign stands in Unicode, and what of it falls on the origin, in the font's units from the lowest
/// line.
struct FontSign {
    MusicGlyph glyph;
    char32_t character; ///< none: drawn by us in any case
    double x = 0, y = 0;
    double scaleX = 1, scaleY = 1; ///< of the sign, where the font's is too large; below 0 mirrored
};
constexpr double kAccidentals = 0.95;
// The font's sharp is half as large again as its flat. Its rests of a half and a whole have a line through
// them which is meant for empty paper, and its percussion clef is as high as five lines: these are ours.
constexpr std::array<FontSign, 27> kFontSigns{{
    {MusicGlyph::TrebleClef, 0x1D11E, 50, -250},
    {MusicGlyph::BassClef, 0x1D122, 50, -750},
    {MusicGlyph::PercussionClef, 0},
    {MusicGlyph::Sharp, 0x266F, 276.5, -178.5, 0.6, 0.8},
    {MusicGlyph::Flat, 0x266D, 173.5, -110, kAccidentals, kAccidentals},
    {MusicGlyph::Natural, 0x266E, 178.5, -95.5, kAccidentals, kAccidentals},
    {MusicGlyph::HeadWhole, 0x1D15D, 257, -134},
    {MusicGlyph::HeadHalf, 0x1D157, 198.5, -134},
    {MusicGlyph::HeadBlack, 0x1D158, 198.5, -134},
    {MusicGlyph::HeadCross, 0x1D143, 200.5, -134, 0.9, 0.9},
    {MusicGlyph::FlagUp, 0x1D16E, 12, -1009},
    {MusicGlyph::FlagDown, 0x1D16E, 12, -1009, 1, -1},
    {MusicGlyph::RestWhole, 0},
    {MusicGlyph::RestHalf, 0},
    {MusicGlyph::RestQuarter, 0x1D13D, 51, -500},
    {MusicGlyph::RestEighth, 0x1D13E, 50, -500},
    {MusicGlyph::RestSixteenth, 0x1D13F, 50, -500},
    {MusicGlyph::RestThirtySecond, 0x1D140, 50, -500},
    {MusicGlyph::RestSixtyFourth, 0x1D141, 50, -500},
    {MusicGlyph::Brace, 0x1D114, 211, -500, 0.14, 0.25},
    {MusicGlyph::CommonTime, 0x1D134, 50, -499},
    {MusicGlyph::CutTime, 0x1D135, 50, -497},
    {MusicGlyph::HeadCircledCross, 0},
    {MusicGlyph::HeadDiamond, 0},
    {MusicGlyph::HeadDiamondOpen, 0},
    {MusicGlyph::HeadTriangle, 0},
    {MusicGlyph::HeadTriangleOpen, 0},
}};
static_assert(kFontSigns.size() == kMusicGlyphNames.size());

/// Of stems, up and down; two and three of them as one shape.
constexpr std::array<FontSign, 2> kFlags{
    {{MusicGlyph::FlagUp, 0x1D16E, 12, -1009}, {MusicGlyph::FlagUp, 0x1D16F, 12, -1009}}};
constexpr double kFlagGap = 0.75;

Outline shapeOf(const MusicFont& font, const FontSign& sign) {
    const Outline shape = font.shape(sign.character);
    const double x = sign.scaleX / kFontSpace, y = sign.scaleY / kFontSpace;
    Outline placed;
    add(placed, shape, {x, y, {-sign.x * x, -sign.y * y}});
    return placed;
}

Outline plainHead(double halfWidth, double hole) {
    Outline head;
    addEllipse(head, {}, halfWidth, 0.45);
    if (hole > 0) {
        Outline inside;
        addEllipse(inside, {}, halfWidth * hole, 0.45 * hole * 0.75);
        add(head, reversed(inside));
    }
    return rotated(head, -15);
}

Outline plainCross() {
    Outline cross;
    addPolygon(cross, {{-0.6, -0.38}, {-0.48, -0.5}, {0.6, 0.38}, {0.48, 0.5}});
    addPolygon(cross, {{-0.6, 0.38}, {0.48, -0.5}, {0.6, -0.38}, {-0.48, 0.5}});
    return cross;
}

Outline circledCross() {
    Outline head;
    addRing(head, {}, 0.53, 0.53, 0.12);
    add(head, plainCross(), {0.62, 0.75, {}});
    return head;
}

Outline plainDiamond(bool hollow) {
    Outline head;
    addPolygon(head, {{0, -0.52}, {0.6, 0}, {0, 0.52}, {-0.6, 0}});
    if (hollow) {
        Outline inside;
        addPolygon(inside, {{0, -0.34}, {0.38, 0}, {0, 0.34}, {-0.38, 0}});
        add(head, reversed(inside));
    }
    return head;
}

Outline plainTriangle(bool hollow) {
    Outline head;
    addPolygon(head, {{0, -0.52}, {0.6, 0.48}, {-0.6, 0.48}});
    if (hollow) {
        Outline inside;
        addPolygon(inside, {{0, -0.26}, {0.36, 0.36}, {-0.36, 0.36}});
        add(head, reversed(inside));
    }
    return head;
}

Outline plainAccidental(MusicGlyph glyph) {
    Outline sign;
    if (glyph == MusicGlyph::Flat) {
        addBox(sign, -0.45, -1.6, -0.33, 0.5);
        addRing(sign, {-0.05, 0.1}, 0.32, 0.34, 0.14);
        return sign;
    }
    const bool natural = glyph == MusicGlyph::Natural;
    const double reach = natural ? 0.3 : 0.55;
    addBox(sign, -0.3, -1.25, -0.18, natural ? 0.6 : 1.3);
    addBox(sign, 0.18, natural ? -0.6 : -1.3, 0.3, 1.25);
    for (const double y : {-0.45, 0.45})
        addPolygon(sign, {{-reach, y}, {reach, y - 0.2}, {reach, y + 0.02}, {-reach, y + 0.22}});
    return sign;
}

Outline plainClef(MusicGlyph glyph) {
    Outline clef;
    if (glyph == MusicGlyph::TrebleClef) {
        addBox(clef, 1.15, -4.2, 1.35, 1.6);
        addRing(clef, {1.25, 0}, 0.9, 0.9, 0.24);
        addRing(clef, {1.5, -3.4}, 0.35, 0.9, 0.2);
        addEllipse(clef, {1, 1.6}, 0.35, 0.3);
    } else if (glyph == MusicGlyph::BassClef) {
        addEllipse(clef, {0.5, 0}, 0.45, 0.45);
        Outline arc;
        addLens(arc, {{Point{0.3, -0.6}, {1.2, -1.7}, {2.6, -0.4}, {0.2, 2.3}}, 0.4});
        add(clef, arc);
        for (const double y : {-0.5, 0.5})
            addEllipse(clef, {2.2, y}, 0.2, 0.2);
    } else {
        for (const double x : {0.0, 0.75})
            addBox(clef, x, -1, x + 0.4, 1);
    }
    return clef;
}

/// Of a stem that points up.
Outline plainFlag() {
    Outline flag;
    addPolygon(flag, {{0, 0}, {1, 1.3}, {0.85, 2.4}, {0.75, 1.5}, {0, 0.7}});
    return turnedRight(flag);
}

Outline plainRest(MusicGlyph glyph) {
    Outline rest;
    switch (glyph) {
    case MusicGlyph::RestWhole: // hangs from the line above the middle one
        addBox(rest, 0, -1, 1.4, -0.45);
        return rest;
    case MusicGlyph::RestHalf:
        addBox(rest, 0, -0.55, 1.4, 0);
        return rest;
    case MusicGlyph::RestQuarter:
        addPolygon(rest, {{0.2, -1.5},
                          {0.8, -0.6},
                          {0.5, 0},
                          {1, 0.8},
                          {0.3, 0.7},
                          {0.6, 1.5},
                          {0, 0.7},
                          {0.5, 0.4},
                          {0, -0.4},
                          {0.4, -0.8}});
        return turnedRight(rest);
    default:
        break;
    }
    const int flags = static_cast<int>(glyph) - static_cast<int>(MusicGlyph::RestQuarter);
    const double lean = 0.28; ///< of the stem, a space
    const double top = -0.7 - 0.5 * (flags - 1), bottom = top + 0.9 + flags;
    const double width = 0.5 + lean * (bottom - top);
    addPolygon(rest, {{width - 0.12, top},
                      {width, top},
                      {width - lean * (bottom - top), bottom},
                      {width - lean * (bottom - top) - 0.12, bottom}});
    for (int flag = 0; flag < flags; ++flag) {
        const double y = top + 0.15 + flag, x = width - lean * (flag + 0.15);
        addEllipse(rest, {x - 0.6, y}, 0.24, 0.24);
        addPolygon(rest, {{x - 0.6, y + 0.05}, {x - 0.05, y}, {x - 0.1, y + 0.15}, {x - 0.6, y + 0.24}});
    }
    return turnedRight(rest);
}

Outline plainTime(bool cut) {
    Outline time;
    addLens(time, {{Point{1.6, -0.6}, {-0.3, -2}, {-0.3, 2}, {1.6, 0.6}}, 0.3});
    addEllipse(time, {1.5, -0.5}, 0.22, 0.22);
    if (cut)
        addBox(time, 0.85, -1.6, 0.97, 1.6);
    return time;
}

Outline plainBrace() {
    Outline brace;
    addLens(brace, {{Point{0, -0.5}, {-0.1, -0.35}, {0.03, -0.1}, {-0.1, 0}}, 0.025});
    addLens(brace, {{Point{-0.1, 0}, {0.03, 0.1}, {-0.1, 0.35}, {0, 0.5}}, 0.025});
    return brace;
}
} // namespace

Outline plainSign(MusicGlyph glyph) {
    switch (glyph) {
    case MusicGlyph::TrebleClef:
    case MusicGlyph::BassClef:
    case MusicGlyph::PercussionClef:
        return plainClef(glyph);
    case MusicGlyph::Sharp:
    case MusicGlyph::Flat:
    case MusicGlyph::Natural:
        return plainAccidental(glyph);
    case MusicGlyph::HeadWhole:
        return plainHead(0.8, 0.6);
    case MusicGlyph::HeadHalf:
        return plainHead(0.6, 0.65);
    case MusicGlyph::HeadBlack:
        return plainHead(0.6, 0);
    case MusicGlyph::HeadCross:
        return plainCross();
    case MusicGlyph::HeadCircledCross:
        return circledCross();
    case MusicGlyph::HeadDiamond:
    case MusicGlyph::HeadDiamondOpen:
        return plainDiamond(glyph == MusicGlyph::HeadDiamondOpen);
    case MusicGlyph::HeadTriangle:
    case MusicGlyph::HeadTriangleOpen:
        return plainTriangle(glyph == MusicGlyph::HeadTriangleOpen);
    case MusicGlyph::FlagUp:
        return plainFlag();
    case MusicGlyph::FlagDown: {
        Outline flag;
        add(flag, plainFlag(), {1, -1, {}});
        return flag;
    }
    case MusicGlyph::Brace:
        return plainBrace();
    case MusicGlyph::CommonTime:
    case MusicGlyph::CutTime:
        return plainTime(glyph == MusicGlyph::CutTime);
    default:
        return plainRest(glyph);
    }
}

Outline signOf(const MusicFont& font, MusicGlyph glyph) {
    const FontSign& sign = kFontSigns[static_cast<std::size_t>(glyph)];
    Outline shape = sign.character != 0 ? shapeOf(font, sign) : Outline();
    return shape.empty() ? plainSign(glyph) : shape;
}

Outline flagsOf(const MusicFont& font, int count) {
    if (Outline shape = shapeOf(font, kFlags[static_cast<std::size_t>(count) - 1]); !shape.empty())
        return shape;
    Outline flags;
    for (int flag = 0; flag < count; ++flag)
        add(flags, plainFlag(), {1, 1, {0, flag * kFlagGap}});
    return flags;
}

} // namespace velmora::notation
