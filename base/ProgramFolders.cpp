// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/ProgramFolders.h"

#include <QDir>

#include <array>
#include <cstdlib>

namespace velmora {

namespace fs = std::filesystem;

namespace {
/// Where the packages fluid-soundfont-gm and timgm6mb-soundfont put their files, then the names that Debian's
/// and other distributions' alternatives go by.
constexpr std::array kSoundFonts{
    "/usr/share/sounds/sf2/FluidR3_GM.sf2", "/usr/share/sounds/sf2/TimGM6mb.sf2",
    "/usr/share/sounds/sf2/default-GM.sf2", "/usr/share/sounds/sf3/default-GM.sf3",
    "/usr/share/soundfonts/default.sf2",    "/usr/share/soundfonts/default.sf3",
};

/// A path in the environment; a variable that is set and blank counts as not set.
std::optional<fs::path> pathVariable(const char* name) {
    const char* value = std::getenv(name);
    if (!value || !*value)
        return std::nullopt;
    return value;
}

/// A folder of the XDG base directories, in which a relative path is invalid and counts as not set.
fs::path userFolder(const char* variable, const char* belowHome) {
    const auto set = pathVariable(variable);
    if (set && set->is_absolute())
        return *set;
    return fs::path(QDir::homePath().toStdString()) / belowHome;
}

fs::path absolutePath(const fs::path& path) {
    std::error_code ignored;
    return fs::absolute(path, ignored);
}

bool makeFolder(const fs::path& path) {
    std::error_code ignored;
    fs::create_directories(path, ignored);
    return fs::is_directory(path, ignored);
}

bool isBelow(const fs::path& path, const fs::path& folder) {
    const fs::path relative = path.lexically_relative(folder);
    return !relative.empty() && *relative.begin() != "..";
}
} // namespace

ProgramFolders ProgramFolders::ofUser() {
    if (const auto home = pathVariable("VELMORA_HOME"))
        return ProgramFolders(absolutePath(*home));
    return ProgramFolders(userFolder("XDG_DATA_HOME", ".local/share") / "velmora");
}

bool ProgramFolders::makeHome() const {
    return makeFolder(home());
}

bool ProgramFolders::makeSongs() const {
    return makeFolder(songs());
}

bool ProgramFolders::makeMedia() const {
    return makeFolder(media());
}

fs::path settingsPath() {
    return userFolder("XDG_CONFIG_HOME", ".config") / "velmora" / "settings";
}

std::vector<fs::path> shippedDataFolders(const fs::path& executable) {
    std::vector<fs::path> folders;
    if (const auto data = pathVariable("VELMORA_DATA"))
        folders.push_back(absolutePath(*data));
    folders.push_back(executable.parent_path().parent_path() / "share/velmora");
    // An installed program never reads the sources, nor one of the build tree what an older one has
    // installed.
    std::error_code ignored;
    const bool built = isBelow(executable, fs::weakly_canonical(VELMORA_BUILD_DIR, ignored));
    if (!built) {
        folders.emplace_back(VELMORA_INSTALL_DATA_DIR);
        return folders;
    }
    const fs::path sources = VELMORA_SOURCE_DIR;
    folders.push_back(sources / "packaging");
    folders.push_back(sources / "docs");
    return folders;
}

std::optional<fs::path> shippedFolder(std::string_view name) {
    std::error_code ignored;
    for (const fs::path& folder : shippedDataFolders(fs::read_symlink("/proc/self/exe", ignored)))
        if (fs::is_directory(folder / name, ignored))
            return folder / name;
    return std::nullopt;
}

std::vector<fs::path> soundFontCandidates() {
    std::vector<fs::path> candidates(kSoundFonts.begin(), kSoundFonts.end());
    if (const auto chosen = pathVariable("VELMORA_SOUNDFONT"))
        candidates.insert(candidates.begin(), absolutePath(*chosen));
    return candidates;
}

std::optional<fs::path> findSoundFont() {
    std::error_code ignored;
    for (const fs::path& candidate : soundFontCandidates())
        if (fs::is_regular_file(candidate, ignored))
            return candidate;
    return std::nullopt;
}

} // namespace velmora
