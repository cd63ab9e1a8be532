// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/RecentFiles.h"

#include "base/Settings.h"

namespace velmora {

namespace fs = std::filesystem;

std::vector<fs::path> RecentFiles::files() const {
    std::vector<fs::path> files;
    for (const settings::Text& row : settings::kRecentFiles)
        if (const std::string file = settings::read(settings_, row); !file.empty())
            files.emplace_back(file);
    return files;
}

void RecentFiles::add(const fs::path& file) {
    if (file.empty())
        return;
    std::vector<fs::path> now = files();
    std::erase(now, file);
    now.insert(now.begin(), file);
    keep(now);
}

void RecentFiles::remove(const fs::path& file) {
    std::vector<fs::path> now = files();
    if (std::erase(now, file) > 0)
        keep(now);
}

void RecentFiles::keep(const std::vector<fs::path>& files) {
    SettingsBatch together(settings_);
    for (std::size_t i = 0; i < settings::kRecentFiles.size(); ++i)
        settings::save(together, settings::kRecentFiles[i],
                       i < files.size() ? files[i].string() : std::string());
}

} // namespace velmora
