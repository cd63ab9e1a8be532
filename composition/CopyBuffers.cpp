// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/CopyBuffers.h"

#include "composition/CellMoves.h"
#include "composition/ScoreLayers.h"

#include <span>

namespace velmora {

namespace {
void take(Score& score, std::span<const ScoreLayer> layers, int channel, int first, int count) {
    for (const ScoreLayer& layer : layers)
        copyCells((score.*layer.cells).row(channel + layer.channelShift), first + layer.positionShift,
                  (score.*layer.clip).row(channel + layer.channelShift), layer.positionShift, count);
}
} // namespace

void eraseNoteBuffers(Score& score) {
    for (const ScoreLayer& layer : std::span(kScoreLayers).first<kNoteLayers>()) {
        ChannelGrid& clip = score.*layer.clip;
        clip.resize(score.NumNotes + 1);
        for (int channel = 0; channel < ChannelGrid::kChannels; ++channel)
            clip.fillRow(channel, layer.cleared);
    }
}

void copyToBuffers(Score& score, int channel, int first, int count) {
    take(score, kScoreLayers, channel, first, count);
}

void copyNotesToBuffers(Score& score, int channel, int first, int count) {
    take(score, std::span(kScoreLayers).first<kNoteLayers>(), channel, first, count);
}

void makeFirstHeads(Score& score) {
    for (int channel = 0; channel < kUsedChannels; ++channel)
        makeHead(score.ClipNoteCell, channel, 0);
}

void pasteFromBuffers(Score& score, int source, int channel, int at, int count) {
    for (const ScoreLayer& layer : kScoreLayers)
        copyCells((score.*layer.clip).row(source + layer.channelShift), layer.positionShift,
                  (score.*layer.cells).row(channel + layer.channelShift), at + layer.positionShift, count);
}

} // namespace velmora
