// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/Burner.h"

#include "LateNames.h"
#include "base/LateLibrary.h"
#include "base/Text.h"
#include "studio/BurnText.h"
#include "studio/DiscImage.h"
#include "studio/ReadBack.h"

#include <libburn/libburn.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <thread>
#include <utility>

using namespace burn; // the library's own, where its header puts its functions for C++

namespace velmora::burner {

namespace {
struct BurnLibrary : LateLibrary {
    BurnLibrary() : LateLibrary(kBurnLibrary) {
        if (complete())
            start();
    }
    void start() {
        ready = burn_initialize() != 0;
        // What happens is asked for and told in words of ours; nothing goes to the terminal, nothing aborts.
        std::string queue = "SORRY";
        std::string print = "NEVER";
        std::string nobody;
        burn_msgs_set_severities(queue.data(), print.data(), nobody.data());
    }
    /// Else it would look at no drive any more, once one has vanished.
    void restart() {
        burn_finish();
        start();
    }
    VELMORA_LATE_CALL(burn_cdtext_from_session);
    VELMORA_LATE_CALL(burn_disc_add_session);
    VELMORA_LATE_CALL(burn_disc_available_space);
    VELMORA_LATE_CALL(burn_disc_create);
    VELMORA_LATE_CALL(burn_disc_erasable);
    VELMORA_LATE_CALL(burn_disc_erase);
    VELMORA_LATE_CALL(burn_disc_free);
    VELMORA_LATE_CALL(burn_disc_get_profile);
    VELMORA_LATE_CALL(burn_disc_get_sessions);
    VELMORA_LATE_CALL(burn_disc_get_status);
    VELMORA_LATE_CALL(burn_disc_read_atip);
    VELMORA_LATE_CALL(burn_disc_write);
    VELMORA_LATE_CALL(burn_drive_add_whitelist);
    VELMORA_LATE_CALL(burn_drive_cancel);
    VELMORA_LATE_CALL(burn_drive_clear_whitelist);
    VELMORA_LATE_CALL(burn_drive_d_get_adr);
    VELMORA_LATE_CALL(burn_drive_free_speedlist);
    VELMORA_LATE_CALL(burn_drive_get_disc);
    VELMORA_LATE_CALL(burn_drive_get_feature);
    VELMORA_LATE_CALL(burn_drive_get_speedlist);
    VELMORA_LATE_CALL(burn_drive_get_start_end_lba);
    VELMORA_LATE_CALL(burn_drive_get_status);
    VELMORA_LATE_CALL(burn_drive_info_free);
    VELMORA_LATE_CALL(burn_drive_release);
    VELMORA_LATE_CALL(burn_drive_scan);
    VELMORA_LATE_CALL(burn_drive_scan_and_grab);
    VELMORA_LATE_CALL(burn_drive_set_speed);
    VELMORA_LATE_CALL(burn_drive_wrote_well);
    VELMORA_LATE_CALL(burn_finish);
    VELMORA_LATE_CALL(burn_initialize);
    VELMORA_LATE_CALL(burn_msgs_obtain);
    VELMORA_LATE_CALL(burn_msgs_set_severities);
    VELMORA_LATE_CALL(burn_precheck_write);
    VELMORA_LATE_CALL(burn_read_audio);
    VELMORA_LATE_CALL(burn_session_add_track);
    VELMORA_LATE_CALL(burn_session_create);
    VELMORA_LATE_CALL(burn_session_free);
    VELMORA_LATE_CALL(burn_session_get_tracks);
    VELMORA_LATE_CALL(burn_session_set_cdtext);
    VELMORA_LATE_CALL(burn_source_free);
    VELMORA_LATE_CALL(burn_track_create);
    VELMORA_LATE_CALL(burn_track_define_data);
    VELMORA_LATE_CALL(burn_track_free);
    VELMORA_LATE_CALL(burn_track_get_entry);
    VELMORA_LATE_CALL(burn_track_set_cdtext);
    VELMORA_LATE_CALL(burn_track_set_source);
    VELMORA_LATE_CALL(burn_write_opts_auto_write_type);
    VELMORA_LATE_CALL(burn_write_opts_free);
    VELMORA_LATE_CALL(burn_write_opts_new);
    VELMORA_LATE_CALL(burn_write_opts_set_multi);
    VELMORA_LATE_CALL(burn_write_opts_set_perform_opc);
    VELMORA_LATE_CALL(burn_write_opts_set_underrun_proof);

