// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/DemoMedia.h"

#include "base/Files.h"

#include <unistd.h>

#include <algorithm>
#include <array>

namespace velmora {

namespace fs = std::filesystem;

namespace {
struct Title {
    std::string_view file;
    std::string_view title;
};
constexpr auto kTitles = std::to_array<Title>({
    {"welcome.sng", "Canon in D (Pachelbel)"},
    {"invention.sng", "Invention No. 1 in C major (Bach)"},
    {"folksong.sng", "The Londonderry Air"},
    {"march.sng", "The British Grenadiers"},
    {"effects.sng", "In the Hall of the Mountain King (Grieg)"},
    {"333.sng", "The Entertainer (Joplin)"},
    {"301.sng", "Oh! Susanna (Foster)"},
    {"104a.sng", "Ode to Joy, the melody (Beethoven)"},
    {"104b.sng", "Ode to Joy, with a piano (Beethoven)"},
});

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

std::vector<Demo> demosIn(const fs::path& folder) {
    std::vector<Demo> demos;
    std::error_code error;
    for (const Title& row : kTitles)
        if (const fs::path file = folder / row.file; fs::is_regular_file(file, error))
            demos.push_back({file, std::string(row.title)});
    const auto known = static_cast<std::ptrdiff_t>(demos.size());
    const auto isKnown = [&demos](const fs::path& file) {
        return std::ranges::find(demos, file, &Demo::file) != demos.end();
    };
    for (fs::directory_iterator at(folder, error); !error && at != fs::directory_iterator();
         at.increment(error))
        if (at->path().extension() == ".sng" && !isKnown(at->path()))
            demos.push_back({at->path(), at->path().stem().string()});
    std::sort(demos.begin() + known, demos.end(),
              [](const Demo& one, const Demo& other) { return one.title < other.title; });
    return demos;
}

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
