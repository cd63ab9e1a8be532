// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/SingleInstance.h"

#include "base/ProgramFolders.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

namespace fs = std::filesystem;

namespace {
constexpr const char* kLockName = "velmora.lock";
constexpr mode_t kUserOnlyFolder = 0700;
constexpr mode_t kUserOnlyFile = 0600;

bool isOfUserAlone(int descriptor, mode_t type) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && (status.st_mode & S_IFMT) == type &&
           status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// -1 where it can't be had or isn't the user's alone.
int openFolder(const LockFolder& folder) {
    if (folder.made) {
        std::error_code ignored;
        fs::create_directories(folder.path.parent_path(), ignored);
        ::mkdir(folder.path.c_str(), kUserOnlyFolder); // it may be there already; what it is comes out below
    }
    const int link = folder.followed ? 0 : O_NOFOLLOW;
    const int descriptor = ::open(folder.path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | link);
    if (descriptor < 0 || isOfUserAlone(descriptor, S_IFDIR))
        return descriptor;
    ::close(descriptor);
    return -1;
}

/// The lock file, opened and not yet locked. Named through the folder's descriptor, so that what was checked
/// is what is used.
int openLockFile(const LockFolder& folder) {
    const int place = openFolder(folder);
    if (place < 0)
        return -1;
    const int descriptor =
        ::openat(place, kLockName, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kUserOnlyFile);
    ::close(place);
    if (descriptor < 0 || isOfUserAlone(descriptor, S_IFREG))
        return descriptor;
    ::close(descriptor);
    return -1;
}

/// 0, or why not as in errno.
int lock(int descriptor) {
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0)
        if (errno != EINTR)
            return errno;
    return 0;
}
} // namespace

std::vector<LockFolder> lockFolders() {
    std::vector<LockFolder> folders;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime && fs::path(runtime).is_absolute())
        folders.push_back({.path = runtime, .made = false});
    folders.push_back({.path = "/tmp/velmora-" + std::to_string(::geteuid()), .followed = false});
    folders.push_back({.path = settingsPath().parent_path()});
    return folders;
}

SingleInstance::SingleInstance(std::span<const LockFolder> folders) {
    for (const LockFolder& folder : folders) {
        const int descriptor = openLockFile(folder);
        if (descriptor < 0)
            continue;
        const int problem = lock(descriptor);
        if (problem == 0)
            descriptor_ = descriptor;
        else
            ::close(descriptor);
        alreadyRunning_ = problem == EWOULDBLOCK;
        if (problem == 0 || alreadyRunning_) {
            lockFile_ = folder.path / kLockName;
            return;
        }
    }
}

SingleInstance::~SingleInstance() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

} // namespace velmora