    bool ready = false;
};

BurnLibrary& library() {
    static BurnLibrary only;
    return only;
}

bool isThere() {
    return library().complete() && library().ready;
}

/// The library knows one owner of drives in a process.
std::mutex& oneAtATime() {
    static std::mutex only;
    return only;
}

constexpr auto kLook = std::chrono::milliseconds(20); ///< between two looks at what a drive does

/// What the library had to complain of since the last call.
std::vector<std::string> complaints() {
    std::vector<std::string> texts;
    std::array<char, BURN_MSGS_MESSAGE_LEN + 1> text{};
    std::array<char, 81> severity{};
    std::string least = "SORRY";
    int code = 0;
    int os = 0;
    while (library().burn_msgs_obtain(least.data(), &code, text.data(), &os, severity.data()) > 0)
        texts.emplace_back(text.data());
    return texts;
}

std::string nameOf(const burn_drive_info& info) {
    const std::string vendor(trimmed(info.vendor));
    const std::string product(trimmed(info.product));
    return vendor.empty() || product.empty() ? vendor + product : vendor + " " + product;
}

std::string addressOf(const burn_drive_info& info) {
    std::array<char, BURN_DRIVE_ADR_LEN> address{};
    return library().burn_drive_d_get_adr(info.drive, address.data()) > 0 ? address.data() : std::string();
}

std::vector<int> speedsOf(burn_drive* drive) {
    burn_speed_descriptor* list = nullptr;
    std::set<int, std::greater<>> speeds;
    if (library().burn_drive_get_speedlist(drive, &list) > 0)
        for (const burn_speed_descriptor* row = list; row; row = row->next)
            if (row->write_speed > 0)
                speeds.insert(row->write_speed);
    if (list)
        library().burn_drive_free_speedlist(&list);
    return {speeds.begin(), speeds.end()};
}

/// A drive that is ours until this ends.
class Grabbed {
public:
    explicit Grabbed(const std::string& address) {
        std::string writable = address;
        if (library().burn_drive_scan_and_grab(&info_, writable.data(), 1) <= 0)
            info_ = nullptr;
        library().burn_drive_clear_whitelist();
    }
    ~Grabbed() {
        if (!info_)
            return;
        library().burn_drive_release(info_->drive, 0);
        library().burn_drive_info_free(info_);
    }
    Grabbed(const Grabbed&) = delete;
    Grabbed& operator=(const Grabbed&) = delete;

