// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/MessageLoop.h"
#include "studio/SessionState.h"

#include <filesystem>
#include <memory>
#include <string>

namespace velmora {

class MediaDevices;
class SessionScreen;

/// The music file player of the Recording Studio: a WAV, MP3 or MIDI file as the device "audiomp3", with the
/// messages that tell how it goes. Calls that play return when playing has ended; events are served
/// meanwhile. All from one thread.
class MusicSession {
public:
    MusicSession(SessionState& state, MediaDevices& media, MessageLoop& loop);
    ~MusicSession();
    MusicSession(const MusicSession&) = delete;
    MusicSession& operator=(const MusicSession&) = delete;

    void show(SessionScreen* screen);

    /// "Open Music File": asks for one. A score goes to the composing window.
    void open_Click();
    /// Opens a file that is named. False if it can't be.
    bool OpenMP3(const std::filesystem::path& file);
    /// "Play from File"; the second press while it plays or is paused goes on.
    void PlayMP3();
    void PauseMP3();
    void ResumeMP3();
    void StopMP3();
    void CloseMP3();
    /// "Save File As", by the type of the open file.
    void RenameFile();

    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] bool isPaused() const;
    [[nodiscard]] const std::filesystem::path& file() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace velmora
