// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/DiscComparison.h"

#include "studio/GrabbedDrive.h"
#include "studio/ReadBack.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace velmora::burner {

namespace {
/// Where the tracks stand on the disc; fewer than were written if it tells of fewer.
std::vector<SectorRun> runsOn(burn_drive* drive, const CdTracks& tracks) {
    std::vector<SectorRun> runs;
    burn_disc* disc = library().burn_drive_get_disc(drive);
    if (!disc)
        return runs;
    int sessions = 0;
    int count = 0;
    burn_session** session = library().burn_disc_get_sessions(disc, &sessions);
    burn_track** track = sessions > 0 ? library().burn_session_get_tracks(session[0], &count) : nullptr;
    std::int64_t inFile = 0;
    for (std::size_t i = 0; i < tracks.list().size() && static_cast<int>(i) < count; ++i) {
        burn_toc_entry entry{};
        library().burn_track_get_entry(track[i], &entry);
        const std::int64_t sectors = tracks.list()[i].sectors;
        if (!runs.empty() && runs.back().first + runs.back().sectors == entry.start_lba)
            runs.back().sectors += sectors;
        else
            runs.push_back({entry.start_lba, inFile, sectors});
        inFile += sectors;
    }
    library().burn_disc_free(disc);
    return inFile == tracks.sectors() ? runs : std::vector<SectorRun>();
}

/// The track and the place in it, in words.
std::string placeOf(const CdTracks& tracks, std::int64_t sector) {
    int number = 1;
    for (const CdTrack& track : tracks.list()) {
        if (sector < track.sectors)
            return "track " + std::to_string(number) + " at " + discTime(sector);
        sector -= track.sectors;
        ++number;
    }
    return "the end";
}
} // namespace

BurnOutcome compare(const CdDrive& drive, const CdTracks& tracks, const BurnSpool& spool, BurnEvents& events,
                    const std::stop_token& cancel) {
    const GrabbedDrive grabbed(drive.address); // anew: only now the drive looks at what it has written
    if (!grabbed.isOurs())
        return {BurnCode::WriteError, cantBeReached(drive)};
    const std::vector<SectorRun> runs = runsOn(grabbed.drive(), tracks);
    if (runs.empty())
        return {BurnCode::ClosingSession,
                "The disc in " + drive.name + " doesn't have the tracks that were written."};
    const auto read = [&grabbed](std::int64_t sector, std::span<std::byte> to) {
        constexpr int kQuietly = 2;
        off_t count = 0;
        return library().burn_read_audio(grabbed.drive(), static_cast<int>(sector),
                                         reinterpret_cast<char*>(to.data()), static_cast<off_t>(to.size()),
                                         &count, kQuietly) > 0;
    };
    const ReadBackOutcome outcome = readBack(
        runs, spool.descriptor(), read, [&events](double share) { events.Comparing(share); }, cancel);
    complaints();
    switch (outcome.end) {
    case ReadBackOutcome::End::Same:
        return {BurnCode::Finished};
    case ReadBackOutcome::End::Cancelled:
        return {BurnCode::WriteError, "The disc in " + drive.name + " is written, but not compared.", true};
    case ReadBackOutcome::End::Different:
        return {BurnCode::WriteError,
                "Read back, " + placeOf(tracks, outcome.sector) + " is not what was written."};
    case ReadBackOutcome::End::Unreadable:
        break;
    }
    return {BurnCode::WriteError, drive.name + " can't read " + placeOf(tracks, outcome.sector) + " back."};
}

} // namespace velmora::burner
