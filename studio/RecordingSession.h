// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/Guests.h"
#include "base/MessageLoop.h"
#include "base/Turns.h"
#include "score/RecordingProgress.h"
#include "studio/SessionState.h"

#include <filesystem>
#include <memory>
#include <set>
#include <string>

namespace velmora {

class MediaDevices;
class MusicSession;
class Player;
class ProgramFolders;
class SessionScreen;
struct Workspace;

/// A recording from its start to its MP3 file, for the window and for scripts. Every action on a device is a
/// media command; every message goes to `SessionState::Erbox` and, with the time of day, to the log `Text2`.
/// Calls that record, play or encode return when that has ended; events are served meanwhile. All from one
/// thread.
class RecordingSession : private RecordingProgress {
public:
    RecordingSession(SessionState& state, MediaDevices& media, MusicSession& music, Player& player,
                     Workspace& workspace, const ProgramFolders& folders, MessageLoop& loop);
    ~RecordingSession() override;
    RecordingSession(const RecordingSession&) = delete;
    RecordingSession& operator=(const RecordingSession&) = delete;

    /// Who shows it: told of changes, asked for files. One at a time; null for nobody.
    void show(SessionScreen* screen);

    /// "Start Recording": from the source that is chosen. Returns at once for the keyboard.
    void CmdrecordSNG_Click();
    /// "Stop Recording".
    void CmdStopRecording_Click();
    /// "Encode File", or "Stop Encoding" while it does.
    void Command20_Click();

    /// Whether anything goes on that closing the window would end.
    [[nodiscard]] bool isBusy() const;
    /// Ends it: the take is saved, encoding is cancelled.
    void endAll();

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace velmora
