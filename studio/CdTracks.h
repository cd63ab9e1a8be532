// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/SoundReader.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

inline constexpr int kCdRate = 44100; ///< frames a second, of 16-bit stereo
inline constexpr int kSectorsPerSecond = 75;
inline constexpr int kSectorBytes = 2352;
inline constexpr int kSectorFrames = 588;           ///< of 44,100 a second
inline constexpr std::int64_t kShortestTrack = 300; ///< sectors
inline constexpr std::size_t kMostTracks = 99;
inline constexpr std::int64_t kDiscOf80Minutes =
    (79 * 60 + 57) * kSectorsPerSecond + 74; ///< the last sector that fits
inline constexpr std::int64_t kLongestDisc = (99 * 60 + 59) * kSectorsPerSecond + 74;

inline constexpr std::string_view kTooManyTracks = "Only 99 tracks allowed!";
inline constexpr std::string_view kNotSupported = " is not supported."; ///< behind a file's name

/// A track of an audio CD.
struct CdTrack {
    std::filesystem::path file;
    SoundInfo sound;
    std::int64_t sectors = 0; ///< filled up to a whole number, and to kShortestTrack at least
    std::string title;        ///< the file's own, else its name without folder and extension
};

/// The tracks of an audio CD, in order.
class CdTracks {
public:
    /// Blank, or why the file is no track: kTooManyTracks, or its name and kNotSupported.
    [[nodiscard]] std::string add(const std::filesystem::path& file);
    void remove(std::size_t track);
    /// False at the ends.
    bool moveUp(std::size_t track);
    bool moveDown(std::size_t track);

    [[nodiscard]] const std::vector<CdTrack>& list() const { return tracks_; }
    /// On the disc, with all filling up.
    [[nodiscard]] std::int64_t sectors() const;

private:
    std::vector<CdTrack> tracks_;
};

/// "mm:ss:ff", 75 frames a second.
[[nodiscard]] std::string discTime(std::int64_t sectors);

} // namespace velmora
