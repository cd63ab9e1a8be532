// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/MessageLoop.h"
#include "studio/Encoder.h"
#include "studio/SampleSink.h"
#include "studio/SessionState.h"

#include <filesystem>
#include <memory>
#include <set>
#include <stop_token>
#include <string>

namespace velmora {

class Capture;
class MediaDevices;
class MusicSession;
class ProgramFolders;
class SessionPlayer;
class SessionScreen;
struct Manners;

/// A recording from its start to its MP3 file, for the window and for scripts. Every action on a device is a
/// media command; every message goes to `SessionState::Erbox` and, with the time of day, to the log `Text2`.
/// Calls that record, play or encode return when that has ended; events are served meanwhile. All from one
/// thread.
///
/// A take grows in its place from its start, and where it is to be encoded, its MP3 file grows beside it:
/// that is ready as soon as the recording stops.
class RecordingSession {
public:
    RecordingSession(SessionState& state, MediaDevices& media, MusicSession& music, SessionPlayer& player,
                     const Manners& manners, const ProgramFolders& folders, MessageLoop& loop);
    RecordingSession(const RecordingSession&) = delete;
    RecordingSession& operator=(const RecordingSession&) = delete;
    ~RecordingSession();

    /// Who shows it: told of changes, asked for files. One at a time; null for nobody.
    void show(SessionScreen* screen) { screen_ = screen; }

    /// "Start Recording": from the source that is chosen. Returns at once for the keyboard.
    void CmdrecordSNG_Click();
    /// "Stop Recording".
    void CmdStopRecording_Click();
    /// "Encode File", or "Stop Encoding" while it does.
    void Command20_Click();

    /// A recording from the source that is chosen, to files that have a name already. Returns at once for the
    /// keyboard. False if nothing was recorded.
    /// @param music what is played for the source `MidiFile`: a sound file will do as well
    bool record(const std::filesystem::path& wav, const std::filesystem::path& mp3,
                const std::filesystem::path& music);

    /// To be called now and then while it records, ten times a second or so: shows how long it is, and tells
    /// of a take that stays silent or has ended by itself.
    void update();

    /// Whether anything goes on that closing the window would end.
    [[nodiscard]] bool isBusy() const;
    /// Ends it: the take is saved and not encoded, encoding is cancelled, playing stops.
    void endAll();

    /// Why the last take or its encoding failed, in words; blank if it didn't.
    [[nodiscard]] const std::string& failure() const { return failure_; }
    /// Whether the last take was silent from its beginning to its end.
    [[nodiscard]] bool wasSilent() const { return wasSilent_; }

    static constexpr double kSilenceToldSeconds = 3;
    static constexpr double kRingOutSeconds = 10; ///< at the most
    static constexpr double kQuietSeconds = 0.25; ///< after them the end has rung out

private:
    void RecordWav();
    void RecordWavFromMid();
    [[nodiscard]] bool recordTake(const std::filesystem::path& music);
    [[nodiscard]] bool playNotes();
    [[nodiscard]] bool playMusic(const std::filesystem::path& music);
    void nameFiles(const std::filesystem::path& wav, const std::filesystem::path& mp3);
    [[nodiscard]] bool StartTrackRecording();
    void Recordcontrol2();
    [[nodiscard]] bool Recordcontrol3();
    void StopCap();
    void SaveCap();
    void CloseCap();
    void stopRecording(bool encodes);
    void ringOut();
    void autoEncode();
    [[nodiscard]] bool nameTake();
    [[nodiscard]] EncodeSettings encodeSettings() const;
    [[nodiscard]] std::filesystem::path askTarget(const std::filesystem::path& wav);
    void EncodeToMp3(const std::filesystem::path& wav);
    void RunEncoder(const std::filesystem::path& wav, const std::filesystem::path& mp3);
    void encodingIsDone(const std::filesystem::path& wav, const std::filesystem::path& mp3);
    void showShare(double share);
    void endEncoding();

    [[nodiscard]] Capture* capture() const;
    bool send(const std::string& command);
    /// Says @p otherwise, and keeps why, if it fails.
    bool start(const std::string& command, const std::string& otherwise);
    void say(const std::string& text);
    void changed();

    SessionState& state_;
    MediaDevices& media_;
    MusicSession& music_;
    SessionPlayer& player_;
    const Manners& manners_;
    const ProgramFolders& folders_;
    MessageLoop& loop_;
    SessionScreen* screen_ = nullptr;

    std::set<std::filesystem::path> takes_; ///< made since the program started: these alone may be deleted
    std::unique_ptr<SampleSink> encoded_;   ///< the take's MP3 file, whole but for its end
    std::stop_source CancelEncoding_;       ///< of the encoding that goes on
    std::string failure_;
    double startedAt_ = 0;
    bool toldSilence_ = false;
    bool toldProblem_ = false;
    bool wasSilent_ = false;
};

} // namespace velmora
