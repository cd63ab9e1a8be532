// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/MessageLoop.h"
#include "base/Turns.h"
#include "studio/SessionState.h"

#include <filesystem>
#include <string>
#include <vector>

namespace velmora {

class MediaDevices;
class MusicPlayer;
class SessionScreen;

/// The music file player of the Recording Studio: a WAV, MP3 or MIDI file as the device "audiomp3", with the
/// messages that tell how it goes. Calls that play return when playing has ended; events are served
/// meanwhile. All from one thread.
class MusicSession {
public:
    MusicSession(SessionState& state, MediaDevices& media, MessageLoop& loop)
        : state_(state)
        , media_(media)
        , loop_(loop) {}
    MusicSession(const MusicSession&) = delete;
    MusicSession& operator=(const MusicSession&) = delete;
    ~MusicSession() = default;

    /// Who shows it; null for nobody.
    void show(SessionScreen* screen) { screen_ = screen; }

    /// "Open Music File": asks for one. A score goes to the composing window; a MIDI file plays at once.
    void open_Click();
    /// Opens a file that is named; what is open is closed first. False if it can't be.
    bool OpenMP3(const std::filesystem::path& file);
    /// Opens sound files that play one after the other, with nothing between them.
    bool openRow(const std::vector<std::filesystem::path>& files);
    /// "Play from File": from its beginning to its end. What is paused goes on, what plays isn't disturbed,
    /// and what was played to its end and closed is opened again.
    void PlayMP3();
    /// Plays a part of what is open, in shares of its length, whatever it does now.
    void PlayPart(double from, double to);
    /// What is paused already goes on.
    void PauseMP3();
    void ResumeMP3();
    /// Stands where it was.
    void StopMP3();
    void CloseMP3();
    /// `PlaybackCancelled`: what plays is stopped by its play, which says so.
    void cancelPlayback() { PlaybackCancelled_ = true; }
    /// "Save File As", by the type of the file that was opened last: a copy of it under another name.
    void RenameFile();

    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] bool isPaused() const;
    /// The file that was opened last, the first of a row; blank where opening failed.
    [[nodiscard]] const std::filesystem::path& file() const { return file_; }

private:
    bool openFiles(std::vector<std::filesystem::path> files, const std::string& words);
    void start(std::int32_t from, std::int32_t to);
    void followPlay(const Turn& turn);
    void closeAtEnd(const std::string& problem);
    void showProgress(const MusicPlayer& player);
    void clearProgress();
    void showHeader();
    void copyTo(const std::filesystem::path& target);
    [[nodiscard]] MusicPlayer* player() const;
    void say(const std::string& text);

    SessionState& state_;
    MediaDevices& media_;
    MessageLoop& loop_;
    SessionScreen* screen_ = nullptr;

    std::filesystem::path file_;
    std::vector<std::filesystem::path> files_; ///< all of a row
    bool PlaybackCancelled_ = false;
    Turns plays_;
};

} // namespace velmora
