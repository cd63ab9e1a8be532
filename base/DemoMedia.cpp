// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/DemoMedia.h"

#include "base/Files.h"

#include <unistd.h>

namespace velmora {

namespace fs = std::filesystem;

namespace {
/// A link that leads nowhere counts as there: what the user put there is not written through.
bool isThere(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

std::string place(const fs::path& packed, const fs::path& target) {
    if (isThere(target))
        return {};
    const auto bytes = readWholeFile(packed);
    return bytes ? replaceFile(target, *bytes) : "Reading " + packed.string() + " failed.";
}

bool isWorthNothing(const fs::path& piece, const fs::path& packed) {
    std::error_code ignored;
    if (!fs::is_regular_file(fs::symlink_status(piece, ignored)))
        return false;
    const auto bytes = readWholeFile(piece);
    return bytes && (bytes->empty() || bytes == readWholeFile(packed));
}
} // namespace

std::string placeDemoMedia(const ProgramFolders& folders, const fs::path& packed) {
    if (!folders.makeMedia())
        return "Making the folder " + folders.media().string() + " failed.";
    std::string first;
    for (const std::string_view name : kDemoMedia)
        if (auto problem = place(packed / name, folders.media() / name); first.empty())
            first = std::move(problem);
    return first;
}

void removeDemoMedia(const ProgramFolders& folders, const fs::path& packed) {
    std::error_code ignored;
    if (fs::equivalent(folders.media(), packed, ignored))
        return; // a link to the packed pieces themselves
    for (const std::string_view name : kDemoMedia)
        if (isWorthNothing(folders.media() / name, packed / name))
            fs::remove(folders.media() / name, ignored);
    ::rmdir(
        folders.media().c_str()); // does nothing to a folder with something in it, or to what is no folder
}

} // namespace velmora
