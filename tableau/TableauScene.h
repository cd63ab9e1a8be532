// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "parts/ChannelColours.h"
#include "score/Manners.h"
#include "score/Score.h"
#include "score/ViewState.h"
#include "sound/SetupState.h"

namespace velmora {

inline constexpr Manners kClassicManners = Manners::classic();

/// What the Tableau's painters read.
struct TableauScene {
    const Score& score;
    const ViewState& view;
    const SetupState& setup;
    const Manners& manners = kClassicManners;
};

/// Bright for the active channel, else pale; black for what is no channel.
[[nodiscard]] inline Rgb colourOfChannel(const Score& score, int channel) {
    if (channel < 0 || channel >= kUsedChannels)
        return kBlack;
    const ChannelColours& colours = kChannelColours[channel];
    return channel == score.ActiveChannel ? colours.bright : colours.pale;
}

/// Whether a Tableau paints the channel's notes.
[[nodiscard]] inline bool isPainted(const Score& score, int channel) {
    return score.ChannelInUse[channel] && !score.ChannelMuted[channel] && score.ChannelShown[channel];
}

} // namespace velmora
