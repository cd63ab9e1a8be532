// SPDX-License-Identifier: GPL-2.0-or-later
#include "studio/GrowingWav.h"

#include "base/Files.h"
#include "base/PendingFile.h"
#include "base/ReadAt.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <mutex>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmora {

namespace {
constexpr std::size_t kCopied = std::size_t{1} << 20; ///< bytes at once

constexpr std::byte kPad{};

/// Room is put into files in whole blocks of their system; those divide this one, or are larger.
constexpr std::size_t kLeastRoom = 4096;

/// A user's limit on the size of files is a failure of a write, and not the end of the program.
void surviveFileLimits() {
    struct sigaction now {};
    if (sigaction(SIGXFSZ, nullptr, &now) == 0 && now.sa_handler == SIG_DFL)
        std::signal(SIGXFSZ, SIG_IGN);
}

/// Writes as much as fits; returns how much that was.
std::size_t writeAt(int descriptor, std::uint64_t offset, std::span<const std::byte> bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count =
            pwrite(descriptor, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count == 0)
            errno = ENOSPC;
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

/// Where large files of a moment belong: not where they would lie in the machine's memory.
std::filesystem::path folderForLarge() {
    const char* set = std::getenv("TMPDIR");
    for (const std::filesystem::path& folder :
         {std::filesystem::path(set ? set : ""), std::filesystem::path("/var/tmp")}) {
        if (!folder.empty() && access(folder.c_str(), W_OK | X_OK) == 0)
            return folder;
    }
    return "/tmp";
}
} // namespace

GrowingWav::GrowingWav(std::filesystem::path place, WaveFormat format, std::uint64_t longest,
                       bool insertsRoom)
    : place_(std::move(place))
    , format_(format)
    , longest_(longest)
    , insertsRoom_(insertsRoom) {}

GrowingWav::~GrowingWav() {
    if (descriptor_ >= 0)
        close(descriptor_);
}

std::string GrowingWav::failure(int code) const {
    const std::string name = place_.empty() ? "a hidden file in \"" + folderForLarge().string() + "\""
                                            : "\"" + place_.string() + "\"";
    return "Writing " + name + " failed: " + std::generic_category().message(code) + ".";
}

std::string GrowingWav::open() {
    surviveFileLimits();
    return place_.empty() ? openHidden() : openPlace();
}

std::string GrowingWav::openPlace() {
    std::error_code error;
    const auto status = std::filesystem::status(place_, error);
    if (std::filesystem::is_fifo(status) || std::filesystem::is_socket(status))
        return failure(ESPIPE);
    const auto header = wavHeader(format_, 0);
    const std::string_view bytes(reinterpret_cast<const char*>(header.data()), header.size());
    if (std::string problem = replaceFile(place_, bytes); !problem.empty())
        return problem;
    descriptor_ = ::open(place_.c_str(), O_RDWR | O_CLOEXEC);
    return descriptor_ >= 0 ? std::string() : failure(errno);
}

std::string GrowingWav::openHidden() {
    const std::filesystem::path folder = folderForLarge();
    descriptor_ = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor_ < 0) { // not every file system has files without a name
        std::string name = (folder / ".velmora-XXXXXX").string();
        descriptor_ = mkostemp(name.data(), O_CLOEXEC);
        if (descriptor_ >= 0)
            unlink(name.c_str());
    }
    return descriptor_ >= 0 ? tell() : failure(errno);
}

std::string GrowingWav::append(std::span<const std::byte> frames) {
    const std::uint64_t before = dataBytes();
    if (!isLong_ && before + frames.size() > longest_)
        growLong();
    const std::size_t written = writeAt(descriptor_, begin_ + before, frames);
    const int code = errno;
    const std::size_t whole = written - written % static_cast<std::size_t>(format_.alignment());
    bytes_ += static_cast<std::int64_t>(whole);
    return written == frames.size() ? pad() : settle(failure(code));
}

std::string GrowingWav::pad() {
    if (padOf(dataBytes()) == 0 || writeAt(descriptor_, begin_ + dataBytes(), {&kPad, 1}) == 1)
        return {};
    const int code = errno;
    bytes_ -= format_.alignment(); // of a single byte where the number is odd
    return settle(failure(code));
}

/// Leaves a whole file after @p problem, which is returned.
std::string GrowingWav::settle(const std::string& problem) {
    if (padOf(dataBytes()) != 0) { // there is no room to pad
        bytes_ -= format_.alignment();
    }
    // On a device there is nothing to cut off.
    if (ftruncate(descriptor_, static_cast<off_t>(begin_ + dataBytes())) != 0 && errno != EINVAL)
        return problem;
    const std::string headerToo = tell();
    return headerToo.empty() ? problem : problem + " " + headerToo;
}

std::string GrowingWav::tell() {
    if (isLong_ && begin_ != kWavHeader) {
        // The lengths stand in the first block, so that much is enough.
        const auto header = rf64Header(format_, dataBytes(), begin_);
        const auto first = std::span(header).first(kSmallestRf64 - 8);
        return writeAt(descriptor_, 0, first) == first.size() ? std::string() : failure(errno);
    }
    const auto header = wavHeader(format_, isLong_ ? kToTheEnd : dataBytes());
    return writeAt(descriptor_, 0, header) == header.size() ? std::string() : failure(errno);
}

