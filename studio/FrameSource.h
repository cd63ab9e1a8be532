// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stop_token>
#include <string>

namespace velmora {

/// Where the sound of a player comes from: stereo of the mix's rate, from a frame on. One thread at a time.
/// Realtime-safe: no.
class FrameSource {
public:
    virtual ~FrameSource() = default;

    /// Frames a second in which `length` and `seek` count; what is read has the mix's. It never changes.
    [[nodiscard]] virtual int rate() const = 0;
    /// Frames to the end of its range; a performance rings out after that.
    [[nodiscard]] virtual std::int64_t length() const = 0;
    /// The next `read` begins at that frame, 0 to `length`.
    virtual void seek(std::int64_t frame) = 0;
    /// Reads the next frames. Returns how many there were, fewer than asked for at the end alone: that of the
    /// sound, of a file that can't be read on, or of all patience, when @p cancel asks to stop.
    virtual std::size_t read(std::span<float> interleaved, const std::stop_token& cancel) = 0;
    /// Why not all could be read since the last `seek`, in words; blank if all is well.
    [[nodiscard]] virtual std::string problem() const = 0;
};

} // namespace velmora
