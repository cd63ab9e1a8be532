// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/PixelStrip.h"

#include <QColor>

#include <gmock/gmock.h>

using namespace velmora;

namespace {
QImage picture(qreal scale = 1, QColor colour = Qt::white) {
    QImage made((QSizeF(40, 20) * scale).toSize(), QImage::Format_RGB32);
    made.setDevicePixelRatio(scale);
    made.fill(colour);
    return made;
}
} // namespace

class PixelStripTest : public testing::TestWithParam<qreal> {};
INSTANTIATE_TEST_SUITE_P(Scales, PixelStripTest, testing::Values(1, 1.5, 2),
                         [](const auto& row) { return "Scale" + std::to_string(int(row.param * 10)); });

TEST_P(PixelStripTest, WhatWasSavedComesBackAndTheRestStays) {
    QImage paper = picture(GetParam());
    const QImage before = paper;
    PixelStrip strip;
    strip.save(paper, {5, 0, 3, 20});
    paper.fill(Qt::red);
    EXPECT_EQ(strip.restore(paper), QRect(5, 0, 3, 20));
    const auto at = [&](qreal x, qreal y) {
        return paper.pixelColor(int(x * GetParam()), int(y * GetParam()));
    };
    EXPECT_EQ(at(6, 10), QColor(Qt::white));
    EXPECT_EQ(at(4, 10), QColor(Qt::red));
    EXPECT_EQ(at(9, 10), QColor(Qt::red));
    EXPECT_NE(paper, before);
}

TEST(PixelStripTest, WhatLiesOutsideIsLeftOut) {
    QImage paper = picture();
    PixelStrip strip;
    strip.save(paper, {-5, -5, 10, 10});
    paper.fill(Qt::red);
    strip.restore(paper);
    EXPECT_EQ(paper.pixelColor(4, 4), QColor(Qt::white));
    EXPECT_EQ(paper.pixelColor(5, 5), QColor(Qt::red));
    strip.save(paper, {100, 100, 5, 5});
    EXPECT_FALSE(strip.holds());
    EXPECT_TRUE(strip.restore(paper).isEmpty());
}

TEST(PixelStripTest, APictureOfAnotherSizeIsLeftAlone) {
    QImage paper = picture();
    PixelStrip strip;
    strip.save(paper, paper.rect());
    QImage other = picture(2, Qt::red);
    EXPECT_TRUE(strip.restore(other).isEmpty());
    EXPECT_EQ(other.pixelColor(3, 3), QColor(Qt::red));
}

TEST(PixelStripTest, WhatIsForgottenDoesNotComeBack) {
    QImage paper = picture();
    PixelStrip strip;
    strip.save(paper, paper.rect());
    strip.forget();
    paper.fill(Qt::red);
    strip.restore(paper);
    EXPECT_EQ(paper.pixelColor(3, 3), QColor(Qt::red));
}