std::string GrowingWav::finish() {
    if (isLong_ && begin_ == kWavHeader && !place_.empty())
        replaceByCopy();
    return tell();
}

void GrowingWav::growLong() {
    isLong_ = true;
    if (!place_.empty() && insertsRoom_)
        static_cast<void>(insertRoom()); // if not, lengths of all ones will do until the end
}

/// Room for the longer header, behind the first block: so every step leaves a file that opens.
bool GrowingWav::insertRoom() {
    struct stat about {};
    if (fstat(descriptor_, &about) != 0 || !S_ISREG(about.st_mode))
        return false;
    const std::size_t room = std::max(kLeastRoom, static_cast<std::size_t>(about.st_blksize));
    const std::unique_lock lock(moving_);
    if (dataBytes() + kWavHeader <= room ||
        fallocate(descriptor_, FALLOC_FL_INSERT_RANGE, static_cast<off_t>(room), static_cast<off_t>(room)) !=
            0)
        return false;
    if (!fillRoom(room)) {
        fallocate(descriptor_, FALLOC_FL_COLLAPSE_RANGE, static_cast<off_t>(room), static_cast<off_t>(room));
        return false;
    }
    begin_ = room + kWavHeader;
    return true;
}

bool GrowingWav::fillRoom(std::size_t room) {
    std::vector<std::byte> blocks = rf64Header(format_, dataBytes(), room + kWavHeader);
    blocks.resize(2 * room);
    // What stood behind the old header in the first block now ends the second.
    const auto moved = std::span(blocks).subspan(room + kWavHeader);
    const auto first = std::span(blocks).first(room);
    const auto second = std::span(blocks).subspan(room);
    return readAt(descriptor_, kWavHeader, moved) == moved.size() &&
           writeAt(descriptor_, room, second) == second.size() &&
           writeAt(descriptor_, 0, first) == first.size();
}

/// If it fails the file stays as it is, to be read up to its end.
void GrowingWav::replaceByCopy() {
    PendingFile copy(place_);
    const std::size_t begin = kLeastRoom + kWavHeader; // blocks stay blocks, which some systems share
    if (!copy.open().empty() || !copy.write(rf64Header(format_, dataBytes(), begin)).empty())
        return;
    auto from = static_cast<off64_t>(begin_);
    auto to = static_cast<off64_t>(begin);
    const auto end = static_cast<off64_t>(begin_ + dataBytes() + padOf(dataBytes()));
    while (from < end) {
        const auto block = static_cast<off64_t>(kLeastRoom);
        const off64_t most = from % block != 0 ? block - from % block : end - from;
        const ssize_t count = copy_file_range(descriptor_, &from, copy.descriptor(), &to,
                                              static_cast<std::size_t>(std::min(most, end - from)), 0);
        if (count <= 0 && errno != EINTR)
            return;
    }
    if (!copy.commit().empty())
        return;
    const int now = ::open(place_.c_str(), O_RDWR | O_CLOEXEC);
    if (now < 0)
        return;
    const std::unique_lock lock(moving_);
    close(std::exchange(descriptor_, now));
    begin_ = begin;
}

std::size_t GrowingWav::read(std::int64_t frame, std::span<std::byte> to) const {
    const std::shared_lock lock(moving_);
    const auto offset = static_cast<std::uint64_t>(frame) * static_cast<std::uint64_t>(format_.alignment());
    const std::uint64_t there = dataBytes();
    if (offset >= there)
        return 0;
    return readAt(descriptor_, begin_ + offset, to.first(std::min<std::uint64_t>(to.size(), there - offset)));
}

bool GrowingWav::is(const std::filesystem::path& file) const {
    struct stat mine {};
    struct stat other {};
    return descriptor_ >= 0 && !place_.empty() && fstat(descriptor_, &mine) == 0 &&
           stat(file.c_str(), &other) == 0 && mine.st_dev == other.st_dev && mine.st_ino == other.st_ino;
}

std::string GrowingWav::saveTo(const std::filesystem::path& file) const {
    if (is(file))
        return {};
    PendingFile copy(file);
    if (std::string problem = copy.open(); !problem.empty())
        return problem;
    const std::uint64_t bytes = dataBytes();
    std::string problem =
        bytes > longest_ ? copy.write(rf64Header(format_, bytes)) : copy.write(wavHeader(format_, bytes));
    std::vector<std::byte> piece(std::min<std::uint64_t>(kCopied, bytes));
    const auto pieceFrames = static_cast<std::int64_t>(kCopied) / format_.alignment();
    for (std::int64_t frame = 0; problem.empty() && frame < frames(); frame += pieceFrames) {
        const std::int64_t count = std::min(pieceFrames, frames() - frame);
        const auto wanted = std::span(piece).first(static_cast<std::size_t>(count * format_.alignment()));
        problem = read(frame, wanted) == wanted.size()
                      ? copy.write(wanted)
                      : copy.failure("what was recorded can't be read again");
    }
    if (problem.empty() && padOf(bytes) != 0)
        problem = copy.write({&kPad, 1});
    return problem.empty() ? copy.commit() : problem;
}

} // namespace velmora
