// SPDX-License-Identifier: GPL-2.0-or-later
#include "keyboard/KeptNotes.h"

#include "composition/StrokeWriting.h"

#include <algorithm>

namespace velmora {

namespace {
bool isFree(const Score& score, int channel, int first, int last) {
    if (score.ChannelMuted[channel])
        return false;
    for (int position = first; position <= last; ++position)
        if (cellClass(score.NoteCell.valueOr(channel, position, kEmptyCell)) != CellClass::Empty)
            return false;
    return true;
}
} // namespace

bool comesBefore(const KeptNote& one, const KeptNote& other) {
    return one.first != other.first ? one.first < other.first : one.note > other.note;
}

void writeKept(Score& score, const KeptNote& note) {
    writeNote(score, {note.channel, RowToNote(note.note), note.first, note.last}); // rows mirror notes
    for (int position = note.first; position <= note.last; ++position) {
        score.NoteInstrument.set(note.channel, position, note.program);
        score.Polyphonics.set(note.channel + 1, position, 0);
    }
    giveVolume(score, note.channel, note.velocity, {note.first, note.last});
    score.ChannelInUse[note.channel] = true;
    score.ChannelShown[note.channel] = true;
    score.TopChannel = std::max(score.TopChannel, note.channel);
    score.TopMelodyHint = std::max(score.TopMelodyHint, note.channel);
}

std::optional<int> SharedChannels::roomFor(int first, int last) const {
    for (int i = 0; i < kMelodyChannels; ++i) {
        const int channel = (main_ + i) % kMelodyChannels;
        if (ends_[static_cast<std::size_t>(channel)] < first &&
            (channel == main_ || isFree(score_, channel, first, last)))
            return channel;
    }
    return std::nullopt;
}

} // namespace velmora
