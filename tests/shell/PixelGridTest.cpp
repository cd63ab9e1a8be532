// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/PixelGrid.h"
#include "shell/SkinPainter.h"

#include <QImage>

#include <set>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
/// A white screen of so many logical pixels at that scale factor.
QImage screen(QSize size, qreal scale) {
    QImage image((QSizeF(size) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    return image;
}
int rowsOfInk(const QImage& image, int x) {
    int rows = 0;
    for (int y = 0; y < image.height(); ++y)
        rows += image.pixel(x, y) == qRgb(0, 0, 0) ? 1 : 0;
    return rows;
}
/// Neither ink nor paper.
int greys(const QImage& image) {
    int found = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            found += image.pixel(x, y) != qRgb(0, 0, 0) && image.pixel(x, y) != qRgb(255, 255, 255) ? 1 : 0;
    return found;
}
} // namespace

struct ScaleRow {
    qreal scale;
    int linePixels;
};
class PixelGridAt : public testing::TestWithParam<ScaleRow> {};
INSTANTIATE_TEST_SUITE_P(Scales, PixelGridAt,
                         testing::Values(ScaleRow{1, 1}, ScaleRow{1.25, 1}, ScaleRow{1.5, 1},
                                         ScaleRow{2, 2}));

TEST_P(PixelGridAt, ALineIsWholePixelsWideWhereverItStands) {
    for (const qreal y : {3.0, 5.0, 6.3, 7.5}) {
        QImage image = screen({20, 20}, GetParam().scale);
        QPainter painter(&image);
        horizontalLine(painter, 0, y, 20, Qt::black);
        painter.end();
        EXPECT_EQ(greys(image), 0) << y;
        EXPECT_EQ(rowsOfInk(image, 4), GetParam().linePixels) << y;
    }
}

TEST_P(PixelGridAt, ALineInAMovedPartIsWholePixelsWide) {
    for (const qreal moved : {1.0, 3.0, 5.0}) {
        QImage image = screen({20, 20}, GetParam().scale);
        QPainter painter(&image);
        painter.translate(moved, moved);
        verticalLine(painter, 2, 0, 10, Qt::black);
        horizontalLine(painter, 0, 12, 10, Qt::black);
        painter.end();
        EXPECT_EQ(greys(image), 0) << moved;
    }
}

TEST_P(PixelGridAt, ASquareEdgeIsSharpOnAllSides) {
    QImage image = screen({20, 20}, GetParam().scale);
    QPainter painter(&image);
    strokeRounded(painter, QRectF(3, 3, 9, 9), 0, Qt::black);
    painter.end();
    EXPECT_EQ(greys(image), 0);
    const int middle = static_cast<int>(7.5 * GetParam().scale);
    EXPECT_EQ(rowsOfInk(image, middle), 2 * GetParam().linePixels);
}

TEST_P(PixelGridAt, TheSidesOfARoundedFaceAreSharp) {
    QImage image = screen({20, 20}, GetParam().scale);
    QPainter painter(&image);
    fillRounded(painter, QRectF(3, 3, 13, 13), 4, Qt::white, Qt::black);
    painter.end();
    const int middle = static_cast<int>(9.5 * GetParam().scale);
    std::set<QRgb> seen;
    for (int y = 0; y < image.height(); ++y)
        seen.insert(image.pixel(middle, y));
    EXPECT_EQ(seen, (std::set<QRgb>{qRgb(0, 0, 0), qRgb(255, 255, 255)}));
}

TEST_P(PixelGridAt, PlacesOnPixelsStayWhereTheyAre) {
    QImage image = screen({20, 20}, GetParam().scale);
    const QPainter painter(&image);
    const PixelGrid grid(painter);
    EXPECT_DOUBLE_EQ(grid.x(4), 4);
    EXPECT_EQ(grid.rect(QRectF(0, 4, 8, 12)), QRectF(0, 4, 8, 12));
}
