// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "base/ProgramFolders.h"
#include "base/VirtualLoop.h"
#include "composition/Player.h"
#include "composition/Workspace.h"
#include "keyboard/PlayedLog.h"
#include "notation/SongDocument.h"
#include "parts/Desk.h"
#include "shell/ExToolTip.h"
#include "shell/Frmmenu.h"
#include "shell/frmskins.h"
#include "sound/DeviceChooser.h"
#include "sound/VirtualMix.h"
#include "studio/ScorePlayer.h"
#include "studio/Studio.h"
#include "tests/support/FakeInputs.h"
#include "tests/support/MemorySettings.h"
#include "tests/support/RecordingPort.h"
#include "tests/support/RecordingWindows.h"
#include "tests/support/ScriptedDialogs.h"

#include <QTemporaryDir>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>

namespace velmora {

/// A virtual clock on which a hand may act at each step of playing.
class HandLoop : public VirtualLoop {
public:
    void serveUntil(double moment) override {
        VirtualLoop::serveUntil(moment);
        ++waits;
        if (onWait)
            onWait(waits);
    }

    std::function<void(int)> onWait; ///< with the number of the wait, from 1
    int waits = 0;
};

/// Everything that a window is given, and nothing of the machine's.
template<class Loop = HandLoop>
class BasicTestDesk {
public:
    /// In classic manners, unless @p stored says otherwise.
    /// @param stored what the settings hold before anything reads them
    explicit BasicTestDesk(const std::function<void(SettingsStore&)>& stored = {})
        : settings(filled(stored)) {}

    /// Made at the first call, so that a test may fill the store before.
    Workspace& workspace() {
        if (!workspace_)
            workspace_ = std::make_unique<Workspace>(settings, folders);
        return *workspace_;
    }
    Score& score() { return workspace().score; }
    Player& player() {
        if (!player_)
            player_ = std::make_unique<Player>(workspace(), port, loop);
        return *player_;
    }
    VirtualMix& mix() {
        if constexpr (std::is_base_of_v<VirtualMix, Loop>)
            return loop;
        else
            return mix_;
    }
    /// Sound is calculated as time passes in `mix()`, which is the desk's loop where that is a mix.
    Studio& studio() {
        if (!studio_) {
            recorded_ = std::make_unique<ScorePlayer>(workspace(), player(), port, devices);
            studio_ = std::make_unique<Studio>(mix(), loop, *recorded_, workspace().manners, folders,
                                               [] { return std::filesystem::path(); });
        }
        return *studio_;
    }
    notation::SongDocument& song() {
        if (!song_)
            song_ = std::make_unique<notation::SongDocument>(workspace(), folders.home());
        return *song_;
    }
    Desk& desk() {
        if (!desk_)
            desk_.emplace(Desk{.settings = settings,
                               .folders = folders,
                               .skins = skins,
                               .menu = menu,
                               .tips = tips,
                               .dialogs = dialogs,
                               .loop = loop,
                               .port = port,
                               .inputs = midi.inputs,
                               .devices = devices,
                               .workspace = workspace(),
                               .player = player(),
                               .played = played,
                               .studio = studio(),
                               .song = song(),
                               .windows = windows});
        return *desk_;
    }
    void store(std::string_view key, std::string_view value) { settings.SaveSetting("Settings", key, value); }
    std::string stored(std::string_view key) { return settings.GetSetting("Settings", key, "none"); }

    QTemporaryDir home;
    ProgramFolders folders{std::filesystem::path(home.path().toStdString())};
    MemorySettings settings;
    ScriptedDialogs dialogs;
    Loop loop;
    RecordingPort port{loop};
    FakeInputs midi;
    DeviceChooser devices{port,
                          {.read = [this]() -> std::optional<int> {
                               const std::string text = stored("Devices");
                               return text == "none" ? std::nullopt : std::optional(std::stoi(text));
                           },
                           .write = [this](int device) { store("Devices", std::to_string(device)); }}};
    frmskins skins{settings};
    ExToolTip tips{settings};
    Frmmenu menu;
    PlayedLog played{folders.played(), loop};
    RecordingWindows windows;

private:
    static MemorySettings filled(const std::function<void(SettingsStore&)>& stored) {
        MemorySettings settings;
        settings.SaveSetting("Settings", "Classic", "1");
        if (stored)
            stored(settings);
        return settings;
    }

    std::unique_ptr<Workspace> workspace_;
    VirtualMix mix_;
    std::unique_ptr<Player> player_;
    std::unique_ptr<ScorePlayer> recorded_;
    std::unique_ptr<Studio> studio_;
    std::unique_ptr<notation::SongDocument> song_;
    std::optional<Desk> desk_;
};

using TestDesk = BasicTestDesk<>;
/// One whose waits calculate what sounds.
using StudioDesk = BasicTestDesk<VirtualMix>;

} // namespace velmora
