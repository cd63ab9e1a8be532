// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <span>
#include <vector>

namespace velmora {

/// Where a lock may stand. A folder that another user owns or may write into is passed over.
struct LockFolder {
    std::filesystem::path path;
    bool made = true; ///< made where missing, for the user alone
    bool followed =
        true; ///< may be reached through a symbolic link; not so where anyone could have planted it
};

/// Best first: `$XDG_RUNTIME_DIR`, a folder below /tmp with the user's number in its name, the configuration
/// folder.
[[nodiscard]] std::vector<LockFolder> lockFolders();

/// One running program a user. Holds a lock on a file of the first folder where one can be had, as long as it
/// lives. The system frees the lock when the process ends, however it ends, and child programs don't inherit
/// it. The file stays behind and means nothing. Thread-safe: no. Realtime-safe: no.
class SingleInstance {
public:
    SingleInstance() : SingleInstance(lockFolders()) {}
    explicit SingleInstance(std::span<const LockFolder> folders);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Another process has the lock. False also where no folder takes one: better to start twice than never.
    [[nodiscard]] bool alreadyRunning() const { return alreadyRunning_; }
    /// The file that is locked, here or by the other process; blank if no folder takes one.
    [[nodiscard]] const std::filesystem::path& lockFile() const { return lockFile_; }

private:
    int descriptor_ = -1;
    bool alreadyRunning_ = false;
    std::filesystem::path lockFile_;
};

} // namespace velmora
