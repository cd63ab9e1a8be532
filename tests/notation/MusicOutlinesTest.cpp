// SPDX-License-Identifier: GPL-2.0-or-later
#include "notation/MusicOutlines.h"

#include "PageSheet.h"
#include "notation/MusicShapes.h"
#include "notation/OutlineShapes.h"

#include <gmock/gmock.h>

using namespace velmora;
using namespace velmora::notation;

namespace {
constexpr double kTolerance = 0.6; ///< of a pixel

struct Expected {
    MusicGlyph glyph;
    double left, top, right, bottom; ///< staff spaces about its origin
};
/// What a reader of music expects of each sign's place and size.
constexpr std::array<Expected, 27> kExpected{{
    {MusicGlyph::TrebleClef, 0, -4.5, 2.6, 2.7},
    {MusicGlyph::BassClef, 0, -1.2, 2.9, 2.8},
    {MusicGlyph::PercussionClef, 0, -1, 1.2, 1},
    {MusicGlyph::Sharp, -0.6, -1.4, 0.6, 1.4},
    {MusicGlyph::Flat, -0.55, -1.8, 0.55, 0.7},
    {MusicGlyph::Natural, -0.55, -1.4, 0.55, 1.4},
    {MusicGlyph::HeadWhole, -0.85, -0.6, 0.85, 0.6},
    {MusicGlyph::HeadHalf, -0.65, -0.6, 0.65, 0.6},
    {MusicGlyph::HeadBlack, -0.65, -0.6, 0.65, 0.6},
    {MusicGlyph::HeadCross, -0.65, -0.6, 0.65, 0.6},
    {MusicGlyph::FlagUp, -0.1, 0, 1.2, 3.1},
    {MusicGlyph::FlagDown, -0.1, -3.1, 1.2, 0},
    {MusicGlyph::RestWhole, 0, -1, 1.5, -0.4},
    {MusicGlyph::RestHalf, 0, -0.6, 1.5, 0},
    {MusicGlyph::RestQuarter, 0, -1.6, 1.1, 1.6},
    {MusicGlyph::RestEighth, 0, -1.1, 1.2, 1.3},
    {MusicGlyph::RestSixteenth, 0, -1.5, 1.5, 1.8},
    {MusicGlyph::RestThirtySecond, 0, -2, 1.9, 2.3},
    {MusicGlyph::RestSixtyFourth, 0, -2.6, 2.2, 2.8},
    {MusicGlyph::Brace, -0.12, -0.55, 0.05, 0.55},
    {MusicGlyph::CommonTime, 0, -1.3, 1.8, 1.3},
    {MusicGlyph::CutTime, 0, -1.8, 1.8, 1.8},
    {MusicGlyph::HeadCircledCross, -0.6, -0.6, 0.6, 0.6},
    {MusicGlyph::HeadDiamond, -0.65, -0.6, 0.65, 0.6},
    {MusicGlyph::HeadDiamondOpen, -0.65, -0.6, 0.65, 0.6},
    {MusicGlyph::HeadTriangle, -0.65, -0.6, 0.65, 0.6},
    {MusicGlyph::HeadTriangleOpen, -0.65, -0.6, 0.65, 0.6},
}};

/// Twice the area that an outline's points go round.
double turnOf(const Outline& outline) {
    double sum = 0;
    Point first, pen;
    for (const PathStep& step : outline) {
        const int count = pointsOf(step.kind);
        for (int i = 0; i < std::max(count, 1); ++i) {
            const Point to = count == 0 ? first : step.points[static_cast<std::size_t>(i)];
            if (step.kind == PathStep::Kind::Move)
                first = to;
            else
                sum += pen.x * to.y - to.x * pen.y;
            pen = to;
        }
    }
    return sum;
}

void expectPlausible(const Expected& expected, const Bounds& box, const char* whose) {
    const auto name = kMusicGlyphNames[static_cast<std::size_t>(expected.glyph)];
    EXPECT_GE(box.left, expected.left - 0.01) << name << whose;
    EXPECT_GE(box.top, expected.top - 0.01) << name << whose;
    EXPECT_LE(box.right, expected.right + 0.01) << name << whose;
    EXPECT_LE(box.bottom, expected.bottom + 0.01) << name << whose;
    EXPECT_GT(box.right - box.left, 0.5 * (expected.right - expected.left)) << name << whose;
    EXPECT_GT(box.bottom - box.top, 0.5 * (expected.bottom - expected.top)) << name << whose;
}
} // namespace

TEST(MusicOutlines, TheFontIsInstalledWithThePackage) {
    EXPECT_TRUE(hasMusicFont());
}

TEST(MusicOutlines, EverySignStandsAboutItsOriginInItsUsualSize) {
    for (std::size_t i = 0; i < kExpected.size(); ++i) {
        ASSERT_EQ(static_cast<std::size_t>(kExpected[i].glyph), i);
        expectPlausible(kExpected[i], boundsOf(outlineOf(kExpected[i].glyph)), " of the font");
        expectPlausible(kExpected[i], boundsOf(plainSign(kExpected[i].glyph)), " of ours");
    }
}

