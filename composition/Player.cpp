// SPDX-License-Identifier: GPL-2.0-or-later
#include "composition/Player.h"

#include "composition/Workspace.h"
#include "sound/MidiPort.h"

#include <cstddef>
#include <utility>

namespace velmora {

Player::Player(const PlayedScore& played, MidiPort& port, MessageLoop& loop)
    : played_(played)
    , port_(port)
    , notes_(played.score, played.setup, played.state, played.chords, port, loop)
    , engine_(played, notes_, port, loop, views_, recorders_) {}

Player::Player(Workspace& workspace, MidiPort& port, MessageLoop& loop)
    : Player({workspace.score, workspace.setup, workspace.view, workspace.play, workspace.chords,
              workspace.manners},
             port, loop) {}

void Player::pause() {
    played_.state.PausePending = true;
}

void Player::setLoop(bool on) {
    played_.state.LoopOn = on;
}

void Player::silence() {
    port_.reset();
}

void Player::silenceMuted(int channel) {
    std::int16_t& cell = played_.score.PlayedCell[channel];
    if (!played_.state.Playing || !played_.score.ChannelMuted[channel] || cell < 0)
        return;
    notes_.CurrentChannel = channel;
    notes_.StopNote(cellRow(std::exchange(cell, kEmptyCell)));
}

} // namespace velmora
