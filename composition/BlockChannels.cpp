// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/BlockChannels.h"

#include "composition/Workspace.h"

namespace velmora {

bool worksOn(const Workspace& workspace, BlockCommand command, int channel) {
    const bool muted = workspace.score.ChannelMuted[channel];
    if (workspace.CopyonlyOneTrack)
        return channel == workspace.score.ActiveChannel && !muted;
    if (kBlockRules[static_cast<std::size_t>(command)].channels == ChannelSet::NotMuted)
        return !muted;
    return workspace.edit.ChannelPicked[channel]; // muted or not
}

} // namespace velmora
