// SPDX-License-Identifier: GPL-2.0-or-later
#include "tableau/ChannelStrip.h"
#include "tableau/TopBarOverlay.h"

#include "parts/ChannelColours.h"
#include "score/Score.h"
#include "shell/Appearance.h"
#include "shell/ExToolTip.h"
#include "shell/SkinPainter.h"
#include "tests/support/MemorySettings.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTest>

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;

namespace {
QColor colour(Rgb rgb) {
    return {rgb.red, rgb.green, rgb.blue};
}

class ChannelStripTest : public testing::Test {
protected:
    ChannelStripTest() {
        ground.resize(384, 40);
        strip.setGeometry(0, 0, 372, 30);
        strip.layOut(FormWidth::Full);
        strip.Label8_Click = [this](int channel) { left.push_back(channel); };
        strip.onRightPress = [this](int channel) { right.push_back(channel); };
        score.ClearAll();
        strip.show(score);
    }
    QAbstractButton& square(int channel) { return dynamic_cast<QAbstractButton&>(*strip.square(channel)); }
    /// A pixel of what the square shows, counted from the upper left corner of its face.
    QColor pixel(int channel, int x, int y) {
        return square(channel).grab().toImage().pixelColor(x + 2, y + 2);
    }

    MemorySettings settings;
    ExToolTip tips{settings};
    Appearance look;
    Score score{100};
    QWidget ground;
    ChannelStrip strip{look, tips, &ground};
    std::vector<int> left, right;
};
} // namespace

TEST_F(ChannelStripTest, ThereIsASquareAChannelAndNoneForTheEmptyIndex) {
    EXPECT_EQ(strip.findChildren<QAbstractButton*>().size(), 12);
    EXPECT_FALSE(strip.square(9));
    EXPECT_FALSE(strip.square(-1));
    EXPECT_FALSE(strip.square(13));
}

TEST_F(ChannelStripTest, SquaresStand28ApartWithAGapBeforePercussion) {
    for (const auto& [form, pitch] : {std::pair{FormWidth::Full, 28}, std::pair{FormWidth::Compact, 24}}) {
        strip.layOut(form);
        for (int channel = 1; channel < 8; ++channel)
            EXPECT_EQ(square(channel).x() - square(channel - 1).x(), pitch);
        EXPECT_EQ(square(8).x() - square(7).x(), pitch + 12);
        EXPECT_EQ(square(10).x() - square(8).x(), pitch);
    }
}

TEST_F(ChannelStripTest, EachSquareHasItsChannelsColour) {
    for (int channel = 0; channel < 13; ++channel)
        if (channel != 9) {
            EXPECT_EQ(pixel(channel, 2, 10), colour(kChannelColours[channel].bright)) << channel;
        }
}

TEST_F(ChannelStripTest, TheActiveOneHasARing) {
    score.ActiveChannel = 3;
    strip.show(score);
    const QColor ring = colour(look.skin().text);
    EXPECT_EQ(pixel(3, -1, 10), ring);
    EXPECT_EQ(pixel(3, 20, 10), ring);
    EXPECT_NE(pixel(4, -1, 10), ring);
    EXPECT_TRUE(square(3).isChecked());
    EXPECT_FALSE(square(0).isChecked());
}

TEST_F(ChannelStripTest, ABarStandsUnderUsedOnes) {
    score.ChannelInUse[5] = true;
    strip.show(score);
    const QColor bar = colour(look.skin().text);
    EXPECT_EQ(pixel(5, 4, 23), bar);
    EXPECT_EQ(pixel(5, 15, 24), bar);
    EXPECT_NE(pixel(5, 3, 23), bar);
    EXPECT_NE(pixel(5, 16, 23), bar);
    EXPECT_NE(pixel(6, 10, 23), bar);
}

TEST_F(ChannelStripTest, AMutedOneIsPaleAndStruckOutInWholePixels) {
    score.ChannelMuted[1] = true; // blue, with a white number; pale it has a black one
    strip.show(score);
    const ChannelColours& colours = kChannelColours[1];
    EXPECT_EQ(pixel(1, 2, 10), colour(colours.pale));
    EXPECT_EQ(pixel(2, 2, 10), colour(kChannelColours[2].bright)) << "the others keep their colours";
    const QImage image = square(1).grab().toImage();
    for (int i = 3; i < 6; ++i) { // beside the number: ink or face, no grey between them
        EXPECT_EQ(image.pixelColor(2 + i, 2 + 19 - i), QColor(Qt::black)) << i;
        for (int x = 2; x < 6; ++x) {
            const QColor here = image.pixelColor(2 + x, 2 + 19 - i);
            EXPECT_TRUE(here == QColor(Qt::black) || here == colour(colours.pale)) << x << ',' << i;
        }
    }
}

TEST_F(ChannelStripTest, AMutedOneSaysSo) {
    EXPECT_FALSE(square(1).accessibleDescription().contains("muted"));
    score.ChannelMuted[1] = true;
    strip.show(score);
    EXPECT_TRUE(square(1).accessibleDescription().contains("muted"));
    EXPECT_FALSE(square(0).accessibleDescription().contains("muted"));
    score.ChannelMuted[1] = false;
    strip.show(score);
    EXPECT_FALSE(square(1).accessibleDescription().contains("muted"));
    EXPECT_EQ(square(1).accessibleName(), "Channel 2");
    EXPECT_EQ(square(12).accessibleName(), "Channel 12");
}

