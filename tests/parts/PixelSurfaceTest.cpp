// SPDX-License-Identifier: GPL-2.0-or-later
#include "parts/PixelSurface.h"

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr QRgb kInkHere = qRgb(9, 9, 9);

/// Every pixel another colour.
QImage numbered() {
    QImage image(7, 5, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x, y, 100));
    return image;
}
} // namespace

TEST(PixelSurfaceTest, MovingKeepsWhatStaysInThePicture) {
    for (int across = -8; across <= 8; ++across)
        for (int down = -6; down <= 6; ++down) {
            QImage image = numbered();
            PixelSurface(image).moveBy({across, down});
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x) {
                    const QPoint from(x - across, y - down);
                    const QPoint there = image.rect().contains(from) ? from : QPoint(x, y);
                    EXPECT_EQ(image.pixel(x, y), qRgb(there.x(), there.y(), 100))
                        << across << ", " << down << " at " << x << ", " << y;
                }
        }
}

TEST(PixelSurfaceTest, NothingIsWrittenOutsideOfTheClip) {
    QImage image = numbered();
    PixelSurface surface(image);
    surface.clipTo({2, 1, 3, 2});
    surface.fillBox(0, 0, 6, 4, kInkHere);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            EXPECT_EQ(image.pixel(x, y) == kInkHere, QRect(2, 1, 3, 2).contains(x, y)) << x << ", " << y;
}

TEST(PixelSurfaceTest, NothingIsWrittenWithAClipOutsideOfThePicture) {
    QImage image = numbered();
    PixelSurface surface(image);
    surface.clipTo({20, 1, 3, 2});
    surface.fillBox(0, 0, 6, 4, kInkHere);
    surface.blendStrip(0, 7, kInkHere);
    EXPECT_EQ(image, numbered());
}
