// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

enum class MediaAct : std::uint8_t {
    OpenPlayer,
    OpenRecorder,
    Play,
    Pause,
    Resume,
    Stop,
    Close,
    CloseAll,
    CountFrames,
    CountMilliseconds,
    SetFormat,
    AskLength,
    AskPosition,
    AskMode,
    Record,
    AskWhetherItSaves,
    Save,
    Delete,
    WaitSeconds,
    WaitForPlayer
};

/// The numbers of a recorder's format as they were given: they need not fit together.
struct WaveNumbers {
    std::int64_t rate = 0;
    std::int64_t channels = 0;
    std::int64_t bits = 0;
    std::int64_t alignment = 0;
    std::int64_t bytesPerSecond = 0;
};

/// What a line of words asks of a device.
struct MediaCommand {
    MediaAct act = MediaAct::CloseAll;
    std::string alias; ///< as it was written; case doesn't count
    std::string path;  ///< of a file that is opened or saved to, without the quotes around it
    /// Where `path` may be read as several, each in quotes: these. Blank otherwise.
    std::vector<std::string> row;
    std::optional<std::int64_t> from; ///< in the alias's unit
    std::optional<std::int64_t> to;
    WaveNumbers format;
    double seconds = 0; ///< 0 or more, finite
};

struct MediaReading {
    std::optional<MediaCommand> command; ///< none if it isn't understood
    std::string error;                   ///< why not: how such a command is said
};
/// Takes a command apart. Keywords in any case of letters, words parted by any number of blanks; a number too
/// large for 64 bits is the largest one.
[[nodiscard]] MediaReading readMediaCommand(std::string_view line);

inline constexpr std::size_t kMediaErrorBytes = 128;
/// `"NAME" rest`, in one line of at most `kMediaErrorBytes`: a long name loses its middle, a long rest its
/// end.
[[nodiscard]] std::string mediaSentence(std::string_view name, std::string_view rest);
/// A sentence that holds @p name, in one line of at most `kMediaErrorBytes` that names it still.
[[nodiscard]] std::string mediaSentenceHolding(std::string_view sentence, std::string_view name);

} // namespace velmora
