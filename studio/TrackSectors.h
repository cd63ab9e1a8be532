// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/CdTracks.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace velmora {

/// The bytes of a track as they stand on the disc: 44,100 Hz 16-bit little-endian stereo, filled up with
/// silence to the track's sectors. The samples of a WAV file that is so already are handed on as they are.
/// Thread-safe: no.
class TrackSectors {
public:
    explicit TrackSectors(CdTrack track);
    ~TrackSectors();
    TrackSectors(const TrackSectors&) = delete;
    TrackSectors& operator=(const TrackSectors&) = delete;

    /// Blank, or why the file can't be read any more, in a sentence that names it.
    [[nodiscard]] std::string open();
    /// Fills all of @p to, as long as there are bytes; 0 at the end, or when something is wrong: `problem`.
    /// @param to whole frames
    [[nodiscard]] std::size_t read(std::span<std::byte> to);
    /// Blank, or what went wrong in `read`.
    [[nodiscard]] const std::string& problem() const { return problem_; }

private:
    struct Source;
    struct PlainSource;
    struct ConvertedSource;

    CdTrack track_;
    std::unique_ptr<Source> source_;
    std::int64_t soundLeft_ = 0; ///< bytes
    std::int64_t left_ = 0;      ///< bytes, with the silence
    std::string problem_;
};

} // namespace velmora
