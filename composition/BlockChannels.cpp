// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/BlockChannels.h"

#include "composition/Workspace.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace velmora {

namespace {
bool isOfTheSet(const Workspace& workspace, int channel) {
    if (!isChannel(channel))
        return false;
    if (worksOnOneTrack(workspace))
        return channel == workspace.score.ActiveChannel;
    return workspace.edit.Check2 ? !workspace.score.ChannelMuted[channel]
                                 : workspace.edit.ChannelPicked[channel];
}

/// As the channel's square counts: percussion goes on from 9.
int squareOf(int channel) {
    return channel <= kFirstPercussion ? channel + 1 : channel;
}
} // namespace

bool worksOn(const Workspace& workspace, BlockCommand command, int channel) {
    if (workspace.manners.oneChannelSet)
        return isOfTheSet(workspace, channel);
    const bool muted = workspace.score.ChannelMuted[channel];
    if (workspace.CopyonlyOneTrack)
        return channel == workspace.score.ActiveChannel && !muted;
    if (kBlockRules[static_cast<std::size_t>(command)].channels == ChannelSet::NotMuted)
        return !muted;
    return workspace.edit.ChannelPicked[channel]; // muted or not
}

bool worksOnOneTrack(const Workspace& workspace) {
    return workspace.CopyonlyOneTrack ||
           (workspace.manners.oneChannelSet && !workspace.edit.Check2 &&
            std::ranges::none_of(workspace.edit.ChannelPicked, std::identity()));
}

std::string blockChannelsInWords(const Workspace& workspace) {
    if (workspace.edit.Check2 && !worksOnOneTrack(workspace))
        return "all but the muted channels";
    std::vector<std::string> names;
    for (int channel = 0; channel < kUsedChannels; ++channel)
        if (isOfTheSet(workspace, channel))
            names.push_back(std::to_string(squareOf(channel)));
    std::string words = names.size() == 1 ? "channel " : "channels ";
    for (std::size_t i = 0; i < names.size(); ++i)
        words += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + names[i];
    return words;
}

std::string columnsInWords(int count) {
    return std::to_string(count).append(count == 1 ? " column" : " columns");
}

} // namespace velmora
