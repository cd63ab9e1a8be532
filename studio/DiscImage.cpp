// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/DiscImage.h"

#include "base/PendingFile.h"
#include "studio/TrackSectors.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <system_error>

namespace velmora {

namespace {
using End = SectorOutcome::End;

constexpr std::size_t kPage = 4096;                     ///< what a disk may want its blocks aligned to
constexpr std::size_t kBlock = std::size_t{512} * 1024; ///< bytes, whole pages and whole frames

/// A block that begins on a page.
class Block {
public:
    Block() : bytes_(static_cast<std::byte*>(std::aligned_alloc(kPage, kBlock))) {
        if (!bytes_)
            throw std::bad_alloc();
    }
    [[nodiscard]] std::span<std::byte> all() const { return {bytes_.get(), kBlock}; }

private:
    struct Free {
        void operator()(std::byte* bytes) const { std::free(bytes); }
    };
    std::unique_ptr<std::byte, Free> bytes_;
};

std::string reasonOf(int code) {
    return std::generic_category().message(code);
}

/// Appends to a descriptor, past the cache where that works.
class DirectWriter {
public:
    explicit DirectWriter(int descriptor) : fd_(descriptor) {
        struct stat file {};
        isFile_ = fstat(fd_, &file) == 0 && S_ISREG(file.st_mode);
        direct_ = isFile_ && setDirect(true);
    }
    ~DirectWriter() {
        if (direct_)
            setDirect(false);
    }
    DirectWriter(const DirectWriter&) = delete;
    DirectWriter& operator=(const DirectWriter&) = delete;

    /// Takes the room, so that a disk that is too full says so now. 0, or a code as in errno.
    int reserve(std::int64_t bytes) const {
        if (!isFile_ || fallocate(fd_, 0, 0, bytes) == 0)
            return 0;
        return errno == ENOSPC || errno == EFBIG || errno == EDQUOT ? errno : 0;
    }
    /// 0, or a code as in errno.
    int write(std::span<const std::byte> bytes) {
        while (!bytes.empty()) {
            if (direct_ && bytes.size() % kPage != 0 && bytes.size() > kPage) {
                const auto pages = bytes.size() / kPage * kPage;
                if (const int code = write(bytes.first(pages)); code != 0)
                    return code;
                bytes = bytes.subspan(pages);
            }
            if (direct_ && bytes.size() % kPage != 0)
                direct_ = !setDirect(false);
            const ssize_t count = ::write(fd_, bytes.data(), bytes.size());
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0 && errno == EINVAL && direct_) {
                direct_ = !setDirect(false);
                continue;
            }
            if (count <= 0)
                return count == 0 ? ENOSPC : errno;
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
        return 0;
    }

private:
    bool setDirect(bool on) const {
        const int flags = fcntl(fd_, F_GETFL);
        return flags >= 0 && fcntl(fd_, F_SETFL, on ? flags | O_DIRECT : flags & ~O_DIRECT) == 0;
    }

    int fd_;
    bool isFile_ = false;
    bool direct_ = false;
};

/// Counts sectors into shares.
class Shares {
public:
    Shares(const CdTracks& tracks, const SectorProgress& progress)
        : tracks_(tracks)
        , progress_(progress)
        , all_(static_cast<double>(std::max<std::int64_t>(tracks.sectors(), 1)) * kSectorBytes) {}

    void begin(std::size_t track) {
        track_ = track;
        ofTrack_ = 0;
        tell();
    }
    void add(std::size_t bytes) {
        ofTrack_ += static_cast<double>(bytes);
        done_ += static_cast<double>(bytes);
        tell();
    }

private:
    void tell() const {
        if (progress_)
            progress_(track_, ofTrack_ / (static_cast<double>(tracks_.list()[track_].sectors) * kSectorBytes),
                      done_ / all_);
    }

    const CdTracks& tracks_;
    const SectorProgress& progress_;
    double all_;
    std::size_t track_ = 0;
    double ofTrack_ = 0;
    double done_ = 0;
};

/// Where in the sound a byte stands.
std::string placeOf(const CdTrack& track, std::int64_t byte) {
    return "\"" + track.title + "\" at " + discTime(byte / kSectorBytes);
}

/// A text between double quotes, on one line; players and other programs have little room for it.
std::string quoted(std::string text) {
    constexpr std::size_t kLongest = 240;
    for (char& c : text) {
        if (c == '"')
            c = '\'';
        else if (static_cast<unsigned char>(c) < ' ')
            c = ' ';
    }
    if (text.size() > kLongest) {
        std::size_t end = kLongest;
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
            --end; // within a character
        text.resize(end);
    }
    return '"' + text + '"';
}

/// A file's old contents, under another name, until the new ones are known to be good.
class Kept {
public:
    explicit Kept(const std::filesystem::path& file) {
        std::error_code error;
        const auto target = std::filesystem::weakly_canonical(file, error);
        wasThere_ = !error && std::filesystem::is_regular_file(target, error);
        if (!wasThere_)
            return;
        const auto beside = target.parent_path() / (".velmora-kept-" + std::to_string(getpid()));
        std::filesystem::create_hard_link(target, beside, error);
        if (error)
            return;
        target_ = target;
        kept_ = beside;
    }
    ~Kept() {
        std::error_code error;
        if (!kept_.empty())
            std::filesystem::remove(kept_, error);
    }
    Kept(const Kept&) = delete;
    Kept& operator=(const Kept&) = delete;

