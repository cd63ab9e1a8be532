// SPDX-License-Identifier: GPL-2.0-or-later
#include "shell/FileIcons.h"

#include "shell/SkinIcon.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace velmora {

namespace {
struct Kind {
    const char* suffix;
    std::string_view icon;
    const char* words;
};
constexpr std::array kKinds{
    Kind{"sng", "score", "Score"},         Kind{"mid", "midi", "MIDI file"},
    Kind{"midi", "midi", "MIDI file"},     Kind{"wav", "sound", "Sound"},
    Kind{"mp3", "sound", "Sound"},         Kind{"lyr", "log", "Lyrics"},
    Kind{"key", "keyboard", "Key scheme"},
};
constexpr Kind kFolder{"", "folder", "Folder"};
constexpr Kind kOther{"", "blank", "File"};

const Kind& kindOf(const QFileInfo& file) {
    if (file.isDir())
        return kFolder;
    const QString suffix = file.suffix();
    const auto* const found = std::ranges::find_if(kKinds, [&suffix](const Kind& kind) {
        return suffix.compare(QLatin1String(kind.suffix), Qt::CaseInsensitive) == 0;
    });
    return found == kKinds.end() ? kOther : *found;
}
} // namespace

QIcon FileIcons::icon(IconType type) const {
    switch (type) {
    case Computer:
    case Drive:
    case Network:
        return skinIcon(look_, "drive", IconGround::Field);
    case File:
        return skinIcon(look_, kOther.icon, IconGround::Field);
    default:
        return skinIcon(look_, kFolder.icon, IconGround::Field);
    }
}

QIcon FileIcons::icon(const QFileInfo& file) const {
    return skinIcon(look_, file.isRoot() ? "drive" : kindOf(file).icon, IconGround::Field);
}

QString FileIcons::type(const QFileInfo& file) const {
    return QString::fromLatin1(kindOf(file).words);
}

} // namespace velmora