    [[nodiscard]] bool isOurs() const { return info_ != nullptr; }
    [[nodiscard]] burn_drive* drive() const { return info_->drive; }

private:
    burn_drive_info* info_ = nullptr;
};

Disc discIn(burn_drive* drive) {
    constexpr int kCdR = 0x09;
    constexpr int kCdRw = 0x0a;
    int profile = 0;
    std::array<char, 80> name{};
    library().burn_disc_get_profile(drive, &profile, name.data());
    const burn_disc_status status = library().burn_disc_get_status(drive);
    if (status == BURN_DISC_EMPTY)
        return {DiscState::Absent};
    if (profile != kCdR && profile != kCdRw)
        return {DiscState::Unsuitable};
    Disc disc;
    if (status == BURN_DISC_BLANK)
        disc.state = DiscState::Blank;
    else if (status == BURN_DISC_APPENDABLE || status == BURN_DISC_FULL)
        disc.state = library().burn_disc_erasable(drive) != 0 ? DiscState::Rewritable : DiscState::Full;
    else
        return {DiscState::Unsuitable};
    int start = 0;
    int end = 0;
    library().burn_disc_read_atip(drive);
    if (library().burn_drive_get_start_end_lba(drive, &start, &end, 0) > 0 && end > 0)
        disc.sectors = end;
    return disc;
}

std::string cantBeReached(const CdDrive& drive) {
    return "The drive " + drive.name + " can't be reached; is it still connected, and may you use it?";
}

/// Bytes of a file from one place to another, as the library takes them.
struct Stretch {
    int descriptor;
    off_t at;
    off_t end;
};

int readStretch(burn_source* source, unsigned char* buffer, int size) {
    auto& stretch = *static_cast<Stretch*>(source->data);
    int got = 0;
    while (got < size && stretch.at < stretch.end) {
        const auto wanted = std::min<off_t>(size - got, stretch.end - stretch.at);
        const ssize_t count =
            pread(stretch.descriptor, buffer + got, static_cast<std::size_t>(wanted), stretch.at);
        if (count <= 0)
            return -1;
        got += static_cast<int>(count);
        stretch.at += count;
    }
    return got;
}
off_t sizeOfStretch(burn_source* source) {
    const auto& stretch = *static_cast<Stretch*>(source->data);
    return stretch.end - stretch.at;
}
int keepSize(burn_source* /*source*/, off_t /*size*/) {
    return 1;
}
void freeStretch(burn_source* source) {
    delete static_cast<Stretch*>(source->data);
}

/// The library frees it as C does.
burn_source* newSource(Stretch stretch) {
    auto* source = static_cast<burn_source*>(std::calloc(1, sizeof(burn_source)));
    if (!source)
        return nullptr;
    source->refcount = 1;
    source->read = readStretch;
    source->get_size = sizeOfStretch;
    source->set_size = keepSize;
    source->free_data = freeStretch;
    source->data = new Stretch(stretch);
    return source;
}

/// What is to be written, as the library wants it described.
class Layout {
public:
    Layout(const CdTracks& tracks, int spool)
        : disc_(library().burn_disc_create())
        , session_(library().burn_session_create()) {
        library().burn_disc_add_session(disc_, session_, BURN_POS_END);
        off_t at = 0;
        for (const CdTrack& row : tracks.list()) {
            burn_track* track = library().burn_track_create();
            tracks_.push_back(track);
            library().burn_track_define_data(track, 0, 0, 1, BURN_AUDIO);
            const off_t end = at + row.sectors * kSectorBytes;
            burn_source* source = newSource({spool, at, end});
            isWhole_ = isWhole_ && source &&
                       library().burn_track_set_source(track, source) == BURN_SOURCE_OK &&
                       library().burn_session_add_track(session_, track, BURN_POS_END) != 0;
            if (source)
                library().burn_source_free(source);
            at = end;
        }
    }
    ~Layout() {
        for (burn_track* track : tracks_)
            library().burn_track_free(track);
        library().burn_session_free(session_);
        library().burn_disc_free(disc_);
    }
    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;

    [[nodiscard]] bool isWhole() const { return isWhole_; }
    [[nodiscard]] burn_disc* disc() const { return disc_; }

    /// Titles and artists for players that show them, cut as far as the disc has room.
    void addText(const CdTracks& tracks) {
        for (const std::size_t longest : {160, 64, 28, 14}) {
            setText(tracks, longest);
            unsigned char* packs = nullptr;
            int count = 0;
            const bool fits = library().burn_cdtext_from_session(session_, &packs, &count, 0) > 0;
            std::free(packs);
            if (fits)
                break;
        }
        complaints();
    }

private:
    void setText(const CdTracks& tracks, std::size_t longest) {
        constexpr int kTitle = 0x80;
        constexpr int kPerformer = 0x81;
        const auto put = [](auto set, auto* where, int kind, std::string text) {
            set(where, 0, kind, nullptr, reinterpret_cast<unsigned char*>(text.data()),
                static_cast<int>(text.size()) + 1, 0);
        };
        const DiscText text = discText(tracks, longest);
        put(library().burn_session_set_cdtext, session_, kTitle, text.title);
        if (text.hasPerformers)
            put(library().burn_session_set_cdtext, session_, kPerformer, text.performer);
        for (std::size_t i = 0; i < tracks_.size(); ++i) {
            put(library().burn_track_set_cdtext, tracks_[i], kTitle, text.tracks[i].title);
            if (text.hasPerformers)
                put(library().burn_track_set_cdtext, tracks_[i], kPerformer, text.tracks[i].performer);
        }
    }

