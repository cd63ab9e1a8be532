// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

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
};

struct TrimOutcome {
    enum class End : std::uint8_t { Done, Cancelled, Failed };
    End end = End::Failed;
    std::string error; ///< why it failed, in a sentence that names the file
};

/// Writes that part of a WAV file of plain samples, in the same format: bit for bit but for the fades. Unless
/// it is Done, an old file at its place is as it was, and no new one is left. Memory doesn't grow with the
/// length.
/// @param progress called from the caller's thread with a share from 0 to 1 that never falls; may be blank
[[nodiscard]] TrimOutcome trimTake(const TrimJob& job, const std::function<void(double)>& progress = {},
                                   const std::stop_token& cancel = {});

} // namespace velmora
