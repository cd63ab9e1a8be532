// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/BurnSpool.h"

#include "studio/DiscImage.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace velmora::burner {

BurnSpool::BurnSpool() {
    const char* chosen = std::getenv("TMPDIR");
    for (const std::string& folder :
         {std::string(chosen ? chosen : ""), std::string("/var/tmp"), std::string("/tmp")})
        if (fd_ < 0 && !folder.empty())
            fd_ = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
}

BurnSpool::~BurnSpool() {
    if (fd_ >= 0)
        close(fd_);
}

std::optional<BurnOutcome> cache(const CdTracks& tracks, const BurnSpool& spool, BurnEvents& events,
                                 const std::stop_token& cancel) {
    if (spool.descriptor() < 0)
        return BurnOutcome{BurnCode::NoFile, "No folder for temporary files can be written to."};
    std::optional<std::size_t> caching;
    const auto progress = [&](std::size_t track, double share, double total) {
        if (caching != track)
            events.StartCaching(track);
        caching = track;
        events.CacheProgress(share, total);
    };
    SectorOutcome outcome = writeSectors(tracks, spool.descriptor(), progress, cancel);
    switch (outcome.end) {
    case SectorOutcome::End::Done:
        return std::nullopt;
    case SectorOutcome::End::Cancelled:
        return BurnOutcome{BurnCode::WriteError, {}, true};
    case SectorOutcome::End::Unwritable:
        outcome.error = "There is no room for " + discTime(tracks.sectors()) +
                        " of sound in the folder for temporary files: " + outcome.error + ".";
        break;
    default:
        break;
    }
    return BurnOutcome{BurnCode::NoFile, outcome.error};
}

} // namespace velmora::burner