    burn_disc* disc_;
    burn_session* session_;
    std::vector<burn_track*> tracks_;
    bool isWhole_ = true;
};

/// Whether the drive says that it can write the lead-in's text.
bool takesText(burn_drive* drive) {
    constexpr unsigned kMastering = 0x2e;
    constexpr unsigned kSubchannels = 1;
    unsigned char flags = 0;
    unsigned char length = 0;
    unsigned char* data = nullptr;
    const bool takes =
        library().burn_drive_get_feature(drive, kMastering, &flags, &length, &data, nullptr) > 0 &&
        length > 0 && (data[0] & kSubchannels) != 0;
    std::free(data);
    return takes;
}

/// A file of the sectors without a name, which goes with its descriptor.
class Spool {
public:
    Spool() {
        const char* chosen = std::getenv("TMPDIR");
        for (const std::string& folder :
             {std::string(chosen ? chosen : ""), std::string("/var/tmp"), std::string("/tmp")})
            if (fd_ < 0 && !folder.empty())
                fd_ = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    }
    ~Spool() {
        if (fd_ >= 0)
            close(fd_);
    }
    Spool(const Spool&) = delete;
    Spool& operator=(const Spool&) = delete;
    [[nodiscard]] int descriptor() const { return fd_; }

private:
    int fd_ = -1;
};
/// What the library says when a drive is gone. Then the drive counts as idle and as given back while a thread
/// of the library still tries to talk to it.
constexpr std::string_view kVanished = "Failed to transfer command";
constexpr auto kLastWords = std::chrono::seconds(4);

/// Where a command of the drive stands in a complaint, and what came of the disc then.
struct FailedCommand {
    std::string_view words;
    BurnCode code;
};
constexpr std::array kFailedCommands{
    FailedCommand{"command 55h", BurnCode::ParametersRefused}, // mode select
    FailedCommand{"command 5Dh", BurnCode::ParametersRefused}, // send cue sheet
    FailedCommand{"command 54h", BurnCode::ParametersRefused}, // send OPC information
    FailedCommand{"command 52h", BurnCode::NoAddress},         // read track information
    FailedCommand{"command 35h", BurnCode::Cache},             // synchronize cache
    FailedCommand{"synchronize drive cache", BurnCode::Cache},
    FailedCommand{"command 2Ah", BurnCode::WriteError}, // write
    FailedCommand{"SCSI error on write", BurnCode::WriteError},
    FailedCommand{kVanished, BurnCode::WriteError},
};

struct Failure {
    BurnCode code = BurnCode::WriteError;
    std::string detail;
};

/// @param atWork what the drive was closing, or WriteError
Failure failureOf(const std::vector<std::string>& complaints, BurnCode atWork) {
    const bool closing = atWork != BurnCode::WriteError;
    for (const std::string& text : complaints) {
        if (text.find("command 5Bh") != text.npos) // close track or session
            return {closing ? atWork : BurnCode::ClosingSession, text};
        for (const FailedCommand& row : kFailedCommands)
            if (text.find(row.words) != text.npos)
                return {row.code, text};
    }
    return {atWork, complaints.empty() ? std::string("the drive does not say why.") : complaints.front()};
}

/// Tells of a drive that writes, until it has done so.
class WriteWatch {
public:
    WriteWatch(const CdTracks& tracks, BurnEvents& events) : tracks_(tracks), events_(events) {}

