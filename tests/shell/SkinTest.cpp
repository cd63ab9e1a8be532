// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/Skin.h"

#include <gmock/gmock.h>

using namespace velmora;

namespace {
constexpr double kReadable = 4.5; ///< WCAG 2.1, success criterion 1.4.3
constexpr double kVisible = 3.0;  ///< the same, 1.4.11, for shapes

/// The panel's tones, and as groups, strips and pages lighten them.
std::vector<Rgb> grounds(const Skin& skin) {
    std::vector<Rgb> list{skin.panel.from, skin.panel.to, skin.readOut,
                          mix(skin.panel.from, skin.groove, 0.2)};
    for (const double share : {0.03, 0.04, isDark(skin) ? 0.035 : 0.3, isDark(skin) ? 0.035 : 0.45})
        for (const Rgb tone : {skin.panel.from, skin.panel.to})
            list.push_back(mix(tone, kWhite, share));
    return list;
}
std::vector<Rgb> faces(const Skin& skin) {
    std::vector<Rgb> list;
    for (const RgbPair& pair : {skin.face, skin.hot, skin.pressed, skin.checked})
        list.insert(list.end(), {pair.from, pair.to});
    return list;
}
} // namespace

class EverySkin : public testing::TestWithParam<int> {
protected:
    const Skin& skin = skinOf(GetParam());
};
INSTANTIATE_TEST_SUITE_P(Skins, EverySkin, testing::Range(1, kSkinCount + 1));

TEST_P(EverySkin, TextIsReadableOnEveryPanelReadOutAndField) {
    for (const Rgb ground : grounds(skin)) {
        EXPECT_GE(contrast(skin.text, ground), kReadable);
        EXPECT_GE(contrast(skin.dim, ground), kReadable);
        EXPECT_GE(contrast(recordRed(skin), skin.readOut), kReadable);
    }
    EXPECT_GE(contrast(skin.fieldText, skin.field), kReadable);
    EXPECT_GE(contrast(skin.fieldText, skin.readOut), kReadable);
}

TEST_P(EverySkin, TheTitleIsReadableOnEachStop) {
    for (const GradientStop& stop : skin.titleStops)
        EXPECT_GE(contrast(skin.titleText, stop.colour), kReadable);
}

TEST_P(EverySkin, TextIsReadableOnEveryFaceOfAButton) {
    for (const Rgb face : faces(skin))
        EXPECT_GE(contrast(skin.text, face), kReadable);
}

TEST_P(EverySkin, AccentsAndFocusRingsAreVisible) {
    for (const RgbPair& pair : {skin.face, skin.hot})
        for (const Rgb face : {pair.from, pair.to})
            EXPECT_GE(contrast(skin.accent, face), kVisible);
    for (const Rgb face : {skin.checked.from, skin.checked.to})
        EXPECT_GE(contrast(checkedAccent(skin), face), kVisible);
    EXPECT_GE(contrast(skin.focus, skin.panel.from), kVisible);
}

TEST_P(EverySkin, GradientsRunFromStartToEnd) {
    EXPECT_EQ(skin.titleStops.front().at, 0);
    EXPECT_EQ(skin.titleStops.back().at, 1);
    for (std::size_t i = 1; i < skin.titleStops.size(); ++i)
        EXPECT_GE(skin.titleStops[i].at, skin.titleStops[i - 1].at);
}

TEST(SkinTest, CaptionsAndCornersAreAsListed) {
    struct Row {
        std::string_view caption;
        int ellipse;
        int extraHeight;
    };
    constexpr std::array<Row, kSkinCount> kRows{{{"XP (Blue)", 10, 5},
                                                 {"3D stylized", 11, 2},
                                                 {"Blue Steel", 11, 2},
                                                 {"Riveted", 11, 2},
                                                 {"Gray Steel", 11, 2},
                                                 {"Gunmetal", 0, 0},
                                                 {"Win 98", 0, 0},
                                                 {"XP (Silver)", 10, 5}}};
    for (int type = 1; type <= kSkinCount; ++type) {
        const Row& row = kRows[static_cast<std::size_t>(type - 1)];
        EXPECT_EQ(skinOf(type).caption, row.caption);
        EXPECT_EQ(skinOf(type).ellipse, row.ellipse);
        EXPECT_EQ(skinOf(type).extraHeight, row.extraHeight);
    }
}

TEST(SkinTest, AnUnknownTypeIsTheNearestSkin) {
    EXPECT_EQ(skinOf(0).caption, "XP (Blue)");
    EXPECT_EQ(skinOf(-3).caption, "XP (Blue)");
    EXPECT_EQ(skinOf(99).caption, "XP (Silver)");
}

TEST(SkinTest, ContrastIsThatOfTheStandard) {
    EXPECT_DOUBLE_EQ(contrast(kBlack, kWhite), 21.0);
    EXPECT_DOUBLE_EQ(contrast(kWhite, kWhite), 1.0);
    EXPECT_NEAR(contrast({119, 119, 119}, kWhite), 4.48, 0.005);
}
