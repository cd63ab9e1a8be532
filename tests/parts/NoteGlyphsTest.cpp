// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/NoteGlyphs.h"

#include "parts/PixelSurface.h"

#include <gmock/gmock.h>

using namespace velmora;
using testing::Gt;
using testing::Lt;

namespace {
constexpr int kShapes = 7;
constexpr const char* kNoFont = "A family that no machine has";

std::vector<NoteGlyph> allNotes() {
    std::vector<NoteGlyph> notes;
    for (int shape = 0; shape < kShapes; ++shape)
        for (const bool dotted : {false, true})
            for (const Stem stem : {Stem::Up, Stem::Down})
                notes.push_back({{static_cast<NoteShape>(shape), dotted}, stem});
    return notes;
}
QImage pictureOf(const Stamp& stamp, qreal scale = 1) {
    QImage image(64 * static_cast<int>(std::ceil(scale)), 64 * static_cast<int>(std::ceil(scale)),
                 QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    PixelSurface(image).put(stamp, deviceEdge(32, scale), deviceEdge(32, scale));
    return image;
}
} // namespace

class InEitherFont : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Fonts, InEitherFont, testing::Values("Noto Music", kNoFont),
                         [](const auto& font) { return font.index == 0 ? "Installed" : "Missing"; });

TEST_P(InEitherFont, EveryNoteHasAPictureOfItsOwn) {
    NoteGlyphs glyphs(GetParam());
    std::vector<QImage> pictures;
    for (const NoteGlyph& note : allNotes()) {
        if (note.value.shape == NoteShape::Whole && note.stem == Stem::Down)
            continue; // has no stem to tell it by
        const QImage picture = pictureOf(glyphs.note(note, 1));
        EXPECT_EQ(std::ranges::count(pictures, picture), 0) << static_cast<int>(note.value.shape);
        pictures.push_back(picture);
    }
}

TEST_P(InEitherFont, APictureIsNoLargerThan32By32) {
    NoteGlyphs glyphs(GetParam());
    for (const qreal scale : {1.0, 1.5, 2.0})
        for (const NoteGlyph& note : allNotes()) {
            const QRect bounds = glyphs.note(note, scale).bounds();
            EXPECT_LE(bounds.width(), 32 * scale);
            EXPECT_LE(bounds.height(), 32 * scale);
            EXPECT_FALSE(bounds.isEmpty());
        }
}

TEST_P(InEitherFont, NothingOfANoteIsCutOffByItsPicture) {
    NoteGlyphs glyphs(GetParam());
    for (const NoteGlyph& note : allNotes()) {
        const QRectF outline = glyphs.noteOutline(note).boundingRect().united(NoteGlyphs::stemRect(note));
        const int headY = note.stem == Stem::Up ? kHeadYUp : kHeadYDown;
        EXPECT_GE(outline.left() * kStaffSpace + kHeadX + 0.5, 0);
        EXPECT_LE(outline.right() * kStaffSpace + kHeadX + 0.5, kGlyphSize);
        EXPECT_GE(outline.top() * kStaffSpace + headY + 0.5, 0);
        EXPECT_LE(outline.bottom() * kStaffSpace + headY + 0.5, kGlyphSize);
    }
}

TEST_P(InEitherFont, StemsStandOnTheSideAndReachTheWayTheyPoint) {
    NoteGlyphs glyphs(GetParam());
    const QImage up = pictureOf(glyphs.note({{NoteShape::Quarter, false}, Stem::Up}, 1));
    EXPECT_EQ(up.pixel(36, 15), qRgb(0, 0, 0));
    EXPECT_EQ(up.pixel(35, 15), qRgb(255, 255, 255));
    EXPECT_EQ(up.pixel(37, 15), qRgb(255, 255, 255));
    EXPECT_EQ(up.pixel(36, 45), qRgb(255, 255, 255));
    const QImage down = pictureOf(glyphs.note({{NoteShape::Quarter, false}, Stem::Down}, 1));
    EXPECT_EQ(down.pixel(28, 50), qRgb(0, 0, 0));
    EXPECT_EQ(down.pixel(27, 50), qRgb(255, 255, 255));
    EXPECT_EQ(down.pixel(28, 20), qRgb(255, 255, 255));
}

TEST_P(InEitherFont, AHeadIsAStaffSpaceHighAndStandsOnItsPlace) {
    NoteGlyphs glyphs(GetParam());
    const QRectF head = glyphs.noteOutline({{NoteShape::Quarter, false}, Stem::Up}).boundingRect();
    EXPECT_NEAR(head.height(), 1, 0.15);
    EXPECT_NEAR(head.center().x(), 0, 0.03);
    EXPECT_NEAR(head.center().y(), 0, 0.03);
    EXPECT_EQ(pictureOf(glyphs.note({{NoteShape::Quarter, false}, Stem::Up}, 1)).pixel(32, 32),
              qRgb(0, 0, 0));
    EXPECT_GT(qRed(pictureOf(glyphs.note({{NoteShape::Half, false}, Stem::Up}, 2), 2).pixel(65, 65)), 100);
}

TEST_P(InEitherFont, AccidentalsStandBeforeTheHead) {
    NoteGlyphs glyphs(GetParam());
    for (const Accidental sign : {Accidental::Sharp, Accidental::Flat, Accidental::Natural})
        for (const qreal scale : {1.0, 1.5, 2.0}) {
            const QRect bounds = glyphs.accidental(sign, scale).bounds();
            EXPECT_LT(bounds.right(), -3 * scale);
            EXPECT_GT(bounds.width(), 4 * scale);
            EXPECT_LT(bounds.top(), -5 * scale);
            EXPECT_GT(bounds.bottom(), 2 * scale);
        }
}

TEST_P(InEitherFont, ClefsStandRoundTheirLines) {
    NoteGlyphs glyphs(GetParam());
    const QRectF treble = glyphs.clefOutline(Clef::Treble).boundingRect();
    EXPECT_LT(treble.top(), -3);
    EXPECT_GT(treble.bottom(), 1.2);
    const QRectF bass = glyphs.clefOutline(Clef::Bass).boundingRect();
    EXPECT_LT(bass.top(), -0.4);
    EXPECT_GT(bass.bottom(), 1.5);
    EXPECT_GE(bass.left(), -0.01);
}

TEST(NoteGlyphsTest, TheMusicFontIsFound) {
    EXPECT_TRUE(NoteGlyphs().hasFont());
    EXPECT_FALSE(NoteGlyphs(kNoFont).hasFont());
}

TEST(NoteGlyphsTest, AnotherScaleFactorMakesNewPictures) {
    NoteGlyphs glyphs;
    const NoteGlyph note{{NoteShape::Eighth, false}, Stem::Up};
    const QRect once = glyphs.note(note, 1).bounds();
    const QRect twice = glyphs.note(note, 2).bounds();
    EXPECT_NEAR(twice.height(), 2 * once.height(), 2);
    EXPECT_EQ(glyphs.note(note, 1).bounds(), once);
}