    void look(burn_drive_status status, const burn_progress& at) {
        if (status == BURN_DRIVE_WRITING)
            showWriting(at);
        else if (status == BURN_DRIVE_CLOSING_TRACK)
            closing(BurnCode::ClosingTrack);
        else if (status == BURN_DRIVE_CLOSING_SESSION || status == BURN_DRIVE_WRITING_LEADOUT)
            closing(BurnCode::ClosingSession);
    }
    /// All is written.
    void end() {
        goTo(tracks_.list().size() - 1);
        show(1);
        closing(BurnCode::ClosingSession);
    }
    /// What it was closing when it was last seen, or WriteError: nothing.
    [[nodiscard]] BurnCode atWork() const { return atWork_; }

private:
    /// @param track no earlier one than before; those between were too quick to be seen
    void goTo(std::size_t track) {
        if (begun_ && track == track_)
            return;
        if (begun_)
            show(1);
        for (std::size_t next = begun_ ? track_ + 1 : 0; next <= track; ++next) {
            begun_ = true;
            track_ = next;
            shown_ = 0;
            atWork_ = BurnCode::WriteError;
            events_.StartWriting(next);
            if (next < track)
                show(1);
        }
    }
    void showWriting(const burn_progress& at) {
        const auto track = static_cast<std::size_t>(std::max(at.track, 0));
        if (track >= tracks_.list().size() || (begun_ && track < track_))
            return;
        goTo(track);
        if (at.sectors > 0) // near the end the library counts from 0 again
            show(std::clamp(static_cast<double>(at.sector) / at.sectors, 0.0, 1.0));
    }
    void show(double share) {
        shown_ = std::max(shown_, share);
        double sectors = shown_ * static_cast<double>(tracks_.list()[track_].sectors);
        for (std::size_t i = 0; i < track_; ++i)
            sectors += static_cast<double>(tracks_.list()[i].sectors);
        total_ = std::max(total_, sectors / static_cast<double>(tracks_.sectors()));
        events_.WriteProgress(shown_, total_);
    }
    void closing(BurnCode what) {
        if (std::exchange(atWork_, what) == what)
            return;
        if (what == BurnCode::ClosingTrack)
            events_.ClosingTrack();
        else
            events_.ClosingSession();
    }

