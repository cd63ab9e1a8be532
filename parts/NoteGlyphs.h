// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/Stamp.h"

#include <QPainterPath>
#include <QRectF>

#include <array>
#include <cstdint>
#include <map>
#include <memory>

namespace velmora {

enum class NoteShape : std::uint8_t { Whole, Half, Quarter, Eighth, Sixteenth, ThirtySecond, SixtyFourth };
enum class Stem : std::uint8_t { Up, Down };
enum class Accidental : std::uint8_t { Sharp, Flat, Natural };
enum class Clef : std::uint8_t { Treble, Bass };

struct NoteValue {
    NoteShape shape = NoteShape::Quarter;
    bool dotted = false;
    auto operator<=>(const NoteValue&) const = default;
};
struct NoteGlyph {
    NoteValue value;
    Stem stem = Stem::Up;
    auto operator<=>(const NoteGlyph&) const = default;
};

inline constexpr int kStaffSpace = 8; ///< pixels between two lines of a staff
inline constexpr int kGlyphSize = 32; ///< width and height of a glyph's picture
/// The pixel of a note's picture that the middle of its head falls on.
inline constexpr int kHeadX = 15;
inline constexpr int kHeadYUp = 24, kHeadYDown = 6;

/// The shapes of written music: outlines of the installed music font, and plain ones of our own without it.
class NoteGlyphs {
public:
    NoteGlyphs();
    /// @param family the font; shapes are plain where it isn't installed
    explicit NoteGlyphs(const char* family);
    ~NoteGlyphs();

    /// Whether the shapes are the font's.
    [[nodiscard]] bool hasFont();

    // Outlines, in units of a staff space, y downwards.

    /// Head, flags and dot, with the middle of the head at the origin.
    [[nodiscard]] QPainterPath noteOutline(const NoteGlyph& note);
    /// The stem of the same note; null for a whole one.
    [[nodiscard]] static QRectF stemRect(const NoteGlyph& note);
    /// Its middle, where the note's line runs, at the origin.
    [[nodiscard]] QPainterPath accidentalOutline(Accidental accidental);
    /// The clef's line at the origin, and its left edge at x = 0.
    [[nodiscard]] QPainterPath clefOutline(Clef clef);

    // Pictures, made once a scale factor.

    /// What is cut from a 32 by 32 picture, anchored at the middle of the head.
    [[nodiscard]] const Stamp& note(const NoteGlyph& note, qreal scale);
    /// The same, to be put on the middle of the head that it stands before.
    [[nodiscard]] const Stamp& accidental(Accidental accidental, qreal scale);

private:
    class Outlines;
    [[nodiscard]] Outlines& outlines();
    void useScale(qreal scale);

    const char* family_;
    std::unique_ptr<Outlines> outlines_; ///< looked up at the first use: most scores never need them
    std::map<NoteGlyph, Stamp> notes_;
    std::map<Accidental, Stamp> accidentals_;
    qreal scale_ = 0;
};

} // namespace velmora
