// SPDX-License-Identifier: GPL-2.0-or-later
#include "synth/KeyLayout.h"

#include "keyboard/PianoKeys.h"

#include <gmock/gmock.h>

using namespace velmora;
using testing::Optional;

namespace {
constexpr QSizeF kArea(1300, 150); ///< white keys of 50, black ones of 35
} // namespace

TEST(KeyLayoutTest, WhiteKeysShareTheWidthAndOverlapByAPixel) {
    const KeyLayout layout(kArea);
    EXPECT_EQ(layout.key(0), QRectF(0, 0, 50, 149));
    EXPECT_EQ(layout.key(2), QRectF(49, 0, 50, 149));
    EXPECT_EQ(layout.key(43), QRectF(25 * 49, 0, 50, 149));
}

TEST(KeyLayoutTest, ABlackKeyBeginsEightPixelsRightOfTheKeyBeforeIt) {
    const KeyLayout layout(kArea);
    for (int key = 1; key < kPianoKeys; ++key)
        if (isBlackKey(key)) {
            EXPECT_EQ(layout.key(key).left(), layout.key(key - 1).left() + 8) << key;
            EXPECT_EQ(layout.key(key).width(), 35) << key;
        }
    EXPECT_LE(layout.key(1).top(), -100 / 15.0) << "in twips, -100 or less: the colour of a key goes by that";
    EXPECT_EQ(layout.key(1).bottom(), 90);
}

TEST(KeyLayoutTest, TheLabelStandsAtTheFootOfItsKeyAPixelFromItsSides) {
    const KeyLayout layout(kArea);
    for (int key = 0; key < kPianoKeys; ++key) {
        const QRectF face = layout.key(key);
        const QRectF label = layout.label(key);
        EXPECT_EQ(label.left(), face.left() + 1);
        EXPECT_EQ(label.width(), face.width() - 2);
        EXPECT_GT(label.top(), face.center().y());
        EXPECT_LT(label.bottom(), face.bottom());
    }
}

TEST(KeyLayoutTest, BlackKeysAreHitAboveWhiteOnes) {
    const KeyLayout layout(kArea);
    EXPECT_THAT(layout.keyAt({20, 50}), Optional(1));
    EXPECT_THAT(layout.keyAt({20, 100}), Optional(0));
    EXPECT_THAT(layout.keyAt({4, 50}), Optional(0));
    for (int key = 0; key < kPianoKeys; ++key)
        EXPECT_THAT(layout.keyAt(layout.label(key).center()), Optional(key));
}

TEST(KeyLayoutTest, WhereTwoWhiteKeysOverlapTheLaterIsHit) {
    EXPECT_THAT(KeyLayout(kArea).keyAt({49.5, 120}), Optional(2));
}

TEST(KeyLayoutTest, BesideTheKeysNoneIsHit) {
    const KeyLayout layout(kArea);
    EXPECT_EQ(layout.keyAt({1290, 50}), std::nullopt) << "the strip at the right end";
    EXPECT_EQ(layout.keyAt({20, 149.5}), std::nullopt);
    EXPECT_EQ(layout.keyAt({20, -1}), std::nullopt);
    EXPECT_EQ(layout.keyAt({-1, 50}), std::nullopt);
}

TEST(KeyLayoutTest, TheHeightOnAKeyGoesFromItsTopToItsOwnFoot) {
    const KeyLayout layout(kArea);
    EXPECT_EQ(layout.heightOn(0, {5, 0}), 0);
    EXPECT_EQ(layout.heightOn(0, {5, 149}), 1);
    EXPECT_EQ(layout.heightOn(1, {20, 45}), 0.5);
    EXPECT_EQ(layout.heightOn(1, {20, 149}), 1);
}
