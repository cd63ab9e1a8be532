// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/Skin.h"

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {
constexpr std::array<Skin, kSkinCount> kSkins{{
    {
        .caption = "XP (Blue)",
        .ellipse = 10,
        .extraHeight = 5,
        .edgeWidth = 4,
        .titleStops =
            {{{0, {40, 106, 212}}, {0.12, {24, 92, 204}}, {0.55, {14, 78, 186}}, {1, {8, 58, 150}}}},
        .titleAcross = false,
        .titleText = {255, 255, 255},
        .edgeOuter = {6, 44, 120},
        .edgeLight = {24, 92, 204},
        .edgeBody = {8, 58, 150},
        .panel = {{238, 241, 247}, {233, 237, 245}},
        .pattern = PanelPattern::Pinstripe,
        .text = {24, 32, 48},
        .dim = {78, 88, 108},
        .line = {178, 188, 206},
        .field = {255, 255, 255},
        .fieldText = {16, 24, 40},
        .fieldEdge = {126, 146, 180},
        .readOut = {250, 252, 255},
        .face = {{255, 255, 255}, {222, 229, 241}},
        .hot = {{255, 255, 255}, {205, 222, 250}},
        .pressed = {{176, 198, 234}, {204, 220, 246}},
        .checked = {{190, 214, 252}, {214, 229, 255}},
        .buttonEdge = {134, 152, 186},
        .groove = {176, 188, 210},
        .pointer = {{255, 255, 255}, {120, 164, 232}},
        .accent = {14, 92, 210},
        .focus = {14, 92, 210},
    },
    {
        .caption = "3D stylized",
        .ellipse = 11,
        .extraHeight = 2,
        .edgeWidth = 5,
        .titleStops =
            {{{0, {122, 94, 166}}, {0.1, {108, 80, 154}}, {0.5, {92, 66, 138}}, {1, {66, 44, 108}}}},
        .titleAcross = false,
        .titleText = {255, 250, 240},
        .edgeOuter = {48, 30, 82},
        .edgeLight = {132, 106, 176},
        .edgeBody = {78, 54, 120},
        .panel = {{229, 224, 236}, {220, 214, 229}},
        .pattern = PanelPattern::Dimple,
        .text = {40, 28, 58},
        .dim = {88, 74, 108},
        .line = {176, 164, 194},
        .field = {252, 250, 255},
        .fieldText = {36, 24, 54},
        .fieldEdge = {138, 120, 164},
        .readOut = {246, 243, 250},
        .face = {{250, 247, 253}, {207, 198, 222}},
        .hot = {{255, 252, 246}, {238, 222, 200}},
        .pressed = {{184, 172, 204}, {206, 197, 222}},
        .checked = {{255, 214, 140}, {255, 232, 184}},
        .buttonEdge = {124, 106, 150},
        .groove = {184, 172, 202},
        .pointer = {{255, 244, 224}, {240, 164, 60}},
        .accent = {150, 76, 0},
        .focus = {118, 70, 172},
    },
    {
        .caption = "Blue Steel",
        .ellipse = 11,
        .extraHeight = 2,
        .edgeWidth = 5,
        .titleStops = {{{0, {84, 112, 144}}, {0.08, {66, 96, 130}}, {0.5, {48, 74, 106}}, {1, {30, 50, 76}}}},
        .titleAcross = false,
        .titleText = {240, 246, 252},
        .edgeOuter = {20, 34, 54},
        .edgeLight = {96, 124, 156},
        .edgeBody = {44, 68, 98},
        .panel = {{202, 213, 225}, {195, 207, 220}},
        .pattern = PanelPattern::BrushedDown,
        .text = {14, 28, 46},
        .dim = {52, 70, 94},
        .line = {146, 164, 184},
        .field = {238, 244, 250},
        .fieldText = {12, 26, 44},
        .fieldEdge = {104, 128, 154},
        .readOut = {222, 232, 242},
        .face = {{232, 239, 246}, {182, 198, 214}},
        .hot = {{242, 248, 255}, {196, 216, 238}},
        .pressed = {{150, 172, 196}, {176, 195, 214}},
        .checked = {{132, 176, 220}, {166, 202, 238}},
        .buttonEdge = {88, 112, 138},
        .groove = {148, 166, 186},
        .pointer = {{236, 244, 252}, {72, 116, 164}},
        .accent = {16, 78, 140},
        .focus = {20, 84, 150},
    },
    {
        .caption = "Riveted",
        .ellipse = 11,
        .extraHeight = 2,
        .edgeWidth = 6,
        .titleStops = {{{0, {122, 88, 58}}, {0.1, {102, 72, 46}}, {0.55, {84, 58, 36}}, {1, {58, 38, 22}}}},
        .titleAcross = false,
        .titleText = {255, 242, 220},
        .edgeOuter = {38, 24, 14},
        .edgeLight = {150, 112, 76},
        .edgeBody = {88, 62, 40},
        .panel = {{214, 206, 193}, {210, 202, 188}},
        .pattern = PanelPattern::Rivets,
        .text = {44, 30, 18},
        .dim = {86, 66, 46},
        .line = {164, 150, 130},
        .field = {252, 247, 238},
        .fieldText = {40, 26, 14},
        .fieldEdge = {138, 116, 90},
        .readOut = {240, 232, 218},
        .face = {{242, 235, 224}, {200, 188, 170}},
        .hot = {{255, 248, 234}, {226, 204, 172}},
        .pressed = {{176, 160, 138}, {198, 184, 164}},
        .checked = {{232, 184, 124}, {244, 208, 160}},
        .buttonEdge = {118, 96, 70},
        .groove = {174, 160, 140},
        .pointer = {{255, 232, 204}, {186, 104, 44}},
        .accent = {140, 66, 12},
        .focus = {150, 78, 20},
    },
    {
        .caption = "Gray Steel",
        .ellipse = 11,
        .extraHeight = 2,
        .edgeWidth = 5,
        .titleStops =
            {{{0, {108, 112, 116}}, {0.08, {98, 102, 106}}, {0.5, {82, 86, 90}}, {1, {56, 59, 62}}}},
        .titleAcross = false,
        .titleText = {255, 255, 255},
        .edgeOuter = {38, 40, 42},
        .edgeLight = {136, 140, 144},
        .edgeBody = {78, 82, 86},
        .panel = {{216, 218, 220}, {210, 212, 214}},
        .pattern = PanelPattern::BrushedAcross,
        .text = {28, 30, 32},
        .dim = {74, 78, 82},
        .line = {166, 170, 174},
        .field = {250, 251, 252},
        .fieldText = {24, 26, 28},
        .fieldEdge = {126, 130, 134},
        .readOut = {234, 236, 237},
        .face = {{246, 247, 248}, {200, 203, 206}},
        .hot = {{255, 255, 255}, {218, 221, 224}},
        .pressed = {{168, 172, 176}, {192, 195, 198}},
        .checked = {{160, 196, 188}, {190, 218, 211}},
        .buttonEdge = {110, 114, 118},
        .groove = {172, 175, 178},
        .pointer = {{250, 251, 252}, {132, 137, 142}},
        .accent = {0, 92, 80},
        .focus = {0, 104, 92},
    },
    {
        .caption = "Gunmetal",
        .ellipse = 0,
        .extraHeight = 0,
        .edgeWidth = 4,
        .titleStops = {{{0, {70, 77, 84}}, {0.06, {52, 58, 64}}, {0.5, {38, 43, 48}}, {1, {26, 29, 33}}}},
        .titleAcross = false,
        .titleText = {236, 239, 242},
        .edgeOuter = {12, 14, 16},
        .edgeLight = {74, 81, 88},
        .edgeBody = {30, 34, 38},
        .panel = {{50, 55, 60}, {46, 51, 56}},
        .pattern = PanelPattern::Weave,
        .text = {226, 230, 234},
        .dim = {172, 180, 188},
        .line = {78, 85, 92},
        .field = {28, 31, 35},
        .fieldText = {232, 236, 240},
        .fieldEdge = {92, 100, 108},
        .readOut = {24, 27, 30},
        .face = {{80, 87, 94}, {58, 64, 70}},
        .hot = {{92, 100, 108}, {72, 79, 86}},
        .pressed = {{34, 38, 42}, {44, 49, 54}},
        .checked = {{104, 74, 22}, {120, 86, 28}},
        .buttonEdge = {22, 25, 28},
        .groove = {84, 92, 100},
        .pointer = {{255, 206, 120}, {214, 142, 36}},
        .accent = {255, 190, 84},
        .focus = {255, 190, 84},
    },
    {
        .caption = "Win 98",
        .ellipse = 0,
        .extraHeight = 0,
        .edgeWidth = 4,
        .titleStops = {{{0, {0, 0, 128}}, {1, {12, 92, 176}}, {1, {12, 92, 176}}, {1, {12, 92, 176}}}},
        .titleAcross = true,
        .titleText = {255, 255, 255},
        .edgeOuter = {64, 64, 64},
        .edgeLight = {255, 255, 255},
        .edgeBody = {212, 208, 200},
        .panel = {{212, 208, 200}, {212, 208, 200}},
        .pattern = PanelPattern::Plain,
        .text = {0, 0, 0},
        .dim = {76, 74, 70},
        .line = {128, 128, 128},
        .field = {255, 255, 255},
        .fieldText = {0, 0, 0},
        .fieldEdge = {128, 128, 128},
        .readOut = {236, 234, 228},
        .face = {{212, 208, 200}, {212, 208, 200}},
        .hot = {{224, 221, 214}, {224, 221, 214}},
        .pressed = {{196, 192, 184}, {196, 192, 184}},
        .checked = {{236, 234, 228}, {236, 234, 228}},
        .buttonEdge = {64, 64, 64},
        .groove = {164, 160, 152},
        .pointer = {{236, 234, 228}, {188, 184, 176}},
        .accent = {0, 0, 128},
        .focus = {0, 0, 0},
    },
    {
        .caption = "XP (Silver)",
        .ellipse = 10,
        .extraHeight = 5,
        .edgeWidth = 4,
        .titleStops =
            {{{0, {250, 251, 253}}, {0.12, {230, 232, 240}}, {0.55, {210, 213, 226}}, {1, {180, 184, 204}}}},
        .titleAcross = false,
        .titleText = {30, 34, 58},
        .edgeOuter = {104, 108, 132},
        .edgeLight = {238, 239, 245},
        .edgeBody = {180, 184, 204},
        .panel = {{243, 243, 247}, {238, 238, 243}},
        .pattern = PanelPattern::Pinstripe,
        .text = {34, 36, 50},
        .dim = {86, 88, 106},
        .line = {190, 191, 204},
        .field = {255, 255, 255},
        .fieldText = {28, 30, 44},
        .fieldEdge = {146, 148, 168},
        .readOut = {252, 252, 254},
        .face = {{255, 255, 255}, {224, 225, 233}},
        .hot = {{255, 255, 255}, {226, 222, 244}},
        .pressed = {{190, 192, 208}, {212, 213, 225}},
        .checked = {{212, 206, 240}, {229, 224, 250}},
        .buttonEdge = {146, 148, 168},
        .groove = {190, 191, 206},
        .pointer = {{255, 255, 255}, {150, 144, 196}},
        .accent = {88, 70, 160},
        .focus = {88, 70, 160},
    },
}};

constexpr Rgb kRecordRed{204, 28, 36};
constexpr Rgb kRecordRedOnDark{255, 120, 110};
constexpr Rgb kCheckedAccentOnDark{255, 216, 150};
constexpr double kDarkBelow = 0.3; ///< luminance of a panel on which white text stands

double linear(int channel) {
    const double value = channel / 255.0;
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}
} // namespace

const Skin& skinOf(int skinType) {
    return kSkins[static_cast<std::size_t>(std::clamp(skinType, 1, kSkinCount) - 1)];
}

Rgb mix(Rgb from, Rgb to, double share) {
    const auto between = [share](int a, int b) {
        return static_cast<std::uint8_t>(std::lround(a + (b - a) * share));
    };
    return {between(from.red, to.red), between(from.green, to.green), between(from.blue, to.blue)};
}

double luminance(Rgb colour) {
    return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) + 0.0722 * linear(colour.blue);
}

double contrast(Rgb one, Rgb other) {
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return (high + 0.05) / (low + 0.05);
}

bool isDark(const Skin& skin) {
    return luminance(skin.panel.from) < kDarkBelow;
}

Rgb recordRed(const Skin& skin) {
    return isDark(skin) ? kRecordRedOnDark : kRecordRed;
}

Rgb checkedAccent(const Skin& skin) {
    return isDark(skin) ? kCheckedAccentOnDark : skin.accent;
}

} // namespace velmora
