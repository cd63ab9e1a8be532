// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

namespace velmora {

/// The least that replacing a file safely costs: one write beside it, one flush to the disk, one rename.
inline void writeFlushed(const std::filesystem::path& path, std::string_view bytes) {
    const std::string beside = path.string() + "~";
    const int file = open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    const bool written =
        write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) && fdatasync(file) == 0;
    close(file);
    if (!written || std::rename(beside.c_str(), path.c_str()) != 0)
        std::abort(); // nothing measured would mean anything
}

} // namespace velmora