    const CdTracks& tracks_;
    BurnEvents& events_;
    bool begun_ = false;
    std::size_t track_ = 0;
    double shown_ = 0;
    double total_ = 0;
    BurnCode atWork_ = BurnCode::WriteError;
};

/// Fills the spool, which is what the drive is fed with.
std::optional<BurnOutcome> cache(const CdTracks& tracks, const Spool& spool, BurnEvents& events,
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

BurnOutcome write(const CdDrive& drive, const Grabbed& grabbed, const CdTracks& tracks, const Spool& spool,
                  BurnEvents& events, const std::stop_token& cancel) {
    Layout layout(tracks, spool.descriptor());
    if (takesText(grabbed.drive()))
        layout.addText(tracks);
    struct FreeOptions {
        void operator()(burn_write_opts* one) const { library().burn_write_opts_free(one); }
    };
    const std::unique_ptr<burn_write_opts, FreeOptions> options(
        library().burn_write_opts_new(grabbed.drive()));
    if (!layout.isWhole() || !options)
        return {BurnCode::ParametersRefused, "There is not enough memory."};
    library().burn_write_opts_set_perform_opc(options.get(), 0);
    library().burn_write_opts_set_multi(options.get(), 0);
    library().burn_write_opts_set_underrun_proof(options.get(), 1);
    std::array<char, BURN_REASONS_LEN> reasons{};
    if (library().burn_write_opts_auto_write_type(options.get(), layout.disc(), reasons.data(), 0) ==
            BURN_WRITE_NONE ||
        library().burn_precheck_write(options.get(), layout.disc(), reasons.data(), 0) <= 0)
        return {BurnCode::ParametersRefused, drive.name + " can't write it: " + reasons.data()};
    complaints();
    WriteWatch watch(tracks, events);
    library().burn_disc_write(options.get(), layout.disc());
    burn_progress progress{};
    bool cancelled = false;
    for (;;) {
        const burn_drive_status status = library().burn_drive_get_status(grabbed.drive(), &progress);
        if (status == BURN_DRIVE_IDLE)
            break;
        if (status != BURN_DRIVE_SPAWNING)
            watch.look(status, progress);
        if (cancel.stop_requested() && !std::exchange(cancelled, true))
            library().burn_drive_cancel(grabbed.drive());
        std::this_thread::sleep_for(kLook);
    }
    if (library().burn_drive_wrote_well(grabbed.drive()) == 0) {
        Failure failure = failureOf(complaints(), watch.atWork());
        if (failure.detail.find(kVanished) != std::string::npos)
            std::this_thread::sleep_for(kLastWords);
        if (cancelled)
            return {BurnCode::WriteError, "The disc in " + drive.name + " is not complete.", true};
        return {failure.code, drive.name + ": " + failure.detail};
    }
    watch.end();
    return {BurnCode::Finished};
}

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

BurnOutcome compare(const CdDrive& drive, const CdTracks& tracks, const Spool& spool, BurnEvents& events,
                    const std::stop_token& cancel) {
    const Grabbed grabbed(drive.address); // anew: only now the drive looks at what it has written
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
} // namespace

std::vector<CdDrive> drives() {
    const std::lock_guard lock(oneAtATime());
    std::vector<CdDrive> all;
    if (!isThere())
        return all;
    burn_drive_info* infos = nullptr;
    unsigned count = 0;
    int scanned = 0;
    while ((scanned = library().burn_drive_scan(&infos, &count)) == 0)
        std::this_thread::sleep_for(kLook);
    if (scanned < 0 || !infos)
        return all;
    for (const burn_drive_info& info : std::span(infos, count))
        if (info.write_cdr || info.write_cdrw)
            all.push_back({.name = nameOf(info), .address = addressOf(info), .speeds = speedsOf(info.drive)});
    library().burn_drive_info_free(infos);
    complaints();
    for (CdDrive& drive : all) {
        const auto alike = [&drive](const CdDrive& other) { return other.name == drive.name; };
        if (drive.name.empty() || std::ranges::count_if(all, alike) > 1)
            drive.name += (drive.name.empty() ? "" : " ") + std::string("(") + drive.address + ")";
    }
    return all;
}

Disc disc(const CdDrive& drive) {
    const std::lock_guard lock(oneAtATime());
    if (!isThere())
        return {DiscState::NoDrive};
    const Grabbed grabbed(drive.address);
    const Disc found = grabbed.isOurs() ? discIn(grabbed.drive()) : Disc{DiscState::NoDrive};
    complaints();
    return found;
}

std::string blank(const CdDrive& drive, BurnEvents& events) {
    const std::lock_guard lock(oneAtATime());
    if (!isThere())
        return cantBeReached(drive);
    const Grabbed grabbed(drive.address);
    if (!grabbed.isOurs())
        return cantBeReached(drive);
    if (discIn(grabbed.drive()).state != DiscState::Rewritable)
        return "The disc in " + drive.name + " can't be made blank.";
    complaints();
    constexpr int kFast = 1;
    library().burn_disc_erase(grabbed.drive(), kFast);
    burn_progress progress{};
    double shown = 0;
    while (library().burn_drive_get_status(grabbed.drive(), &progress) != BURN_DRIVE_IDLE) {
        if (progress.sectors > 0)
            shown = std::max(shown,
                             std::clamp(static_cast<double>(progress.sector) / progress.sectors, 0.0, 1.0));
        events.Blanking(shown);
        std::this_thread::sleep_for(kLook);
    }
    const std::vector<std::string> problems = complaints();
    if (library().burn_drive_wrote_well(grabbed.drive()) == 0)
        return "Making the disc in " + drive.name + " blank failed" +
               (problems.empty() ? "." : ": " + problems.back());
    events.Blanking(1);
    return {};
}

bool takesSpeed(const CdDrive& drive, int speed) {
    const std::lock_guard lock(oneAtATime());
    if (!isThere())
        return false;
    const Grabbed grabbed(drive.address);
    if (!grabbed.isOurs())
        return false;
    // Drives say nothing when they write at another speed than they were told to: their list must do.
    const std::vector<int> speeds = speedsOf(grabbed.drive());
    complaints();
    return std::ranges::find(speeds, speed) != speeds.end();
}

BurnOutcome burn(const CdDrive& drive, const CdTracks& tracks, int speed, BurnEvents& events,
                 const std::stop_token& cancel) {
    if (auto refused = refusal(drive, disc(drive), tracks.sectors()))
        return *refused;
    const Spool spool;
    if (auto failed = cache(tracks, spool, events, cancel))
        return *failed;
    const std::lock_guard lock(oneAtATime());
    BurnOutcome outcome;
    {
        const Grabbed grabbed(drive.address);
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
