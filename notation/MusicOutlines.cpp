// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/MusicOutlines.h"

#include "notation/MusicShapes.h"
#include "notation/OutlineShapes.h"

namespace velmora::notation {

namespace {
constexpr double kSpace = 8; ///< pixels between two lines of a staff

// In an image's frame of 32 by 32 pixels, to the middle of the pixel that is meant.
constexpr double kHeadX = 15.5;
constexpr double kHeadUpY = 24.5, kHeadDownY = 6.5;
/// Stems stand where those of a beamed group are drawn.
constexpr double kStemUpX = 18, kStemDownX = 12;
constexpr double kStemUpTop = 0, kStemDownBottom = 31;
/// A head a little narrower than the font's: its sides then end at the stems.
constexpr double kHeadScaleX = 0.88, kHeadScaleY = 0.92;
constexpr double kStemInHead = 1;
/// Flags end this far from the head's middle.
constexpr double kFlagsFree = 4;

Outline noteImage(const MusicFont& font, MusicGlyph head, bool up, int flags) {
    const double headY = up ? kHeadUpY : kHeadDownY;
    Outline image;
    add(image, signOf(font, head), {kSpace * kHeadScaleX, kSpace * kHeadScaleY, {kHeadX, headY}});
    const double stem = up ? kStemUpX : kStemDownX;
    if (up)
        addBox(image, stem, kStemUpTop, stem + 1, headY - kStemInHead);
    else
        addBox(image, stem, headY + kStemInHead, stem + 1, kStemDownBottom);
    if (flags == 0)
        return image;
    const Outline shape = flagsOf(font, flags);
    const double room = (up ? kHeadUpY - kStemUpTop : kStemDownBottom - kHeadDownY) - kFlagsFree;
    const double squeezed = std::min(1.0, room / (boundsOf(shape).bottom * kSpace)) * kSpace;
    add(image, shape,
        {std::max(squeezed, 0.85 * kSpace),
         up ? squeezed : -squeezed,
         {stem + 0.5, up ? kStemUpTop : kStemDownBottom}});
    return image;
}

/// A sign in its frame, what the sign's origin is to fall on, and its size.
struct Framed {
    MusicGlyph glyph;
    double x, y;
    double size;
};
/// An accidental's right edge.
struct FramedAccidental {
    MusicGlyph glyph;
    double right, y;
};

Outline framed(const MusicFont& font, const Framed& sign) {
    Outline image;
    add(image, signOf(font, sign.glyph), {kSpace * sign.size, kSpace * sign.size, {sign.x, sign.y}});
    return image;
}
Outline framed(const MusicFont& font, const FramedAccidental& sign) {
    const Outline shape = signOf(font, sign.glyph);
    Outline image;
    add(image, shape, {kSpace, kSpace, {sign.right - boundsOf(shape).right * kSpace, sign.y}});
    return image;
}

Outline imageOf(const MusicFont& font, GlyphImage image) {
    switch (image) {
    case GlyphImage::Image14: // larger than its frame, as the clef is larger than the staff
        return framed(font, Framed{MusicGlyph::TrebleClef, 5, 29.5, 0.95});
    case GlyphImage::Image4:
        return framed(font, Framed{MusicGlyph::BassClef, 5, 8.5, 0.9});
    case GlyphImage::ImgSharp:
        return framed(font, FramedAccidental{MusicGlyph::Sharp, 19, 16.5});
    case GlyphImage::ImgFlat: // between the places that a key and a note have for it
        return framed(font, FramedAccidental{MusicGlyph::Flat, 20.5, 18});
    case GlyphImage::Img2UP:
    case GlyphImage::Img2DN:
        return noteImage(font, MusicGlyph::HeadHalf, image == GlyphImage::Img2UP, 0);
    case GlyphImage::Img4UP:
    case GlyphImage::Img4DN:
        return noteImage(font, MusicGlyph::HeadBlack, image == GlyphImage::Img4UP, 0);
    case GlyphImage::Img8UP:
    case GlyphImage::Img8DN:
        return noteImage(font, MusicGlyph::HeadBlack, image == GlyphImage::Img8UP, 1);
    case GlyphImage::Img16UP:
        return noteImage(font, MusicGlyph::HeadBlack, true, 2);
    case GlyphImage::Img16DN: { // stands a pixel higher than the others
        Outline lower;
        add(lower, noteImage(font, MusicGlyph::HeadBlack, false, 2), {1, 1, {0, 1}});
        return lower;
    }
    case GlyphImage::ImgPause4:
        return framed(font, Framed{MusicGlyph::RestQuarter, 6, 17.5, 1});
    case GlyphImage::ImgPause8:
        return framed(font, Framed{MusicGlyph::RestEighth, 6, 17.5, 1});
    case GlyphImage::ImgPause16:
        break;
    }
    return framed(font, Framed{MusicGlyph::RestSixteenth, 7, 18.5, 0.88});
}

struct Shapes {
    Shapes() {
        const MusicFont font;
        found = font.found();
        for (std::size_t i = 0; i < images.size(); ++i)
            images[i] = imageOf(font, static_cast<GlyphImage>(i));
        for (std::size_t i = 0; i < signs.size(); ++i) {
            signs[i] = signOf(font, static_cast<MusicGlyph>(i));
            const auto [left, top, right, bottom] = boundsOf(signs[i]);
            boxes[i] = {left, top, right, bottom};
        }
    }

    std::array<Outline, kGlyphImageNames.size()> images;
    std::array<Outline, kMusicGlyphNames.size()> signs;
    std::array<Box, kMusicGlyphNames.size()> boxes;
    bool found;
};
const Shapes& shapes() {
    static const Shapes only;
    return only;
}
} // namespace

const Outline& outlineOf(GlyphImage image) {
    return shapes().images[static_cast<std::size_t>(image)];
}
const Outline& outlineOf(MusicGlyph glyph) {
    return shapes().signs[static_cast<std::size_t>(glyph)];
}
const Box& boxOf(MusicGlyph glyph) {
    return shapes().boxes[static_cast<std::size_t>(glyph)];
}
bool hasMusicFont() {
    return shapes().found;
}

} // namespace velmora::notation
