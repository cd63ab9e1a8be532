// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/MessageLoop.h"
#include "sound/Mix.h"
#include "studio/Capture.h"
#include "studio/MusicPlayer.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace velmora {

struct MediaCommand;

/// The answer to a media command.
struct MediaAnswer {
    std::string error; ///< blank for success; else one line of at most 128 characters
    std::string value; ///< where the command asks for one

    [[nodiscard]] bool succeeded() const { return error.empty(); }
    /// "Success", or the error.
    [[nodiscard]] std::string text() const { return succeeded() ? "Success" : error; }
};

/// Players and recorders that go by an alias and are driven by command strings, such as "play audiomp3 from 0
/// to 88200": docs/media-commands.md has them all. Every media action of the program is such a command.
/// Thread-safe: no.
class MediaDevices {
public:
    /// @param loop what "wait" waits in: the mix itself where that is virtual
    /// @param soundFont asked for at each opening of a file; what plays MIDI
    MediaDevices(Mix& mix, MessageLoop& loop, std::function<std::filesystem::path()> soundFont);
    ~MediaDevices();
    MediaDevices(const MediaDevices&) = delete;
    MediaDevices& operator=(const MediaDevices&) = delete;

    /// Keywords and aliases in any case of letters, words parted by any number of blanks.
    MediaAnswer send(std::string_view command);
    /// Called with each command and its answer, as they come; may be blank.
    std::function<void(std::string_view command, const MediaAnswer& answer)> onCommand;

    /// Where the next recorder that is opened grows its take; blank for a hidden file of its own.
    void keepNextTakeAt(std::filesystem::path place);
    /// The device of that alias; null if there is none of the kind.
    [[nodiscard]] Capture* recorder(std::string_view alias);
    [[nodiscard]] MusicPlayer* player(std::string_view alias);

    [[nodiscard]] Mix& mix() { return mix_; }

private:
    struct Device;

    MediaAnswer answer(const MediaCommand& command);
    static MediaAnswer stop(const Device& device, const MediaCommand& command);
    MediaAnswer openPlayer(const MediaCommand& command);
    MediaAnswer openRecorder(const MediaCommand& command);
    MediaAnswer wait(double seconds);
    MediaAnswer waitFor(const MediaCommand& command);
    /// The device of that alias, whatever it is; null if there is none.
    [[nodiscard]] Device* find(std::string_view alias) const;

    Mix& mix_;
    MessageLoop& loop_;
    std::function<std::filesystem::path()> soundFont_;
    std::filesystem::path nextTake_;
    std::map<std::string, std::unique_ptr<Device>, std::less<>> devices_; ///< by alias in lower case
};

} // namespace velmora
