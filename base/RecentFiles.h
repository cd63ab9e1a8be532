// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <vector>

namespace velmora {

class SettingsStore;

/// The scores that were opened or saved last, as the settings keep them: the newest first, each once.
class RecentFiles {
public:
    explicit RecentFiles(SettingsStore& settings) : settings_(settings) {}

    /// At most `settings::kRecentFiles.size()`.
    [[nodiscard]] std::vector<std::filesystem::path> files() const;
    /// Puts the file at the head of the list; the last one may go for it. A blank name is none.
    void add(const std::filesystem::path& file);
    void remove(const std::filesystem::path& file);

private:
    void keep(const std::vector<std::filesystem::path>& files);

    SettingsStore& settings_;
};

} // namespace velmora
