// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/ScorePlayer.h"

#include "composition/Player.h"
#include "composition/Workspace.h"
#include "sound/DeviceChooser.h"
#include "sound/MidiDevices.h"
#include "sound/MidiPort.h"
#include "sound/ShortMessage.h"

#include <utility>

namespace velmora {

ScorePlayer::ScorePlayer(Workspace& workspace, Player& player, MidiPort& port, DeviceChooser& devices)
    : workspace_(workspace)
    , player_(player)
    , port_(port)
    , devices_(devices)
    , stay_(player.join(*this)) {}

SessionPlayer::End ScorePlayer::playNotes(bool showPosition, const std::function<void(double)>& progress) {
    PlayState& play = workspace_.play;
    if (play.Playing)
        player_.PlayAndStop_Click(true);
    player_.RewindBut_Click();
    progress_ = progress;
    showedLine_ = std::exchange(play.ShowPlayLine, showPosition);
    play.PausePending = false;
    play.PlayStepCount = 0;
    play.RecordAtEnd = true;
    playing_ = waiting_ = true;
    player_.PlayAndStop_Click(false);
    waiting_ = false;
    if (play.RecordAtEnd && play.PausePending)
        return End::Paused;
    play.RecordAtEnd = false;
    playing_ = false;
    play.ShowPlayLine = showedLine_;
    return End::Over;
}

void ScorePlayer::stopNotes() {
    if (!std::exchange(playing_, false))
        return;
    workspace_.play.RecordAtEnd = false;
    workspace_.play.ShowPlayLine = showedLine_;
    if (workspace_.play.Playing)
        player_.PlayAndStop_Click(true);
}

void ScorePlayer::showProgress(double ratio) {
    if (progress_)
        progress_(ratio);
}

/// The song has ended. Who waits for that sees it; a song that was paused before ends unwatched.
void ScorePlayer::stopRecording() {
    if (waiting_)
        return;
    playing_ = false;
    workspace_.play.ShowPlayLine = showedLine_;
    if (onEnded)
        onEnded();
}

std::string ScorePlayer::soundWithin() {
    const int device = devices_.midiDevice();
    std::string name = device == MidiPort::kMapper ? std::string() : port_.deviceName(device);
    if (name.empty() || name == MidiDevices::kSynthName)
        return {};
    switched_ = true;
    port_.open(MidiPort::kMapper);
    port_.send(shortmessage::kDrumBank);
    return name;
}

void ScorePlayer::soundAsBefore() {
    if (std::exchange(switched_, false))
        static_cast<void>(devices_.Device_Click());
}

} // namespace velmora
