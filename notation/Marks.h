// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velmora::notation {

/// A place on a page, in pixels of `Pic1`: 96 an inch, y downwards.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

/// The pictures of the glyph table: 32 by 32 pixels with a transparent ground, named as the skins name them.
enum class GlyphImage : std::uint8_t {
    Image14, ///< treble clef
    Image4,  ///< bass clef
    ImgSharp,
    ImgFlat,
    Img2UP,
    Img2DN,
    Img4UP,
    Img4DN,
    Img8UP,
    Img8DN,
    Img16UP,
    Img16DN,
    ImgPause4,
    ImgPause8,
    ImgPause16
};
inline constexpr std::array<std::string_view, 15> kGlyphImageNames{
    "Image14", "Image4", "ImgSharp", "ImgFlat", "Img2UP",    "Img2DN",    "Img4UP",    "Img4DN",
    "Img8UP",  "Img8DN", "Img16UP",  "Img16DN", "ImgPause4", "ImgPause8", "ImgPause16"};

/// What the clean page sets besides: one sign each, at any size.
enum class MusicGlyph : std::uint8_t {
    TrebleClef,
    BassClef,
    PercussionClef,
    Sharp,
    Flat,
    Natural,
    HeadWhole,
    HeadHalf,
    HeadBlack,
    HeadCross, ///< of cymbals and the like
    FlagUp,    ///< one flag; more of them stand below each other
    FlagDown,
    RestWhole,
    RestHalf,
    RestQuarter,
    RestEighth,
    RestSixteenth,
    RestThirtySecond,
    RestSixtyFourth,
    Brace, ///< its size is its height
    CommonTime,
    CutTime,
    HeadCircledCross, ///< of an open hi-hat
    HeadDiamond,      ///< of bells and jingles
    HeadDiamondOpen,
    HeadTriangle, ///< of struck metal
    HeadTriangleOpen
};
inline constexpr std::array<std::string_view, 27> kMusicGlyphNames{
    "clef-treble",    "clef-bass",     "clef-percussion", "sharp",      "flat",         "natural",
    "head-whole",     "head-half",     "head-black",      "head-cross", "flag-up",      "flag-down",
    "rest-1",         "rest-2",        "rest-4",          "rest-8",     "rest-16",      "rest-32",
    "rest-64",        "brace",         "time-common",     "time-cut",   "head-circled", "head-diamond",
    "head-diamond-2", "head-triangle", "head-triangle-2"};

/// How a text is set.
struct TextStyle {
    std::string family = "Times New Roman";
    double points = 12; ///< 72 an inch
    bool bold = false;
    bool italic = false;
    bool operator==(const TextStyle&) const = default;
};

/// Level, upright, or sloped; the ends of a sloped one are upright, as a beam's are. Round where it is a dot.
struct LineMark {
    Point from, to;
    double width = 1; ///< `DrawWidth`
};
struct ImageMark {
    GlyphImage image;
    Point at; ///< top left corner
};
struct EllipseMark {
    Point centre;
    double radius; ///< of the longer half axis
    double aspect; ///< height to width
    bool filled;
};
struct TextMark {
    Point at;  ///< top left corner of its line
    int style; ///< in `EngravedScore::styles`
    std::string text;
};
/// A tie, slur or bracket's arc: a Bézier curve, thickest in its middle.
struct CurveMark {
    std::array<Point, 4> points;
    double width; ///< in the middle
};
struct GlyphMark {
    MusicGlyph glyph;
    Point at; ///< the sign's own origin: a clef's line and left edge, a head's or an accidental's middle, a
              ///< rest's middle line and left edge, a flag's end of stem
    double size; ///< a staff space
};

/// What a mark is to a reader: tests ask it which may touch.
enum class Role : std::uint8_t {
    Other,
    StaffLine,
    BarLine,
    Clef,
    Signature, ///< of the key or the time
    Head,
    Stem,
    Flag,
    Beam,
    Dot,
    Accidental,
    Ledger,
    Rest,
    Tie,
    Tuplet,
    Lyric,
    Text,
    Drum, ///< a drum's name
    Slur
};

/// 0xRRGGBB.
using Colour = std::uint32_t;
inline constexpr Colour kBlack = 0;

/// One thing that is drawn.
struct Mark {
    std::variant<LineMark, ImageMark, EllipseMark, TextMark, CurveMark, GlyphMark> shape;
    Role role = Role::Other;
    int note = -1; ///< marks of one note, or of one group under a beam, have one number; they may touch
    Colour colour = kBlack;
};

/// What is drawn on a page, in that order. It outlives the pass that made it: pictures are made of it when
/// they are seen.
struct EngravedPage {
    std::vector<Mark> marks;
    std::string caption; ///< of its sheet: the title and "         Page " with the number
};

struct EngravedScore {
    double width = 0; ///< of every page
    double height = 0;
    std::vector<TextStyle> styles;
    std::vector<EngravedPage> pages; ///< one at least

    /// The index of @p style in `styles`, where it is put if it isn't there.
    int styleOf(const TextStyle& style);
};

} // namespace velmora::notation
