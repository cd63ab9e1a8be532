// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/PendingFile.h"

#include <filesystem>
#include <list>
#include <string_view>

namespace velmora::cli {

/// Files that come into their places together, once all of them are written: until then nothing has changed.
class FileSet {
public:
    /// @param count of the files to come
    explicit FileSet(std::size_t count);
    /// Both throw Failure, in words that name the file.
    void add(const std::filesystem::path& path, std::string_view bytes);
    void commit();

private:
    std::list<PendingFile> files_;
};

} // namespace velmora::cli