TEST_F(ChannelStripTest, LeftAndRightPressesAreTwoThings) {
    ground.show();
    QTest::mouseClick(&square(4), Qt::LeftButton);
    QTest::mouseClick(&square(11), Qt::LeftButton);
    EXPECT_THAT(left, ElementsAre(4, 11));
    EXPECT_TRUE(right.empty());
    QTest::mousePress(&square(6), Qt::RightButton);
    EXPECT_THAT(right, ElementsAre(6));
    QTest::mouseRelease(&square(6), Qt::RightButton);
    EXPECT_THAT(right, ElementsAre(6));
    EXPECT_THAT(left, ElementsAre(4, 11));
}

TEST_F(ChannelStripTest, TheKeyboardAloneMutesNothing) {
    ground.show();
    square(2).setFocus(Qt::TabFocusReason);
    QTest::keyClick(&square(2), Qt::Key_Menu);
    EXPECT_TRUE(right.empty());
    EXPECT_TRUE(left.empty());
    QTest::keyClick(&square(2), Qt::Key_Space);
    EXPECT_THAT(left, ElementsAre(2));
    EXPECT_TRUE(right.empty());
}

namespace {
class TopBarOverlayTest : public testing::Test {
protected:
    TopBarOverlayTest() {
        bar.resize(960, 24);
        bar.layOut(FormWidth::Full);
    }
    QLabel& label(const char* name) { return *bar.findChild<QLabel*>(name); }

    MemorySettings settings;
    ExToolTip tips{settings};
    Appearance look;
    TopBarOverlay bar{look, tips, nullptr};
};
constexpr const char* kLabels[]{"LblNote", "LblNoteName", "Label7",     "LblVol",
                                "LblInst", "LblTrk",      "LblNumnotes"};
} // namespace

TEST_F(TopBarOverlayTest, EachFieldIsALabelOfItsName) {
    for (int field = 0; field < 7; ++field) {
        const QString words = QStringLiteral("words %1").arg(field);
        bar.setField(static_cast<TopBarOverlay::Field>(field), words);
        EXPECT_EQ(label(kLabels[field]).text(), words);
        EXPECT_EQ(bar.field(static_cast<TopBarOverlay::Field>(field)), words);
        EXPECT_TRUE(tips.toolTip(label(kLabels[field]))) << kLabels[field];
    }
}

TEST_F(TopBarOverlayTest, TheTrackHasTheGivenNumberAndTheChannelsColour) {
    for (const int channel : {0, 1, 8, 12}) {
        bar.showTrack(channel, "11");
        EXPECT_EQ(label("LblTrk").text(), "11");
        const QRect chip = label("LblTrk").geometry();
        EXPECT_EQ(bar.grab().toImage().pixelColor(chip.left() + 1, chip.center().y()),
                  colour(kChannelColours[channel].bright));
    }
}

TEST_F(TopBarOverlayTest, ALongInstrumentIsCutOnlyWhereThereIsNoRoom) {
    const QString name = "Acoustic Guitar (nylon)";
    bar.setField(TopBarOverlay::LblInst, name);
    const auto isCut = [&](int window) {
        bar.resize(window - 22 - 324, 24);
        bar.layOut(FormWidth::Compact);
        return tips.toolTip(label("LblInst"))->text.contains(name);
    };
    EXPECT_FALSE(isCut(1233)) << "as it opens on a screen of 1366";
    EXPECT_TRUE(isCut(1000));
}

TEST_F(TopBarOverlayTest, InASmallWindowABareNumberHasItsCaptionAndEverythingATip) {
    bar.resize(891 - 22 - 324, 24);
    bar.layOut(FormWidth::Small);
    const int before = label("LblNote").x();
    EXPECT_GE(before, 12 + QFontMetrics(textFont(10)).horizontalAdvance("Note"));
    const QImage image = bar.grab().toImage();
    int ink = 0;
    for (int x = 12; x < before; ++x)
        for (int y = 4; y < 20; ++y)
            ink += image.pixelColor(x, y).lightness() < 150 ? 1 : 0;
    EXPECT_GT(ink, 20) << "Note";
    for (const char* name : kLabels) {
        const auto tip = tips.toolTip(label(name));
        ASSERT_TRUE(tip) << name;
        EXPECT_FALSE(tip->title.isEmpty()) << name;
    }
}

TEST_F(TopBarOverlayTest, FieldsStandSideBySideInEveryForm) {
    struct Row {
        FormWidth form;
        int width;
    };
    for (const Row& row : {Row{FormWidth::Full, 1280 - 22 - 384}, Row{FormWidth::Compact, 1000 - 22 - 324},
                           Row{FormWidth::Compact, 1233 - 22 - 324}, Row{FormWidth::Small, 880 - 22 - 324}}) {
        bar.resize(row.width, 24);
        bar.layOut(row.form);
        int right = 0;
        for (const char* name : kLabels) {
            const QRect place = label(name).geometry();
            EXPECT_GE(place.left(), right) << name << " at " << row.width;
            EXPECT_GE(place.width(), 16) << name << " at " << row.width;
            right = place.right();
        }
        EXPECT_LT(right, row.width);
    }
}