    /// @param file as it was, also if it wasn't there
    void putBack(const std::filesystem::path& file) {
        std::error_code error;
        if (!kept_.empty())
            std::filesystem::rename(kept_, target_, error);
        else if (!wasThere_)
            std::filesystem::remove(file, error);
        kept_.clear();
    }

private:
    bool wasThere_ = false;
    std::filesystem::path target_;
    std::filesystem::path kept_;
};
} // namespace

SectorOutcome writeSectors(const CdTracks& tracks, int descriptor, const SectorProgress& progress,
                           const std::stop_token& cancel) {
    const Block block;
    DirectWriter writer(descriptor);
    if (const int code = writer.reserve(tracks.sectors() * kSectorBytes); code != 0)
        return {End::Unwritable, reasonOf(code)};
    Shares shares(tracks, progress);
    std::size_t filled = 0;
    for (std::size_t i = 0; i < tracks.list().size(); ++i) {
        TrackSectors track(tracks.list()[i]);
        if (std::string error = track.open(); !error.empty())
            return {End::Unreadable, std::move(error)};
        shares.begin(i);
        while (const std::size_t got = track.read(block.all().subspan(filled))) {
            if (cancel.stop_requested())
                return {End::Cancelled, {}};
            filled += got;
            shares.add(got);
            if (filled < kBlock)
                continue;
            if (const int code = writer.write(block.all()); code != 0)
                return {End::Unwritable, reasonOf(code)};
            filled = 0;
        }
        if (!track.problem().empty())
            return {End::Unreadable, track.problem()};
    }
    if (const int code = writer.write(block.all().first(filled)); code != 0)
        return {End::Unwritable, reasonOf(code)};
    return {};
}

SectorOutcome compareSectors(const CdTracks& tracks, int descriptor, const std::filesystem::path& where,
                             const SectorProgress& progress, const std::stop_token& cancel) {
    const Block expected;
    const Block stored;
    Shares shares(tracks, progress);
    std::int64_t at = 0;
    for (std::size_t i = 0; i < tracks.list().size(); ++i) {
        const CdTrack& row = tracks.list()[i];
        TrackSectors track(row);
        if (std::string error = track.open(); !error.empty())
            return {End::Unreadable, std::move(error)};
        shares.begin(i);
        const std::int64_t begin = at;
        while (const std::size_t got = track.read(expected.all())) {
            if (cancel.stop_requested())
                return {End::Cancelled, {}};
            if (pread(descriptor, stored.all().data(), got, at) != static_cast<ssize_t>(got) ||
                std::memcmp(expected.all().data(), stored.all().data(), got) != 0)
                return {End::Different, "Reading \"" + where.string() + "\" back, " +
                                            placeOf(row, at - begin) + " and later is not what was written."};
            at += static_cast<std::int64_t>(got);
            shares.add(got);
        }
        if (!track.problem().empty())
            return {End::Unreadable, track.problem()};
    }
    return {};
}

std::filesystem::path binOf(const std::filesystem::path& cue) {
    auto bin = cue;
    return bin.replace_extension(".bin");
}

std::string cueSheet(const CdTracks& tracks, const std::filesystem::path& cue) {
    std::string text = "FILE \"" + binOf(cue).filename().string() + "\" BINARY\n";
    std::int64_t begin = 0;
    int number = 0;
    for (const CdTrack& track : tracks.list()) {
        ++number;
        text += std::string("  TRACK ") + (number < 10 ? "0" : "") + std::to_string(number) + " AUDIO\n";
        text += "    TITLE " + quoted(track.title) + "\n";
        if (!track.sound.artist.empty())
            text += "    PERFORMER " + quoted(track.sound.artist) + "\n";
        text += "    INDEX 01 " + discTime(begin) + "\n";
        begin += track.sectors;
    }
    return text;
}

SectorOutcome writeImage(const CdTracks& tracks, const std::filesystem::path& cue,
                         const SectorProgress& progress, const std::stop_token& cancel,
                         const SectorProgress& comparing) {
    const auto binPath = binOf(cue);
    PendingFile sheet(cue);
    PendingFile bin(binPath);
    const std::string name = binPath.filename().string();
    if (name.find_first_of("\"\n\r") != std::string::npos)
        return {End::Unwritable, sheet.failure("a CUE file can't name \"" + name + "\"")};
    for (PendingFile* file : {&sheet, &bin})
        if (std::string error = file->open(); !error.empty())
            return {End::Unwritable, std::move(error)};
    const std::string text = cueSheet(tracks, cue);
    if (std::string error = sheet.write(std::as_bytes(std::span(text))); !error.empty())
        return {End::Unwritable, std::move(error)};
    SectorOutcome outcome = writeSectors(tracks, bin.descriptor(), progress, cancel);
    if (outcome.end == End::Unwritable)
        outcome.error = bin.failure(outcome.error);
    if (outcome.end == End::Done && comparing)
        outcome = compareSectors(tracks, bin.descriptor(), binPath, comparing, cancel);
    if (outcome.end != End::Done)
        return outcome;
    Kept old(binPath);
    if (std::string error = bin.commit(); !error.empty())
        return {End::Unwritable, std::move(error)};
    if (std::string error = sheet.commit(); !error.empty()) {
        old.putBack(binPath);
        return {End::Unwritable, std::move(error)};
    }
    return {};
}

} // namespace velmora
