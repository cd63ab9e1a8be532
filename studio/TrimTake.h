// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/Encoder.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>

namespace velmora {

/// A part of a take, to be a file of its own. Frames are those of the file.
struct TrimJob {
    std::filesystem::path from;
    std::filesystem::path to; ///< may be the same file
    std::int64_t begin = 0;
    std::int64_t end = 0;     ///< behind the last
    std::int64_t fadeIn = 0;  ///< as many as it takes to full loudness
    std::int64_t fadeOut = 0; ///< and at the end to silence
    EncodeSettings mp3 = {};  ///< for an MP3 file, as `remadeMp3` takes them
};

struct TrimOutcome {
    enum class End : std::uint8_t { Done, Cancelled, Failed };
    End end = End::Failed;
    std::string error = {}; ///< why it failed, in a sentence that names the file
    std::string note = {};  ///< what has become of the format, in a sentence; blank if it is the same
};

/// Writes that part of a sound file. Of a WAV file it has the same format, and is bit for bit the same but
/// for the fades; where there are any, logarithmic samples become those of 16 bits. An MP3 file is encoded
/// again, exactly those frames. Unless it is Done, an old file at its place is as it was, and no new one is
/// left. Memory doesn't grow with the length.
/// @param progress called from the caller's thread with a share from 0 to 1 that never falls; may be blank
[[nodiscard]] TrimOutcome trimTake(const TrimJob& job, const std::function<void(double)>& progress = {},
                                   const std::stop_token& cancel = {});

} // namespace velmora