TEST(MusicOutlines, ABoxIsWhatTheOutlineCovers) {
    for (const Expected& expected : kExpected) {
        const Box& box = boxOf(expected.glyph);
        const Bounds bounds = boundsOf(outlineOf(expected.glyph));
        EXPECT_EQ(box.left, bounds.left);
        EXPECT_EQ(box.top, bounds.top);
        EXPECT_EQ(box.right, bounds.right);
        EXPECT_EQ(box.bottom, bounds.bottom);
    }
}

TEST(MusicOutlines, AreasRunClockwise) {
    for (const Expected& expected : kExpected) {
        EXPECT_GT(turnOf(outlineOf(expected.glyph)), 0) << static_cast<int>(expected.glyph);
        EXPECT_GT(turnOf(plainSign(expected.glyph)), 0) << static_cast<int>(expected.glyph);
    }
    for (std::size_t i = 0; i < kGlyphImageNames.size(); ++i)
        EXPECT_GT(turnOf(outlineOf(static_cast<GlyphImage>(i))), 0) << kGlyphImageNames[i];
}

TEST(MusicOutlines, EveryImageButTheClefStaysInItsFrame) {
    for (std::size_t i = 0; i < kGlyphImageNames.size(); ++i) {
        const Bounds box = boundsOf(outlineOf(static_cast<GlyphImage>(i)));
        EXPECT_GT(box.right - box.left, 5) << kGlyphImageNames[i];
        EXPECT_GT(box.bottom - box.top, 10) << kGlyphImageNames[i];
        if (static_cast<GlyphImage>(i) == GlyphImage::Image14)
            continue;
        EXPECT_GE(box.left, 0) << kGlyphImageNames[i];
        EXPECT_GE(box.top, 0) << kGlyphImageNames[i];
        EXPECT_LE(box.right, 32) << kGlyphImageNames[i];
        EXPECT_LE(box.bottom, 32) << kGlyphImageNames[i];
    }
}

TEST(MusicOutlines, HeadsOfImagesLieWhereNotesAreAnchored) {
    struct Row {
        GlyphImage image;
        int head;    ///< pixels below the top
        int stem;    ///< its column
        int stemEnd; ///< the last row of it
    };
    for (const auto& [image, head, stem, stemEnd] :
         std::initializer_list<Row>{{GlyphImage::Img2UP, 24, 18, 0},
                                    {GlyphImage::Img2DN, 6, 12, 30},
                                    {GlyphImage::Img4UP, 24, 18, 0},
                                    {GlyphImage::Img4DN, 6, 12, 30},
                                    {GlyphImage::Img8UP, 24, 18, 0},
                                    {GlyphImage::Img8DN, 6, 12, 30},
                                    {GlyphImage::Img16UP, 24, 18, 0},
                                    {GlyphImage::Img16DN, 7, 12, 31}}) {
        const auto name = kGlyphImageNames[static_cast<std::size_t>(image)];
        PageSheet sheet(32, 32);
        sheet.draw(ImageMark{image, {0, 0}}).paint(8);
        EXPECT_TRUE(sheet.isInk(stem * 8 + 4, stemEnd * 8 + 4)) << name;
        EXPECT_FALSE(sheet.isInk(stem * 8 - 4, stemEnd * 8 + 4)) << name;
        // The head is as far from its middle row at the top as at the bottom.
        const int column = head > 16 ? 13 * 8 : 18 * 8;
        int first = sheet.height, last = 0;
        for (int y = (head - 5) * 8; y < std::min((head + 6) * 8, sheet.height); ++y)
            for (int x = column; x < column + 4; ++x)
                if (sheet.isInk(x, y)) {
                    first = std::min(first, y);
                    last = std::max(last, y);
                }
        EXPECT_NEAR((first + last + 1) / 16.0, head + 0.5, 1.0) << name;
    }
}

TEST(MusicOutlines, MirroredOutlinesKeepTheirTurn) {
    Outline box, mirrored;
    addBox(box, 0, 0, 2, 1);
    add(mirrored, box, {-1, 1, {5, 0}});
    EXPECT_GT(turnOf(mirrored), 0);
    const Bounds bounds = boundsOf(mirrored);
    EXPECT_NEAR(bounds.left, 3, kTolerance);
    EXPECT_NEAR(bounds.right, 5, kTolerance);
    EXPECT_EQ(turnOf(turnedRight(reversed(box))), turnOf(box));
}

TEST(MusicOutlines, BoundsFollowCurvesAndNotTheirHandles) {
    Outline ellipse;
    addEllipse(ellipse, {10, 20}, 4, 2);
    const Bounds bounds = boundsOf(ellipse);
    EXPECT_NEAR(bounds.left, 6, 1e-9);
    EXPECT_NEAR(bounds.bottom, 22, 1e-9);
    const Outline arch{{PathStep::Kind::Move, {Point{0, 0}}},
                       {PathStep::Kind::Curve, {Point{0, -4}, Point{4, -4}, Point{4, 0}}},
                       {PathStep::Kind::Close, {}}};
    EXPECT_NEAR(boundsOf(arch).top, -3, 1e-9);
}
