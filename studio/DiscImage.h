// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "studio/CdTracks.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>

namespace velmora {

/// How far the tracks have come: shares from 0 to 1, the total never falls, nor does that of one track.
using SectorProgress = std::function<void(std::size_t track, double trackShare, double totalShare)>;

/// How a way through all sectors ended.
struct SectorOutcome {
    enum class End : std::uint8_t {
        Done,
        Cancelled,
        Unreadable, ///< a track's file
        Unwritable, ///< where the sectors go
        Different   ///< what was read back is not what was written
    };
    End end = End::Done;
    std::string error; ///< in a sentence; for Unwritable the reason alone
};

/// Writes the sectors of all tracks, one behind the other, from the descriptor's place on, which is its
/// beginning. Past the system's cache where the file allows it: so that it costs little, and comparing reads
/// what the disk holds. Thread-safe: yes, for different descriptors.
[[nodiscard]] SectorOutcome writeSectors(const CdTracks& tracks, int descriptor,
                                         const SectorProgress& progress = {},
                                         const std::stop_token& cancel = {});
/// Reads them back and compares each with the track's file.
/// @param where the place for messages
[[nodiscard]] SectorOutcome compareSectors(const CdTracks& tracks, int descriptor,
                                           const std::filesystem::path& where,
                                           const SectorProgress& progress = {},
                                           const std::stop_token& cancel = {});

/// The BIN file of a CUE file: beside it, of the same name.
[[nodiscard]] std::filesystem::path binOf(const std::filesystem::path& cue);
/// What stands in the CUE file.
[[nodiscard]] std::string cueSheet(const CdTracks& tracks, const std::filesystem::path& cue);

/// Writes the tracks as a CUE and a BIN file. Unless it is Done, old files of those names are as they were,
/// and no new one is left.
/// @param comparing called while every sector is read back; blank to trust the disk
[[nodiscard]] SectorOutcome writeImage(const CdTracks& tracks, const std::filesystem::path& cue,
                                       const SectorProgress& progress = {},
                                       const std::stop_token& cancel = {},
                                       const SectorProgress& comparing = {});

} // namespace velmora
