// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ColumnMarks.h"

#include "parts/PixelSurface.h"

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;

namespace {
std::vector<QRect> rectsOf(const ColumnMarks& marks) {
    std::vector<QRect> rects;
    marks.appendRects(rects, 10);
    return rects;
}
} // namespace

TEST(ColumnMarksTest, NeighboursAreOneRectangle) {
    ColumnMarks marks(120, 1);
    marks.mark(2);
    marks.mark(3);
    marks.mark(6);
    EXPECT_THAT(rectsOf(marks), ElementsAre(QRect(24, 0, 24, 10), QRect(72, 0, 12, 10)));
    EXPECT_EQ(marks.marked(), 3);
}

TEST(ColumnMarksTest, TheLastColumnEndsWithThePicture) {
    ColumnMarks marks(125, 1);
    marks.markRange(10, 20);
    EXPECT_THAT(rectsOf(marks), ElementsAre(QRect(120, 0, 5, 10)));
    EXPECT_EQ(marks.columns(), 11);
    EXPECT_EQ(marks.wholeColumns(), 10);
}

TEST(ColumnMarksTest, ColumnsOutOfThePictureAreLeftOut) {
    ColumnMarks marks(120, 1);
    marks.markRange(-5, 0);
    marks.markRange(10, 12);
    EXPECT_EQ(marks.marked(), 0);
}

TEST(ColumnMarksTest, PixelsMarkTheColumnsThatHaveThem) {
    for (const qreal scale : {1.0, 1.2, 1.5, 1.75, 2.0}) {
        const int width = deviceEdge(240, scale);
        for (int pixel = 0; pixel < width; ++pixel) {
            ColumnMarks marks(width, scale);
            marks.markPixels(pixel, pixel + 1);
            const std::vector<QRect> rects = rectsOf(marks);
            ASSERT_EQ(rects.size(), 1U) << pixel << " at " << scale;
            EXPECT_TRUE(rects[0].contains(pixel, 0)) << pixel << " at " << scale;
        }
    }
}
