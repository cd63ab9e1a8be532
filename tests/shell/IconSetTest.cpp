// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/IconSet.h"

#include <QImage>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
const IconColours kColours{.ink = Qt::black, .accent = Qt::blue, .record = Qt::red};

QImage picture(std::string_view name, int size = 16, qreal scale = 1) {
    return iconPixmap(name, kColours, size, scale).toImage().convertToFormat(QImage::Format_ARGB32);
}
/// Pixels that are covered to more than a half.
int inked(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 127 ? 1 : 0;
    return count;
}
int different(const QImage& one, const QImage& other) {
    int count = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            count += std::abs(qAlpha(one.pixel(x, y)) - qAlpha(other.pixel(x, y))) > 127 ? 1 : 0;
    return count;
}
} // namespace

TEST(IconSetTest, EveryIconHasInkAndLeavesItsMarginFree) {
    for (const auto name : iconNames()) {
        const QImage image = picture(name, 64);
        EXPECT_GT(inked(image), 64 * 64 / 20) << name;
        for (int i = 0; i < 64; ++i)
            EXPECT_EQ(qAlpha(image.pixel(i, 0)) + qAlpha(image.pixel(i, 63)) + qAlpha(image.pixel(0, i)) +
                          qAlpha(image.pixel(63, i)),
                      0)
                << name << " is cut at its edge";
    }
}

TEST(IconSetTest, NoTwoIconsLookAlikeInOneColour) {
    const auto names = iconNames();
    for (std::size_t i = 0; i < names.size(); ++i)
        for (std::size_t k = 0; k < i; ++k)
            EXPECT_GE(different(picture(names[i]), picture(names[k])), 12) << names[i] << " and " << names[k];
}

TEST(IconSetTest, APictureHasThePixelsOfTheDevice) {
    const QPixmap pixmap = iconPixmap("play", kColours, 16, 1.5);
    EXPECT_EQ(pixmap.size(), QSize(24, 24));
    EXPECT_EQ(pixmap.deviceIndependentSize(), QSizeF(16, 16));
}

TEST(IconSetTest, AnUnknownNameIsNoPicture) {
    EXPECT_TRUE(iconPixmap("nothing", kColours, 16, 1).isNull());
}
