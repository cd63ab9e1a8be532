// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <stop_token>
#include <vector>

namespace velmora {

/// Sectors that stand one behind the other on a disc and in the file they were written from.
struct SectorRun {
    std::int64_t first = 0;   ///< on the disc
    std::int64_t inFile = 0;  ///< the same in the file
    std::int64_t sectors = 0; ///< how many
};

struct ReadBackOutcome {
    enum class End : std::uint8_t { Same, Cancelled, Different, Unreadable };
    End end = End::Same;
    std::int64_t sector = 0; ///< in the file, where it isn't the same
    int shift = 0;           ///< frames by which the drive is off, for all sectors alike
};

/// Fills the bytes with the sectors from that one of the disc on; false if the drive can't.
using SectorsOfDisc = std::function<bool(std::int64_t sector, std::span<std::byte> to)>;

/// Compares what a drive reads with what was written, byte by byte. A drive may be off by a constant number
/// of frames, as most are (kMostShift at most): that is found out, and only the frames that it can't reach at
/// the ends of a run are not compared. What differs is read twice more.
inline constexpr int kMostShift = 2940; ///< frames
[[nodiscard]] ReadBackOutcome readBack(const std::vector<SectorRun>& runs, int written,
                                       const SectorsOfDisc& read,
                                       const std::function<void(double share)>& progress,
                                       const std::stop_token& cancel);

} // namespace velmora
