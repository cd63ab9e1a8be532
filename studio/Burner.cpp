// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Burner.h"

#include "studio/BurnFailure.h"
#include "studio/BurnSpool.h"
#include "studio/DiscComparison.h"
#include "studio/DiscWriting.h"
#include "studio/DriveList.h"
#include "studio/GrabbedDrive.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

namespace velmora::burner {

namespace {
/// Why nothing should be written to what lies in the drive.
std::optional<BurnOutcome> refusal(const CdDrive& drive, const Disc& disc, std::int64_t sectors) {
    switch (disc.state) {
    case DiscState::NoDrive:
        return BurnOutcome{BurnCode::ParametersRefused, cantBeReached(drive)};
    case DiscState::Absent:
        return BurnOutcome{BurnCode::InvalidMedium, "There is no disc in " + drive.name + "."};
    case DiscState::Unsuitable:
        return BurnOutcome{BurnCode::InvalidMedium,
                           "The disc in " + drive.name + " is no CD that can be written to."};
    case DiscState::Full:
    case DiscState::Rewritable:
        return BurnOutcome{BurnCode::NotEmpty, "The disc in " + drive.name + " is written already."};
    case DiscState::Blank:
        break;
    }
    if (disc.sectors > 0 && sectors > disc.sectors)
        return BurnOutcome{BurnCode::InvalidMedium, "The tracks take " + discTime(sectors) +
                                                        ", and the disc in " + drive.name + " holds " +
                                                        discTime(disc.sectors) + "."};
    return std::nullopt;
}
} // namespace

BurnOutcome burn(const CdDrive& drive, const CdTracks& tracks, int speed, BurnEvents& events,
                 const std::stop_token& cancel) {
    if (auto refused = refusal(drive, disc(drive), tracks.sectors()))
        return *refused;
    const BurnSpool spool;
    if (auto failed = cache(tracks, spool, events, cancel))
        return *failed;
    const std::lock_guard lock(oneAtATime());
    BurnOutcome outcome;
    {
        const GrabbedDrive grabbed(drive.address);
        if (!grabbed.isOurs())
            return {BurnCode::ParametersRefused, cantBeReached(drive)};
        if (auto refused = refusal(drive, discIn(grabbed.drive()), tracks.sectors()))
            return *refused; // another one by now
        library().burn_drive_set_speed(grabbed.drive(), 0, speed);
        outcome = write(drive, grabbed, tracks, spool, events, cancel);
        complaints();
    }
    if (outcome.detail.find(kVanished) != std::string::npos)
        library().restart();
    if (outcome.code == BurnCode::Finished)
        outcome = compare(drive, tracks, spool, events, cancel);
    if (outcome.code == BurnCode::Finished)
        events.Finished();
    return outcome;
}

} // namespace velmora::burner
