// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "sound/Mix.h"
#include "sound/TimedMessage.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace velmora {

/// What stands of a media device, as "status mode" words it.
enum class MediaMode : std::uint8_t { Stopped, Playing, Paused, Recording };

struct OpenedMusic;

/// One music file (WAV, MP3, MIDI), a row of sound files or a performance, to be played in a mix. Frames are
/// those of the file; 44,100 a second for MIDI, a performance and a row. Files are read on a thread of their
/// own where the mix is live, so nothing here waits for a disk. Thread-safe: no.
class MusicPlayer {
public:
    /// @param soundFont for MIDI; not looked at otherwise
    [[nodiscard]] static OpenedMusic open(const std::filesystem::path& file, Mix& mix,
                                          const std::filesystem::path& soundFont);
    /// Sound files one after the other, with nothing between them.
    [[nodiscard]] static OpenedMusic openRow(const std::vector<std::filesystem::path>& files, Mix& mix);
    /// What a score or a MIDI file sends, in order of time: with a synthesizer of its own, placed on the same
    /// frames in each playing, so that the mix has what `renderOffline` writes of it. After the last message
    /// it rings out as that does.
    [[nodiscard]] static OpenedMusic perform(std::vector<TimedMessage> messages, Mix& mix,
                                             const std::filesystem::path& soundFont);

    virtual ~MusicPlayer() = default;

    [[nodiscard]] virtual int rate() const = 0;            ///< frames a second
    [[nodiscard]] virtual std::int64_t length() const = 0; ///< frames
    /// Of the next frame that the mix gets; at the end of its range the end of it.
    [[nodiscard]] virtual std::int64_t position() const = 0;
    [[nodiscard]] virtual MediaMode mode() const = 0;
    /// Whether anything of it comes into the mix: while it plays, and while MIDI rings out after its end.
    [[nodiscard]] virtual bool isSounding() const = 0;

    /// Plays a range of frames; at its end the player is stopped. False for a range that is empty or begins
    /// beyond the end; @p to beyond the end is the end.
    virtual bool play(std::int64_t from, std::int64_t to) = 0;
    /// False where there is nothing to pause, resume or stop.
    virtual bool pause() = 0;
    virtual bool resume() = 0;
    /// It stands where it was.
    virtual bool stop() = 0;
    /// Why it can't go on (a file that is gone, a disk that fails), in words; blank if all is well.
    [[nodiscard]] virtual std::string problem() const = 0;
};

struct OpenedMusic {
    std::unique_ptr<MusicPlayer> player; ///< none if it failed
    std::string error;                   ///< why, in a sentence that names the file
};

} // namespace velmora
