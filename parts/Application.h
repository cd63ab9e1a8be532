// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

#include <filesystem>
#include <functional>

namespace velmora {

class clsDialog;
class DeviceChooser;
class ExToolTip;
class frmskins;
class Frmmenu;
class MessageLoop;
class MidiPort;
class ProgramFolders;
class SettingsStore;
struct Workspace;

/// What the composing window asks of the setup toolbar. Nothing is asked where there is none.
struct SetupToolbar {
    std::function<void()> open;
    std::function<void()> channelChanged; ///< the active channel is another one
    std::function<void()> refresh;        ///< the score, and with it every field, may be another one
    /// Opens the instrument picker, which says what has been picked for the notes of the active channel.
    std::function<void(std::function<void(std::int16_t code)> picked)> pickInstrument;
    std::function<void()> showMapper; ///< the chosen device failed, and the mapper is open in its place
};

/// What the program's windows are given: everything that there is one of. `main` builds it and owns what it
/// refers to, all of which outlives the windows.
struct Application {
    SettingsStore& settings;
    const ProgramFolders& folders;
    frmskins& skins;
    Frmmenu& menu;
    ExToolTip& tips;
    clsDialog& dialogs;
    MessageLoop& loop;
    MidiPort& port;
    DeviceChooser& devices;
    Workspace& workspace;

    std::function<void(const QString& page)> openHelp; ///< a page of the help, by its name
    SetupToolbar setup = {};
    std::function<void()> quit; ///< the composing window is gone: the program ends
};

} // namespace velmora
