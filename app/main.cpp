// SPDX-License-Identifier: GPL-2.0-or-later
#include "app/PlatformWords.h"
#include "app/Program.h"
#include "base/HandOver.h"
#include "base/SingleInstance.h"
#include "shell/MessageBox.h"
#include "sound/MidiBackends.h"
#include "sound/MidiInputBackend.h"

#include <QApplication>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>

namespace {

constexpr int kUsage = 2;

/// The score that the user named, made independent of the current folder; blank for none.
std::filesystem::path scoreArgument(int argc, char* argv[]) {
    if (argc < 2)
        return {};
    std::error_code error;
    auto path = std::filesystem::absolute(argv[1], error);
    return error ? std::filesystem::path(argv[1]) : path;
}

} // namespace

int main(int argc, char* argv[]) {
    using namespace velmora;
    if (argc > 1 && std::strcmp(argv[1], "--version") == 0) {
        std::puts("velmora " VELMORA_VERSION);
        return 0;
    }
    // Before Qt has threads of its own: they write the environment.
    auto backends = createMidiBackends();
    auto inputs = createMidiInputBackends();
    QApplication::setApplicationName("velmora");
    QApplication::setDesktopFileName("velmora");
    const std::string activation = qgetenv(kActivationVariable).toStdString(); // Qt may take it
    std::optional<PlatformWordsAtEnd> words(std::in_place);
    const QApplication application(argc, argv);
    words.reset();
    // A quick drag over notes reaches each of them: no move of the mouse is left out for the next one. The
    // platform asks for the contrary when the application is made.
    QApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
    if (argc > 2) { // Qt has taken its own options out
        std::fputs("Usage: velmora [FILE.sng]\n", stderr);
        return kUsage;
    }
    const SingleInstance instance;
    const std::filesystem::path score = scoreArgument(argc, argv);
    const std::filesystem::path socket = handOverSocket(instance.lockFile());
    if (instance.alreadyRunning()) {
        if (!score.empty() && handOver(socket, {score, activation}))
            return 0;
        SettingsFile settings(settingsPath());
        frmskins skins(settings);
        tell(skins, nullptr, "Velmora is already running.");
        return 0;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    Program program(std::move(backends), std::move(inputs), score, socket);
    program.start();
    return QApplication::exec();
}
