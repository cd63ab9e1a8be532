// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// What Qt was asked for when it found no way to a screen.
struct PlatformRequest {
    std::string platform;       ///< QT_QPA_PLATFORM; blank if it isn't set
    std::string waylandDisplay; ///< WAYLAND_DISPLAY
    std::string display;        ///< DISPLAY
    std::vector<std::filesystem::path>
        pluginFolders; ///< each may hold a folder `platforms`, or the plug-ins themselves
};
/// That of this process. No QApplication is needed.
[[nodiscard]] PlatformRequest platformRequest();

/// Why there is no window, and which package helps, for whoever started the program.
/// @param qtSays the message that Qt would end with
[[nodiscard]] std::string platformWords(const PlatformRequest& request, std::string_view qtSays);

/// While this lives, a fatal message of Qt's becomes words on the standard error, and the program ends with
/// status 1: without a platform plug-in Qt would abort, with a core file and nothing that a user could
/// follow.
class PlatformWordsAtEnd {
public:
    PlatformWordsAtEnd();
    ~PlatformWordsAtEnd();
    PlatformWordsAtEnd(const PlatformWordsAtEnd&) = delete;
    PlatformWordsAtEnd& operator=(const PlatformWordsAtEnd&) = delete;
};

} // namespace velmora
