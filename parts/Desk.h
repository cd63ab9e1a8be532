// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace velmora {

class clsDialog;
class DeviceChooser;
class ExToolTip;
class frmskins;
class Frmmenu;
class MessageLoop;
class MidiInputs;
class MidiPort;
class PlayedLog;
class Player;
class ProgramFolders;
class SettingsStore;
class Studio;
class Windows;
struct Workspace;

namespace notation {
class SongDocument;
} // namespace notation

/// What every window of the program is given: all that there is one of. It owns nothing, and what it refers
/// to outlives the windows.
struct Desk {
    SettingsStore& settings;
    const ProgramFolders& folders;
    frmskins& skins;
    Frmmenu& menu;
    ExToolTip& tips;
    clsDialog& dialogs;
    MessageLoop& loop;
    MidiPort& port;
    MidiInputs& inputs;
    DeviceChooser& devices;
    Workspace& workspace;
    Player& player;
    PlayedLog& played;
    Studio& studio;
    notation::SongDocument& song; ///< the score as pages
    Windows& windows;
};

} // namespace velmora
