// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Guests.h"
#include "score/RecordingProgress.h"
#include "studio/SessionPlayer.h"

namespace velmora {

class DeviceChooser;
class MidiPort;
class Player;
struct Workspace;

/// Plays the program's score for a recording, through the one player: who shows or stops it elsewhere does so
/// all the same.
class ScorePlayer : public SessionPlayer, private RecordingProgress {
public:
    ScorePlayer(Workspace& workspace, Player& player, MidiPort& port, DeviceChooser& devices);

    End playNotes(bool showPosition, const std::function<void(double)>& progress) override;
    void stopNotes() override;
    std::string soundWithin() override;
    void soundAsBefore() override;

private:
    [[nodiscard]] bool showing() const override { return playing_; }
    void showProgress(double ratio) override;
    void stopRecording() override;

    Workspace& workspace_;
    Player& player_;
    MidiPort& port_;
    DeviceChooser& devices_;
    Guests<RecordingProgress>::Stay stay_;
    std::function<void(double)> progress_;
    bool showedLine_ = true;
    bool playing_ = false;  ///< from the start of the song to its end, pauses included
    bool waiting_ = false;  ///< within `playNotes`
    bool switched_ = false; ///< another device was open before
};

} // namespace velmora
