// SPDX-License-Identifier: GPL-2.0-or-later
#include "cli/FileSet.h"

#include "cli/Commands.h"

#include <sys/resource.h>

#include <algorithm>
#include <span>
#include <string>

namespace velmora::cli {

namespace {

void check(const std::string& problem) {
    if (!problem.empty())
        throw Failure(problem);
}

/// Each file stays open until the last is written, and a process may open a thousand or so unless it asks.
void allowOpenFiles(std::size_t count) {
    constexpr std::size_t kOthers = 64;
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= count + kOthers)
        return;
    limit.rlim_cur = std::min<rlim_t>(count + kOthers, limit.rlim_max);
    setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace

FileSet::FileSet(std::size_t count) {
    allowOpenFiles(count);
}

void FileSet::add(const std::filesystem::path& path, std::string_view bytes) {
    PendingFile& file = files_.emplace_back(path);
    check(file.open());
    check(file.write(std::as_bytes(std::span(bytes))));
    file.beginFlushing();
}

void FileSet::commit() {
    for (PendingFile& file : files_)
        check(file.commit());
}

} // namespace velmora::cli
