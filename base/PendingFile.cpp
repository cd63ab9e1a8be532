// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/PendingFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <system_error>
#include <utility>

namespace velmora {

namespace {
/// The old file's permissions, or those of a new one.
mode_t permissionsFor(const std::filesystem::path& path) {
    struct stat old {};
    if (stat(path.c_str(), &old) == 0)
        return old.st_mode & 07777U;
    const mode_t mask = umask(0);
    umask(mask);
    return 0666U & ~mask;
}
const std::string kHidden = ".velmora-";

/// By which a file without a name can be given one.
std::string linkOf(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

/// What a path leads to, also where nothing is there yet: a link stays one, and what it leads to is made or
/// replaced.
std::filesystem::path targetOf(std::filesystem::path path, std::error_code& error) {
    constexpr int kMostLinks = 40; // as the system follows
    for (int links = 0; links < kMostLinks; ++links) {
        path = std::filesystem::weakly_canonical(path, error);
        std::error_code isNoLink;
        const auto next = std::filesystem::read_symlink(path, isNoLink);
        if (error || isNoLink)
            return path;
        path = path.parent_path() / next;
    }
    error = std::make_error_code(std::errc::too_many_symbolic_link_levels);
    return path;
}
} // namespace

PendingFile::PendingFile(std::filesystem::path path) : path_(std::move(path)) {}

PendingFile::~PendingFile() {
    if (descriptor_ >= 0)
        close(descriptor_);
    if (!beside_.empty())
        unlink(beside_.c_str());
}

std::string PendingFile::open() {
    std::error_code error;
    target_ = targetOf(path_, error);
    if (error)
        return failure(error.value());
    const bool isThere = std::filesystem::exists(target_, error);
    if (isThere && access(target_.c_str(), W_OK) != 0)
        return failure(errno); // a rename would pass over the protection
    if (isThere && !std::filesystem::is_regular_file(target_, error)) {
        descriptor_ = ::open(target_.c_str(), O_WRONLY | O_CLOEXEC);
        isDirect_ = true;
        return descriptor_ >= 0 ? std::string() : failure(errno);
    }
    return openNameless() || openBeside() ? std::string() : failure(errno);
}

bool PendingFile::openNameless() {
    const std::filesystem::path folder = target_.has_parent_path() ? target_.parent_path() : ".";
    descriptor_ = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (descriptor_ < 0)
        return false;
    if (access(linkOf(descriptor_).c_str(), F_OK) == 0)
        return true;
    close(std::exchange(descriptor_, -1)); // it could not be given a name later
    return false;
}

bool PendingFile::openBeside() {
    beside_ = (target_.parent_path() / (kHidden + "XXXXXX")).string();
    descriptor_ = mkostemp(beside_.data(), O_CLOEXEC);
    if (descriptor_ < 0)
        beside_.clear();
    return descriptor_ >= 0;
}

/// A name that no other file has, since no link replaces one.
bool PendingFile::giveName() {
    constexpr int kMostTries = 100;
    std::random_device random;
    for (int tries = 0; tries < kMostTries; ++tries) {
        std::string name = (target_.parent_path() / (kHidden + std::to_string(random()))).string();
        if (linkat(AT_FDCWD, linkOf(descriptor_).c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
            beside_ = std::move(name);
            return true;
        }
        if (errno != EEXIST)
            break;
    }
    return false;
}

std::string PendingFile::write(std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return failure(count == 0 ? ENOSPC : errno);
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return {};
}

void PendingFile::beginFlushing() {
    if (!isDirect_)
        sync_file_range(descriptor_, 0, 0, SYNC_FILE_RANGE_WRITE); // from the beginning to the end
}

std::string PendingFile::overwrite(std::size_t offset, std::span<const std::byte> bytes) {
    if (isDirect_)
        return {};
    const ssize_t count = pwrite(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    return count == static_cast<ssize_t>(bytes.size()) ? std::string() : failure(count < 0 ? errno : ENOSPC);
}

std::string PendingFile::commit() {
    if (!isDirect_ && (fchmod(descriptor_, permissionsFor(target_)) != 0 || fdatasync(descriptor_) != 0 ||
                       (beside_.empty() && !giveName())))
        return failure(errno);
    if (close(std::exchange(descriptor_, -1)) != 0)
        return failure(errno);
    if (!beside_.empty() && std::rename(beside_.c_str(), target_.c_str()) != 0)
        return failure(errno);
    beside_.clear();
    return {};
}

std::string PendingFile::failure(const std::string& reason) const {
    return "Writing \"" + path_.string() + "\" failed: " + reason + ".";
}

std::string PendingFile::failure(int code) const {
    return failure(std::generic_category().message(code));
}

} // namespace velmora
