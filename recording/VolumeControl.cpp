// SPDX-License-Identifier: GPL-2.0-or-later
#include "recording/VolumeControl.h"

#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <array>

namespace velmora {

namespace {
struct Row {
    const char* desktop; ///< that it belongs to; blank for any
    const char* program;
    const char* word; ///< that it is called with
};
constexpr std::array kRows{
    Row{"", "pavucontrol", ""},
    Row{"", "pavucontrol-qt", ""},
    Row{"GNOME", "gnome-control-center", "sound"},
    Row{"KDE", "systemsettings", "kcm_pulseaudio"},
    Row{"KDE", "systemsettings5", "kcm_pulseaudio"},
    Row{"KDE", "kmix", ""},
    Row{"XFCE", "xfce4-mixer", ""},
    Row{"MATE", "mate-volume-control", ""},
    Row{"X-Cinnamon", "cinnamon-settings", "sound"},
    Row{"", "pasystray", ""},
    Row{"", "qasmixer", ""},
};

bool names(std::string_view desktop, std::string_view one) {
    const std::string all = ':' + std::string(desktop) + ':';
    return all.find(':' + std::string(one) + ':') != std::string::npos;
}
} // namespace

std::vector<Mixer> mixersFor(std::string_view desktop) {
    const auto rank = [desktop](const Row& row) {
        if (!*row.desktop)
            return 1;
        return names(desktop, row.desktop) ? 0 : 2;
    };
    std::vector<Row> rows(kRows.begin(), kRows.end());
    std::ranges::stable_sort(rows, {}, rank);
    std::vector<Mixer> mixers;
    mixers.reserve(rows.size());
    for (const Row& row : rows)
        mixers.push_back({row.program, *row.word ? QStringList{row.word} : QStringList{}});
    return mixers;
}

bool startVolumeControl() {
    const QByteArray desktop = qgetenv("XDG_CURRENT_DESKTOP");
    return std::ranges::any_of(mixersFor({desktop.constData(), static_cast<std::size_t>(desktop.size())}),
                               [](const Mixer& mixer) {
                                   const QString path = QStandardPaths::findExecutable(mixer.program);
                                   return !path.isEmpty() && QProcess::startDetached(path, mixer.words);
                               });
}

} // namespace velmora
