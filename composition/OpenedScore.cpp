// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/OpenedScore.h"

#include "composition/Workspace.h"

#include <algorithm>

namespace velmora {

OpenedLength takeScore(std::string_view text, SngReader reader, Workspace& workspace) {
    const Edit edit(workspace, kAnotherScore);
    Score& score = workspace.score;
    OpenedLength length{.longest = longestRow(text)};
    // One more than the last position, where that position's effects stand.
    const int wanted = static_cast<int>(std::min<std::size_t>(length.longest, kMostNotes));
    if (workspace.manners.growsToFile && wanted > score.NumNotes) {
        score.resizeNotes(wanted);
        length.grown = true;
    }
    length.whole = length.longest <= static_cast<std::size_t>(score.NumNotes) + 1;
    parseSng(text, reader, score, workspace.setup);
    hearUsedChannels(workspace);
    workspace.showFromStart();
    return length;
}

void hearUsedChannels(Workspace& workspace) {
    if (!workspace.manners.playsOpenedChannels)
        return;
    Score& score = workspace.score;
    // The active channel stays the one that is drawn on, and is heard then.
    score.TopChannel = std::max(1, score.ActiveChannel);
    score.TopMelodyHint = score.TopDrumHint = 0;
    for (const int channel : score.usedChannels()) {
        score.TopChannel = std::max(score.TopChannel, channel);
        if (channel < kMelodyChannels)
            score.TopMelodyHint = channel;
        else
            score.TopDrumHint = std::max(1, channel - kFirstPercussion);
    }
}

} // namespace velmora
