// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/Files.h"

#include "base/PendingFile.h"

#include <fstream>
#include <span>

namespace velmora {

std::optional<std::string> readWholeFile(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return std::nullopt; // a directory, a pipe or a device could block or never end
    const auto size = std::filesystem::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    if (error || size > kLargestFile || !file)
        return std::nullopt;
    std::string bytes(static_cast<std::size_t>(size), '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (file.bad())
        return std::nullopt;
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

std::string replaceFile(const std::filesystem::path& path, std::string_view bytes) {
    PendingFile file(path);
    if (auto problem = file.open(); !problem.empty())
        return problem;
    if (auto problem = file.write(std::as_bytes(std::span(bytes))); !problem.empty())
        return problem;
    return file.commit();
}

} // namespace velmora
