// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/PerChannel.h"
#include "shell/Skin.h"

namespace velmora {

/// A channel's colours: bright where it is the active one, pale otherwise. That the two bear no relation is
/// meant.
struct ChannelColours {
    const char* caption; ///< on its square; blank for index 9, which has none
    Rgb bright;
    Rgb pale;
};

inline constexpr PerChannel<ChannelColours, 13> kChannelColours{{{
    {"1", {255, 0, 0}, {192, 192, 255}},
    {"2", {0, 0, 255}, {255, 192, 255}},
    {"3", {0, 255, 0}, {255, 192, 192}},
    {"4", {255, 0, 255}, {192, 255, 192}},
    {"5", {0, 255, 255}, {192, 255, 255}},
    {"6", {255, 128, 0}, {192, 192, 255}},
    {"7", {255, 255, 128}, {255, 192, 255}},
    {"8", {192, 192, 255}, {238, 204, 170}},
    {"9", {168, 145, 179}, {255, 192, 192}},
    {"", {255, 255, 255}, {255, 255, 192}},
    {"10", {192, 64, 0}, {184, 250, 210}},
    {"11", {95, 166, 186}, {192, 255, 255}},
    {"12", {192, 192, 0}, {192, 255, 255}},
}}};

/// Black or white, whichever reads better on a channel's colour.
[[nodiscard]] inline Rgb inkOnColour(Rgb ground) {
    return contrast(kBlack, ground) > contrast(kWhite, ground) ? kBlack : kWhite;
}

} // namespace velmora
