// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QListWidget>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string_view>
#include <vector>

namespace velmora {

class ProgramFolders;
struct Appearance;

/// A folder that stands at the side of the file dialogs.
struct FilePlace {
    QString name;
    std::filesystem::path folder;
    std::string_view icon; ///< of the icon set
};

enum class PlacesFor : std::uint8_t { Opening, Saving };

/// The folders of the user's work, those of the user's home that exist, and what is plugged in. Nothing can
/// be saved among the demos, which are for opening alone.
[[nodiscard]] std::vector<FilePlace> filePlaces(const ProgramFolders& folders, PlacesFor purpose);

/// The places as a list. The one that the user is in is marked.
class FilePlaces : public QListWidget {
public:
    FilePlaces(const Appearance& look, const std::vector<FilePlace>& places, QWidget* parent);

    std::function<void(const QString& folder)> onChosen;

    /// Marks the place of this folder, or none.
    void follow(const QString& folder);
};

} // namespace velmora
