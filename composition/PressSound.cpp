// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/PressSound.h"

#include "composition/StrokeWriting.h"
#include "score/NotePlayer.h"
#include "score/PlayState.h"
#include "score/Score.h"
#include "sound/MidiPort.h"

#include <utility>

namespace velmora {

PressSound::PressSound(Score& score, PlayState& play, NotePlayer& player, MidiPort& port)
    : score_(score)
    , play_(play)
    , player_(player)
    , port_(port) {}

void PressSound::press(int channel, int row, int position) {
    setVelocity(channel, position);
    if (score_.ChannelMuted[channel])
        return;
    release();
    player_.CurrentChannel = channel_ = channel;
    row_ = row;
    position_ = position;
    sounding_ = true;
    player_.StartNoteBtnDn(row, position);
}

void PressSound::audition(int channel, int position, bool own) {
    const int cell = score_.NoteCell.valueOr(channel, position, kEmptyCell);
    if (cellClass(cell) == CellClass::Empty || score_.ChannelMuted[channel])
        return;
    // Chord and effects stand at the head.
    play_.PlayPosition = headOf(score_, channel, position);
    if (own)
        player_.ChangeInstrument(score_.NoteInstrument.valueOr(channel, position, 0), channel);
    player_.Startnote(cellRow(cell), channel);
    if (own)
        player_.ChangeInstrument(score_.ChannelInstrument[channel], channel);
}

void PressSound::release() {
    if (!sounding_)
        return;
    sounding_ = false;
    const int current = std::exchange(player_.CurrentChannel, channel_); // playing may be at work on it
    player_.StopNoteBtnUp(row_, position_);
    player_.CurrentChannel = current;
}

void PressSound::silenceAt(int position) {
    for (int channel = 0; channel < kUsedChannels; ++channel) {
        const int cell = score_.NoteCell.valueOr(channel, position, kEmptyCell);
        if (!score_.ChannelInUse[channel] || score_.ChannelMuted[channel] || cell < 0 || cellRow(cell) == 0)
            continue;
        player_.ChangeInstrument(score_.ChannelInstrument[channel], channel);
        player_.CurrentChannel = channel;
        player_.StopNote(cellRow(cell));
    }
    silence();
}

void PressSound::silence() {
    sounding_ = false;
    port_.reset();
}

void PressSound::setVelocity(int channel, int position) {
    const std::int16_t volume = score_.Volume.valueOr(channel, position + 1, 0);
    score_.ChannelVelocity[channel] = volume >= 1 ? volume : kClearedVolume;
}

} // namespace velmora
