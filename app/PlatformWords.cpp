// SPDX-License-Identifier: GPL-2.0-or-later
#include "app/PlatformWords.h"

#include <QLibraryInfo>
#include <QMessageLogContext>
#include <QString>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <system_error>

namespace velmora {

namespace {

struct PlatformPlugin {
    std::string_view platform; ///< begins so in QT_QPA_PLATFORM
    const char* file;
    const char* package;
};
constexpr std::array kPlugins{
    PlatformPlugin{"wayland", "libqwayland-generic.so", "qt6-wayland"},
    PlatformPlugin{"xcb", "libqxcb.so", "libqt6gui6"},
};

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

void addFolders(std::vector<std::filesystem::path>& folders, std::string_view list) {
    while (!list.empty()) {
        const auto part = list.substr(0, list.find(':'));
        if (!part.empty())
            folders.emplace_back(part);
        list.remove_prefix(std::min(list.size(), part.size() + 1));
    }
}

bool isInstalled(const PlatformRequest& request, const PlatformPlugin& plugin) {
    return std::any_of(request.pluginFolders.begin(), request.pluginFolders.end(), [&](const auto& folder) {
        std::error_code error;
        return std::filesystem::exists(folder / "platforms" / plugin.file, error) ||
               std::filesystem::exists(folder / plugin.file, error);
    });
}

/// QT_QPA_PLATFORM if it is set, else what the session offers.
bool isAskedFor(const PlatformRequest& request, const PlatformPlugin& plugin) {
    if (!request.platform.empty())
        return request.platform.find(plugin.platform) != std::string::npos;
    return !(plugin.platform == "wayland" ? request.waylandDisplay : request.display).empty();
}

void speak(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type != QtFatalMsg) {
        std::fputs((qFormatLogMessage(type, context, message) + '\n').toLocal8Bit().constData(), stderr);
        return;
    }
    std::fputs(platformWords(platformRequest(), message.toStdString()).c_str(), stderr);
    std::fflush(stderr);
    std::_Exit(EXIT_FAILURE); // nothing was opened that would have to be closed
}

} // namespace

PlatformRequest platformRequest() {
    PlatformRequest request{.platform = variable("QT_QPA_PLATFORM"),
                            .waylandDisplay = variable("WAYLAND_DISPLAY"),
                            .display = variable("DISPLAY"),
                            .pluginFolders = {}};
    addFolders(request.pluginFolders, variable("QT_QPA_PLATFORM_PLUGIN_PATH"));
    addFolders(request.pluginFolders, variable("QT_PLUGIN_PATH"));
    request.pluginFolders.emplace_back(QLibraryInfo::path(QLibraryInfo::PluginsPath).toStdString());
    return request;
}

std::string platformWords(const PlatformRequest& request, std::string_view qtSays) {
    if (request.platform.empty() && request.waylandDisplay.empty() && request.display.empty())
        return "Velmora has found no screen: neither WAYLAND_DISPLAY nor DISPLAY is set.\n"
               "Start it from a desktop, or use velmora-cli, which needs no screen.\n";
    std::string missing;
    for (const auto& plugin : kPlugins)
        if (isAskedFor(request, plugin) && !isInstalled(request, plugin))
            missing += std::string("Qt's part for ") + (plugin.platform == "xcb" ? "X11" : "Wayland") +
                       " is missing. Install the package " + plugin.package + ".\n";
    if (!missing.empty())
        return "Velmora can't open a window here.\n" + missing;
    return "Velmora can't open a window here. Qt says:\n" + std::string(qtSays) + "\n";
}

PlatformWordsAtEnd::PlatformWordsAtEnd() {
    qInstallMessageHandler(&speak);
}

PlatformWordsAtEnd::~PlatformWordsAtEnd() {
    qInstallMessageHandler(nullptr);
}

} // namespace velmora
