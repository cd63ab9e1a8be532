// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/FilePlaces.h"

#include "base/ProgramFolders.h"
#include "base/QtText.h"
#include "shell/SkinIcon.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>

namespace velmora {

namespace fs = std::filesystem;

namespace {
/// Where desktops mount what is plugged in. Reading the names there waits for no disk and no network.
std::vector<FilePlace> pluggedIn() {
    std::vector<FilePlace> places;
    const QString user = qEnvironmentVariable("USER");
    if (user.isEmpty())
        return places;
    for (const char* root : {"/run/media/", "/media/"}) {
        std::error_code error;
        for (fs::directory_iterator at(root + user.toStdString(), error), end; !error && at != end;
             at.increment(error))
            places.push_back({QFile::decodeName(at->path().filename().c_str()), at->path(), "drive"});
    }
    return places;
}

QString textOf(const fs::path& folder) {
    return QFile::decodeName(folder.c_str());
}
} // namespace

std::vector<FilePlace> filePlaces(const ProgramFolders& folders, PlacesFor purpose) {
    std::vector<FilePlace> places{{"Songs", folders.songs(), "score"}};
    if (const auto demos = demosFolder(); demos && purpose == PlacesFor::Opening)
        places.push_back({"Demos", *demos, "tutorial"});
    const fs::path home = QDir::homePath().toStdString();
    places.push_back({"Home", home, "home"});
    struct Row {
        const char* name;
        QStandardPaths::StandardLocation location;
        std::string_view icon;
    };
    static constexpr std::array kOfUser{
        Row{"Music", QStandardPaths::MusicLocation, "music"},
        Row{"Documents", QStandardPaths::DocumentsLocation, "folder"},
        Row{"Downloads", QStandardPaths::DownloadLocation, "folder"},
    };
    for (const Row& row : kOfUser) {
        const fs::path folder = QStandardPaths::writableLocation(row.location).toStdString();
        std::error_code ignored;
        if (folder.lexically_normal() != home.lexically_normal() && fs::is_directory(folder, ignored))
            places.push_back({row.name, folder, row.icon});
    }
    std::ranges::move(pluggedIn(), std::back_inserter(places));
    return places;
}

FilePlaces::FilePlaces(const Appearance& look, const std::vector<FilePlace>& places, QWidget* parent)
    : QListWidget(parent) {
    setObjectName("places");
    setIconSize({16, 16});
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (const FilePlace& place : places) {
        auto* item = new QListWidgetItem(skinIcon(look, place.icon, IconGround::Field), place.name, this);
        item->setData(Qt::UserRole, textOf(place.folder));
        item->setData(Qt::AccessibleDescriptionRole, textOf(place.folder));
    }
    const auto choose = [this](const QListWidgetItem* item) {
        if (onChosen && item)
            onChosen(item->data(Qt::UserRole).toString());
    };
    connect(this, &QListWidget::itemClicked, this, choose);
    connect(this, &QListWidget::itemActivated, this, choose);
}

void FilePlaces::follow(const QString& folder) {
    const QString wanted = QDir::cleanPath(folder);
    QListWidgetItem* here = nullptr;
    for (int i = 0; i < count() && !here; ++i)
        if (QDir::cleanPath(item(i)->data(Qt::UserRole).toString()) == wanted)
            here = item(i);
    clearSelection();
    setCurrentItem(here);
}

} // namespace velmora
